#include "cli/Session.h"

#include "app/OwnProcess.h"
#include "cli/Interrupt.h"
#include "cli/Progress.h"
#include "engine/EngineEvents.h"

#include <algorithm>
#include <iostream>

namespace sweeply {

namespace {

constexpr std::chrono::milliseconds kTick{100};

/// Without a terminal nobody would see our question, but SUDO_ASKPASS may put one of its own.
bool asksForRightsElsewhere(const Terminal& terminal) {
    return !terminal.isInteractive() && SudoSetting::ofThisProcess().hasAskPass;
}

void showLanguagePreferences() {
    std::cerr
        << "sweeply-cli prefs LanguagesToLeave   shows the languages to keep; \"fr=yes,de=no\" after it sets them\n";
}

} // namespace

Result<std::unique_ptr<Session>> Session::open(const CommandLine& line, SystemLog& log, RunOutput output,
                                               TargetShare share) {
    auto target = openTarget(line.target, log, std::cout);
    if (!target)
        return Failure(target.error());
    if (!*target)
        return nullptr;
    (*target)->share = std::move(share);
    return std::make_unique<Session>(**std::move(target), line, log, std::move(output));
}

Session::Session(Target target, const CommandLine& line, SystemLog& log, RunOutput output)
    : m_commandLine(line), m_output(std::move(output)), m_alerts(m_terminal, line.wantsJson),
      m_application(std::move(target),
                    {m_loop, m_alerts, m_notifications, log, line.pace, besideProgram("libexec"),
                     besideProgram("share"), asksForRightsElsewhere(m_terminal), showLanguagePreferences}),
      m_app(m_application, m_watchers, log, line.arguments) {
    auto& center = m_application.notifications();
    m_subscriptions.push_back(
        center.observe<ProblemFound>([this](const ProblemFound& problem) { complain(problem.error.message()); }));
    m_app.start(ADApp::Face::Terminal);
}

void Session::scan() {
    auto& controller = m_application.scanController();
    controller.startScan();
    m_application.startInventory(); // what it cannot read belongs to this scan
    waitFor([&] { return controller.isScanning(); }, [&] { controller.stopScanActually(); }, "Scanning");
}

void Session::analyze(const std::vector<ADScanController*>& modules, const std::vector<std::string>& paths) {
    for (auto* module : modules)
        module->receiveDragData(paths);
    waitFor([&] { return std::ranges::any_of(modules, &ADScanController::ifScanRunning); },
            [&] { std::ranges::for_each(modules, &ADScanController::stopRun); }, "Scanning");
}

void Session::removeChecked() {
    auto& controller = m_application.scanController();
    controller.remove();
    waitFor([&] { return controller.isRemoving(); }, [&] { controller.stopRemoval(); }, "Removing");
}

void Session::uninstallChecked(const std::vector<ADScanController*>& modules) {
    auto& controller = m_application.scanController();
    controller.uninstallWith(modules);
    waitFor([&] { return controller.isRemoving(); }, [&] { controller.stopRemoval(); }, "Removing");
}

void Session::listExtensions() {
    auto& extensions = m_application.extensions();
    auto& controller = m_application.scanController();
    for (const auto tab : {ExtensionsScanController::kWidgetsTab, ExtensionsScanController::kPreferencesTab,
                           ExtensionsScanController::kPluginsTab}) {
        if (interrupt::wasRequested())
            return;
        extensions.didSelectTabViewItem(tab);
        waitFor([&] { return controller.isScanning(); }, [&] { controller.stopScanActually(); }, "Scanning");
    }
}

std::optional<UpdateReport> Session::updateSharedList() {
    std::optional<UpdateReport> outcome;
    m_application.ignoreList().updateButtonClick([&outcome](const UpdateReport& report) { outcome = report; });
    m_loop.runUntil([&] { return outcome || interrupt::wasRequested(); }, kTick);
    return outcome;
}

void Session::waitFor(const std::function<bool()>& isRunning, const std::function<void()>& stop, const char* activity) {
    Progress progress(m_application, m_output.place + activity, m_terminal.isErrorTerminal);
    bool isStopping = false;
    m_loop.runUntil([&] { return !isRunning(); }, kTick,
                    [&] {
                        if (interrupt::wasRequested() && !isStopping) {
                            isStopping = true;
                            stop();
                        }
                        progress.draw();
                    });
}

} // namespace sweeply
