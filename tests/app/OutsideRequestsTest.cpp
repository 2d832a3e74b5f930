#include "app/OutsideRequests.h"

#include "app/SpecialCommands.h"
#include "engine/TestWorld.h"
#include "platform/PrivateBus.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// One start of the program, as far as requests go.
class Program {
  public:
    explicit Program(TestWorld& world)
        : m_commands(*world.defaults, m_version, world.alerts, world.log,
                     {[this](const std::vector<std::string>& paths) {
                          done.emplace_back("uninstall");
                          done.insert(done.end(), paths.begin(), paths.end());
                      },
                      [this](const std::string& path) { done.push_back("add " + path); },
                      [this] { done.emplace_back("show"); }, [this] { done.emplace_back("quit"); }}),
          requests(m_commands, world.loop, world.log, [this] { done.emplace_back("front"); }) {}

    std::vector<std::string> done;

  private:
    const SystemVersion m_version = SystemVersion::fromProductVersion("10.6").value();
    SpecialCommands m_commands;

  public:
    OutsideRequests requests;
};

class OutsideRequestsTest : public testing::Test {
  protected:
    OutsideRequestsTest() { m_world.defaults->setBool("DontShowAutomaticallAppUninstallAlert", true); }

    TestWorld m_world;
};

TEST_F(OutsideRequestsTest, SecondStartHandsOverAndEnds) {
    const PrivateBus bus;
    Program first(m_world);
    EXPECT_TRUE(first.requests.start({"/own"}));
    {
        Program second(m_world);
        EXPECT_FALSE(second.requests.start({"uninstall", "/One.app", "/Two.app"}));
        EXPECT_TRUE(second.done.empty());
    }
    m_world.waitUntil([&] { return first.done.size() >= 6; });
    EXPECT_THAT(first.done, ElementsAre("add /own", "show", "front", "uninstall", "/One.app", "/Two.app"));
    first.done.clear();
    const auto watcher = SessionBus::connect(m_world.log);
    ASSERT_TRUE(watcher->post({"uninstall", {"/Trash/Three.app"}}));
    m_world.waitUntil([&] { return first.done.size() >= 2; });
    EXPECT_THAT(first.done, ElementsAre("uninstall", "/Trash/Three.app"));
}

TEST_F(OutsideRequestsTest, WithoutABusTheProgramIsAloneAndSaysSoOnce) {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    {
        Program program(m_world);
        EXPECT_TRUE(program.requests.start({"uninstall", "/One.app"}));
        m_world.waitUntil([&] { return !program.done.empty(); });
        EXPECT_THAT(program.done, ElementsAre("uninstall", "/One.app"));
        EXPECT_THAT(m_world.log.lines(), ElementsAre(HasSubstr("No session bus")));
        Program ending(m_world);
        ending.requests.start({"/a"});
    }
    m_world.runPending(); // requests that wait are dropped when the program ends; under the sanitizers this would show
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

} // namespace
} // namespace sweeply
