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

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::UnorderedElementsAre;

class HelperToolTest : public testing::Test, protected ToolWorld {
  protected:
    HelperToolTest() { ::setenv("HOME", folder.path("home").c_str(), 1); }

    void trash(const std::string& name, const std::string& identifier) const {
        writeBundle("home/.Trash/" + name + ".app", identifier);
    }
    void writeBundle(const std::string& path, const std::string& identifier) const {
        write(path + "/Contents/Info.plist", "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" +
                                                 identifier + "</string></dict></plist>");
    }
    std::string inTrash(const std::string& name) const { return folder.path("home/.Trash/" + name + ".app"); }
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
    trash("One", "com.example.one");
    trash("Two \"$(x)\"", "com.example.two");
    trash("Updated", "com.example.updated");
    writeBundle("home/Applications/Updated.app", "com.example.updated");
    write("home/.Trash/file.app", "no folder");
    folder.makeLink("home/.Trash/link.app", folder.path("home/Applications/Updated.app"));
    EXPECT_EQ(run("SweeplyHelperTool", {}).exitStatus, 0);
    EXPECT_THAT(waitFor(1), UnorderedElementsAre(inTrash("One"), inTrash("Two \"$(x)\"")));
    EXPECT_EQ(run("SweeplyHelperTool", {}).exitStatus, 0);

    // One that is still being copied when the helper starts.
    folder.makeFolder("home/.Trash/Slow.app/Contents");
    const std::jthread copier([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        trash("Slow", "com.example.slow");
    });
    EXPECT_EQ(run("SweeplyHelperTool", {}).exitStatus, 0);
    EXPECT_THAT(waitFor(2), ElementsAre(inTrash("Slow")));
}

TEST_F(HelperToolTest, OnlyNewlyMountedVolumesAreCleanedOfWhatTheSwitchesName) {
    const std::string point = folder.path("media/My Disk");
    for (const char* file : {".DS_Store", "a/.DS_Store", "a/Thumbs.db", ".Trashes/501/old/file", ".Trashes/notes",
                             ".Spotlight-V100/x", "keep", "a/b/keep"})
        write(std::string("media/My Disk/") + file, "x");
    write("media/Older/.DS_Store", "x");
    write("victim/.DS_Store", "precious");
    folder.makeLink("media/My Disk/link", folder.path("victim"));
    folder.makeLink("media/My Disk/.Trashes/502", folder.path("victim"));
    std::string escaped = point;
    escaped.replace(escaped.find(' '), 1, "\\040");
    const std::string older = "30 1 8:1 / " + folder.path("media/Older") + " rw\n";
    write("mounts", older);
    const auto clean = [&](std::vector<std::string> switches) {
        switches.insert(switches.end(), {"-mounts", "mounts", "-volumesBelow", folder.path("media")});
        return run("SweeplyHelperTool", switches);
    };
    clean({"-cleanWinJunk"}); // learns what is mounted
    write("mounts", older + "31 1 8:17 / " + escaped + " rw\n");
    const auto said = clean({"-cleanTrashes", "-cleanMacOSJunk"});
    EXPECT_THAT(said.errors, HasSubstr("Removed " + point + "/a/.DS_Store"));
    for (const char* gone : {".DS_Store", "a/.DS_Store", ".Spotlight-V100", ".Trashes/501/old"})
        EXPECT_FALSE(folder.contains(std::string("media/My Disk/") + gone)) << gone;
    for (const char* kept :
         {"a/Thumbs.db", "keep", "a/b/keep", ".Trashes/501", ".Trashes/notes", "link", ".Trashes/502"})
        EXPECT_TRUE(folder.contains(std::string("media/My Disk/") + kept)) << kept;
    EXPECT_TRUE(folder.contains("media/Older/.DS_Store"));
    EXPECT_EQ(read("victim/.DS_Store"), "precious");
    write("media/My Disk/.DS_Store", "x");
    clean({"-cleanMacOSJunk"});
    EXPECT_TRUE(folder.contains("media/My Disk/.DS_Store")) << "it was mounted before";
}

} // namespace
} // namespace sweeply
