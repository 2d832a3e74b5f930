#include "modules/IgnoreListController.h"

#include "appcore/SWApplicationCore.h"
#include "engine/TestWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class IgnoreListControllerTest : public testing::Test {
  protected:
    static Node::Pointer node(std::string path) {
        return Node::nodeWithName("n", Icon::None, 0, 0, std::move(path), true);
    }

    TestWorld m_world;
    SWApplicationCore m_applications{m_world.files(), m_world.folders, nullptr, m_world.log};
    IgnoreListController m_list{*m_world.defaults, m_applications, m_world.log};
};

TEST_F(IgnoreListControllerTest, KeysAreKeptPerModuleInOrderAndTwiceWhenAddedTwice) {
    const auto a = node("/a");
    m_list.addToIgnoreListNodes({a.get(), node("/b").get()}, "Caches");
    m_list.addToIgnoreListPath(*a, "Caches");
    m_list.addToIgnoreListPath(*a, "Logs");
    EXPECT_THAT(m_list.ignoreListForController("Caches"), ElementsAre("/a", "/b", "/a"));
    m_list.removeFromIgnoreListPath(*a, "Caches");
    EXPECT_THAT(m_list.ignoreListForController("Caches"), ElementsAre("/b"));
    EXPECT_THAT(m_list.ignoreListForController("Logs"), ElementsAre("/a"));
    m_list.removeFromIgnoreListPath(*a, "Unknown");
    EXPECT_THAT(m_list.moduleKeys(), ElementsAre("Caches", "Logs"));
    m_list.addToIgnoreListPath(*node(""), "Logs");
    EXPECT_THAT(m_world.log.lines(), Contains("Node key in ignore list is nil"));
}

TEST_F(IgnoreListControllerTest, ApplicationsAreRememberedByTheirIdentifierInTheLanguagesModule) {
    m_world.target.makeBundle("/Applications/One.app", {{"CFBundleIdentifier", "com.example.one"}});
    m_list.addToIgnoreListPath(*node("/Applications/One.app"), "CleanLanguageTranslations");
    EXPECT_THAT(m_list.ignoreListForController("CleanLanguageTranslations"), ElementsAre("com.example.one"));
}

TEST_F(IgnoreListControllerTest, TwoProcessesAddToOneList) {
    UserDefaults otherDefaults(m_world.files(), TestWorld::kPreferences, m_world.log);
    IgnoreListController other(otherDefaults, m_applications, m_world.log);
    m_list.addKeys({"/mine"}, "Caches");
    other.addKeys({"/theirs"}, "Caches"); // read the file before the first was added
    m_list.removeKeys({"/mine"}, "Caches");
    other.addKeys({"/more"}, "Logs");
    EXPECT_THAT(other.ignoreListForController("Caches"), ElementsAre("/theirs"));
}

TEST_F(IgnoreListControllerTest, StrangePreferencesCountAsNone) {
    m_world.defaults->setObject("DisabledNodesIgnoreList", "text");
    EXPECT_THAT(m_list.ignoreListForController("Caches"), IsEmpty());
    EXPECT_EQ(m_list.addKeys({"/a"}, "Caches"), 1U);
    EXPECT_THAT(m_list.ignoreListForController("Caches"), ElementsAre("/a"));
}

TEST_F(IgnoreListControllerTest, PathThatIsNoUtf8IsKeptAndFound) {
    const std::string path = "/a/\xff";
    m_list.addToIgnoreListPath(*node(path), "Caches");
    EXPECT_THAT(m_list.ignoreListForController("Caches"), ElementsAre(ignoreKeyForPath(path)));
}

} // namespace
} // namespace sweeply
