#include "cli/CliWorld.h"
#include "platform/PrivateBus.h"

#include <gmock/gmock.h>
#include <mutex>
#include <sdbus-c++/sdbus-c++.h>
#include <semaphore>

namespace sweeply {
namespace {

using namespace testing;

/// What shows notes on a desktop.
class Desktop final {
  public:
    Desktop() {
        using Strings = std::vector<std::string>;
        using Variants = std::map<std::string, sdbus::Variant>;
        m_object->registerMethod("Notify").onInterface(kName).implementedAs(
            [this](const std::string&, std::uint32_t, const std::string&, const std::string& title,
                   const std::string& text, const Strings&, const Variants&, std::int32_t) {
                {
                    const std::lock_guard lock(m_mutex);
                    m_note = title + ": " + text;
                }
                m_shown.release();
                return std::uint32_t{1};
            });
        m_object->finishRegistration();
        m_bus->requestName(kName);
        m_bus->enterEventLoopAsync();
    }
    std::string note() {
        m_shown.acquire();
        const std::lock_guard lock(m_mutex);
        return m_note;
    }

  private:
    static constexpr const char* kName = "org.freedesktop.Notifications";
    std::counting_semaphore<> m_shown{0};
    std::mutex m_mutex;
    std::string m_note; ///< guarded by m_mutex
    std::unique_ptr<sdbus::IConnection> m_bus = sdbus::createSessionBusConnection();
    std::unique_ptr<sdbus::IObject> m_object = sdbus::createObject(*m_bus, "/org/freedesktop/Notifications");
};

class ScheduleCommandTest : public CliTest {
  protected:
    /// The schedules as "NAME when modules" with their names left out.
    std::vector<std::string> scheduled() const {
        std::vector<std::string> lines;
        const auto list = nlohmann::json::parse(run({"schedule", "list", "--json"}).output);
        for (const auto& each : list["schedules"]) {
            std::string line = each["when"].get<std::string>() + ":";
            for (const auto& module : each["modules"])
                line += " " + module.get<std::string>();
            lines.push_back(line + (each["root"] == m_folder + "/root" && each["user"] == "sam" ? "" : " elsewhere"));
        }
        return lines;
    }

    /// Runs what the written unit would, with $ and quotes read back as systemd does.
    ProcessResult runUnit(const std::string& name) const {
        std::ifstream file(m_folder + "/config/systemd/user/" + name + ".service");
        const std::string unit{std::istreambuf_iterator<char>(file), {}};
        const auto start = unit.find("ExecStart=") + 10;
        std::vector<std::string> words;
        for (auto at = start; at < unit.size() && unit[at] == '"'; at += 2) {
            words.emplace_back();
            for (++at; unit[at] != '"'; ++at) {
                if (unit[at] == '\\' || unit[at] == '$' || unit[at] == '%')
                    ++at;
                words.back() += unit[at];
            }
        }
        EXPECT_EQ(words.front(), std::filesystem::canonical(SWEEPLY_CLI));
        words.front() = "--verbose";
        return run(words);
    }
};

TEST_F(ScheduleCommandTest, ListsReplacesAndRemovesWhatIsScheduled) {
    EXPECT_EQ(runOnVolume({"schedule", "--monthly"}).exitStatus, 1) << "there is no service manager behind these walls";
    const auto first = scheduled();
    ASSERT_EQ(first.size(), 1U);
    EXPECT_THAT(first.front(), AllOf(StartsWith("monthly: user-caches"), HasSubstr(" user-logs"),
                                     Not(HasSubstr("widgets")), Not(HasSubstr("system-")), Not(HasSubstr("eraser"))));
    for (const char* when : {"daily", "Sat 03:00"}) {
        const auto added = runOnVolume({"schedule", "--calendar", when, "logs", "user-caches"});
        EXPECT_THAT(added.errors, HasSubstr("This starts it: systemctl --user daemon-reload; systemctl --user enable"));
        EXPECT_THAT(added.output, HasSubstr(std::string(when) + "\t" + m_folder + "/root (sam)\t"));
    }
    EXPECT_THAT(scheduled(), UnorderedElementsAre(first.front(), "Sat 03:00: user-caches user-logs system-logs"));
    write("/../config/systemd/user/sweeply-theirs.service", "[Service]\n");
    EXPECT_EQ(run({"schedule", "remove", "sweeply-theirs"}).exitStatus, 2);
    EXPECT_EQ(scheduled().size(), 2U);
    EXPECT_EQ(run({"schedule", "remove"}).exitStatus, 0);
    EXPECT_THAT(scheduled(), IsEmpty());
    EXPECT_THAT(names("/../config/systemd/user"), ElementsAre("sweeply-theirs.service"));
}

TEST_F(ScheduleCommandTest, NothingIsScheduledThatNeedsAPerson) {
    const auto before = everything();
    for (const auto& [arguments, reason] : {std::pair(words("schedule widgets"), "widgets: cannot be scheduled"),
                                            {words("schedule user-caches uninstaller"), "uninstaller: cannot be"},
                                            {words("schedule eraser"), "eraser: cannot be scheduled"},
                                            {words("schedule leftovers"), "leftovers: cannot be scheduled"},
                                            {words("schedule erase"), "erase: cannot be scheduled"},
                                            {words("schedule user-cache"), "user-cache: no such module"},
                                            {words("schedule --calendar never"), "Failed to parse"},
                                            {words("schedule --weekly --monthly"), "excludes"}}) {
        const auto refused = runOnVolume(arguments);
        EXPECT_EQ(refused.exitStatus, 2);
        EXPECT_THAT(refused.errors, HasSubstr(reason));
    }
    EXPECT_THAT(run({"schedule"}).errors, HasSubstr("--root"));
    EXPECT_EQ(everything(), before);
}

TEST_F(ScheduleCommandTest, WhatTheUnitStartsCleansAndTellsOnTheDesktopOrInTheLog) {
    write(cache("slow <b>/data"), std::string(100'000, 'x'));
    write("/Users/sam/Library/Preferences/com.example.app.plist");
    (void)runOnVolume({"schedule", "user-caches"});
    const auto name = nlohmann::json::parse(run({"schedule", "list", "--json"}).output)["schedules"][0]["name"];
    {
        const PrivateBus bus;
        Desktop desktop;
        const auto cleaned = runUnit(name);
        EXPECT_EQ(cleaned.exitStatus, 0) << cleaned.errors;
        EXPECT_THAT(desktop.note(),
                    AllOf(StartsWith("Clean is finished: " + m_folder + "/root (sam): Sweeply has cleaned"),
                          HasSubstr("100.00 KB")));
        EXPECT_FALSE(exists(cache("slow <b>")));
        EXPECT_TRUE(exists("/Users/sam/Library/Preferences/com.example.app.plist"));
        EXPECT_EQ(json({"history", "--json"})["runs"].size(), 1U);
        EXPECT_EQ(runUnit(name).exitStatus, 0);
        EXPECT_THAT(desktop.note(), HasSubstr("Your System is clean!"));
    }
    EXPECT_THAT(runUnit(name).errors,
                HasSubstr("Clean is finished: " + m_folder + "/root (sam): Your System is clean!"));
    std::filesystem::rename(m_folder + "/root/Users", m_folder + "/root/Gone & <b>");
    const PrivateBus bus;
    Desktop desktop;
    EXPECT_EQ(runUnit(name).exitStatus, 2);
    EXPECT_EQ(desktop.note(), "Clean was not finished: Wrong user name");
    std::filesystem::rename(m_folder + "/root", m_folder + "/root & <b>");
    EXPECT_EQ(runUnit(name).exitStatus, 2);
    EXPECT_THAT(desktop.note(), HasSubstr("/root"));
    std::filesystem::rename(m_folder + "/root & <b>", m_folder + "/root");
}

} // namespace
} // namespace sweeply
