#include "platform/PrivateBus.h"
#include "platform/RecordingLog.h"
#include "platform/SessionBus.h"
#include "tools/ToolWorld.h"

#include <condition_variable>
#include <gmock/gmock.h>
#include <mutex>
#include <thread>

namespace sweeply {
namespace {

using namespace testing;

class HelperToolTest : public testing::Test, protected ToolWorld {
  protected:
    HelperToolTest() { ::setenv("HOME", path("home").c_str(), 1); }

    void trash(const std::string& name) const { writeBundle("home/.Trash/" + name + ".app", "com.example." + name); }
    void writeBundle(const std::string& path, const std::string& identifier) const {
        write(path + "/Contents/Info.plist", "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" +
                                                 identifier + "</string></dict></plist>");
    }
    std::string inTrash(const std::string& name) const { return path("home/.Trash/" + name + ".app"); }
};

TEST_F(HelperToolTest, SaysItsVersionAndRefusesWhatItDoesNotKnow) {
    EXPECT_EQ(run("SweeplyHelperTool", {"-v"}).output, "1.2\n");
    EXPECT_EQ(run("SweeplyHelperTool", {"-removeEverything"}).exitStatus, 1);
}

TEST_F(HelperToolTest, RunningSweeplyHearsOfNewlyTrashedApplicationsOnce) {
    const PrivateBus privateBus;
    RecordingLog log;
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::vector<std::string>> heard;
    const auto bus = SessionBus::connect(log);
    BusRequests requests;
    requests.open = [](const auto&) {};
    requests.activate = [] {};
    requests.uninstallApplications = [&](const std::optional<UninstallNotification>& notification) {
        const std::lock_guard lock(mutex);
        heard.push_back(notification->applications);
        changed.notify_all();
    };
    ASSERT_TRUE(bus->own(std::move(requests)));
    const auto waitFor = [&](std::size_t count) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return heard.size() >= count; });
        return heard.back();
    };
    trash("One");
    trash("Two \"$(x)\"");
    trash("Updated");
    writeBundle("home/Applications/Updated.app", "com.example.Updated");
    write("home/.Trash/file.app", "no folder");
    makeLink("home/.Trash/link.app", path("home/Applications/Updated.app"));
    EXPECT_EQ(run("SweeplyHelperTool", {}).exitStatus, 0);
    EXPECT_THAT(waitFor(1), UnorderedElementsAre(inTrash("One"), inTrash("Two \"$(x)\"")));
    EXPECT_EQ(run("SweeplyHelperTool", {}).exitStatus, 0);

    // One that is still being copied when the helper starts.
    makeFolder("home/.Trash/Slow.app/Contents");
    const std::jthread copier([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        trash("Slow");
    });
    EXPECT_EQ(run("SweeplyHelperTool", {}).exitStatus, 0);
    EXPECT_THAT(waitFor(2), ElementsAre(inTrash("Slow")));
}

TEST_F(HelperToolTest, OnlyNewlyMountedVolumesAreCleanedOfWhatTheSwitchesName) {
    const std::string point = path("media/My Disk");
    for (const char* file : {".DS_Store", "a/.DS_Store", "a/Thumbs.db", ".Trashes/501/old/file", ".Trashes/notes",
                             ".Spotlight-V100/x", "keep", "a/b/keep"})
        write(std::string("media/My Disk/") + file, "x");
    write("media/Older/.DS_Store", "x");
    write("victim/.DS_Store", "precious");
    makeLink("media/My Disk/link", path("victim"));
    makeLink("media/My Disk/.Trashes/502", path("victim"));
    std::string escaped = point;
    escaped.replace(escaped.find(' '), 1, "\\040");
    const std::string older = "30 1 8:1 / " + path("media/Older") + " rw\n";
    write("mounts", older);
    const auto clean = [&](std::vector<std::string> switches) {
        switches.insert(switches.end(), {"-mounts", "mounts", "-volumesBelow", path("media")});
        return run("SweeplyHelperTool", switches);
    };
    clean({"-cleanWinJunk"}); // learns what is mounted
    write("mounts", older + "31 1 8:17 / " + escaped + " rw\n");
    const auto said = clean({"-cleanTrashes", "-cleanMacOSJunk"});
    EXPECT_THAT(said.errors, HasSubstr("Removed " + point + "/a/.DS_Store"));
    for (const char* gone : {".DS_Store", "a/.DS_Store", ".Spotlight-V100", ".Trashes/501/old"})
        EXPECT_FALSE(contains(std::string("media/My Disk/") + gone)) << gone;
    for (const char* kept :
         {"a/Thumbs.db", "keep", "a/b/keep", ".Trashes/501", ".Trashes/notes", "link", ".Trashes/502"})
        EXPECT_TRUE(contains(std::string("media/My Disk/") + kept)) << kept;
    EXPECT_TRUE(contains("media/Older/.DS_Store"));
    EXPECT_EQ(read("victim/.DS_Store"), "precious");
    write("media/My Disk/.DS_Store", "x");
    clean({"-cleanMacOSJunk"});
    EXPECT_TRUE(contains("media/My Disk/.DS_Store")) << "it was mounted before";
}

} // namespace
} // namespace sweeply
