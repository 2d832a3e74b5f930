#include "appcore/changes/ChangeGate.h"

#include "appcore/ADTaskRunner.h"
#include "appcore/FolderConstants.h"
#include "appcore/LoginItems.h"
#include "appcore/PrivilegedExecution.h"
#include "appcore/TestTarget.h"
#include "appcore/processes/LaunchItems.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/sizes/DiskSizes.h"
#include "platform/Alerts.h"
#include "platform/Authorization.h"
#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "platform/ToolTable.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

/// Opens up the folder named `locked` before a tool runs, as more rights would, and notes the tool's arguments.
class OpeningRights final : public Authorization {
  public:
    AuthorizationResult create() override { return {}; }
    AuthorizationResult copyRights() override { return {}; }
    void giveBack() override {}
    Result<int> run(const std::string& program, const std::vector<std::string>& arguments, int folder) override {
        calls.push_back(fs::path(program).filename().string());
        for (const auto& argument : arguments)
            calls.back() += " " + argument;
        if (isHelpless)
            return 1;
        if (!locked.empty())
            fs::permissions(locked, fs::perms::owner_all);
        ProcessOptions options;
        options.workingDirectory = folder;
        return runProcess(program, arguments, options).map([](const auto& result) { return result.exitStatus; });
    }

    std::string locked;
    bool isHelpless = false;
    std::vector<std::string> calls;
};

/// Stands in for the overwriting removal: notes what it was given and removes plainly.
constexpr const char* kFakeRm = R"(#!/bin/sh
here=${0%/*}
printf '%s|' "$@" >> "$here/calls"
shift
exec /bin/rm -rf -- "$@"
)";

class ChangeGateTest : public testing::Test {
  protected:
    ChangeGateTest() {
        m_target.makeFile("/libexec/rm", kFakeRm);
        fs::permissions(host("/libexec/rm"), fs::perms::owner_all);
        m_target.makeFile("/work/file", "contents");
        m_target.makeFile("/victim", "precious");
        m_target.files().removals().guard().protect("/Users/sam/Library");
        m_gate.startRun();
    }
    ~ChangeGateTest() override { EXPECT_EQ(read("/victim"), "precious"); }

    std::string host(const std::string& path) { return m_target.files().rootPath() + path; }
    std::string read(const std::string& path) { return m_target.files().contentsAtPath(path, 1000).value_or("?"); }
    bool exists(const std::string& path) {
        return m_target.files().attributesOfItemAtPath(path, Links::DontFollow).has_value();
    }
    std::vector<std::string> failedPaths() const {
        std::vector<std::string> paths;
        for (const auto& report : m_gate.reports()) {
            if (!report.outcome.isDone())
                paths.push_back(report.path);
        }
        return paths;
    }
    OutcomeKind remove(const std::string& path) { return m_gate.perform({Operation::Remove, path}).kind; }
    OutcomeKind erase(const std::string& path) { return m_gate.perform({Operation::Overwrite, path}).kind; }
    OutcomeKind empty(const std::string& path) { return m_gate.perform({Operation::Empty, path}).kind; }

    TestTarget m_target;
    RecordingLog m_log;
    const FolderConstants m_folders{"sam"};
    OpeningRights m_rights;
    const ToolTable m_tools{host("/libexec"), ToolTable::Host::Other};
    PrivilegedExecution m_privileged{m_rights, m_tools, m_log};
    struct NoAlerts final : Alerts {
        AlertAnswer runAlert(const Alert& alert) override { return {alert.safeButton, false}; }
    } m_alerts;
    RunLoop m_loop;
    const SystemVersion m_version = *SystemVersion::fromProductVersion("10.6.8");
    const DiskSizes m_sizes{m_target.files(), m_version};
    const ADTaskRunner m_tasks{m_tools, m_log};
    LoginItems m_loginItems{m_target.files(), m_folders, m_log};
    const LaunchItems m_launchItems{m_target.files(), m_folders, m_tasks, m_log};
    PackageManager m_packages{{m_target.files(), m_folders, m_version, m_tools, m_privileged, m_alerts, m_loop, m_log}};
    ChangeGate m_gate{
        {m_target.files(), m_folders, m_sizes, m_privileged, m_tools, m_loginItems, m_launchItems, m_packages, m_log}};
};

/// Names that a shell or a tool would take for something else.
const char* const kOddNames[] = {
    "$(touch pwned)", "`touch pwned`", "a; touch pwned", "-rf",    "back\\slash\\", "new\nline", "*",
    "single'quote",   "$HOME",         "\xff\xfe",       "a && b", " blanks ",      "--",        "> pwned"};

TEST_F(ChangeGateTest, OddNamesAreRemovedAsTheyAre) {
    for (const std::string name : kOddNames) {
        const std::string path = "/work/" + name;
        m_target.makeFile(path, "1");
        EXPECT_EQ(remove(path), OutcomeKind::Removed) << name;
        EXPECT_FALSE(exists(path)) << name;
        m_target.makeFile(path, "1");
        EXPECT_EQ(erase(path), OutcomeKind::Erased) << name;
        EXPECT_FALSE(exists(path)) << name;
        m_target.makeFile(path, "1");
        EXPECT_EQ(empty(path), OutcomeKind::Emptied) << name;
        EXPECT_EQ(read(path), "\n") << name;
        EXPECT_EQ(remove(path), OutcomeKind::Removed);
    }
    EXPECT_FALSE(exists("/work/pwned"));
    EXPECT_FALSE(fs::exists("pwned"));
    EXPECT_EQ(read("/work/file"), "contents");
    EXPECT_FALSE(m_gate.couldntRemoveSomething());
}

TEST_F(ChangeGateTest, CompanionGoesTheSameWayAsItsItem) {
    const auto make = [&] {
        m_target.makeFile("/work/locked/item", "1");
        m_target.makeFile("/work/locked/._item", std::string("\0\5\26\7 more", 9));
        m_target.makeFile("/work/locked/._text", "no companion");
    };
    make();
    EXPECT_EQ(erase("/work/locked/item"), OutcomeKind::Erased);
    EXPECT_EQ(read("/libexec/calls"), "-rfP|./item|-rfP|./._item|");
    m_privileged.authorize();
    make();
    EXPECT_EQ(erase("/work/locked/item"), OutcomeKind::Erased);
    EXPECT_THAT(m_rights.calls, ElementsAre("rm -rfP ./item", "rm -rfP ./._item"));
    EXPECT_FALSE(exists("/work/locked/item") || exists("/work/locked/._item"));
    EXPECT_TRUE(exists("/work/locked/._text"));
    m_rights.isHelpless = true;
    make();
    EXPECT_EQ(erase("/work/locked/item"), OutcomeKind::Failed);
    EXPECT_TRUE(exists("/work/locked/._item")) << "what it belongs to is still there";
}

TEST_F(ChangeGateTest, DoubleQuoteBreaksTheShellFormsAndOnlyThose) {
    const std::string path = "/work/a\"; touch pwned; \"b";
    m_target.makeFile(path, "1");
    EXPECT_EQ(erase(path), OutcomeKind::Failed);
    EXPECT_EQ(empty(path), OutcomeKind::Failed);
    EXPECT_EQ(read(path), "1");
    EXPECT_THAT(failedPaths(), ElementsAre(path, path));
    m_privileged.authorize();
    EXPECT_EQ(empty(path), OutcomeKind::Emptied);
    EXPECT_EQ(read(path), "\n");
    EXPECT_EQ(erase(path), OutcomeKind::Erased);
    EXPECT_FALSE(exists(path) || exists("/work/pwned"));
}

TEST_F(ChangeGateTest, EmptiedFileIsTheSameFile) {
    fs::permissions(host("/work/file"), fs::perms(0640));
    const auto before = m_target.files().attributesOfItemAtPath("/work/file", Links::DontFollow);
    EXPECT_EQ(empty("/work/file"), OutcomeKind::Emptied);
    const auto after = m_target.files().attributesOfItemAtPath("/work/file", Links::DontFollow);
    EXPECT_EQ(read("/work/file"), "\n");
    EXPECT_EQ(after->inode, before->inode);
    EXPECT_EQ(after->mode, before->mode);
}

TEST_F(ChangeGateTest, OnlyFilesAreEmptiedAndNoneThroughALink) {
    m_target.makeLink("/work/link", "/victim");
    m_target.makeLink("/work/folder", "/");
    ASSERT_EQ(::mkfifo(host("/work/fifo").c_str(), 0600), 0);
    EXPECT_EQ(empty("/work/none"), OutcomeKind::Gone);
    EXPECT_EQ(empty("/work"), OutcomeKind::Failed);
    EXPECT_EQ(empty("/work/link"), OutcomeKind::Failed);
    EXPECT_EQ(empty("/work/fifo"), OutcomeKind::Failed);
    EXPECT_EQ(empty("/work/folder/victim"), OutcomeKind::Refused);
    EXPECT_THAT(failedPaths(), ElementsAre("/work", "/work/link", "/work/fifo", "/work/folder/victim"));
}

TEST_F(ChangeGateTest, WhatIsNotThereIsGoneAndFreesNothing) {
    EXPECT_EQ(m_gate.perform({.path = "/work/none", .size = 7}).kind, OutcomeKind::Gone);
    EXPECT_EQ(erase("/work/none"), OutcomeKind::Gone);
    EXPECT_FALSE(m_gate.couldntRemoveSomething());
    EXPECT_EQ(m_gate.sums().freed, 0U);
    EXPECT_EQ(remove(""), OutcomeKind::Refused);
}

TEST_F(ChangeGateTest, WhatChangedSinceItWasSeenIsLeftAloneInEveryWay) {
    m_target.makeFile("/work/tree/a/file", "contents");
    m_target.makeFile("/work/tree/b", "contents");
    for (const auto operation : {Operation::Remove, Operation::Overwrite, Operation::Empty, Operation::Keep}) {
        for (const std::string path : {"/work/tree", "/work/file"}) {
            ChangeRequest request{operation, path};
            request.seen = m_sizes.measure(path).identity;
            request.size = 5;
            const std::string changed = path == "/work/file" ? path : path + "/a/file";
            m_target.makeFile(changed, read(changed) + ".");
            const auto outcome = m_gate.perform(request);
            EXPECT_EQ(outcome.kind, OutcomeKind::Changed);
            EXPECT_EQ(outcome.error.message(), path + ": has changed since it was found, and stays");
            EXPECT_EQ(read("/work/tree/b"), "contents");
        }
    }
    ChangeRequest request{Operation::Remove, "/work/tree"};
    request.seen = m_sizes.measure("/work/tree").identity;
    request.size = 5;
    EXPECT_EQ(m_gate.perform(request).kind, OutcomeKind::Removed);
    EXPECT_EQ(m_gate.perform(request).kind, OutcomeKind::Gone);
    EXPECT_EQ(m_gate.sums().freed, 5U);
    EXPECT_EQ(m_gate.sums().failed, 8U);
}

TEST_F(ChangeGateTest, ProtectedFoldersStayEvenWithRights) {
    m_target.makeFile("/Users/sam/Library/file", "1");
    m_privileged.authorize();
    for (const char* path : {"/Users/sam/Library", "/Users", "/", "/users/sam"}) {
        EXPECT_EQ(remove(path), OutcomeKind::Refused);
        EXPECT_EQ(erase(path), OutcomeKind::Refused);
    }
    EXPECT_THAT(m_rights.calls, IsEmpty());
    EXPECT_TRUE(exists("/Users/sam/Library/file"));
}

TEST_F(ChangeGateTest, WhatTheUserMayNotRemoveGoesWithRightsAndStaysWithout) {
    m_target.makeFile("/work/locked/-file", "1");
    m_rights.locked = host("/work/locked");
    fs::permissions(m_rights.locked, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(remove("/work/locked/-file"), OutcomeKind::Failed);
    EXPECT_THAT(failedPaths(), ElementsAre("/work/locked/-file"));

    m_privileged.authorize();
    m_rights.isHelpless = true; // the tool ends without having done anything
    EXPECT_EQ(remove("/work/locked/-file"), OutcomeKind::Failed);
    m_rights.isHelpless = false;
    m_gate.startRun();
    EXPECT_EQ(remove("/work/locked/-file"), OutcomeKind::Removed);
    EXPECT_FALSE(exists("/work/locked/-file") || m_gate.couldntRemoveSomething());
    EXPECT_THAT(m_rights.calls, ElementsAre("rm -rf ./-file", "rm -rf ./-file"));
}

TEST_F(ChangeGateTest, LogsOfAFolderGoAsFarAsPossible) {
    const std::string logs = "/Users/sam/Library/Logs";
    m_target.makeFile(logs + "/a/locked/x", "1");
    m_target.makeFile(logs + "/b", "1");
    m_target.makeLink(logs + "/c", "/victim");
    ChangeRequest request{Operation::Remove, logs, ChangedKind::Log, {logs + "/a", logs + "/b", logs + "/c"}};
    request.hasParts = true;
    const auto locked = host(logs + "/a/locked");
    fs::permissions(locked, fs::perms::none);
    EXPECT_EQ(m_gate.perform(request).kind, OutcomeKind::Failed);
    EXPECT_FALSE(exists(logs + "/b") || exists(logs + "/c"));
    fs::permissions(locked, fs::perms::owner_all);
    EXPECT_EQ(m_gate.perform(request).kind, OutcomeKind::Removed);
    EXPECT_TRUE(exists(logs));
}

TEST_F(ChangeGateTest, SecureRemovalIsToldToOverwrite) {
    EXPECT_EQ(erase("/work/file"), OutcomeKind::Erased);
    EXPECT_EQ(read("/libexec/calls"), "-rfP|./file|");
}

} // namespace
} // namespace sweeply
