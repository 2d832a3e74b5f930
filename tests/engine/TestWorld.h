#pragma once

#include "appcore/ADTaskRunner.h"
#include "appcore/FolderConstants.h"
#include "appcore/LoginItems.h"
#include "appcore/PrivilegedExecution.h"
#include "appcore/TestTarget.h"
#include "appcore/changes/ChangeGate.h"
#include "appcore/processes/LaunchItems.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/sizes/DiskSizes.h"
#include "engine/AuthorisationSession.h"
#include "engine/IgnoreList.h"
#include "engine/RunReports.h"
#include "engine/ScanController.h"
#include "engine/SpaceStatistics.h"
#include "engine/record/ChangeRuns.h"
#include "platform/Alerts.h"
#include "platform/Authorization.h"
#include "platform/Pace.h"
#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "platform/ToolTable.h"
#include "platform/UserDefaults.h"

#include <functional>
#include <map>
#include <set>

namespace sweeply {

/// Answers by the title's script, else with the safe button, and keeps what was shown.
class ScriptedAlerts final : public Alerts {
  public:
    AlertAnswer runAlert(const Alert& alert) override {
        shown.push_back(alert);
        const auto script = answers.find(alert.title);
        const bool isChecked = alert.checkBox && boxAnswer.value_or(alert.checkBox->isChecked);
        return {script == answers.end() ? alert.safeButton : script->second, isChecked};
    }
    /// "TITLE|TEXT" of each.
    std::vector<std::string> texts() const {
        std::vector<std::string> texts;
        for (const auto& alert : shown)
            texts.push_back(alert.title + "|" + alert.text);
        return texts;
    }

    std::map<std::string, std::size_t> answers;
    std::optional<bool> boxAnswer; ///< boxes are left as they are without it
    std::vector<Alert> shown;
};

class RecordingNotifications final : public DesktopNotifications {
  public:
    void show(const DesktopNotification& note) override {
        shown.push_back(note.name + "|" + note.title + "|" + note.description);
    }
    bool isApplicationActive() const override { return isActive; }
    void requestUserAttention() override { ++attentions; }

    bool isActive = false;
    int attentions = 0;
    std::vector<std::string> shown;
};

/// Lends rights without asking, and runs tools with those of the test. `beforeRun` stands for what more rights would
/// make possible.
class FakeAuthorization final : public Authorization {
  public:
    AuthorizationResult create() override { return {}; }
    AuthorizationResult copyRights() override {
        if (isRefusing)
            return tl::unexpected(AuthorizationFailure{-60006, "refused"});
        return {};
    }
    void giveBack() override { ++givenBack; }
    Result<int> run(const std::string& program, const std::vector<std::string>& arguments, int folder) override {
        calls.push_back(arguments);
        if (beforeRun)
            beforeRun();
        ProcessOptions options;
        options.workingDirectory = folder;
        return runProcess(program, arguments, options).map([](const ProcessResult& ended) { return ended.exitStatus; });
    }

    bool isRefusing = false;
    int givenBack = 0;
    std::function<void()> beforeRun;
    std::vector<std::vector<std::string>> calls;
};

class RecordingIgnoreList final : public IgnoreList {
  public:
    std::vector<std::string> ignoreListForController(std::string_view) const override { return {}; }
    void addToIgnoreListNodes(const std::vector<const Node*>& nodes, std::string_view key) override {
        record("add", nodes, key);
    }
    void removeFromIgnoreListNodes(const std::vector<const Node*>& nodes, std::string_view key) override {
        record("remove", nodes, key);
    }

    bool applicationInList(std::string_view path) const override { return applications.contains(std::string(path)); }
    bool applicationInListWithUserNotification(std::string_view path) override { return applicationInList(path); }

    std::vector<std::string> changes;
    std::set<std::string> applications;

  private:
    void record(std::string text, const std::vector<const Node*>& nodes, std::string_view key) {
        text += " " + std::string(key);
        for (const Node* node : nodes)
            text += " " + node->path();
        changes.push_back(text);
    }
};

/// Everything around the modules, over a small volume of the user "sam": a program without a window. Modules are added
/// to `coordinator`, made anew by restart(), which stands for another process on the same volume.
class TestWorld {
  public:
    static constexpr const char* kPreferences = "/Users/sam/Library/Preferences/com.brindle.Sweeply.plist";

    explicit TestWorld(const char* productVersion = "10.6.8", const std::string& toolsFolder = "/nonexistent")
        : units(sizeUnitsOf(*SystemVersion::fromProductVersion(productVersion))),
          tools(toolsFolder, ToolTable::Host::Other), version(*SystemVersion::fromProductVersion(productVersion)) {
        for (const char* folder : {"/Library/Caches", "/Users/sam/Library/Caches", "/Users/sam/Library/Preferences"})
            target.makeFolder(folder);
        for (const auto& folder : folders.protectedFolders())
            target.files().removals().guard().protect(folder);
        restart();
    }

    FileManager& files() { return target.files(); }
    EngineServices services() {
        return {*defaults, *notifications, loop, log, treeLock, pace, units, files().problems()};
    }
    bool exists(const std::string& path) { return files().attributesOfItemAtPath(path, Links::DontFollow).has_value(); }

    /// With the ignore list that `makeList` returns, or one that only records.
    void restart(const std::function<std::unique_ptr<IgnoreList>(UserDefaults&)>& makeList = {}) {
        end();
        ownList.reset();
        notifications = std::make_unique<NotificationCenter>();
        files().problems().setListener([this](const Error& error) { notifications->post(ProblemFound{error}); });
        defaults = std::make_unique<UserDefaults>(files(), kPreferences, log);
        authorisation = std::make_unique<AuthorisationSession>(privileged, alerts, loop, log, false);
        statistics = std::make_unique<SpaceStatistics>(services());
        runs = std::make_unique<ChangeRuns>(ChangeRuns::Services{
            target.files(), folders, gate, *defaults, *notifications, log, "1.0", target.root(), [] { return now; }});
        if (makeList)
            ownList = makeList(*defaults);
        IgnoreList& list = ownList ? *ownList : ignored;
        coordinator = std::make_unique<ScanController>(
            services(), ScanController::Helpers{gate, *runs, *authorisation, reports, *statistics, list,
                                                [] { return std::string("June 1, 2009"); }});
    }
    void end() {
        coordinator.reset();
        statistics.reset();
    }

    /// Hands a module of that view code to the coordinator.
    template<typename Module>
    Module& add(std::uint8_t viewCode, std::unique_ptr<Module> module) {
        auto& added = *module;
        coordinator->addModule(std::make_unique<ScanObject>("row", "", Icon::None, Icon::None, viewCode),
                               std::move(module));
        return added;
    }

    /// Asks again and again: what a worker does need not pass the main thread.
    void waitUntil(const std::function<bool()>& done) { loop.runUntil(done, std::chrono::milliseconds(1)); }
    /// Runs what was handed over so far.
    void runPending() {
        bool isReached = false;
        loop.runLater([&] { isReached = true; });
        waitUntil([&] { return isReached; });
    }
    void scan() {
        coordinator->startScan();
        waitUntil([this] { return !coordinator->isScanning(); });
    }
    void remove() {
        coordinator->remove();
        waitUntil([this] { return !coordinator->isRemoving(); });
    }

    /// Seconds since 1970, for what expires.
    static inline std::int64_t now = std::time(nullptr);

    TestTarget target;
    const SizeUnits units;
    const FolderConstants folders{"sam"};
    RecordingLog log;
    RunLoop loop;
    TreeLock treeLock;
    Pace pace = Pace::full();
    ScriptedAlerts alerts;
    RecordingNotifications desktop;
    FakeAuthorization rights;
    const ToolTable tools;
    PrivilegedExecution privileged{rights, tools, log};
    const SystemVersion version;
    const DiskSizes sizes{target.files(), version};
    const ADTaskRunner tasks{tools, log};
    LoginItems loginItems{target.files(), folders, log};
    LaunchItems launchItems{target.files(), folders, tasks, log};
    PackageManager packages{{target.files(), folders, version, tools, privileged, alerts, loop, log}};
    ChangeGate gate{{target.files(), folders, sizes, privileged, tools, loginItems, launchItems, packages, log}};
    RunReports reports{alerts, desktop, units};
    RecordingIgnoreList ignored;
    std::unique_ptr<NotificationCenter> notifications;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<IgnoreList> ownList;
    std::unique_ptr<AuthorisationSession> authorisation;
    std::unique_ptr<SpaceStatistics> statistics;
    std::unique_ptr<ChangeRuns> runs;
    std::unique_ptr<ScanController> coordinator;
};

} // namespace sweeply
