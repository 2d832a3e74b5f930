#include "engine/tree/EvidenceText.h"
#include "modules/UninstallWorld.h"
#include "modules/uninstaller/ApplicationUninstaller.h"
#include "modules/uninstaller/UninstallPreferences.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;
namespace fs = std::filesystem;

const std::string kLibrary = "/Users/sam/Library/";

class ClaimsTest : public UninstallWorldTest {
  protected:
    explicit ClaimsTest() {
        m_module =
            &m_world.add(7, std::make_unique<ApplicationUninstaller>(
                                services(), *m_world.coordinator,
                                ApplicationUninstaller::Parts{m_finder, m_packages, m_steps, m_question, m_ownership}));
        m_world.alerts.answers["Uninstall selected objects?"] = 0;
    }
    ~ClaimsTest() override { m_world.end(); }

    void install(const std::string& path, const std::string& identifier, const std::string& name) {
        m_world.target.makeBundle(path, {{"CFBundleIdentifier", identifier}, {"CFBundleName", name}});
    }
    Node& item(const std::string& path) {
        for (const auto& entry : m_module->rootNode()->children()) {
            for (const auto& found : entry->children()) {
                if (found->path() == path && found->type() != nodetype::kLoginItem)
                    return *found;
            }
        }
        throw std::runtime_error("not listed: " + path);
    }
    /// "[x] RULE STRENGTH" and what claims the item is called, each after a "<".
    std::string judgement(const std::string& path) {
        const auto& node = item(path);
        std::string text = node.ifEnabled() ? "[x]" : "[ ]";
        if (const auto* evidence = node.evidence()) {
            text += " " + std::string(nameOf(evidence->rule)) + " " + std::string(nameOf(evidence->strength));
            for (const auto& claimant : evidence->alsoClaimedBy)
                text += " < " + std::string(nameWithoutExtension(claimant));
        }
        return text;
    }
    /// Every file there is but Sweeply's own, with its contents.
    std::map<std::string, std::string> volume() {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(host("/"))) {
            const std::string path = entry.path().string().substr(host("").size());
            if (entry.is_regular_file() && path.find("Sweeply") == std::string::npos)
                files[path] = read(path);
        }
        return files;
    }

    ApplicationUninstaller* m_module = nullptr;
};

/// Applications, and what is found of the first of them in the user's Library: how it is judged, or "" for what is not
/// listed.
struct Volume {
    const char* name;
    struct Application {
        const char* fileName;
        const char* identifier;
        const char* name;
    };
    std::vector<Application> applications;
    std::vector<std::pair<std::string, std::string>> files;
};

class ClaimedVolumeTest : public ClaimsTest, public testing::WithParamInterface<Volume> {};

TEST_P(ClaimedVolumeTest, OnlyWhatNobodyElseClaimsGoesWithAnApplication) {
    const auto bundle = [](const char* fileName) { return "/Applications/" + std::string(fileName) + ".app"; };
    for (const auto& [fileName, identifier, name] : GetParam().applications)
        install(bundle(fileName), identifier, name);
    for (const auto& [file, judged] : GetParam().files)
        write(kLibrary + file, "contents of " + file);
    auto expected = volume();
    const std::string application = bundle(GetParam().applications.front().fileName);
    drop(*m_module, {application});
    for (const auto& [file, judged] : GetParam().files) {
        const std::string path = kLibrary + file;
        if (!judged.empty()) {
            EXPECT_EQ(judgement(path), judged) << path;
        }
        if (judged.starts_with("[x]"))
            expected.erase(path);
    }
    expected.erase(application + "/Contents/Info.plist");
    uninstall();
    EXPECT_EQ(volume(), expected);
}

INSTANTIATE_TEST_SUITE_P(
    , ClaimedVolumeTest,
    testing::Values(Volume{"WordsOfOthersNames",
                           {{"Notes", "com.acme.notes", "Notes"}, {"Notes Pro", "com.acme.notespro", "Notes Pro"}},
                           {{"Preferences/com.acme.notes.plist", "[x] identifier certain"},
                            {"Caches/com.acme.notes", "[x] identifier certain"},
                            {"Application Support/Notes", "[x] name likely"},
                            {"Preferences/com.acme.notespro.plist", "[ ] identifier weak < Notes Pro"},
                            {"Caches/com.acme.notespro", "[ ] identifier weak < Notes Pro"},
                            {"LaunchAgents/com.acme.notespro.plist", "[ ] identifier weak < Notes Pro"},
                            {"Application Support/Notes Pro", "[ ] name weak < Notes Pro"},
                            {"Logs/Notes Pro", "[ ] name weak < Notes Pro"},
                            {"Application Support/My Notes", "[ ] name weak"},
                            {"Notes Backup 2009", "[ ] name weak"},
                            {"Preferences/Notepad.plist", ""}}},
                    Volume{"IdentifierThatBeginsAnother",
                           {{"Backup", "com.safe.backup", "Backup"},
                            {"Backup Helper", "com.safe.backup.helper", "Backup Helper"}},
                           {{"Preferences/com.safe.backup.plist", "[x] identifier certain"},
                            {"Preferences/com.safe.backup.agent.plist", "[x] identifier likely"},
                            {"Preferences/com.safe.backup.helper.plist", "[ ] identifier likely < Backup Helper"},
                            {"Preferences/com.safe.backup.helper.old.plist", "[ ] identifier likely < Backup Helper"},
                            {"Preferences/ByHost/com.safe.backup.001f5b3a9c0d.plist", "[x] identifier certain"},
                            {"Preferences/ByHost/com.safe.backup.helper.001f5b3a9c0d.plist",
                             "[ ] identifier likely < Backup Helper"},
                            {"Application Support/Backup Helper", "[ ] name weak < Backup Helper"}}},
                    Volume{"NamesThatBeginAlike",
                           {{"Note", "com.acme.note", "Note"}, {"Notes", "com.acme.notes", "Notes"}},
                           {{"Application Support/Note", "[x] name likely"},
                            {"Application Support/Notes", ""},
                            {"Caches/com.acme.notes", "[ ] identifier weak < Notes"}}},
                    Volume{"SuiteOfOneMaker",
                           {{"Acme", "com.acme.suite", "Acme"},
                            {"Acme Writer", "com.acme.suite.writer", "Acme Writer"},
                            {"Acme Painter", "com.acme.suite.painter", "Acme Painter"}},
                           {{"Preferences/com.acme.suite.shared.plist", "[x] identifier likely"},
                            {"Preferences/com.acme.suite.writer.plist", "[ ] identifier likely < Acme Writer"},
                            {"Application Support/Acme", "[x] name likely"},
                            {"Application Support/Acme Fonts", "[ ] name weak"}}},
                    Volume{"VendorFolderOfTwo",
                           {{"Notes", "com.acme.notes", "Notes"}, {"Tasks", "com.acme.tasks", "Tasks"}},
                           {{"Application Support/Acme/Notes/a", ""}, {"Application Support/Acme/Tasks/a", ""}}},
                    Volume{"OneLetterName",
                           {{"X", "org.x", "X"}, {"X Files", "org.xfiles.app", "X Files"}},
                           {{"Preferences/org.x.plist", "[x] identifier certain"},
                            {"Application Support/X", "[x] name likely"},
                            {"Application Support/Generation X", "[ ] name weak"},
                            {"Application Support/X Files", "[ ] name weak < X Files"},
                            {"Preferences/org.xfiles.app.plist", ""}}},
                    Volume{"IdentifierInOtherLetters",
                           {{"Notes", "com.acme.notes", "Notes"}, {"Sync", "COM.Acme.Notes.Sync", "Sync"}},
                           {{"Preferences/com.acme.notes.sync.plist", "[ ] identifier likely < Sync"},
                            {"Preferences/com.acme.notes.plist", "[x] identifier certain"}}},
                    Volume{"OldCopyOfOneThatStays",
                           {{"Old/Notes", "com.acme.notes", "Notes"}, {"Notes", "com.acme.notes", "Notes"}},
                           {{"Preferences/com.acme.notes.plist", "[ ] identifier certain < Notes"},
                            {"Application Support/Notes", "[ ] name likely < Notes"}}},
                    Volume{"TwoVersionsSideBySide",
                           {{"Writer 1", "com.acme.writer1", "Writer"}, {"Writer 2", "com.acme.writer2", "Writer"}},
                           {{"Preferences/com.acme.writer1.plist", "[x] identifier certain"},
                            {"Preferences/com.acme.writer2.plist", ""},
                            {"Application Support/Writer", "[ ] name likely < Writer 2"},
                            {"Application Support/Writer 1", "[x] name likely"},
                            {"Application Support/Writer 2", "[ ] name weak < Writer 2"}}}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(ClaimsTest, WhatGoesInTheSameRunClaimsNothing) {
    install("/Applications/Backup.app", "com.safe.backup", "Backup");
    install("/Applications/Backup Helper.app", "com.safe.backup.helper", "Backup Helper");
    const std::string shared = kLibrary + "Preferences/com.safe.backup.helper.x.plist";
    write(shared);
    drop(*m_module, {"/Applications/Backup.app"});
    EXPECT_EQ(judgement(shared), "[ ] identifier likely < Backup Helper");
    drop(*m_module, {"/Applications/Backup Helper.app"});
    EXPECT_EQ(judgement(shared), "[x] identifier likely");
    auto& helper = item("/Applications/Backup Helper.app");
    m_module->toggleOutlineItem(helper);
    EXPECT_EQ(judgement(shared), "[ ] identifier likely < Backup Helper") << "it stays after all";
    m_module->toggleOutlineItem(item(shared));
    m_module->toggleOutlineItem(item("/Applications/Backup.app"));
    EXPECT_TRUE(item(shared).ifEnabled()) << "what a person checked stays checked";
    m_module->removeSelectedItems({m_module->rootNode()->childAtIndex(1)});
    EXPECT_EQ(judgement(shared), "[x] identifier likely < Backup Helper");
}

TEST_F(ClaimsTest, OnlyAClickOnItselfChecksWhatIsClaimedOrWeak) {
    install("/Applications/Notes.app", "com.acme.notes", "Notes");
    install("/Applications/Notes Pro.app", "com.acme.notespro", "Notes Pro");
    const std::string weak = kLibrary + "My Notes";
    const std::string claimed = kLibrary + "Notes Pro";
    write(weak);
    write(claimed);
    drop(*m_module, {"/Applications/Notes.app"});
    m_module->checkNone();
    m_module->checkAll();
    EXPECT_TRUE(item("/Applications/Notes.app").ifEnabled());
    EXPECT_EQ(m_module->totalSize(), item("/Applications/Notes.app").longSize()) << "what would go";
    EXPECT_EQ(judgement(weak), "[ ] name weak");
    EXPECT_EQ(judgement(claimed), "[ ] name weak < Notes Pro");
    m_world.defaults->setBool(uninstaller::kCheckWeakMatches, true);
    m_module->reconsiderClaims();
    EXPECT_EQ(judgement(weak), "[x] name weak");
    EXPECT_EQ(judgement(claimed), "[ ] name weak < Notes Pro");
    EXPECT_EQ(reasonAgainstChecking(*item(claimed).evidence()),
              "Not checked: it may belong to /Applications/Notes Pro.app.");
    m_world.defaults->setBool(uninstaller::kCheckWeakMatches, false);
    m_module->reconsiderClaims();
    EXPECT_EQ(judgement(weak), "[ ] name weak");
    m_module->toggleOutlineItem(item(weak));
    m_module->toggleOutlineItem(item(claimed));
    uninstall();
    EXPECT_FALSE(m_world.exists(weak));
    EXPECT_FALSE(m_world.exists(claimed));
}

TEST_F(ClaimsTest, ReceiptsPluginsAndLaunchItemsAreClaimedByThoseWhoShareThem) {
    install("/Applications/Notes.app", "com.acme.notes", "Notes");
    install("/Applications/Tasks.app", "com.acme.tasks", "Tasks");
    install("/Applications/Notes.app/Contents/Library/Inner.app", "com.acme.inner", "Inner");
    addReceipt("com.acme.notes.pkg", {"Applications/Notes.app/x", "usr/local/lib/shared", "usr/local/lib/own",
                                      "Applications/Extras.plugin/x"});
    install("/Applications/Extras.plugin/Tool.app", "org.tool", "Tool");
    addReceipt("com.acme.tasks.pkg", {"Applications/Tasks.app/x", "usr/local/lib/shared"});
    for (const char* application : {"Notes", "Tasks"})
        write("/Applications/" + std::string(application) + ".app/Contents/PlugIns/Common.qlgenerator/x");
    write("/Applications/Notes.app/Contents/PlugIns/Alone.qlgenerator/x");
    for (const char* path : {"/usr/local/lib/shared", "/usr/local/lib/own", "/Library/QuickLook/Common.qlgenerator/x",
                             "/Library/QuickLook/Alone.qlgenerator/x", "/Users/sam/Library/Preferences/Inner"})
        write(path);
    const std::string agents = kLibrary + "LaunchAgents/";
    writeList(agents + "org.com.acme.notes.plist", {{"Program", "/Applications/Notes.app/Contents/MacOS/agent"}});
    writeList(agents + "com.acme.notes.plist", {{"Program", "/Applications/Tasks.app/Contents/MacOS/agent"}});
    m_loginItems.writeLoginItemsList({loginItem("/Applications/Notes.app")});
    drop(*m_module, {"/Applications/Notes.app"});
    EXPECT_EQ(judgement("/Applications/Notes.app"), "[x] bundle certain");
    EXPECT_EQ(judgement("/usr/local/lib/own"), "[x] receipt certain");
    EXPECT_EQ(judgement("/usr/local/lib/shared"), "[ ] receipt certain < Tasks");
    EXPECT_EQ(judgement("/Applications/Extras.plugin"), "[ ] receipt certain < Tool") << "it would go with this";
    EXPECT_EQ(judgement("com.acme.notes.pkg"), "[x] receipt certain");
    EXPECT_EQ(judgement("/Library/QuickLook/Alone.qlgenerator"), "[x] brought-plugin certain");
    EXPECT_EQ(judgement("/Library/QuickLook/Common.qlgenerator"), "[ ] brought-plugin certain < Tasks");
    EXPECT_EQ(judgement(agents + "org.com.acme.notes.plist"), "[x] launch-item certain");
    EXPECT_EQ(judgement(agents + "com.acme.notes.plist"), "[ ] identifier certain < Tasks");
    EXPECT_EQ(judgement(kLibrary + "Preferences/Inner"), "[x] nested-application likely");
    const auto entry = m_module->rootNode()->childAtIndex(0);
    EXPECT_EQ(entry->childWithEqualName("Startup Item")->evidence()->rule, EvidenceRule::LoginItem);
}

TEST_F(ClaimsTest, WhoIsGoneClaimsNothing) {
    install("/Applications/Notes.app", "com.acme.notes", "Notes");
    install("/Applications/Gone.app", "com.acme.notes.gone", "Gone");
    write(kLibrary + "Preferences/com.acme.notes.gone.plist");
    knowApplications();
    m_world.target.remove("/Applications/Gone.app");
    drop(*m_module, {"/Applications/Notes.app"});
    EXPECT_EQ(judgement(kLibrary + "Preferences/com.acme.notes.gone.plist"), "[x] identifier likely");
}

TEST_F(ClaimsTest, PanesAreClaimedFromToo) {
    auto& extensions = addExtensions();
    m_world.target.makeBundle(kLibrary + "PreferencePanes/Notes.prefPane",
                              {{"CFBundleIdentifier", "com.acme.notes"}, {"CFBundleName", "Notes"}});
    install("/Applications/Notes Pro.app", "com.acme.notes.pro", "Notes Pro");
    write(kLibrary + "Preferences/com.acme.notes.plist");
    write(kLibrary + "Preferences/com.acme.notes.pro.plist");
    knowApplications();
    extensions.didSelectTabViewItem(ExtensionsScanController::kPreferencesTab);
    m_world.waitUntil([this] { return !m_world.coordinator->isScanning(); });
    EXPECT_EQ(textOf(*extensions.shownController().rootNode()),
              "[x] Notes 8000\n  [x] ~/Library/PreferencePanes/Notes.prefPane 4000\n"
              "  [x] ~/Library/Preferences/com.acme.notes.plist 4000\n"
              "  [ ] ~/Library/Preferences/com.acme.notes.pro.plist 4000\n");
}

} // namespace
} // namespace sweeply
