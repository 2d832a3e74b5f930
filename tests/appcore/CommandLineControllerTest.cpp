#include "appcore/CommandLineController.h"

#include "appcore/TestTarget.h"

#include <gtest/gtest.h>
#include <sstream>

namespace sweeply {
namespace {

using Outcome = CommandLineController::Outcome;

class CommandLineControllerTest : public testing::Test {
  protected:
    Result<Outcome> parse(std::vector<std::string> references) {
        references.insert(references.begin(), "sweeply-cli");
        return CommandLineController(m_folders, m_target.files(), m_log, m_output).parseArguments(references);
    }
    std::string errorOf(const std::vector<std::string>& references) {
        const auto result = parse(references);
        return result ? "no error" : result.error().message();
    }

    TestTarget m_target;
    RecordingLog m_log;
    FolderConstants m_folders{"ann"};
    std::ostringstream m_output;
};

TEST_F(CommandLineControllerTest, AReferenceRedirectsOnlyItsFolder) {
    m_target.makeFolder("/Other Apps");
    m_target.makeFolder("/Users/ann/C");
    EXPECT_EQ(parse({"-a", "/Other Apps", "-c", "~/C", "-LC", "~"}), Outcome::GoOn);
    EXPECT_EQ(m_folders.APPLICATIONSPATH, "/Other Apps");
    EXPECT_EQ(m_folders.HOMECACHESPATH, "/Users/ann/C");
    EXPECT_EQ(m_folders.LIBRARYCACHESPATH, "/Users/ann");
    EXPECT_EQ(m_folders.SYSTEMCACHESPATH, "/System/Library/Caches/");
    EXPECT_EQ(m_output.str(), "");
}

TEST_F(CommandLineControllerTest, TheUserCountsForTheReferencesThatFollow) {
    m_target.makeFolder("/Users/ann/C");
    m_target.makeFolder("/Users/bob/L");
    EXPECT_EQ(parse({"-c", "~/C", "--user", "bob", "-l", "~/L"}), Outcome::GoOn);
    EXPECT_EQ(m_folders.HOMECACHESPATH, "/Users/ann/C");
    EXPECT_EQ(m_folders.HOMELOGSPATH, "/Users/bob/L");
    EXPECT_EQ(m_folders.expandTilde(m_folders.USERPREFERENCESPATH), "/Users/bob/Library/Preferences/");
    EXPECT_EQ(m_log.lines(), std::vector<std::string>{"Sweeply is launched under 'bob'"});
}

TEST_F(CommandLineControllerTest, WhoIsNotAFolderInUsersIsNoUser) {
    m_target.makeFolder("/Users/ann");
    m_target.makeFolder("/etc");
    m_target.makeFile("/Users/file", "");
    for (const std::string name : {"nobody", "", ".", "..", "../etc", "ann/", "file"})
        EXPECT_EQ(errorOf({"-u", name}), "Wrong user name") << name;
    EXPECT_EQ(m_folders.home, "/Users/ann");
}

TEST_F(CommandLineControllerTest, WrongReferencesSayWhatIsWrong) {
    EXPECT_EQ(errorOf({"-a", "~/gone"}), "Path '/Users/ann/gone' doesn't exist");
    EXPECT_EQ(errorOf({"-a", "not/absolute"}), "Path 'not/absolute' doesn't exist");
    EXPECT_EQ(errorOf({"-A", "/"}), "'-A' is unknown reference. Enter -h or --help for detailed information");
    EXPECT_EQ(errorOf({"stray"}), "'stray' is unknown reference. Enter -h or --help for detailed information");
    EXPECT_EQ(errorOf({"-w"}), "'-w' needs something after it");
}

TEST_F(CommandLineControllerTest, HelpListsEveryReference) {
    EXPECT_EQ(parse({"-h", "-nonsense"}), Outcome::Finished);
    EXPECT_EQ(m_output.str(),
              "[reference] [path]\n\treferences:\n\t-a\tSets path to Applications Folder\n"
              "\t-c\tSets path to User Cache Folder\n\t-C\tSets path to System Cache Folder\n"
              "\t-l\tSets path to User Logs Folder\n\t-L\tSets path to System Logs Folder\n"
              "\t-LC\tSets path to Library Cache Folder\n\t-LL\tSets path to Library Logs Folder\n"
              "\t-LP\tSets path to Library Preferences Folder\n\t-p\tSets path to User Preferences Folder\n"
              "\t-pane\tSets path to User Preference Panes Folder\n"
              "\t-Pane\tSets path to Sustem Preference Panes Folder\n"
              "\t-w\tSets path to User Widgets Folder\n\t-W\tSets path to System Widgets Folder\n\n"
              "\t-s\tShows all paths\n\t-u or\tSets the username to use instead of '~/'\n\t--user\n");
}

TEST_F(CommandLineControllerTest, ShowingPrintsTheFoldersInUse) {
    m_target.makeFolder("/Elsewhere");
    EXPECT_EQ(parse({"-s", "-C", "/Elsewhere"}), Outcome::Finished);
    EXPECT_EQ(m_output.str(),
              "Applications path = /Applications/\nUser Widget path = /Users/ann/Library/Widgets/\n"
              "System Widget path = /Library/Widgets/\nUser Cache path = /Users/ann/Library/Caches/\n"
              "System Cache path = /Elsewhere\nUser Preferences path = /Users/ann/Library/Preferences/\n"
              "User Preference Panes path = /Users/ann/Library/PreferencePanes\n"
              "System Preference Panes path = /Library/PreferencePanes\n"
              "Library Preferences path = /Library/Preferences/\nLibrary Cache path = /Library/Caches/\n"
              "User Logs path = /Users/ann/Library/Logs/\nSystem Logs path = /private/var/log/\n"
              "Library Logs path = /Library/Logs/\n");
}

TEST_F(CommandLineControllerTest, ReferencesAreKnownWithAndWithoutValues) {
    for (const std::string reference : {"-a", "-pane", "-W", "-u", "--user"})
        EXPECT_TRUE(CommandLineController::isReference(reference) && CommandLineController::takesValue(reference));
    for (const std::string reference : {"-s", "-h", "--help"})
        EXPECT_TRUE(CommandLineController::isReference(reference) && !CommandLineController::takesValue(reference));
    for (const std::string other : {"", "-", "scan", "--root", "-x", "-PANE"})
        EXPECT_FALSE(CommandLineController::isReference(other)) << other;
}

} // namespace
} // namespace sweeply
