#include "app/ADApp.h"

#include "app/Application.h"
#include "app/DiskImage.h"
#include "app/ModuleSelection.h"
#include "app/Preferences.h"
#include "engine/TestWorld.h"
#include "platform/TestFolder.h"
#include "platform/Volume.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <sstream>

namespace sweeply {
namespace {

using namespace testing;

class RecordingWatchers final : public Watchers {
  public:
    bool shouldUpdateTrashWatcher() const override { return isOld; }
    void installTrashWatcher() override { add("trash"); }
    void installVolumeWatcher() override { add("volume"); }

    bool isOld = false;
    std::vector<std::string> installed;

  private:
    void add(const char* what) {
        const std::lock_guard lock(m_mutex);
        installed.emplace_back(what);
    }
    std::mutex m_mutex;
};

class ADAppTest : public VolumeTest {
  protected:
    ADAppTest() {
        makeFolder("/Users/sam/Library/Preferences");
        write("/System/Library/CoreServices/SystemVersion.plist",
              plist::writeXml(plist::Dictionary(std::vector<plist::Dictionary::Member>{{"ProductVersion", "10.6.8"}})));
    }

    /// One start and end of the program.
    void startProgram(bool isOnDiskImage = false) {
        std::ostringstream output;
        auto target = openTarget({m_folder + "/root", {}, {}, {}}, m_log, output);
        Application application(*std::move(target.value()), {m_loop, m_alerts, m_desktop, m_log, Pace::full(),
                                                             SWEEPLY_LIBEXEC, m_folder + "/share"});
        ADApp app(application, m_watchers, m_log, {"sweeply", "a\nb"});
        app.setRunningFromDMG(isOnDiskImage);
        app.start(ADApp::Face::Terminal);
    }
    plist::Dictionary preferences() const {
        return *plist::parse(read("/Users/sam/Library/Preferences/com.brindle.Sweeply.plist")).value().asDictionary();
    }
    /// All but the modules' switches.
    std::vector<std::string> keys() const {
        std::vector<std::string> names;
        const auto switches = switchesNamed(everyModule()).value();
        const auto all = preferences();
        for (const auto& [key, value] : all.members()) {
            if (std::ranges::find(switches, key) == switches.end())
                names.push_back(key);
        }
        return names;
    }

    RecordingLog m_log;
    RunLoop m_loop;
    ScriptedAlerts m_alerts;
    RecordingNotifications m_desktop;
    RecordingWatchers m_watchers;
};

TEST_F(ADAppTest, FirstStartWritesTheDefaultsAndTheSecondChangesNothing) {
    startProgram();
    EXPECT_THAT(m_log.lines(), Contains(HasSubstr("started with arguments (sweeply, a\nb).")));
    EXPECT_THAT(m_watchers.installed, UnorderedElementsAre("trash", "volume"));
    EXPECT_THAT(keys(), UnorderedElementsAre("UseSecureErase", "FirstVolumeCleaner", "FirstAutomaticAppUninstaller",
                                             "IgnoreApps", "BLneedUpdate", "IgnoreListSharingPermission",
                                             "IgnoreListSharingPermissionWasAsked", "GlobalIgnoreListAutoUpdate",
                                             "GlobalIgnoreListAutoUpdateLastDate", "LanguagesToLeave"));
    const auto first = preferences();
    for (const char* key : {"FirstVolumeCleaner", "FirstAutomaticAppUninstaller", "GlobalIgnoreListAutoUpdate"})
        EXPECT_EQ(first.find(key)->asBool(), true) << key;
    for (const char* key : {"UseSecureErase", "BLneedUpdate", "IgnoreListSharingPermission"})
        EXPECT_EQ(first.find(key)->asBool(), false) << key;
    EXPECT_EQ(*first.find("GlobalIgnoreListAutoUpdateLastDate")->asString(), "Never");

    const auto bytes = read("/Users/sam/Library/Preferences/com.brindle.Sweeply.plist");
    startProgram();
    EXPECT_EQ(read("/Users/sam/Library/Preferences/com.brindle.Sweeply.plist"), bytes);
    EXPECT_EQ(m_watchers.installed.size(), 2U);
    m_watchers.isOld = true;
    startProgram();
    EXPECT_THAT(m_watchers.installed, testing::SizeIs(3));
    EXPECT_EQ(m_watchers.installed.back(), "trash");
}

TEST_F(ADAppTest, StartSweepsWhatKillsLeft) {
    const std::string library = "/Users/sam/Library/";
    for (const char* name : {"Preferences/.com.brindle.Sweeply.plist.sweeply-abcdefgh",
                             "Preferences/.loginwindow.plist.sweeply-lock", "LaunchAgents/.x.plist.sweeply-abcdefgh",
                             "Application Support/Sweeply/.PkgsInfo.sweeply-abcdefgh", "Other/.x.sweeply-abcdefgh"})
        write(library + name, "1");
    startProgram();
    EXPECT_FALSE(exists(library + "Application Support/Sweeply/.PkgsInfo.sweeply-abcdefgh"));
    EXPECT_TRUE(std::filesystem::is_empty(host(library + "LaunchAgents")));
    EXPECT_TRUE(exists(library + "Other/.x.sweeply-abcdefgh")) << "no folder of ours";
    std::vector<std::string> preferences;
    for (const auto& entry : std::filesystem::directory_iterator(host(library + "Preferences")))
        preferences.push_back(entry.path().filename());
    EXPECT_THAT(preferences, ElementsAre("com.brindle.Sweeply.plist"));
}

TEST_F(ADAppTest, FromADiskImageNothingIsInstalled) {
    startProgram(true);
    EXPECT_THAT(m_watchers.installed, IsEmpty());
    EXPECT_THAT(keys(), testing::Not(Contains("FirstVolumeCleaner")));
}

TEST_F(ADAppTest, DamagedPreferencesAreSetAsideAndSaid) {
    write("/Users/sam/Library/Preferences/com.brindle.Sweeply.plist", "garbage");
    startProgram();
    EXPECT_THAT(m_log.lines(), Contains(HasSubstr("com.brindle.Sweeply.plist")));
    EXPECT_THAT(keys(), Contains("UseSecureErase"));
    const auto files = names("/Users/sam/Library/Preferences");
    EXPECT_TRUE(std::ranges::any_of(
        files, [&](const auto& name) { return read("/Users/sam/Library/Preferences/" + name) == "garbage"; }));
}

TEST(PreferencesTest, ValuesAreReadByTheirKeysType) {
    EXPECT_EQ(preferenceNamed("Nonsense").error().kind, ErrorKind::NotFound);
    const auto read = [](const char* name, const char* text) {
        return preferenceValue(preferenceNamed(name).value(), text);
    };
    EXPECT_EQ(read("UseSecureErase", "yes").value().asBool(), true);
    EXPECT_FALSE(read("UseSecureErase", "maybe"));
    EXPECT_EQ(read("totalSizeSaved", "12").value().asUnsigned(), 12U);
    for (const char* bad : {"", "-1", "1.5", "12 ", "99999999999999999999999"})
        EXPECT_FALSE(read("totalSizeSaved", bad)) << bad;
    EXPECT_THAT(plist::textsOf(read("IgnoreApps", "a,b").value()), ElementsAre("a", "b"));
    EXPECT_FALSE(read("DisabledNodesIgnoreList", "a"));
}

class DiskImageTest : public testing::Test {
  protected:
    DiskImageTest() { m_folder.makeFile("image/Sweeply.app/bin/sweeply", 100); }

    void offer() {
        handleApplicationLaunchFromDiskImage(
            {m_folder.path("image/Sweeply.app"), "Sweeply", m_folder.path("Applications")}, m_alerts);
    }

    TestFolder m_folder;
    ScriptedAlerts m_alerts;
};

TEST_F(DiskImageTest, ProgramIsCopiedWhenThePersonWantsItAndOverAnOldOneOnlyThenToo) {
    offer();
    EXPECT_FALSE(m_folder.contains("Applications"));
    m_alerts.answers["Sweeply is currently running from a disk image"] = 0;
    offer();
    EXPECT_TRUE(m_folder.contains("Applications/Sweeply.app/bin/sweeply"));
    m_folder.makeFile("Applications/Sweeply.app/old");
    offer();
    EXPECT_TRUE(m_folder.contains("Applications/Sweeply.app/old"));
    m_alerts.answers["Sweeply is already installed on your system!"] = 0;
    offer();
    EXPECT_FALSE(m_folder.contains("Applications/Sweeply.app/old"));
    EXPECT_FALSE(m_folder.contains("Applications/Sweeply.app.new"));
}

TEST_F(DiskImageTest, OnlyAProgramInAFolderOfItsOwnIsEverOffered) {
    EXPECT_EQ(bundleOfProgram("/media/disk/Sweeply.app/bin/sweeply", "/home/sam")->path, "/media/disk/Sweeply.app");
    EXPECT_EQ(bundleOfProgram("/media/disk/Sweeply.app/bin/sweeply", "/home/sam")->applicationsFolder,
              "/home/sam/Applications");
    for (const char* program : {"/usr/bin/sweeply", "/bin/sweeply", "sweeply", ""})
        EXPECT_FALSE(bundleOfProgram(program, "/home/sam")) << program;
}

TEST_F(DiskImageTest, FailedCopyIsSaidAndLeavesNothing) {
    m_alerts.answers["Sweeply is currently running from a disk image"] = 0;
    m_folder.makeFile("Applications");
    offer();
    EXPECT_EQ(m_alerts.shown.back().title, "Installation of Sweeply failed!");
}

} // namespace
} // namespace sweeply
