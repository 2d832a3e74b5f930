#include "app/schedule/InstalledSchedules.h"
#include "app/schedule/ScheduleUnits.h"
#include "platform/Process.h"
#include "platform/TestFolder.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;

/// Units below a folder of the test's own, and a service manager that only hears.
class ScheduleTest : public testing::Test, protected TestFolder {
  protected:
    ~ScheduleTest() override { ::unsetenv("XDG_CONFIG_HOME"); }

    static Schedule scheduleOf(const std::string& root) {
        return {"weekly", root, "sam", {"-u", "sam"}, {"user-caches", "user-logs"}};
    }
    std::string unit(const std::string& name) const { return read("config/systemd/user/" + name); }

    /// What systemd makes of the units, as far as it tells.
    ProcessResult verify(const ScheduleUnits& units) const {
        makeFolder("run");
        write("verify/nasty.service", units.service);
        write("verify/nasty.timer", units.timer);
        ProcessOptions options;
        options.errors = OutputTo::Capture;
        options.environment = {{"XDG_RUNTIME_DIR", path("run")}, {"SYSTEMD_LOG_LEVEL", "debug"}, {"LC_ALL", "C.UTF-8"}};
        return runProcess("/usr/bin/systemd-analyze",
                          {"--user", "verify", "--man=no", path("verify/nasty.service"), path("verify/nasty.timer")},
                          options)
            .value();
    }

    const int m_home = ::setenv("XDG_CONFIG_HOME", path("config").c_str(), 1);
    std::vector<std::string> m_heard;
    Result<std::string> m_answer{std::string("@1764547200\n")};
    const InstalledSchedules m_installed{UserUnits([this](const std::vector<std::string>& arguments) {
        m_heard.push_back(arguments.front() + " " + arguments.back());
        return m_answer;
    })};
};

TEST_F(ScheduleTest, SystemdReadsTheVeryPathsThatAreMeant) {
    const struct {
        const char* root;
        const char* asShown; ///< as systemd shows an argument, in which it will yet make $ of $$
    } rows[] = {
        {"/mnt/mac", R"(/mnt/mac)"},
        {"/mnt/My Mac's \"old\" disk", R"("/mnt/My Mac's \"old\" disk")"},
        {"/mnt/100%n %h%%", R"("/mnt/100%n %h%%")"},
        {"/mnt/$HOME ${x} $(reboot) `reboot`", R"("/mnt/\$\$HOME \$\${x} \$\$(reboot) \`reboot\`")"},
        {"/mnt/back\\slash \\", R"("/mnt/back\\slash \\")"},
        {"/mnt/-; # [Service] ExecStart=/bin/false", R"("/mnt/-; # [Service] ExecStart=/bin/false")"},
        {"/mnt/ü 中 ", R"("/mnt/ü 中 ")"},
    };
    for (const auto& [root, asShown] : rows) {
        const auto units = unitsFor(scheduleOf(root), {"/usr/bin/true"});
        ASSERT_TRUE(units) << units.error().message();
        const auto verified = verify(*units);
        EXPECT_EQ(verified.exitStatus, 0) << verified.errors;
        EXPECT_THAT(verified.errors, Not(ContainsRegex("nasty\\.(service|timer):[0-9]"))) << root;
        for (const auto& read : {"\tReadWritePaths: -" + std::string(root) + "\n",
                                 "Command Line: /usr/bin/true --root " + std::string(asShown) +
                                     " -u sam clean --yes --notify user-caches user-logs\n",
                                 std::string("ProtectSystem: strict\n"), std::string("PrivateUsers: yes\n"),
                                 std::string("StandardError: journal\n"), std::string("IOSchedulingClass: idle\n"),
                                 std::string("CPUSchedulingPolicy: idle\n"), std::string("Persistent: yes\n")})
            EXPECT_TRUE((verified.errors + verified.output).find(read) != std::string::npos) << read;
        const auto ofRoot = unitsFor(scheduleOf(root), {"/usr/bin/true", true});
        EXPECT_EQ(ofRoot->service.find("PrivateUsers"), std::string::npos)
            << "root would lose its rights to others' files";
        const auto back = scheduleIn(*units);
        ASSERT_TRUE(back);
        EXPECT_EQ(back->root, root);
        EXPECT_EQ(nameOf(*back), nameOf(scheduleOf(root)));
    }
}

TEST_F(ScheduleTest, WhatNoUnitFileCanHoldIsRefusedByName) {
    const auto reasonFor = [](const Schedule& schedule, const std::string& program = "/usr/bin/true") {
        return unitsFor(schedule, {program}).error().message();
    };
    for (const char* root : {"/mnt/a\nExecStart=/bin/false", "/mnt/\x1b[2J", "/mnt/\xff", "/mnt/\x7f"})
        EXPECT_EQ(reasonFor(scheduleOf(root)),
                  root + std::string(": a unit file cannot hold control characters, or bytes that are no UTF-8"));
    auto schedule = scheduleOf("/mnt/mac");
    schedule.options.emplace_back("/Users/sam/a\tb");
    EXPECT_THAT(reasonFor(schedule), HasSubstr("a\tb"));
    EXPECT_THAT(reasonFor(scheduleOf("/mnt/mac"), "/opt/it's/sweeply-cli"), HasSubstr("in a program's path"));
}

TEST_F(ScheduleTest, SameModulesOfTheSameTargetAreScheduledOnce) {
    auto schedule = scheduleOf("/mnt/old mac");
    ASSERT_TRUE(m_installed.install(schedule, {"/usr/bin/true"}));
    const auto name = nameOf(schedule);
    EXPECT_THAT(name, MatchesRegex("sweeply-old_mac-[0-9a-f]{8}"));
    EXPECT_THAT(m_heard,
                ElementsAre(StartsWith("daemon-reload"), "enable " + name + ".timer", "restart " + name + ".timer"));
    schedule.calendar = "Sat 03:00";
    ASSERT_TRUE(m_installed.install(schedule, {"/usr/bin/true"}));
    auto other = schedule;
    other.modules.pop_back();
    ASSERT_TRUE(m_installed.install(other, {"/usr/bin/true"}));
    const auto all = m_installed.all();
    ASSERT_EQ(all.size(), 2U);
    for (const auto& each : all) {
        EXPECT_EQ(each.schedule.calendar, "Sat 03:00");
        EXPECT_EQ(each.next, 1'764'547'200);
    }
    m_answer = Failure(Error{ErrorKind::Unavailable, {}, "Failed to connect to bus"});
    EXPECT_EQ(m_installed.all().front().next, std::nullopt);
    EXPECT_EQ(m_installed.install(other, {"/usr/bin/true"}).error().kind, ErrorKind::Unavailable);
    EXPECT_EQ(m_installed.all().size(), 2U) << "written all the same";
}

TEST_F(ScheduleTest, UnitsOfOthersStayAsTheyAre) {
    const auto schedule = scheduleOf("/mnt/mac");
    const auto name = nameOf(schedule);
    ASSERT_TRUE(m_installed.install(schedule, {"/usr/bin/true"}));
    const auto ours = "config/systemd/user/" + name;
    const std::string theirs = "[Service]\nExecStart=/usr/bin/true\n";
    for (const char* other : {"sweeply-theirs.service", "sweeply-theirs.timer", "backup.service", "backup.timer"})
        write(std::string("config/systemd/user/") + other, theirs);
    write("outside/kept", "precious");
    makeLink("config/systemd/user/sweeply-link.service", path("outside/kept"));
    makeLink("config/systemd/user/timers.target.wants/" + name + ".timer", path(ours + ".timer"));
    makeLink("config/systemd/user/timers.target.wants/backup.timer", path("config/systemd/user/backup.timer"));
    const auto before = names("config/systemd/user").size();

    EXPECT_EQ(m_installed.all().size(), 1U);
    for (const char* no :
         {"sweeply-theirs", "backup", "sweeply-link", "../../../outside/kept", "sweeply-/../backup", ""})
        EXPECT_EQ(m_installed.remove({name, no}).error().kind, ErrorKind::NotFound) << no;
    EXPECT_EQ(names("config/systemd/user").size(), before) << "one wrong name, and nothing goes";
    m_heard.clear();
    ASSERT_TRUE(m_installed.remove({name}));
    EXPECT_THAT(m_heard, ElementsAre("disable " + name + ".timer", StartsWith("daemon-reload")));
    EXPECT_THAT(names("config/systemd/user"),
                UnorderedElementsAre("sweeply-theirs.service", "sweeply-theirs.timer", "backup.service", "backup.timer",
                                     "sweeply-link.service", "timers.target.wants"));
    EXPECT_THAT(names("config/systemd/user/timers.target.wants"), ElementsAre("backup.timer"));
    EXPECT_EQ(read("outside/kept"), "precious");

    write(ours + ".service", theirs);
    EXPECT_EQ(m_installed.install(schedule, {"/usr/bin/true"}).error().kind, ErrorKind::AlreadyExists);
    EXPECT_EQ(unit(name + ".service"), theirs);
    EXPECT_FALSE(contains(ours + ".timer"));
}

TEST_F(ScheduleTest, TimesAreTheSystemsToJudge) {
    for (const char* good : {"weekly", "Sat 03:00", "*-*-01..07 12:30 Europe/Berlin"})
        EXPECT_TRUE(checkCalendar(good)) << good;
    for (const auto& [bad, reason] : {std::pair("now and then", "Failed to parse"),
                                      {"2020-01-01", "never comes"},
                                      {"--help", "Failed to parse"},
                                      {"", "Failed to parse"},
                                      {"weekly\nExecStart=x", "control characters"}})
        EXPECT_THAT(checkCalendar(bad).error().message(), HasSubstr(reason)) << bad;
}

} // namespace
} // namespace sweeply
