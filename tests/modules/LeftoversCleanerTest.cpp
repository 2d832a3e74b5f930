#include "modules/uninstaller/LeftoversCleaner.h"

#include "modules/UninstallWorld.h"

#include <ctime>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace sweeply {
namespace {

using testing::UnorderedElementsAre;

class LeftoversTest : public UninstallWorldTest {
  protected:
    static constexpr const char* kPreferences = "/Users/sam/Library/Preferences/";

    void writePreference(const std::string& name, int daysOld) {
        write(kPreferences + name);
        const timespec when{std::time(nullptr) - daysOld * 86400, 0};
        const timespec times[2] = {when, when};
        ::utimensat(AT_FDCWD, host(kPreferences + name).c_str(), times, 0);
    }
    LeftoversCleaner cleaner() {
        knowApplications();
        return LeftoversCleaner({m_world.files(), m_world.gate, m_ignoreList.applications, m_installed, m_loginItems,
                                 m_launchItems, [this](const Error& error) { m_said.push_back(error.message()); }});
    }
    static std::vector<std::string> names(const LeftoversCleaner::PathSet& paths) {
        std::vector<std::string> names;
        for (const auto& path : paths)
            names.push_back(path.substr(path.rfind('/') + 1));
        return names;
    }
    std::vector<std::string> m_said;
};

TEST_F(LeftoversTest, OldPreferencesOfApplicationsThatAreGoneAreFound) {
    makeApplication("Foo", "com.example.Foo");
    makeApplication("Ärger", "");
    const std::vector<std::string> kept{"com.example.foo.plist",
                                        "COM.EXAMPLE.FOO.helper.plist",
                                        "my foohelper.plist",
                                        "com.apple.gone.plist",
                                        "widget-gone.plist",
                                        ".gone.plist",
                                        "gone.xml",
                                        "org.ärger.plist",
                                        "loginwindow.plist",
                                        "com.brindle.Sweeply.plist"};
    for (const auto& name : kept)
        writePreference(name, 400);
    writePreference("com.gone.a.plist", 22);
    writePreference("ByHost/net.com.example.fo.plist", 22);
    writePreference("org.gone.recent.plist", 20);
    writePreference("org.gone.daemon.plist", 400);
    writeList("/Library/LaunchDaemons/Org.Gone.Daemon.plist", {{"Program", "/gone"}});
    auto leftovers = cleaner();
    leftovers.leftoversAnalyse();
    EXPECT_THAT(names(leftovers.getPrefFilesToRemove()),
                UnorderedElementsAre("com.gone.a.plist", "net.com.example.fo.plist"));
    EXPECT_THAT(names(leftovers.launchFilesToRemove()), UnorderedElementsAre("Org.Gone.Daemon.plist"));
    EXPECT_TRUE(leftovers.getEqualPrefsFormLaunch().empty()) << "that launch item is to be removed by now";
    leftovers.removePrefFiles();
    EXPECT_TRUE(leftovers.getPrefFilesToRemove().empty());
    EXPECT_FALSE(m_world.exists(std::string(kPreferences) + "com.gone.a.plist"));
    for (const auto& name : kept)
        EXPECT_TRUE(m_world.exists(kPreferences + name)) << name;
    EXPECT_TRUE(m_said.empty());
}

TEST_F(LeftoversTest, NothingIsLeftOverWhereNoApplicationsAreKnown) {
    writePreference("com.gone.a.plist", 400);
    auto leftovers = cleaner();
    EXPECT_TRUE(leftovers.getPrefFilesToRemove().empty());
    EXPECT_THAT(m_said, testing::ElementsAre(testing::HasSubstr("no applications are known")));
}

TEST_F(LeftoversTest, LaunchAndLoginItemsWithoutProgramsAreFoundAndForgotten) {
    write("/there");
    writeList("/Library/LaunchAgents/gone.plist", {{"Program", "/gone"}});
    writeList("/Library/LaunchAgents/nothing.plist", {{"Label", "nothing"}});
    write("/Users/sam/Library/LaunchDaemons/damaged.plist", "bplist00");
    writeList("/Library/PrivilegedHelperTools/there.plist", {{"ProgramArguments", plist::Array{"/there"}}});
    write("/Library/LaunchAgents/readme.txt");
    m_loginItems.writeLoginItemsList({loginItem("/gone.app"), loginItem("/there"), plist::Dictionary(), "x"});
    auto leftovers = cleaner();
    EXPECT_EQ(leftovers.allLaunchFiles().size(), 4U);
    EXPECT_THAT(names(leftovers.getLaunchFilesToRemove()),
                UnorderedElementsAre("gone.plist", "nothing.plist", "damaged.plist"));
    EXPECT_THAT(leftovers.getLoginItemsToRemove(), testing::ElementsAre("/gone.app"));
    leftovers.removeLaunchFiles();
    leftovers.removeLoginItems();
    EXPECT_TRUE(leftovers.getLoginItemsToRemove().empty());
    EXPECT_TRUE(m_world.exists("/Library/LaunchAgents/gone.plist")) << "the system forgets it, the file stays";
    EXPECT_EQ(m_loginItems.loginItemsList().size(), 4U);
}

} // namespace
} // namespace sweeply
