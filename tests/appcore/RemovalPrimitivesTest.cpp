#include "appcore/RemovalPrimitives.h"

#include "appcore/FolderConstants.h"
#include "appcore/PrivilegedExecution.h"
#include "appcore/TestTarget.h"
#include "platform/Authorization.h"
#include "platform/Process.h"
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

class RemovalPrimitivesTest : public testing::Test {
  protected:
    RemovalPrimitivesTest() {
        m_target.makeFile("/libexec/rm", kFakeRm);
        fs::permissions(host("/libexec/rm"), fs::perms::owner_all);
        m_target.makeFile("/work/file", "contents");
        m_target.makeFile("/victim", "precious");
        m_target.files().removals().guard().protect("/Users/sam/Library");
        m_removals.startRun();
    }
    ~RemovalPrimitivesTest() override { EXPECT_EQ(read("/victim"), "precious"); }

    std::string host(const std::string& path) { return m_target.files().rootPath() + path; }
    std::string read(const std::string& path) { return m_target.files().contentsAtPath(path, 1000).value_or("?"); }
    bool exists(const std::string& path) {
        return m_target.files().attributesOfItemAtPath(path, Links::DontFollow).has_value();
    }
    std::vector<std::string> failedPaths() const {
        std::vector<std::string> paths;
        for (const auto& failure : m_removals.failures())
            paths.push_back(failure.path);
        return paths;
    }

    TestTarget m_target;
    RecordingLog m_log;
    const FolderConstants m_folders{"sam"};
    OpeningRights m_rights;
    const ToolTable m_tools{host("/libexec"), ToolTable::Host::Other};
    PrivilegedExecution m_privileged{m_rights, m_tools, m_log};
    RemovalPrimitives m_removals{m_target.files(), m_folders, m_privileged, m_tools, m_log};
};

/// Names that a shell or a tool would take for something else.
const char* const kOddNames[] = {
    "$(touch pwned)", "`touch pwned`", "a; touch pwned", "-rf",    "back\\slash\\", "new\nline", "*",
    "single'quote",   "$HOME",         "\xff\xfe",       "a && b", " blanks ",      "--",        "> pwned"};

TEST_F(RemovalPrimitivesTest, OddNamesAreRemovedAsTheyAre) {
    for (const std::string name : kOddNames) {
        const std::string path = "/work/" + name;
        m_target.makeFile(path, "1");
        EXPECT_TRUE(m_removals.tryToRemoveFileAtPath(path)) << name;
        EXPECT_FALSE(exists(path)) << name;
        m_target.makeFile(path, "1");
        EXPECT_TRUE(m_removals.tryToSecurelyRemoveFileAtPath(path)) << name;
        EXPECT_FALSE(exists(path)) << name;
        m_target.makeFile(path, "1");
        EXPECT_TRUE(m_removals.tryToEmptyFileAtPath(path)) << name;
        EXPECT_EQ(read(path), "\n") << name;
        EXPECT_TRUE(m_removals.tryToRemoveFileAtPath(path));
    }
    EXPECT_FALSE(exists("/work/pwned"));
    EXPECT_FALSE(fs::exists("pwned"));
    EXPECT_EQ(read("/work/file"), "contents");
    EXPECT_FALSE(m_removals.couldntRemoveSomething());
}

TEST_F(RemovalPrimitivesTest, DoubleQuoteBreaksTheShellFormsAndOnlyThose) {
    const std::string path = "/work/a\"; touch pwned; \"b";
    m_target.makeFile(path, "1");
    EXPECT_FALSE(m_removals.tryToSecurelyRemoveFileAtPath(path));
    EXPECT_FALSE(m_removals.tryToEmptyFileAtPath(path));
    EXPECT_EQ(read(path), "1");
    EXPECT_THAT(failedPaths(), ElementsAre(path, path));
    m_privileged.authorize();
    EXPECT_TRUE(m_removals.tryToEmptyFileAtPath(path));
    EXPECT_EQ(read(path), "\n");
    EXPECT_TRUE(m_removals.tryToSecurelyRemoveFileAtPath(path));
    EXPECT_FALSE(exists(path) || exists("/work/pwned"));
}

TEST_F(RemovalPrimitivesTest, EmptiedFileIsTheSameFile) {
    fs::permissions(host("/work/file"), fs::perms(0640));
    const auto before = m_target.files().attributesOfItemAtPath("/work/file", Links::DontFollow);
    EXPECT_TRUE(m_removals.tryToEmptyFileAtPath("/work/file"));
    const auto after = m_target.files().attributesOfItemAtPath("/work/file", Links::DontFollow);
    EXPECT_EQ(read("/work/file"), "\n");
    EXPECT_EQ(after->inode, before->inode);
    EXPECT_EQ(after->mode, before->mode);
}

TEST_F(RemovalPrimitivesTest, OnlyFilesAreEmptiedAndNoneThroughALink) {
    m_target.makeLink("/work/link", "/victim");
    m_target.makeLink("/work/folder", "/");
    ASSERT_EQ(::mkfifo(host("/work/fifo").c_str(), 0600), 0);
    EXPECT_FALSE(m_removals.tryToEmptyFileAtPath("/work"));
    EXPECT_FALSE(m_removals.tryToEmptyFileAtPath("/work/none"));
    EXPECT_FALSE(m_removals.couldntRemoveSomething());
    EXPECT_FALSE(m_removals.tryToEmptyFileAtPath("/work/link"));
    EXPECT_FALSE(m_removals.tryToEmptyFileAtPath("/work/fifo"));
    EXPECT_FALSE(m_removals.tryToEmptyFileAtPath("/work/folder/victim"));
    EXPECT_THAT(failedPaths(), ElementsAre("/work/link", "/work/fifo", "/work/folder/victim"));
}

TEST_F(RemovalPrimitivesTest, WhatIsNotThereCountsAsRemoved) {
    EXPECT_TRUE(m_removals.tryToRemoveFileAtPath("/work/none"));
    EXPECT_TRUE(m_removals.tryToSecurelyRemoveFileAtPath("/work/none"));
    EXPECT_FALSE(m_removals.couldntRemoveSomething());
    EXPECT_FALSE(m_removals.tryToRemoveFileAtPath(""));
}

TEST_F(RemovalPrimitivesTest, ProtectedFoldersStayEvenWithRights) {
    m_target.makeFile("/Users/sam/Library/file", "1");
    m_privileged.authorize();
    for (const char* path : {"/Users/sam/Library", "/Users", "/", "/users/sam"}) {
        EXPECT_FALSE(m_removals.tryToRemoveFileAtPath(path));
        EXPECT_FALSE(m_removals.tryToSecurelyRemoveFileAtPath(path));
    }
    EXPECT_THAT(m_rights.calls, IsEmpty());
    EXPECT_TRUE(exists("/Users/sam/Library/file"));
}

TEST_F(RemovalPrimitivesTest, WhatTheUserMayNotRemoveGoesWithRightsAndStaysWithout) {
    m_target.makeFile("/work/locked/-file", "1");
    m_rights.locked = host("/work/locked");
    fs::permissions(m_rights.locked, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_FALSE(m_removals.tryToRemoveFileAtPath("/work/locked/-file"));
    EXPECT_THAT(failedPaths(), ElementsAre("/work/locked/-file"));

    m_privileged.authorize();
    m_rights.isHelpless = true; // the tool ends without having done anything
    EXPECT_FALSE(m_removals.tryToRemoveFileAtPath("/work/locked/-file"));
    m_rights.isHelpless = false;
    m_removals.startRun();
    EXPECT_TRUE(m_removals.tryToRemoveFileAtPath("/work/locked/-file"));
    EXPECT_FALSE(exists("/work/locked/-file") || m_removals.couldntRemoveSomething());
    EXPECT_THAT(m_rights.calls, ElementsAre("rm -rf ./-file", "rm -rf ./-file"));
}

TEST_F(RemovalPrimitivesTest, FolderIsEmptiedAsFarAsPossible) {
    m_target.makeFile("/Users/sam/Library/Logs/a/locked/x", "1");
    m_target.makeFile("/Users/sam/Library/Logs/b", "1");
    m_target.makeLink("/Users/sam/Library/Logs/c", "/victim");
    const auto locked = host("/Users/sam/Library/Logs/a/locked");
    fs::permissions(locked, fs::perms::none);
    EXPECT_FALSE(m_removals.tryToRemoveAllFilesInDirectory("~/Library/Logs"));
    EXPECT_FALSE(exists("/Users/sam/Library/Logs/b") || exists("/Users/sam/Library/Logs/c"));
    fs::permissions(locked, fs::perms::owner_all);
    EXPECT_TRUE(m_removals.tryToRemoveAllFilesInDirectory("~/Library/Logs"));
    EXPECT_TRUE(exists("/Users/sam/Library/Logs"));
    EXPECT_FALSE(m_removals.tryToRemoveAllFilesInDirectory("/work/file"));
}

TEST_F(RemovalPrimitivesTest, SecureRemovalIsToldToOverwrite) {
    EXPECT_TRUE(m_removals.tryToSecurelyRemoveFileAtPath("/work/file"));
    EXPECT_EQ(read("/libexec/calls"), "-rfP|./file|");
}

} // namespace
} // namespace sweeply
