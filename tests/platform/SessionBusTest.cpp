#include "platform/SessionBus.h"

#include "platform/PrivateBus.h"
#include "platform/RecordingLog.h"

#include <condition_variable>
#include <gmock/gmock.h>
#include <mutex>

namespace sweeply {
namespace {

using namespace testing;

/// Keeps what came over the bus as lines of text.
class Heard {
  public:
    BusRequests requests() {
        return {[this](const std::vector<std::string>& files) { add("open", files); }, [this] { add("activate", {}); },
                [this](const std::optional<UninstallNotification>& notification) {
                    if (notification)
                        add("command=" + notification->command, notification->applications);
                    else
                        add("empty", {});
                }};
    }
    /// Waits for so many.
    std::vector<std::string> first(std::size_t count) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_lines.size() >= count; });
        return m_lines;
    }

  private:
    void add(std::string line, const std::vector<std::string>& paths) {
        for (std::size_t i = 0; i < std::min<std::size_t>(paths.size(), 3); ++i)
            line += " " + paths[i];
        if (paths.size() > 3)
            line += " and more: " + std::to_string(paths.size());
        const std::lock_guard lock(m_mutex);
        m_lines.push_back(std::move(line));
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_lines;
};

class SessionBusTest : public testing::Test {
  protected:
    SessionBusTest() { EXPECT_TRUE(m_first->own(m_heard.requests())); }

    static int call(const std::string& method, const std::vector<std::string>& arguments) {
        return send({"call", "--dest=com.brindle.Sweeply", "--object-path=/com/brindle/Sweeply", "--method",
                     "org.freedesktop.Application." + method},
                    arguments);
    }
    static void emit(const std::vector<std::string>& arguments) {
        EXPECT_EQ(send({"emit", "--object-path=/any", "--signal=com.brindle.sweeply.uninstallApplications"}, arguments),
                  0);
    }
    static int send(std::vector<std::string> words, const std::vector<std::string>& arguments) {
        words.insert(words.end(), arguments.begin(), arguments.end());
        return PrivateBus::send(words);
    }

    PrivateBus m_bus;
    RecordingLog m_log;
    Heard m_heard;
    std::unique_ptr<SessionBus> m_first = SessionBus::connect(m_log);
};

TEST_F(SessionBusTest, SecondStartHandsItsFilesToTheFirst) {
    const auto second = SessionBus::connect(m_log);
    Heard other;
    EXPECT_FALSE(second->own(other.requests()));
    ASSERT_TRUE(second->openInRunning({"uninstall", "/Applications/My \"Tool\" 100%.app", "/a\nb\xff"}));
    ASSERT_TRUE(second->openInRunning({}));
    EXPECT_THAT(m_heard.first(2),
                ElementsAre("open uninstall /Applications/My \"Tool\" 100%.app /a\nb\xff", "activate"));
    EXPECT_THAT(m_log.lines(), testing::IsEmpty());
}

TEST_F(SessionBusTest, AnotherProcessOpensFiles) {
    EXPECT_EQ(call("Open", {"['file:///tmp/a%20b', 'file://localhost/c', '%2']", "{}"}), 0);
    EXPECT_EQ(call("Activate", {"{}"}), 0);
    EXPECT_THAT(m_heard.first(2), ElementsAre("open /tmp/a b /c %2", "activate"));
}

TEST_F(SessionBusTest, NotificationReachesTheRunningProgram) {
    const auto watcher = SessionBus::connect(m_log);
    ASSERT_TRUE(watcher->post({"uninstall", {"/Users/sam/.Trash/One.app", "/Users/sam/.Trash/Two.app"}}));
    EXPECT_THAT(m_heard.first(1), ElementsAre("command=uninstall /Users/sam/.Trash/One.app /Users/sam/.Trash/Two.app"));
}

TEST_F(SessionBusTest, MessagesOfTheWrongFormAreRefusedAndTheNextOneIsHeard) {
    EXPECT_TRUE(call("Open", {"'/a'"}) != 0 && call("Open", {}) != 0 && call("NoSuchMethod", {}) != 0);
    emit({});
    for (const char* message : {"'uninstall'", "{'command': <5>}", "{'command': 'uninstall'}",
                                "{'applications': <['/a', 'b']>, 'command': <['uninstall']>}", "@a{sv} {}"})
        emit({message});
    EXPECT_THAT(m_heard.first(1), ElementsAre("empty"));
    EXPECT_THAT(m_log.lines(), Contains(HasSubstr("cannot be understood")));
}

TEST_F(SessionBusTest, OfThousandsOfPathsTheRestIsDropped) {
    const auto watcher = SessionBus::connect(m_log);
    ASSERT_TRUE(watcher->post({"uninstall", std::vector<std::string>(12'000, "/a")}));
    EXPECT_THAT(m_heard.first(1), ElementsAre("command=uninstall /a /a /a and more: 10000"));
    EXPECT_THAT(m_log.lines(), Contains(HasSubstr("2000 paths")));
}

TEST_F(SessionBusTest, NoteWithoutADesktopIsAnError) {
    EXPECT_EQ(m_first->notify({"title", "text", "ERROR"}).error().kind, ErrorKind::Unavailable);
}

TEST(SessionBusWithoutABusTest, ProgramRunsWithoutABusAndSaysSoOnce) {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    RecordingLog log;
    EXPECT_EQ(SessionBus::connect(log), nullptr);
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("No session bus")));
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

} // namespace
} // namespace sweeply
