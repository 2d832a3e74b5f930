#include "app/QuitController.h"

#include "app/OwnProcess.h"
#include "engine/FakeModule.h"
#include "engine/TestWorld.h"

#include <csignal>
#include <gmock/gmock.h>
#include <sys/wait.h>

namespace sweeply {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QuitControllerTest : public testing::Test {
  protected:
    using Module = FakeModule<ADScanControllerView>;

    ~QuitControllerTest() override { m_world.end(); }

    /// A scan that goes on until it is stopped, and rests when it is paused.
    void startEndlessScan() {
        auto& module = m_world.add(1, std::make_unique<Module>("Endless", m_world.services(), *m_world.coordinator));
        module.whenScanning = [this](Module& scanning) {
            while (!scanning.stopped()) {
                m_isPaused = scanning.ifPaused();
                scanning.waitWhilePaused();
                std::this_thread::yield();
            }
        };
        m_world.coordinator->startScan();
    }
    std::string lastText() const { return m_world.alerts.shown.back().text; }

    TestWorld m_world;
    std::atomic<bool> m_isPaused = false;
    bool m_isShowingScanView = false;
    std::vector<std::string> m_done;
    QuitController m_quit{*m_world.coordinator,
                          m_world.alerts,
                          m_world.log,
                          {[this] { return m_isShowingScanView; }, [this] { m_done.emplace_back("before"); },
                           [this] { m_done.emplace_back("kill"); }}};
};

TEST_F(QuitControllerTest, IdleProgramAsksUnlessNothingWasDoneYet) {
    EXPECT_FALSE(m_quit.applicationShouldTerminate());
    EXPECT_EQ(lastText(), "Are you sure you want to quit Sweeply?");
    EXPECT_THAT(m_done, IsEmpty());
    m_world.alerts.answers["Quit Sweeply?"] = 1;
    EXPECT_TRUE(m_quit.applicationShouldTerminate());
    m_isShowingScanView = true;
    m_world.alerts.shown.clear();
    EXPECT_TRUE(m_quit.applicationShouldTerminate());
    EXPECT_THAT(m_world.alerts.shown, IsEmpty());
    EXPECT_THAT(m_done, ElementsAre("before", "before"));
    EXPECT_EQ(m_world.log.lines().back(), "Sweeply terminated");
}

TEST_F(QuitControllerTest, CancelledQuitLetsTheScanGoOn) {
    startEndlessScan();
    EXPECT_FALSE(m_quit.applicationShouldTerminate());
    EXPECT_EQ(lastText(), "Scan is in proccess.\n Do you really want to quit?");
    EXPECT_FALSE(m_world.coordinator->isPaused());
    EXPECT_TRUE(m_world.coordinator->isScanning());

    m_world.coordinator->pauseScan();
    EXPECT_FALSE(m_quit.applicationShouldTerminate());
    EXPECT_TRUE(m_world.coordinator->isPaused()) << "as the person had left it";
    m_world.coordinator->stopScanActually();
}

TEST_F(QuitControllerTest, QuitStopsTheScanAndASecondQuitOffersForce) {
    startEndlessScan();
    m_world.alerts.answers["Quit Sweeply?"] = 1;
    EXPECT_TRUE(m_quit.applicationShouldTerminate());
    EXPECT_TRUE(m_world.coordinator->isStopped());
    m_world.waitUntil([this] { return !m_world.coordinator->isScanning(); });

    m_world.coordinator->startScan();
    m_world.alerts.answers["Quit Sweeply?"] = 2;
    EXPECT_TRUE(m_quit.applicationShouldTerminate());
    EXPECT_THAT(m_world.alerts.shown.back().buttons, ElementsAre("Cancel", "Quit", "Force Quit"));
    EXPECT_THAT(m_done, ElementsAre("kill"));
    m_world.coordinator->stopScanActually();
}

/// Does something that ends the process, in another one, and returns the signal that ended it.
int signalThatEnds(const std::function<void(SystemLog&)>& end) {
    const pid_t child = ::fork();
    if (child == 0) {
        std::signal(SIGTERM, SIG_IGN);
        RecordingLog log;
        end(log);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

TEST(OwnProcessTest, ProcessEndsByTheSignalEvenWithAHandlerForItAndMayStartTheProgramAgain) {
    EXPECT_EQ(signalThatEnds([](auto& log) { killOurselves("/Applications/Sweeply.app", log); }), SIGTERM);
    const TestTarget target;
    target.write("/it's \"$(x)\"", "#!/bin/sh\n: >\"$(dirname \"$0\")/started\"\n");
    target.setMode("/it's \"$(x)\"", 0700);
    EXPECT_NE(signalThatEnds([&](auto& log) { restartOurselves(target.host("/it's \"$(x)\""), log); }), 0);
    while (!target.exists("/started"))
        std::this_thread::yield();
}

} // namespace
} // namespace sweeply
