#include "modules/ignorelist/IgnoreListController.h"

#include "modules/ListServer.h"

#include <gmock/gmock.h>
#include <thread>

namespace sweeply {
namespace {

using namespace testing;

constexpr const char* kSharing = "Do you want to share your ignore list with other users?";

class IgnoreListControllerTest : public testing::Test {
  protected:
    IgnoreListControllerTest() {
        for (const char* name : {"One", "Two"})
            m_world.target.makeBundle(std::string("/Applications/") + name + ".app",
                                      {{"CFBundleIdentifier", std::string("com.example.") + name}});
        m_lists.servers.feedAddress = m_server.feed();
        m_lists.servers.reportAddress = m_server.server.url("/report");
        restart();
    }

    void restart() {
        m_list.reset();
        m_list = std::make_unique<IgnoreListController>(m_lists.services(*m_world.defaults));
        m_list->load();
    }
    UpdateReport update() {
        std::optional<UpdateReport> report;
        m_list->updateButtonClick([&](const UpdateReport& ended) { report = ended; });
        m_world.waitUntil([&] { return report.has_value(); });
        return *report;
    }
    std::string shownText() const { return m_world.alerts.shown.empty() ? "" : m_world.alerts.texts().back(); }

    TestWorld m_world;
    IgnoreListWorld m_lists{m_world};
    ListServer m_server;
    std::unique_ptr<IgnoreListController> m_list;
};

TEST_F(IgnoreListControllerTest, DroppedApplicationsAndFoldersAreListedOnceAndQuestionedOnce) {
    m_world.target.makeBundle("/Applications/One.app/Contents/Helper.app", {{"CFBundleIdentifier", "com.example.in"}});
    EXPECT_THAT(m_list->receiveDragData({"/Applications", "/Applications/One.app", "/nothing"}),
                UnorderedElementsAre("com.example.One", "com.example.Two", "com.example.One"));
    EXPECT_THAT(m_list->applicationList().ignoreAppsArray(),
                UnorderedElementsAre("com.example.One", "com.example.Two"));
    EXPECT_TRUE(m_list->applicationInList("/Applications/Two.app"));
    EXPECT_FALSE(m_list->applicationInList("/Applications/Three.app"));
    EXPECT_TRUE(m_list->bundleInGlobalList("com.example.shared"));
    EXPECT_EQ(m_world.alerts.shown.size(), 1U);
    EXPECT_EQ(m_world.alerts.shown[0].title, kSharing);
    m_list->receiveDragData({"/Applications/Two.app"});
    EXPECT_EQ(m_world.alerts.shown.size(), 1U) << "asked once only";
    EXPECT_FALSE(m_world.defaults->boolForKey("IgnoreListSharingPermission"));
}

TEST_F(IgnoreListControllerTest, ListedApplicationIsModifiedOnlyWhenTheUserSaysSo) {
    m_list->receiveDragData({"/Applications/One.app"});
    const auto asked = [&] {
        bool isListed = false;
        std::atomic<bool> isDone = false;
        const std::jthread worker([&] {
            isListed = m_list->applicationInListWithUserNotification("/Applications/One.app");
            isDone = true;
        });
        m_world.waitUntil([&] { return isDone.load(); });
        return isListed;
    };
    EXPECT_TRUE(asked());
    EXPECT_EQ(shownText(), "One is in the ignore list|Are you sure you want to slim it?");
    m_world.alerts.answers["One is in the ignore list"] = 0;
    EXPECT_FALSE(asked());
    m_world.alerts.shown.clear();
    EXPECT_FALSE(m_list->applicationInListWithUserNotification("/Applications/Two.app"));
    EXPECT_THAT(m_world.alerts.shown, IsEmpty());
}

TEST_F(IgnoreListControllerTest, UserWhoAsksIsToldHowTheUpdateWent) {
    m_server.announce("1.1");
    EXPECT_EQ(update().outcome, UpdateOutcome::Installed);
    EXPECT_EQ(shownText(), "Ignore list update|The latest version of the Shared Ignore List has been successfully "
                           "installed.");
    EXPECT_EQ(m_list->currentIgnorelistVersion(), "1.1");
    EXPECT_EQ(m_world.defaults->stringForKey("GlobalIgnoreListAutoUpdateLastDate"), "Jun 2, 2009 10:00:00");
    EXPECT_EQ(update().outcome, UpdateOutcome::AlreadyLatest);
    EXPECT_EQ(shownText(), "Ignore list update|You already have the latest version of the Shared Ignore List.");

    m_world.defaults->setString("GlobalIgnoreListAutoUpdateLastDate", "before");
    m_server.announceAt("2.0", m_server.server.url("/absent.tgz"));
    EXPECT_EQ(update().outcome, UpdateOutcome::Error);
    EXPECT_THAT(shownText(), HasSubstr("An error occurred while downloading this ignore list: "));
    m_server.server.serve("feed", "no feed");
    EXPECT_EQ(update().outcome, UpdateOutcome::Error);
    EXPECT_THAT(shownText(), HasSubstr("An error occurred while checking for an update"));
    EXPECT_EQ(m_world.defaults->stringForKey("GlobalIgnoreListAutoUpdateLastDate"), "before");
}

TEST_F(IgnoreListControllerTest, StartReportsTheListOnlyWithPermissionAndOnlyOnce) {
    m_world.defaults->setBool("GlobalIgnoreListAutoUpdate", false);
    m_list->applicationList().setNewAppsArray({"com.example.b|c", "com.example.a"});
    m_list->startInBackground();
    restart(); // waits for what was begun
    EXPECT_THAT(m_server.server.requests(), IsEmpty());
    EXPECT_TRUE(m_list->applicationList().needUpdate());

    m_world.defaults->setBool("IgnoreListSharingPermissionWasAsked", false);
    m_world.alerts.answers[kSharing] = 0;
    m_list->startInBackground();
    m_world.waitUntil([&] { return !m_list->applicationList().needUpdate(); });
    EXPECT_THAT(m_server.server.requests(),
                AllOf(HasSubstr("user=&userID=&appName=Sweeply&appVer=1.0&list=com.example.b%7Cc%7Ccom.example.a&os="),
                      HasSubstr("Brindle-IgnoreLister-reporter"), Not(HasSubstr("sam"))));
    const auto before = m_server.server.requests();
    m_list->startInBackground();
    restart();
    EXPECT_EQ(m_server.server.requests(), before);
}

TEST_F(IgnoreListControllerTest, FailedReportIsTriedAgainNextTime) {
    m_lists.servers.reportAddress = m_server.server.url("/broken");
    m_world.defaults->setBool("GlobalIgnoreListAutoUpdate", false);
    m_world.alerts.answers[kSharing] = 0;
    restart();
    m_list->applicationList().setNewAppsArray({"com.example.a"});
    m_list->startInBackground();
    m_world.waitUntil([&] { return !m_world.log.lines().empty(); });
    EXPECT_THAT(m_world.log.lines().back(), HasSubstr("500"));
    EXPECT_TRUE(m_list->applicationList().needUpdate());
}

TEST_F(IgnoreListControllerTest, EndOfTheProgramDoesNotWaitForAServerThatHangs) {
    m_lists.servers.feedAddress = m_server.server.url("/hang");
    restart();
    m_list->startInBackground();
    while (m_server.server.requests().find("/hang") == std::string::npos)
        std::this_thread::yield();
    m_list.reset();
    m_world.runPending();
    EXPECT_THAT(m_world.alerts.shown, IsEmpty());
}

} // namespace
} // namespace sweeply
