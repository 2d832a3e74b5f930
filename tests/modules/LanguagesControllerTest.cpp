#include "modules/languages/LanguagesController.h"

#include "appcore/AppleLanguages.h"
#include "modules/ModuleWorld.h"
#include "modules/languages/LanguageKeepList.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;

constexpr const char* kNativeTitle =
    "Here is a list of languages you would probably like to keep in the applications of your Mac and some of them "
    "could be your native languages:";

class LanguagesTest : public ModuleTest {
  protected:
    LanguagesTest() {
        ::setenv("LC_ALL", "en_US.UTF-8", 1);
        prefer({"de", "en", "fr"});
        makeApplication("One", "com.example.one");
        add();
    }
    ~LanguagesTest() override { ::unsetenv("LC_ALL"); }

    void prefer(const std::vector<std::string>& languages) {
        write("/Users/sam/Library/Preferences/.GlobalPreferences.plist",
              plist::writeXml(plist::Dictionary({{"AppleLanguages", plist::arrayOf(languages)}, {"Other", 1U}})));
    }
    void add() {
        m_keepList = std::make_unique<LanguageKeepList>(
            *m_world.defaults, [this] { return appleLanguages(m_world.files(), m_world.folders); });
        m_keepList->updateAppleLanguageList();
        m_module =
            &m_world.add(3, std::make_unique<LanguagesController>(
                                services(), *m_world.coordinator, *m_keepList,
                                LanguagesController::Person{m_world.alerts, [this] { m_showsPreferences = true; }}));
    }
    void writeLanguage(const std::string& folder, std::size_t size = 10) {
        write("/Applications/One.app/Contents/" + folder + ".lproj/a.strings", std::string(size, 'x'));
    }
    void scan() {
        findApplications();
        m_world.scan();
    }
    std::string listed() { return textOf(*m_module->rootNode()); }

    std::unique_ptr<LanguageKeepList> m_keepList;
    LanguagesController* m_module = nullptr;
    bool m_showsPreferences = false;
};

TEST_F(LanguagesTest, UnwantedLanguagesOfABundleGoByLanguageAndTheRestStays) {
    for (const char* folder :
         {"Resources/English", "Resources/en_GB", "Resources/German", "Resources/fr", "Resources/Base",
          "Resources/Italian", "Resources/it", "Frameworks/X.framework/Resources/it", "Resources/zh_TW",
          "Resources/fr.lproj/nested", "Resources/Brazilian Portuguese"})
        writeLanguage(folder);
    const std::string resources = "/Applications/One.app/Contents/Resources/";
    link(resources + "it_CH.lproj", "it.lproj");
    link(resources + "it.lproj/it.lproj", "../it.lproj");
    link(resources + "es.lproj", "/Users/sam");
    scan();
    EXPECT_EQ(listed(), "[x] One 28000\n"
                        "  [x] English (United Kingdom) 4000\n"
                        "  [x] Italian 16000\n"
                        "  [x] Portuguese (Brazil) 4000\n"
                        "  [x] Chinese (Traditional) 4000\n");
    m_world.remove();
    EXPECT_EQ(listed(), "");
    for (const char* kept : {"English", "German", "fr", "fr.lproj/nested", "Base"})
        EXPECT_EQ(read(resources + kept + ".lproj/a.strings"), "xxxxxxxxxx") << kept;
    EXPECT_THAT(there({resources + "en_GB.lproj", resources + "Italian.lproj", resources + "it.lproj",
                       resources + "zh_TW.lproj", resources + "Brazilian Portuguese.lproj",
                       resources + "../Frameworks/X.framework/Resources/it.lproj"}),
                IsEmpty());
    EXPECT_TRUE(m_world.exists("/Users/sam/Library"));
}

TEST_F(LanguagesTest, LinkToALocalizationThatGoesGoesWithItAndWhatAKeptLanguageNeedsStays) {
    const std::string resources = "/Applications/One.app/Contents/Resources/";
    for (const char* folder : {"it", "es", "pt"})
        writeLanguage("Resources/" + std::string(folder));
    write("/Users/sam/ja.lproj/a", "mine");
    for (const auto& [name, destination] : std::map<std::string, std::string>{{"it_CH", "./it.lproj/"},
                                                                              {"Italian", "it_CH.lproj"},
                                                                              {"French", "es.lproj"},
                                                                              {"es_MX", "es.lproj"},
                                                                              {"ja", "/Users/sam/ja.lproj"},
                                                                              {"ko", "no.lproj"},
                                                                              {"nl", "nl.lproj"},
                                                                              {"pt_BR", "pt.lproj"}})
        m_world.target.makeLink(resources + name + ".lproj", destination);
    scan();
    EXPECT_EQ(listed(), "[x] One 8000\n  [x] Italian 4000\n  [x] Portuguese 4000\n");
    m_world.target.remove(resources + "pt_BR.lproj");
    m_world.target.makeLink(resources + "pt_BR.lproj", "es.lproj"); // since the scan
    m_world.remove();
    std::vector<std::string> left;
    for (const auto& entry : std::filesystem::directory_iterator(host(resources)))
        left.push_back(entry.path().stem());
    EXPECT_THAT(left, testing::UnorderedElementsAre("es", "es_MX", "French", "ja", "ko", "nl", "pt_BR"));
    EXPECT_EQ(read("/Users/sam/ja.lproj/a"), "mine");
}

TEST_F(LanguagesTest, EnglishStaysAndOtherPreferredOnesAsTheUserChose) {
    m_keepList->toggle(2);
    m_keepList->toggle(1);
    EXPECT_TRUE(m_keepList->shouldILeaveThisLanguage("de") && m_keepList->shouldILeaveThisLanguage("en"));
    EXPECT_FALSE(m_keepList->shouldILeaveThisLanguage("fr") || m_keepList->shouldILeaveThisLanguage("de-CH"));
    EXPECT_EQ(m_keepList->valueForColumn("Enabled", 2), "0");
    EXPECT_EQ(m_keepList->valueForColumn("LocalizedLanguageName", 0), "German");
    EXPECT_EQ(m_keepList->valueForColumn("Other", 0), "Unknown");
    EXPECT_THAT(*m_keepList->nativeLanguages(), IsEmpty()) << "French ranks below English";
    prefer({"French", "ja_JP", "ja-JP", "en"});
    m_keepList->updateAppleLanguageList();
    EXPECT_EQ(m_keepList->rows().size(), 3U);
    EXPECT_FALSE(m_keepList->rows()[0].enabled) << "what was chosen for it before";
    EXPECT_FALSE(m_world.defaults->objectForKey("LanguagesToLeave")->find("de")) << "no longer preferred";
    EXPECT_THAT(*m_keepList->nativeLanguages(), ElementsAre("fr"));
}

TEST_F(LanguagesTest, NativeLanguageIsAskedAboutAndKeptUnlessThePersonInsists) {
    writeLanguage("Resources/German");
    m_keepList->toggle(0);
    scan();
    ASSERT_EQ(m_world.alerts.shown.size(), 1U);
    EXPECT_EQ(m_world.alerts.shown[0].title, kNativeTitle);
    EXPECT_THAT(m_world.alerts.shown[0].text, StartsWith("German\n\nThese languages are set"));
    EXPECT_EQ(listed(), "");
    m_world.alerts.answers[kNativeTitle] = 1;
    m_world.scan();
    m_world.runPending();
    EXPECT_TRUE(m_showsPreferences);
    EXPECT_EQ(listed(), "");
    m_world.alerts.answers[kNativeTitle] = 2;
    m_world.scan();
    EXPECT_EQ(listed(), "[x] One 4000\n  [x] German 4000\n");
}

TEST_F(LanguagesTest, PreferencesThatCannotBeReadMeanThatNothingIsFound) {
    writeLanguage("Resources/German");
    write("/Users/sam/Library/Preferences/.GlobalPreferences.plist", "garbage");
    scan();
    EXPECT_EQ(listed(), "");
    drop(*m_module, {"/Applications/One.app"});
    EXPECT_EQ(listed(), "");
    EXPECT_THAT(m_problems, Contains(HasSubstr(".GlobalPreferences.plist")));
}

TEST_F(LanguagesTest, IgnoredApplicationIsUncheckedWithAllItsLanguages) {
    writeLanguage("Resources/it");
    ignoreList().uncheckedItems().addKeys({"com.example.one"}, LanguagesController::kModuleKey);
    scan();
    EXPECT_EQ(listed(), "[ ] One 4000\n  [ ] Italian 4000\n");
}

TEST_F(LanguagesTest, DroppedApplicationsAndFoldersAreAddedOnce) {
    writeLanguage("Resources/it");
    write("/Users/sam/Apps/deep/Two.app/Contents/Resources/xx-klingon.lproj/a");
    drop(*m_module, {"~/Apps", "/Applications/One.app", "/Applications", "/nothing"});
    EXPECT_EQ(listed(), "[x] Two 4000\n  [x] xx-klingon 4000\n[x] One 4000\n  [x] Italian 4000\n");
    EXPECT_THAT(m_world.log.lines(), Contains("Failed to get localized language name for xx-klingon"));
}

TEST_F(LanguagesTest, FolderThatCannotBeRemovedStaysListed) {
    writeLanguage("Resources/it");
    scan();
    // What was a folder is a link to somewhere precious by the time of the removal.
    m_world.target.remove("/Applications/One.app/Contents/Resources");
    write("/Users/sam/Documents/it.lproj/thesis", "precious");
    link("/Applications/One.app/Contents/Resources", "/Users/sam/Documents");
    m_world.remove();
    EXPECT_EQ(read("/Users/sam/Documents/it.lproj/thesis"), "precious");
    EXPECT_EQ(listed(), "[x] One 4000\n  [x] Italian 4000\n");
}

} // namespace
} // namespace sweeply
