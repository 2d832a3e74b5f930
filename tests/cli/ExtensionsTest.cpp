#include "cli/CliWorld.h"

#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace sweeply {
namespace {

using namespace testing;

/// On the sample volume, as people try it.
class CliExtensionsTest : public CliTest {
  protected:
    void writeSample(const std::string& scale = "1") {
        std::filesystem::remove_all(m_folder + "/root");
        EXPECT_EQ(run({"sample", m_folder + "/root", "--scale", scale}).exitStatus, 0);
    }
    CliExtensionsTest() { writeSample(); }

    static std::vector<std::string> pathsBelow(const nlohmann::ordered_json& node) {
        std::vector<std::string> paths;
        for (const auto& child : node["children"]) {
            if (child["path"].is_string() && child["children"].empty())
                paths.push_back(child["path"]);
            const auto below = pathsBelow(child);
            paths.insert(paths.end(), below.begin(), below.end());
        }
        return paths;
    }
    /// Has all that lies at or below these paths gone, and nothing else changed? Login items are looked at elsewhere.
    void expectGone(const std::map<std::string, std::string>& before, const std::vector<std::string>& paths) const {
        const auto after = everything();
        for (const auto& [path, contents] : before) {
            const bool isBelow = std::ranges::any_of(paths, [&path = path](const std::string& gone) {
                return path == "/root" + gone || path.starts_with("/root" + gone + "/");
            });
            if (path.ends_with("/loginwindow.plist"))
                continue;
            EXPECT_EQ(after.contains(path) && after.at(path) == contents, !isBelow) << path;
        }
    }
    bool isLoginItem(const std::string& path) const {
        return read("/Users/sam/Library/Preferences/loginwindow.plist").find(path) != std::string::npos;
    }
};

constexpr const char* kAgents = "/Users/sam/Library/LaunchAgents/";
constexpr const char* kWidget = "/Users/sam/Library/Widgets/Tides.wdgt";
constexpr const char* kPane = "/Library/PreferencePanes/Tides \"Live\".prefPane";
constexpr const char* kPlugin = "/Library/QuickLook/Ledger.qlgenerator";

TEST_F(CliExtensionsTest, ListingsChangeNothing) {
    const auto before = everything();
    const auto leftovers = json({"leftovers", "--json"});
    EXPECT_THAT(leftovers["launchFiles"], UnorderedElementsAre("/Library/LaunchDaemons/com.gonefishing.castd.plist",
                                                               std::string(kAgents) + "com.driftwood.damaged.plist",
                                                               std::string(kAgents) + "com.driftwood.float.plist"));
    EXPECT_THAT(leftovers["loginItems"],
                ElementsAre("/Applications/Gone Fishing.app", "/Volumes/Install Disc/Raft.app"));
    EXPECT_THAT(leftovers["preferences"], Contains("/Users/sam/Library/Preferences/Flotsam.plist"));
    EXPECT_THAT(runOnVolume({"leftovers"}).output, HasSubstr("\n  /Applications/Gone Fishing.app\n"));
    const auto extensions = json({"extensions", "--json"})["modules"];
    ASSERT_EQ(extensions.size(), 3U);
    EXPECT_EQ(extensions[0]["module"], "widget-uninstaller");
    EXPECT_THAT(pathsBelow(extensions[0]["tree"]), Contains(kWidget));
    EXPECT_THAT(pathsBelow(extensions[1]["tree"]), Contains(kPane));
    EXPECT_THAT(pathsBelow(extensions[2]["tree"]), Contains(kPlugin));
    const auto shown = runOnVolume({"extensions"}).output;
    for (const char* line : {"[x] Widgets\n", "[x] Preference Panes\n", "[x] Plug-ins\n", "[x] Safari plugins\n"})
        EXPECT_THAT(shown, HasSubstr(line));
    EXPECT_TRUE(everything() == before);
}

TEST_F(CliExtensionsTest, LeftoversOfWidgetsAndProgramsGoAndNothingElse) {
    const auto before = everything();
    const auto cleaned = json({"clean", "widgets", "--yes", "--json"});
    EXPECT_EQ(cleaned["removed"], 5);
    expectGone(before, {"/Users/sam/Library/Preferences/widget-com.lostcorp.widget.clouds.plist",
                        "/Users/sam/Library/Preferences/widget-com.lostcorp.widget.moon.plist",
                        "/Library/LaunchDaemons/com.gonefishing.castd.plist",
                        std::string(kAgents) + "com.driftwood.float.plist"});
    EXPECT_FALSE(isLoginItem("/Applications/Gone Fishing.app"));
    for (const char* kept : {"/Applications/Harbor Mail.app", "/Volumes/Install Disc/Raft.app"})
        EXPECT_TRUE(isLoginItem(kept)) << kept;
    EXPECT_EQ(json({"scan", "widgets", "--json"})["totals"]["filesFound"], 1)
        << "the one on a volume that is not there stays listed, unchecked";
}

TEST_F(CliExtensionsTest, NamedExtensionsAreUninstalledTogetherWithApplications) {
    std::vector<std::string> arguments{"uninstall",
                                       "--json",
                                       "--dry-run",
                                       kWidget,
                                       kPane,
                                       kPlugin,
                                       "/Applications/Ledger.app",
                                       "/Library/LaunchAgents/org.example.shell.plist"};
    const auto before = everything();
    const auto shown = json(arguments);
    EXPECT_TRUE(everything() == before);
    std::vector<std::string> paths;
    for (const auto& module : shown["modules"]) {
        const auto below = pathsBelow(module["tree"]);
        paths.insert(paths.end(), below.begin(), below.end());
    }
    for (const char* listed : {kWidget, kPane, kPlugin, "/Library/LaunchAgents/org.example.shell.plist"})
        EXPECT_THAT(paths, Contains(listed));
    arguments[2] = "--yes";
    const auto removed = json(arguments);
    EXPECT_EQ(removed["removed"], paths.size());
    expectGone(before, paths);
}

/// The program in a process group of its own, as a shell starts it.
pid_t startInOwnGroup(const std::vector<std::string>& arguments) {
    std::vector<char*> words{const_cast<char*>(SWEEPLY_CLI)};
    for (const auto& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (const int output : {STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&actions, output, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    EXPECT_EQ(::posix_spawn(&process, SWEEPLY_CLI, &actions, &attributes, words.data(), environ), 0);
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
    return process;
}

TEST_F(CliExtensionsTest, WholeCleanIsPausedResumedAndStoppedWithoutHarm) {
    writeSample("8");
    const auto program = [&](const std::string& name) { return m_folder + "/root" + name; };
    const pid_t process = startInOwnGroup({"--root", program(""), "clean", "--all", "--yes"});
    const std::string first = program(cache("com.northbay.ledger"));
    while (std::filesystem::exists(first))
        std::this_thread::yield();
    ::kill(-process, SIGTSTP);
    int status = 0;
    ASSERT_EQ(::waitpid(process, &status, WUNTRACED), process);
    ASSERT_TRUE(WIFSTOPPED(status)) << "it was still at work";
    const auto names = [&] {
        const std::filesystem::recursive_directory_iterator all(program(""));
        return std::vector<std::filesystem::directory_entry>(begin(all), end(all));
    };
    const auto paused = names();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_TRUE(names() == paused) << "nothing happens meanwhile";
    ::kill(-process, SIGINT);
    ::kill(-process, SIGCONT);
    ASSERT_EQ(::waitpid(process, &status, 0), process);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 130) << status;
    for (const auto& entry : names())
        EXPECT_NE(entry.path().extension(), ".ditto") << "nothing is half done: " << entry.path();
    EXPECT_GT(json({"scan", "--all", "--json"})["totals"]["filesFoundInEnabled"], 0) << "it did stop";
    EXPECT_EQ(json({"clean", "--all", "--yes", "--json"})["failed"].size(), 0U);
    EXPECT_EQ(json({"scan", "--all", "--json"})["totals"]["foundSize"], 0);
    EXPECT_EQ(runOnVolume({"uninstall", "--yes", "/Applications/Harbor Mail.app", kWidget}).exitStatus, 0);
}

} // namespace
} // namespace sweeply
