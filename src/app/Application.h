#pragma once

#include "app/Target.h"
#include "appcore/ADTaskRunner.h"
#include "appcore/LoginItems.h"
#include "appcore/PrivilegedExecution.h"
#include "appcore/ResourceFinder.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/bundles/SharedSurveys.h"
#include "appcore/changes/ChangeGate.h"
#include "appcore/ownership/InstalledApplications.h"
#include "appcore/ownership/SearchedFolders.h"
#include "appcore/processes/LaunchItems.h"
#include "appcore/processes/ProcessControl.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/sizes/DiskSizes.h"
#include "engine/AuthorisationSession.h"
#include "engine/RunReports.h"
#include "engine/ScanController.h"
#include "engine/SpaceStatistics.h"
#include "engine/record/ChangeRuns.h"
#include "modules/draggedfiles/DraggedFilesController.h"
#include "modules/extensions/ExtensionsScanController.h"
#include "modules/ignorelist/IgnoreListController.h"
#include "modules/languages/LanguageKeepList.h"
#include "modules/uninstaller/LeftoversCleaner.h"
#include "modules/uninstaller/Ownership.h"
#include "modules/uninstaller/UninstallQuestion.h"
#include "modules/uninstaller/UninstallSteps.h"
#include "platform/Authorization.h"
#include "platform/HttpClient.h"
#include "platform/LaunchServices.h"
#include "platform/Locale.h"
#include "platform/NotificationCenter.h"
#include "platform/Pace.h"
#include "platform/ToolTable.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace sweeply {

class Alerts;
class ApplicationUninstaller;
class DesktopNotifications;
class MainThread;
class SystemLog;

/// What the program runs on: this machine and the person in front of it. All of it outlives the application.
struct HostServices {
    MainThread& mainThread;
    Alerts& alerts;
    DesktopNotifications& desktopNotifications;
    SystemLog& log;
    Pace pace;
    /// The folders of our own tools and of what else came with the program, as absolute paths of this machine.
    std::string libexecFolder;
    std::string shareFolder;
    /// A program of the person's own asks for the password; nothing is to be asked before.
    bool asksForRightsElsewhere = false;
    /// Shows where a person chooses the languages to keep. Main thread.
    std::function<void()> showLanguagePreferences = [] {};
};

/// The composition root: builds everything once, in the order of its members, and hands each part what it works with.
/// Belongs to the main thread; what it gives out says who else may use it.
class Application final {
  public:
    Application(Target target, const HostServices& host);
    /// Saves what is still to be saved.
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Removes what killed runs of the program left in its own folders and in applications. At the start.
    void sweepTemporaryFiles();
    /// Starts building the list of applications, once.
    void startInventory();

    [[nodiscard]] const Target& target() const { return m_target; }
    [[nodiscard]] SizeUnits units() const { return m_units; }
    [[nodiscard]] ScanController& scanController() { return m_scanController; }
    [[nodiscard]] const SWApplicationCore& applications() const { return m_applications; }
    [[nodiscard]] IgnoreListController& ignoreList() { return m_ignoreList; }
    [[nodiscard]] ExtensionsScanController& extensions() { return *m_extensions; }
    [[nodiscard]] DraggedFilesController& draggedFiles() { return *m_draggedFiles; }
    /// Looks at the system as it is now, once the list of applications is complete; `reportProblem` is told of what
    /// cannot be read.
    [[nodiscard]] LeftoversCleaner leftoversCleaner(std::function<void(const Error&)> reportProblem);
    [[nodiscard]] PackageManager& packages() { return m_packages; }
    [[nodiscard]] Ownership& ownership() { return m_ownership; }
    [[nodiscard]] ApplicationUninstaller& applicationUninstaller() { return *m_applicationUninstaller; }
    [[nodiscard]] LanguageKeepList& languageKeepList() { return m_languageKeepList; }
    [[nodiscard]] UserDefaults& defaults() { return m_defaults; }
    [[nodiscard]] NotificationCenter& notifications() { return m_notifications; }
    [[nodiscard]] TreeLock& treeLock() { return m_treeLock; }
    [[nodiscard]] const ChangeGate& gate() const { return m_gate; }
    [[nodiscard]] ChangeRuns& runs() { return m_runs; }
    [[nodiscard]] AuthorisationSession& authorisation() { return m_authorisation; }
    [[nodiscard]] const UninstallSteps& uninstallSteps() const { return m_uninstallSteps; }
    [[nodiscard]] UninstallQuestion& uninstallQuestion() { return m_uninstallQuestion; }
    [[nodiscard]] const SpaceStatistics& statistics() const { return m_statistics; }

  private:
    void addModules(const HostServices& host);
    /// Our own folder in the user's home, with a slash behind it.
    [[nodiscard]] std::string supportFolder() const;

    Target m_target;
    const Pace m_pace;
    const SizeUnits m_units;

    NotificationCenter m_notifications;
    TreeLock m_treeLock;
    UserDefaults m_defaults;
    Locale m_locale;
    EngineServices m_services;

    ToolTable m_tools;
    SudoAuthorization m_authorization;
    PrivilegedExecution m_privileged;

    DiskSizes m_sizes;
    SharedSurveys m_surveys;
    Workspace m_workspace;
    const std::unique_ptr<const LaunchServices> m_registry; ///< none where the generation has none
    SWApplicationCore m_applications;
    ADTaskRunner m_tasks;
    LoginItems m_loginItems;
    LaunchItems m_launchItems;
    PackageManager m_packages;
    ChangeGate m_gate;
    ChangeRuns m_runs;
    mutable InstalledApplications m_installed; ///< reads when it is first asked
    const SearchedFolders m_searched;
    ResourceFinder m_resources;
    Ownership m_ownership;
    ProcessControl m_processes;
    UninstallSteps m_uninstallSteps;
    UninstallQuestion m_uninstallQuestion;
    HttpClient m_http;
    IgnoreListController m_ignoreList;
    LanguageKeepList m_languageKeepList;

    AuthorisationSession m_authorisation;
    RunReports m_reports;
    SpaceStatistics m_statistics;
    ScanController m_scanController;
    ExtensionsScanController* m_extensions = nullptr; ///< owned by m_scanController, like the next
    ApplicationUninstaller* m_applicationUninstaller = nullptr;
    std::unique_ptr<DraggedFilesController> m_draggedFiles;

    std::jthread m_inventoryThread;
};

} // namespace sweeply
