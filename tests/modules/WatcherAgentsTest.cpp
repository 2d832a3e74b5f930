#include "modules/uninstaller/agents/WatcherAgents.h"

#include "appcore/ADTaskRunner.h"
#include "modules/ModuleWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;

/// A launch service of the test's own stands in for the machine's: it keeps loaded labels as files, and can refuse.
class WatcherAgentsTest : public ModuleTest {
  protected:
    WatcherAgentsTest() {
        write("/libexec/launchctl", R"(#!/bin/sh
here=${0%/*}
[ -e "$here/refuses" ] && [ "$1" = load ] && exit 1
for last; do :; done
name=$here/$(basename "$last" .plist)
case $1 in load) : >"$name" ;; unload | remove) rm -f "$name" ;; list) [ -e "$here/$2" ] ;; esac
)");
        write("/libexec/helper", "#!/bin/sh\n[ \"$1\" = -v ] && echo 1.2\n");
        setMode("/libexec/launchctl", 0755);
        setMode("/libexec/helper", 0755);
    }
    std::string configuration(const std::string& label) {
        return read("/Users/sam/Library/LaunchAgents/com.brindle.Sweeply." + label + ".plist");
    }
    WatcherAgents make() {
        return WatcherAgents({m_world.files(), m_world.folders, m_version, m_tasks, m_world.alerts, m_world.loop,
                              *m_world.notifications, m_world.log, host("/libexec/helper")});
    }

    ToolTable m_tools{host("/libexec"), ToolTable::Host::Other};
    ADTaskRunner m_tasks{m_tools, m_world.log};
};

TEST_F(WatcherAgentsTest, TrashWatcherIsInstalledUpdatedAndRemovedWithItsHelper) {
    WatcherAgents agents = make();
    EXPECT_FALSE(agents.trashWatcherInstalled());
    EXPECT_TRUE(agents.installTrashWatcher());
    EXPECT_TRUE(agents.trashWatcherInstalled());
    const auto parsed = plist::parse(configuration("helperTool"));
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->asDictionary()->members().size(), 5U);
    EXPECT_EQ(*parsed->findString("Label"), "com.brindle.Sweeply.helperTool");
    EXPECT_THAT(plist::textsOf(*parsed->find("WatchPaths")), ElementsAre(host("/Users/sam/.Trash")));
    EXPECT_EQ(parsed->find("OnDemand")->asBool(), true);
    EXPECT_EQ(agents.getTrashWatcherVersion(), "1.2");
    EXPECT_FALSE(agents.shouldUpdateTrashWatcher());
    write("/Users/sam/Library/Application Support/Sweeply/SweeplyHelperTool", "#!/bin/sh\necho 1.1\n");
    EXPECT_TRUE(agents.shouldUpdateTrashWatcher());
    EXPECT_TRUE(agents.uninstallTrashWatcher());
    EXPECT_FALSE(agents.trashWatcherInstalled());
    EXPECT_FALSE(m_world.exists(agents.helperToolPath()));
    EXPECT_THAT(m_world.alerts.shown, IsEmpty());
}

TEST_F(WatcherAgentsTest, VolumeCleanersAreSwitchedOneByOneAndTheLastTakesTheAgentAlong) {
    WatcherAgents agents = make();
    EXPECT_TRUE(agents.installVolumeWatcher());
    for (const char* cleaner :
         {WatcherAgents::kCleanTrashes, WatcherAgents::kCleanMacOSJunk, WatcherAgents::kCleanWinJunk})
        EXPECT_TRUE(agents.volumeCleanerInstalled(cleaner)) << cleaner;
    EXPECT_EQ(plist::parse(configuration("volumeWatcher"))->find("StartOnMount")->asBool(), true);
    agents.setVolumeCleanerInstalled(WatcherAgents::kCleanWinJunk, false);
    EXPECT_FALSE(agents.volumeCleanerInstalled(WatcherAgents::kCleanWinJunk));
    EXPECT_TRUE(agents.volumeCleanerInstalled(WatcherAgents::kCleanTrashes));
    EXPECT_TRUE(agents.installTrashWatcher());
    agents.setVolumeCleanerInstalled(WatcherAgents::kCleanTrashes, false);
    agents.setVolumeCleanerInstalled(WatcherAgents::kCleanMacOSJunk, false);
    EXPECT_FALSE(agents.volumeWatcherInstalled());
    EXPECT_TRUE(m_world.exists(agents.helperToolPath())) << "the other watcher needs it";
    agents.setTrashWatcherInstalled(false);
    EXPECT_FALSE(m_world.exists(agents.helperToolPath()));
}

TEST_F(WatcherAgentsTest, RefusalIsShownOnceAndLeavesNoConfiguration) {
    write("/libexec/refuses");
    WatcherAgents agents = make();
    EXPECT_FALSE(agents.installTrashWatcher());
    EXPECT_THAT(m_world.alerts.texts(),
                ElementsAre("Couldn't activate automatic application uninstaller|Failed to load "
                            "launch agent configuration"));
    EXPECT_THAT(m_world.log.lines(), Contains(HasSubstr("Exception while installing launch daemon ")));
    EXPECT_FALSE(m_world.exists("/Users/sam/Library/LaunchAgents/com.brindle.Sweeply.helperTool.plist"));
    m_world.alerts.shown.clear();
    std::filesystem::remove(host("/libexec/helper"));
    EXPECT_FALSE(agents.installVolumeWatcher());
    EXPECT_THAT(m_world.alerts.shown.at(0).text, HasSubstr("Failed to copy launch agent to "));
}

} // namespace
} // namespace sweeply
