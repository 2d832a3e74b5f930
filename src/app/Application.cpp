#include "app/Application.h"

#include "app/MakersServers.h"
#include "app/ModuleCatalog.h"
#include "appcore/AppleLanguages.h"
#include "engine/EngineEvents.h"
#include "modules/binaries/UniversalBinariesController.h"
#include "modules/caches/CachesScanController.h"
#include "modules/caches/UserCacheDirectory.h"
#include "modules/devjunk/DevTrashController.h"
#include "modules/eraser/EraserController.h"
#include "modules/languages/LanguagesController.h"
#include "modules/logs/LogsController.h"
#include "modules/uninstaller/ApplicationUninstaller.h"
#include "platform/Alerts.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <ctime>
#include <set>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kSupportFolder = "~/Library/Application Support/Sweeply/";

std::unique_ptr<ScanObject> rowFor(std::uint8_t viewCode) {
    const auto row = std::ranges::find(moduleCatalog(), viewCode, &ModuleRow::viewCode);
    return std::make_unique<ScanObject>(localizedString(row->title), localizedString(row->description),
                                        Icon::GenericFolder, Icon::GenericFolder, viewCode);
}

std::unique_ptr<const LaunchServices> registryOf(const Target& target, std::string file) {
    if (target.share.applications)
        return std::make_unique<KnownApplications>(*target.share.applications);
    if (!target.version.isOnLeopardOrBetter())
        return nullptr;
    return std::make_unique<RegisteredApplicationsFile>(*target.files, std::move(file));
}

} // namespace

Application::Application(Target target, const HostServices& host)
    : m_target(std::move(target)), m_pace(host.pace), m_units(sizeUnitsOf(m_target.version)),
      m_defaults(*m_target.files, m_target.preferencesFile, host.log),
      m_locale(std::string()), m_services{m_defaults, m_notifications, host.mainThread, host.log,
                                          m_treeLock, m_pace,          m_units,         m_target.files->problems()},
      m_tools(host.libexecFolder, *m_target.files), m_authorization(SudoSetting::ofThisProcess()),
      m_privileged(m_authorization, m_tools, host.log), m_sizes(*m_target.files, m_target.version),
      m_surveys(*m_target.files, m_sizes), m_workspace(*m_target.files, m_target.folders.APPLICATIONSPATH),
      m_registry(registryOf(m_target, supportFolder() + "RegisteredApplications.plist")),
      m_applications(*m_target.files, m_target.folders, m_registry.get(), host.log), m_tasks(m_tools, host.log),
      m_loginItems(*m_target.files, m_target.folders, host.log),
      m_launchItems(*m_target.files, m_target.folders, m_tasks, host.log),
      m_packages({*m_target.files, m_target.folders, m_target.version, m_tools, m_privileged, host.alerts,
                  host.mainThread, host.log}),
      m_gate({*m_target.files, m_target.folders, m_sizes, m_privileged, m_tools, m_loginItems, m_launchItems,
              m_packages, host.log}),
      m_runs({*m_target.files, m_target.folders, m_gate, m_defaults, m_notifications, host.log, SWEEPLY_VERSION,
              m_target.files->rootPath(), [] { return std::int64_t{std::time(nullptr)}; }}),
      m_installed(*m_target.files, m_applications, m_packages), m_searched(m_target.folders, m_applications),
      m_resources({*m_target.files, m_target.folders, m_sizes, m_applications, m_searched, m_loginItems, m_launchItems,
                   m_packages, host.log},
                  m_treeLock),
      m_ownership({*m_target.files, m_target.folders, m_searched, m_launchItems, m_installed}, m_defaults),
      m_processes({*m_target.files, m_tools, m_privileged, host.alerts, host.mainThread, host.log}),
      m_uninstallSteps({*m_target.files, m_processes, m_gate, host.alerts, host.mainThread, m_target.version},
                       m_treeLock),
      m_uninstallQuestion({host.alerts, m_runs, m_defaults, m_uninstallSteps}), m_http(host.libexecFolder + "/fetch"),
      m_ignoreList(
          {m_defaults, *m_target.files, m_applications, host.alerts, host.mainThread, host.log, m_http, m_tools,
           joinedPath(host.shareFolder, SharedIgnoreList::kFileName),
           supportFolder() + std::string(SharedIgnoreList::kFileName),
           [this] { return m_locale.formatDateAndTime(std::time(nullptr)); },
           makersServers(m_target.version,
                         appleLanguages(*m_target.files, m_target.folders).value_or(std::vector<std::string>()))}),
      m_languageKeepList(m_defaults,
                         [this] {
                             return m_target.share.languages ? *m_target.share.languages
                                                             : appleLanguages(*m_target.files, m_target.folders);
                         }),
      m_authorisation(m_privileged, host.alerts, host.mainThread, host.log,
                      SudoSetting::ofThisProcess().isRoot || host.asksForRightsElsewhere),
      m_reports(host.alerts, host.desktopNotifications, m_units), m_statistics(m_services),
      m_scanController(m_services, {m_gate, m_runs, m_authorisation, m_reports, m_statistics, m_ignoreList,
                                    [this] { return m_locale.formatDate(std::time(nullptr)); }}) {
    for (const auto& [key, value] : m_target.share.preferences)
        m_defaults.hold(key, value);
    for (const auto& folder : m_target.folders.protectedFolders())
        m_target.files->removals().guard().protect(folder);
    m_target.files->removals().guard().protectTree(m_runs.keptFolder());
    m_target.files->removals().guard().protectTree(m_runs.runsFolder());
    addModules(host);
    m_target.files->removals().refreshGuard();
    m_services.problems.startOver(); // what was looked at so far is no part of any scan
    m_services.problems.setListener([this](const Error& error) {
        m_services.log.log(error.message());
        m_notifications.post(ProblemFound{error});
    });
}

Application::~Application() {
    // A failure is in the log, and there is nobody left to tell.
    (void)m_defaults.synchronize();
}

void Application::addModules(const HostServices& host) {
    const std::string leoUserCacheDir = m_target.version.isOnLeopardOrBetter() && m_target.share.hasOwnerOfItsOwn
                                            ? userCacheDirectory(*m_target.files, m_target.folders)
                                            : std::string();
    if (!leoUserCacheDir.empty())
        m_target.files->removals().guard().protect(leoUserCacheDir);
    const ModuleServices services{m_services,   *m_target.files, m_sizes,   m_target.folders,
                                  m_ignoreList, m_applications,  m_surveys, m_target.share.part};
    m_scanController.addModule(rowFor(kCachesView), std::make_unique<CachesScanController>(
                                                        services, m_scanController, m_workspace, leoUserCacheDir));
    m_scanController.addModule(rowFor(kLogsView), std::make_unique<LogsController>(services, m_scanController));
    m_scanController.addModule(
        rowFor(kLanguagesView),
        std::make_unique<LanguagesController>(services, m_scanController, m_languageKeepList,
                                              LanguagesController::Person{host.alerts, host.showLanguagePreferences}));
    m_scanController.addModule(rowFor(kBinariesView),
                               std::make_unique<UniversalBinariesController>(
                                   services, m_scanController, UniversalBinariesController::Tools{m_tools, host.alerts},
                                   m_target.processorFamily, m_target.version));
    m_scanController.addModule(rowFor(kDevJunkView), std::make_unique<DevTrashController>(services, m_scanController));
    auto extensions = std::make_unique<ExtensionsScanController>(
        services, m_scanController,
        ExtensionsScanController::Parts{WidgetsGarbage::Parts{m_loginItems, m_launchItems, m_uninstallSteps},
                                        ADUninstallControllerView::Parts{m_uninstallSteps, m_uninstallQuestion},
                                        m_resources, m_ownership, m_workspace});
    m_extensions = extensions.get();
    m_scanController.addModule(rowFor(kExtensionsView), std::move(extensions));
    auto uninstaller = std::make_unique<ApplicationUninstaller>(
        services, m_scanController,
        ApplicationUninstaller::Parts{m_resources, m_packages, m_uninstallSteps, m_uninstallQuestion, m_ownership});
    m_applicationUninstaller = uninstaller.get();
    m_scanController.addModule(rowFor(kUninstallerView), std::move(uninstaller));
    m_scanController.addModule(
        rowFor(kEraserView), std::make_unique<EraserController>(services, m_scanController,
                                                                [this] { return m_scanController.useSecureErase(); }));
    const auto module = [this](std::uint8_t view) -> ADScanControllerView& {
        return *m_scanController.moduleForViewCode(view);
    };
    m_draggedFiles = std::make_unique<DraggedFilesController>(
        DraggedFilesController::Destinations{module(kLanguagesView), module(kBinariesView), module(kDevJunkView),
                                             module(kUninstallerView), module(kEraserView), *m_extensions});
}

LeftoversCleaner Application::leftoversCleaner(std::function<void(const Error&)> reportProblem) {
    return LeftoversCleaner({*m_target.files, m_gate, m_applications, m_installed, m_loginItems, m_launchItems,
                             std::move(reportProblem), m_target.share.part});
}

std::string Application::supportFolder() const { return m_target.folders.expandTilde(kSupportFolder); }

void Application::sweepTemporaryFiles() {
    m_gate.sweepSlimmings();
    // Mostly two of them are the same one, and it may be a big one.
    const std::set<std::string> folders{m_target.folders.expandTilde("~/Library/Preferences"),
                                        m_target.folders.expandTilde("~/Library/LaunchAgents"),
                                        std::string(pathWithoutLastComponent(m_target.preferencesFile))};
    for (const auto& folder : folders)
        m_target.files->sweepTemporaryFilesAtPath(folder);
}

void Application::startInventory() {
    if (!m_inventoryThread.joinable())
        m_inventoryThread = std::jthread(
            [this](std::stop_token stop) { m_applications.createApplicationsArray(stop, m_pace.inventoryDelay); });
}

} // namespace sweeply
