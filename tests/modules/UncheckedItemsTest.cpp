#include "modules/ignorelist/UncheckedItems.h"

#include "appcore/SWApplicationCore.h"
#include "engine/TestWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;

class UncheckedItemsTest : public testing::Test {
  protected:
    static Node::Pointer node(std::string path) {
        return Node::nodeWithName("n", Icon::None, 0, 0, std::move(path), true);
    }

    TestWorld m_world;
    SWApplicationCore m_applications{m_world.files(), m_world.folders, nullptr, m_world.log};
    UncheckedItems m_list{*m_world.defaults, m_applications, m_world.log};
};

TEST_F(UncheckedItemsTest, KeysAreKeptPerModuleInOrderAndTwiceWhenAddedTwice) {
    const auto a = node("/a");
    m_list.addToIgnoreListNodes({a.get(), node("/b").get()}, "Caches");
    m_list.addToIgnoreListNodes({a.get()}, "Caches");
    m_list.addToIgnoreListNodes({a.get()}, "Logs");
    EXPECT_THAT(m_list.ignoreListForController("Caches"), ElementsAre("/a", "/b", "/a"));
    m_list.removeFromIgnoreListNodes({a.get()}, "Caches");
    EXPECT_THAT(m_list.ignoreListForController("Caches"), ElementsAre("/b"));
    EXPECT_THAT(m_list.ignoreListForController("Logs"), ElementsAre("/a"));
    m_list.removeFromIgnoreListNodes({a.get()}, "Unknown");
    EXPECT_THAT(m_list.moduleKeys(), ElementsAre("Caches", "Logs"));
    m_list.addToIgnoreListNodes({node("").get()}, "Logs");
    EXPECT_THAT(m_world.log.lines(), Contains("Node key in ignore list is nil"));
}

TEST_F(UncheckedItemsTest, ApplicationsAreRememberedByTheirIdentifierInTheLanguagesModule) {
    m_world.target.makeBundle("/Applications/One.app", {{"CFBundleIdentifier", "com.example.one"}});
    m_list.addToIgnoreListNodes({node("/Applications/One.app").get()}, "CleanLanguageTranslations");
    EXPECT_THAT(m_list.ignoreListForController("CleanLanguageTranslations"), ElementsAre("com.example.one"));
}

TEST_F(UncheckedItemsTest, TwoProcessesAddToOneList) {
    UserDefaults otherDefaults(m_world.files(), TestWorld::kPreferences, m_world.log);
    UncheckedItems other(otherDefaults, m_applications, m_world.log);
    m_list.addKeys({"/mine"}, "Caches");
    other.addKeys({"/theirs"}, "Caches"); // read the file before the first was added
    m_list.removeKeys({"/mine"}, "Caches");
    other.addKeys({"/more"}, "Logs");
    EXPECT_THAT(other.ignoreListForController("Caches"), ElementsAre("/theirs"));
}

TEST_F(UncheckedItemsTest, StrangePreferencesCountAsNone) {
    m_world.defaults->setObject("DisabledNodesIgnoreList", "text");
    EXPECT_THAT(m_list.ignoreListForController("Caches"), IsEmpty());
    EXPECT_EQ(m_list.addKeys({"/a"}, "Caches"), 1U);
    EXPECT_THAT(m_list.ignoreListForController("Caches"), ElementsAre("/a"));
}

TEST_F(UncheckedItemsTest, PathThatIsNoUtf8IsKeptAndFound) {
    const std::string path = "/a/\xff";
    m_list.addToIgnoreListNodes({node(path).get()}, "Caches");
    EXPECT_THAT(m_list.ignoreListForController("Caches"), ElementsAre(ignoreKeyForPath(path)));
}

} // namespace
} // namespace sweeply
