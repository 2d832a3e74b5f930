#include "tools/launchctl/Units.h"

#include <gtest/gtest.h>

namespace launchctl {
namespace {

using sweeply::plist::arrayOf;
using sweeply::plist::Dictionary;

TEST(LaunchUnitsTest, UnitsSayWhatTheJobSaysWhateverNamesAreInIt) {
    const auto job =
        jobIn(Dictionary({{"Label", "com.example.job/%i x"},
                          {"ProgramArguments", arrayOf({"/opt/tool $(x) 100% \"q\" \\ 'a'", "$HOME", "%h", "a b", ""})},
                          {"WatchPaths", arrayOf({"/Users/sam/.Trash 100%"})},
                          {"RunAtLoad", true},
                          {"StartOnMount", true}}));
    ASSERT_TRUE(job);
    const std::string name = unitName(job->label);
    EXPECT_EQ(name, "launchd-com.example.job-2f-25i-20x");
    EXPECT_EQ(labelOf(name), job->label);
    EXPECT_EQ(labelOf("somebody-elses"), "");
    EXPECT_EQ(
        serviceUnit(*job),
        "[Unit]\nDescription=com.example.job/%%i x\n\n[Service]\nType=oneshot\n"
        R"(ExecStart=/bin/sh -c "exec \"$$0\" \"$$@\"" "/opt/tool $$(x) 100%% \"q\" \\ 'a'" "$$HOME" "%%h" "a b" "")"
        "\n\n[Install]\nWantedBy=default.target\n");
    EXPECT_EQ(pathUnit(*job, {"/media"}),
              "[Unit]\nDescription=com.example.job/%%i x\n\n[Path]\nPathModified=/Users/sam/.Trash 100%%\n"
              "PathModified=/media\n\n[Install]\nWantedBy=paths.target\n");
}

} // namespace
} // namespace launchctl
