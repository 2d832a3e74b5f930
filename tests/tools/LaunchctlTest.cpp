#include "formats/PropertyList.h"
#include "tools/ToolWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::HasSubstr;

/// Units are written below a home folder of the test's own; whether there is a service manager is up to the machine.
class LaunchctlTest : public testing::Test, protected ToolWorld {
  protected:
    LaunchctlTest() { ::setenv("XDG_CONFIG_HOME", path("config").c_str(), 1); }
    ~LaunchctlTest() override { ::unsetenv("XDG_CONFIG_HOME"); }

    void writeJob(std::vector<plist::Dictionary::Member> members) const {
        write("job.plist", plist::writeXml(plist::Dictionary(std::move(members))));
    }
    std::string unit(const std::string& name) const { return read("config/systemd/user/" + name); }
};

TEST_F(LaunchctlTest, WithoutAServiceManagerLoadingFailsClearlyAndLeavesNothing) {
    writeJob({{"Label", "com.example.job"},
              {"ProgramArguments", plist::arrayOf({"/bin/true"})},
              {"WatchPaths", plist::arrayOf({path("watched")})}});
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    ::setenv("XDG_RUNTIME_DIR", path("no runtime").c_str(), 1);
    const auto said = run("launchctl", {"load", "-w", "-F", "job.plist"});
    EXPECT_EQ(said.exitStatus, 1);
    EXPECT_THAT(said.errors, HasSubstr("launchctl: com.example.job: "));
    EXPECT_FALSE(contains("config/systemd/user/launchd-com.example.job.service"));
    EXPECT_EQ(run("launchctl", {"list", "com.example.job"}).exitStatus, 1);
    EXPECT_EQ(run("launchctl", {"list"}).output, "PID\tStatus\tLabel\n");
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    ::unsetenv("XDG_RUNTIME_DIR");
}

TEST_F(LaunchctlTest, ConfigurationsThatSayNothingUsefulAreErrors) {
    for (const auto& [contents, text] :
         {std::pair(std::string("garbage"), "no plist was returned for: job.plist"),
          {plist::writeXml(plist::Dictionary(std::vector<plist::Dictionary::Member>{{"Program", "/bin/true"}})),
           "missing the Label key: job.plist"},
          {plist::writeXml(plist::Dictionary({{"Label", "x"}, {"Program", "relative"}})), "whole path: job.plist"},
          {plist::writeXml(plist::Dictionary({{"Label", "x"}, {"Program", "/a\nExecStart=/b"}})),
           "control characters"}}) {
        write("job.plist", contents);
        const auto said = run("launchctl", {"load", "job.plist"});
        EXPECT_EQ(said.exitStatus, 1) << text;
        EXPECT_THAT(said.errors, HasSubstr(text));
    }
    EXPECT_THAT(run("launchctl", {"load", "absent"}).errors, HasSubstr("Couldn't stat(\"absent\")"));
    EXPECT_EQ(run("launchctl", {"frobnicate", "x"}).exitStatus, 1);
    EXPECT_EQ(run("launchctl", {"remove", "nobody"}).exitStatus, 0);
}

} // namespace
} // namespace sweeply
