#include "app/SpecialCommands.h"

#include "engine/TestWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;

constexpr const char* kTitle = "Sweeply automatical application uninstall";
constexpr const char* kSuppressed = "DontShowAutomaticallAppUninstallAlert";

class SpecialCommandsTest : public testing::Test {
  protected:
    SpecialCommands make(const char* version = "10.6") {
        m_version = SystemVersion::fromProductVersion(version);
        return {*m_world.defaults,
                *m_version,
                m_world.alerts,
                m_world.log,
                {[this](const std::vector<std::string>& paths) {
                     m_done.emplace_back("uninstall");
                     m_done.insert(m_done.end(), paths.begin(), paths.end());
                 },
                 [this](const std::string& path) { m_done.push_back("add " + path); },
                 [this] { m_done.emplace_back("show"); }, [this] { m_done.emplace_back("quit"); }}};
    }
    /// Two applications for the uninstaller, with the explanation's answer `button`.
    void processTwo(SpecialCommands& commands, std::size_t button) {
        m_world.alerts.answers[kTitle] = button;
        for (const char* path : {"uninstall", "/Trash/One.app", "/Trash/Two.app"})
            commands.openFile(path);
        EXPECT_THAT(m_done, IsEmpty());
        commands.processSpecialCommands();
    }

    TestWorld m_world;
    std::optional<SystemVersion> m_version;
    std::vector<std::string> m_done;
};

TEST_F(SpecialCommandsTest, PathsAfterThePseudoFileGoToTheUninstallerAfterTheExplanation) {
    auto commands = make();
    processTwo(commands, 0);
    EXPECT_THAT(m_done, ElementsAre("uninstall", "/Trash/One.app", "/Trash/Two.app"));
    EXPECT_TRUE(m_world.alerts.shown[0].checkBox);
    EXPECT_FALSE(m_world.defaults->boolForKey(kSuppressed));
    commands.processSpecialCommands();
    EXPECT_EQ(m_done.size(), 3U) << "the mode is over";
    commands.openFile("/file");
    EXPECT_THAT(m_done, Contains("add /file"));
}

TEST_F(SpecialCommandsTest, QuitInTheExplanationQuits) {
    auto commands = make();
    processTwo(commands, 1);
    EXPECT_THAT(m_done, ElementsAre("quit"));
}

TEST_F(SpecialCommandsTest, SuppressedExplanationIsNotShown) {
    auto commands = make();
    m_world.defaults->setBool(kSuppressed, true);
    processTwo(commands, 1);
    EXPECT_THAT(m_done, ElementsAre("uninstall", "/Trash/One.app", "/Trash/Two.app"));
    EXPECT_THAT(m_world.alerts.shown, IsEmpty());
}

TEST_F(SpecialCommandsTest, OldestSystemExplainsOnceOnly) {
    auto commands = make("10.4.11");
    processTwo(commands, 0);
    EXPECT_FALSE(m_world.alerts.shown[0].checkBox);
    EXPECT_TRUE(m_world.defaults->boolForKey(kSuppressed));
}

TEST_F(SpecialCommandsTest, OtherFilesGoToTheListWhichIsShownOnceForABatch) {
    auto commands = make();
    commands.openFile("/a");
    commands.openFile("/b");
    commands.finishProcessingDraggedFiles();
    commands.openFile("/c");
    EXPECT_THAT(m_done, ElementsAre("add /a", "show", "add /b", "add /c", "show"));
}

TEST_F(SpecialCommandsTest, OnlyTheUninstallCommandOfANotificationIsActedOn) {
    auto commands = make();
    commands.uninstallApplications(std::nullopt);
    EXPECT_THAT(m_world.log.lines(), ElementsAre("Got notification with empty userInfo"));
    commands.uninstallApplications(UninstallNotification{"install", {"/a"}});
    EXPECT_THAT(m_done, IsEmpty());
    commands.uninstallApplications(UninstallNotification{"uninstall", {"/a\nb"}});
    EXPECT_THAT(m_done, ElementsAre("uninstall", "/a\nb"));
    EXPECT_EQ(m_world.log.lines().back(), "Got distributed notification cmd = uninstall applications = (/a\nb)");
}

} // namespace
} // namespace sweeply
