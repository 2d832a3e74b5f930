#include "appcore/SWApplicationCore.h"

#include "appcore/TestTarget.h"
#include "platform/LaunchServices.h"

#include <gmock/gmock.h>
#include <thread>

namespace sweeply {
namespace {

using std::chrono_literals::operator""h;
using std::chrono_literals::operator""ms;
using namespace testing;
using Paths = SWApplicationCore::Paths;

/// A registry that says what it is told to.
class FakeRegistry final : public LaunchServices {
  public:
    Result<Paths> copyAllApplicationURLs() const override { return answer; }
    Result<Paths> answer = Failure(Error{ErrorKind::NotFound, "/registry", "no such file"});
};

class FakeControl final : public WorkControl {
  public:
    bool stopped() const override { return m_source.stop_requested(); }
    bool ifPaused() const override { return false; }
    void waitWhilePaused() override {
        if (++m_looks == m_stopAfter)
            m_source.request_stop();
    }
    std::stop_token stopToken() const override { return m_source.get_token(); }

    void stop() { m_source.request_stop(); }
    void stopAfter(int entries) { m_stopAfter = entries; }

  private:
    std::stop_source m_source;
    int m_looks = 0;
    int m_stopAfter = -1;
};

class SWApplicationCoreTest : public testing::Test {
  protected:
    SWApplicationCore core() { return {m_target.files(), m_folders, &m_registry, m_log}; }

    TestTarget m_target;
    FolderConstants m_folders{"ann"};
    FakeRegistry m_registry;
    RecordingLog m_log;
};

TEST_F(SWApplicationCoreTest, TheRegistryIsFilteredAndOfferedOnce) {
    m_registry.answer = Paths{"/Applications/A.app", "/Applications/A.app/Contents/B.app", "/Volumes/Disk/C.app",
                              "/Applications/A.app", "/Users/ann/Desktop/D.app"};
    auto apps = core();
    apps.createApplicationsArray({}, 0ms);
    EXPECT_THAT(apps.createApplicationsArrayForController(nullptr),
                ElementsAre("/Applications/A.app", "/Users/ann/Desktop/D.app"));
    EXPECT_EQ(apps.getAllApllicationArray(), *m_registry.answer);
    EXPECT_THAT(m_log.lines(), ElementsAre("Started createApplicationsArray",
                                           "Finished createApplicationsArray and found original 5 and filtered 2 "));
}

TEST_F(SWApplicationCoreTest, WithoutARegistryTheApplicationsFolderIsWalked) {
    for (const char* folder : {"/Applications/A.app/Contents/Nested.app", "/Applications/Utilities/B.app",
                               "/Applications/Shouting.APP", "/Elsewhere/C.app"})
        m_target.makeFolder(folder);
    m_target.write("/Applications/file.app", "");
    m_target.link("/Applications/Linked.app", "/Elsewhere/C.app");
    m_target.link("/Applications/Dangling.app", "/gone.app");
    auto apps = core();
    apps.createApplicationsArray({}, 0ms);
    EXPECT_THAT(
        apps.createApplicationsArrayForController(nullptr),
        UnorderedElementsAre("/Applications/A.app", "/Applications/Utilities/B.app", "/Applications/Linked.app"));
    EXPECT_EQ(apps.getAllApllicationArray(), apps.createApplicationsArrayForController(nullptr));
    EXPECT_THAT(m_log.lines(),
                ElementsAre("Started createApplicationsArray", "Failed to get app list from launch services",
                            "Finished deep createApplicationsArray for /Applications/ and found 3",
                            "Finished createApplicationsArray and found original 0 and filtered 3 "));
}

TEST_F(SWApplicationCoreTest, AGenerationWithoutRegistryIsNotAskedAndARedirectedFolderIsTheOneWalked) {
    m_target.makeFolder("/Users/ann/Apps/A.app");
    m_folders.APPLICATIONSPATH = "~/Apps";
    SWApplicationCore apps(m_target.files(), m_folders, nullptr, m_log);
    apps.createApplicationsArray({}, 0ms);
    EXPECT_THAT(m_log.lines(), Not(Contains("Failed to get app list from launch services")));
    EXPECT_THAT(apps.createApplicationsArrayForController(nullptr), ElementsAre("/Users/ann/Apps/A.app"));
}

TEST_F(SWApplicationCoreTest, WaitingEndsWithTheListOrWithAStop) {
    m_registry.answer = Paths{"/Applications/A.app"};
    auto apps = core();
    FakeControl stopped;
    FakeControl patient;
    Paths seenByStopped{"untouched"};
    Paths seenByPatient;
    {
        std::jthread first([&] { seenByStopped = apps.createApplicationsArrayForController(&stopped); });
        stopped.stop();
    }
    {
        std::jthread second([&] { seenByPatient = apps.createApplicationsArrayForController(&patient); });
        std::jthread builder([&](const std::stop_token& stop) { apps.createApplicationsArray(stop, 1ms); });
        second.join();
    }
    EXPECT_THAT(seenByStopped, IsEmpty());
    EXPECT_THAT(seenByPatient, ElementsAre("/Applications/A.app"));
}

TEST_F(SWApplicationCoreTest, AStopCutsTheStartDelayShort) {
    auto apps = core();
    std::jthread builder([&](const std::stop_token& stop) { apps.createApplicationsArray(stop, 24h); });
    builder.request_stop();
    builder.join();
    EXPECT_THAT(apps.getAllApllicationArray(), IsEmpty());
}

TEST_F(SWApplicationCoreTest, AStoppedWalkKeepsWhatItFound) {
    for (const std::string name : {"A", "B", "C", "D"})
        m_target.makeFolder("/Dropped/" + name + ".app");
    auto apps = core();
    FakeControl control;
    control.stopAfter(2);
    EXPECT_EQ(apps.createApplicationsArrayInPathDeep("/Dropped", &control).size(), 2U);
    EXPECT_EQ(apps.createApplicationsArrayInPathDeep("/Dropped", nullptr).size(), 4U);
    EXPECT_THAT(apps.createApplicationsArrayInPathDeep("/gone", nullptr), IsEmpty());
}

TEST_F(SWApplicationCoreTest, NamesComeFromTheBundleAndAreRemembered) {
    m_target.makeBundle("/A.app", {{"CFBundleIdentifier", "com.a"}, {"CFBundleName", "Anna"}});
    m_target.makeBundle("/B.app", {{"CFBundleExecutable", "bexec"}, {"CFBundleName", 7}});
    m_target.makeBundle("/C.app", {{"CFBundleIdentifier", true}});
    m_target.write("/Damaged.app/Contents/Info.plist", "<plist><dict>");
    m_target.makeFolder("/Folder.app/Contents/Info.plist");
    auto apps = core();
    EXPECT_EQ(apps.bundleIDForAppWithPath("/A.app"), "com.a");
    EXPECT_EQ(apps.appNameForAppWithPath("/A.app"), "Anna");
    EXPECT_EQ(apps.appNameForAppWithPath("/B.app"), "bexec");
    for (const std::string path : {"/C.app", "/Damaged.app", "/Folder.app", "/gone.app", ""}) {
        EXPECT_EQ(apps.bundleIDForAppWithPath(path), std::nullopt) << path;
        EXPECT_EQ(apps.appNameForAppWithPath(path), std::nullopt) << path;
    }
    m_target.makeBundle("/A.app", {{"CFBundleIdentifier", "com.changed"}, {"CFBundleName", "Changed"}});
    m_target.makeBundle("/C.app", {{"CFBundleName", "Late"}});
    EXPECT_EQ(apps.appNameForAppWithPath("/A.app"), "Anna");
    EXPECT_EQ(apps.bundleIDForAppWithPath("/A.app"), "com.changed");
    EXPECT_EQ(apps.appNameForAppWithPath("/C.app"), "Late");
}

TEST_F(SWApplicationCoreTest, PlacesAreTheMachinesAndTheUsers) {
    const auto apps = core();
    EXPECT_THAT(apps.preferencesPaths(), ElementsAre("/Users/ann/Library/Preferences", "/Library/Preferences"));
    ASSERT_EQ(apps.pluginsPaths().size(), 24U);
    EXPECT_EQ(apps.pluginsPaths()[12], "/Library/iTunes/iTunes Plug-ins/");
    EXPECT_EQ(apps.pluginsPaths()[13], "/Users/ann/Library/iTunes/iTunes Plug-ins/");
}

} // namespace
} // namespace sweeply
