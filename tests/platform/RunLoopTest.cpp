#include "platform/RunLoop.h"
#include "platform/NotificationCenter.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::ElementsAre;

TEST(RunLoopTest, CallsRunInTheirOrderAndNeverBeforeTheirCallerIsDone) {
    RunLoop loop;
    std::vector<int> order;
    loop.runLater([&] {
        loop.runLater([&] { order.push_back(3); });
        loop.runAndWait([&] { order.push_back(1); });
        order.push_back(2);
    });
    loop.runUntil([&] { return order.size() == 3; });
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(RunLoopTest, WorkersActAsTheMainThreadOneAtATime) {
    RunLoop loop;
    int sum = 0; // no lock: that is the loop's business
    EXPECT_TRUE(loop.isMainThread());
    std::vector<std::jthread> workers;
    for (int i = 0; i < 4; ++i) {
        workers.emplace_back([&] {
            EXPECT_FALSE(loop.isMainThread());
            for (int n = 0; n < 1000; ++n) {
                loop.runAndWait([&] {
                    loop.runAndWait([&] { ++sum; });
                    EXPECT_TRUE(loop.isMainThread());
                });
                loop.runLater([&] { ++sum; });
            }
        });
    }
    loop.runUntil([&] { return sum == 8000; });
    EXPECT_EQ(sum, 8000);
}

TEST(RunLoopTest, WaitEndsWithTheWorkersCallThatEndsIt) {
    for (int i = 0; i < 200; ++i) {
        RunLoop loop;
        bool isDone = false;
        std::jthread worker([&] { loop.runAndWait([&] { isDone = true; }); });
        loop.runUntil([&] { return isDone; }); // would otherwise ask again in an hour
    }
}

TEST(RunLoopTest, LoopInsideACallOfAnotherLeavesTheOuterOneWaiting) {
    RunLoop loop;
    bool isInnerDone = false;
    bool isOuterDone = false;
    std::jthread worker;
    loop.runLater([&] {
        worker = std::jthread([&] {
            loop.runAndWait([&] { isInnerDone = true; });
            loop.runAndWait([&] { isOuterDone = true; });
        });
        // A worker cannot act as the main thread while a call of it runs, so the inner loop needs a queued call.
        loop.runLater([&] { isInnerDone = true; });
        loop.runUntil([&] { return isInnerDone; });
        EXPECT_FALSE(isOuterDone);
    });
    loop.runUntil([&] { return isOuterDone; });
}

struct Something {
    static constexpr const char* kName = "something";
    int number = 0;
};
struct Other {
    static constexpr const char* kName = "other";
};

TEST(NotificationCenterTest, ObserversHearTheirEventsInOrderUntilTheyEnd) {
    std::vector<int> heard;
    NotificationCenter::Subscription outliving;
    {
        NotificationCenter center;
        outliving = center.observe<Something>([&](const Something& event) { heard.push_back(event.number); });
        auto second = center.observe<Something>([&](const Something& event) { heard.push_back(event.number + 1); });
        const auto other = center.observe<Other>([&](const Other&) { center.post(Something{50}); });
        center.post(Something{10});
        second = {};
        center.post(Other{}); // posts while observing
        center.post(Something{20});
    }
    EXPECT_THAT(heard, ElementsAre(10, 11, 50, 20));
}

TEST(NotificationCenterTest, PostingAndSubscribingMeetOnManyThreads) {
    NotificationCenter center;
    std::atomic<int> heard = 0;
    const auto kept = center.observe<Something>([&](const Something&) { ++heard; });
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (int n = 0; n < 500; ++n) {
                    const auto own = center.observe<Other>([](const Other&) {});
                    center.post(Something{});
                    center.post(Other{});
                }
            });
        }
    }
    EXPECT_EQ(heard, 2000);
}

} // namespace
} // namespace sweeply
