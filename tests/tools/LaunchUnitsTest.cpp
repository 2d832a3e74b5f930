#include "tools/launchctl/Units.h"

#include "tools/ToolWorld.h"

#include <gtest/gtest.h>

namespace launchctl {
namespace {

using sweeply::plist::Dictionary;

TEST(LaunchUnitsTest, UnitsPassTheSystemsOwnCheckWhateverNamesAreInThem) {
    const sweeply::ToolWorld world;
    const std::string program = world.folder.path("tool $(x) 100% \"q\" \\ 'a'");
    world.write(std::filesystem::path(program).filename().string(), "#!/bin/sh\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    const auto job =
        jobIn(Dictionary({{"Label", "com.example.job/%i x"},
                          {"ProgramArguments", sweeply::plist::arrayOf({program, "$HOME", "%h", "a b", ""})},
                          {"WatchPaths", sweeply::plist::arrayOf({"/Users/sam/.Trash 100%"})},
                          {"RunAtLoad", true},
                          {"StartOnMount", true}}));
    ASSERT_TRUE(job);
    const std::string name = unitName(job->label);
    EXPECT_EQ(name, "launchd-com.example.job-2f-25i-20x");
    EXPECT_EQ(labelOf(name), job->label);
    EXPECT_EQ(labelOf("somebody-elses"), "");
    const std::string service = serviceUnit(*job);
    EXPECT_NE(service.find("100%% \\\"q\\\" \\\\ 'a'\" \"$$HOME\" \"%%h\" \"a b\" \"\"\n"), std::string::npos)
        << service;
    EXPECT_NE(pathUnit(*job, {"/media"}).find("PathModified=/Users/sam/.Trash 100%%\nPathModified=/media\n"),
              std::string::npos);
    if (::access("/usr/bin/systemd-analyze", X_OK) != 0)
        GTEST_SKIP() << "nothing to check units with here";
    world.write(name + ".service", service);
    world.write(name + ".path", pathUnit(*job, {"/media"}));
    for (const char* kind : {".service", ".path"}) {
        const auto checked = world.runProgram("/usr/bin/systemd-analyze",
                                              {"--user", "verify", "--man=no", world.folder.path(name + kind)});
        if (checked.errors.find("working directory") != std::string::npos)
            GTEST_SKIP() << "the check wants to write outside the walls of this test";
        EXPECT_EQ(checked.exitStatus, 0) << checked.errors;
    }
}

} // namespace
} // namespace launchctl
