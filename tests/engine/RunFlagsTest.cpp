#include "engine/RunFlags.h"

#include <gtest/gtest.h>
#include <thread>

namespace sweeply {
namespace {

using namespace std::chrono_literals;

TEST(RunFlagsTest, StopAskedForByThePersonOutlastsARunsStart) {
    RunFlags flags;
    EXPECT_TRUE(flags.stopped());
    flags.setStopped(false);
    flags.setStopRequested(true);
    flags.setStopped(false); // a worker beginning
    EXPECT_TRUE(flags.stopped());
    flags.setStopRequested(false);
    EXPECT_FALSE(flags.stopped());
}

TEST(RunFlagsTest, EveryRunHasATokenOfItsOwn) {
    RunFlags flags;
    flags.setStopped(false);
    const auto first = flags.stopToken();
    EXPECT_FALSE(first.stop_requested());
    flags.setStopRequested(true);
    EXPECT_TRUE(first.stop_requested());
    flags.setStopRequested(false);
    EXPECT_FALSE(flags.stopToken().stop_requested());
}

TEST(RunFlagsTest, WaitEndsWithThePauseAndWithAStop) {
    RunFlags flags;
    flags.setStopped(false);
    flags.waitWhilePaused(); // not paused
    for (const bool byStop : {false, true}) {
        std::atomic<bool> isReleased = false;
        flags.setPaused(true);
        std::jthread worker([&] {
            flags.waitWhilePaused();
            EXPECT_TRUE(isReleased);
            flags.sleepFor(byStop ? 10h : 0ms);
        });
        isReleased = true;
        byStop ? flags.setStopRequested(true) : flags.setPaused(false);
    }
}

} // namespace
} // namespace sweeply
