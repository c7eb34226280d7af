#include "platform/system/EventLoopMainQueue.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace std::chrono_literals;
using platform::EventLoopMainQueue;
using platform::MainQueue;
using testing::ElementsAre;

namespace {

using Clock = std::chrono::steady_clock;

class EventLoopMainQueueTest : public testing::Test {
protected:
    // Runs events until the loop is told to quit.
    void run() { loop.exec(); }
    void quitAfter(MainQueue::Duration delay) {
        queue.after(delay, [this] { loop.quit(); });
    }
    // Whether a timer of the queue runs; the application owns them.
    [[nodiscard]] bool isTicking() const {
        return std::ranges::any_of(application.findChildren<QTimer*>(), &QTimer::isActive);
    }
    MainQueue::Work note(const std::string& text) {
        return [this, text] { notes.push_back(text); };
    }

    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    QEventLoop loop;
    EventLoopMainQueue queue;
    std::vector<std::string> notes;
    std::vector<double> ticks;
    MainQueue::Tick tick = [this](double progress) { ticks.push_back(progress); };
};

} // namespace

TEST_F(EventLoopMainQueueTest, neverRunsWorkEarly) {
    for (const MainQueue::Duration delay : {0ns, 1ns, 999'999ns, 1'000'001ns, 7'300'000ns, 20'000'000ns}) {
        const auto start = Clock::now();
        Clock::time_point end;
        queue.after(delay, [&] {
            end = Clock::now();
            loop.quit();
        });
        run();
        EXPECT_GE(end - start, delay);
    }
}

TEST_F(EventLoopMainQueueTest, neverRunsWorkWithinAfter) {
    queue.after(0ms, note("now"));
    EXPECT_THAT(notes, ElementsAre());
    quitAfter(0ms);
    run();
    EXPECT_THAT(notes, ElementsAre("now"));
}

TEST_F(EventLoopMainQueueTest, runsInTheOrderOfDueTimes) {
    queue.after(6ms, note("b"));
    queue.after(3ms, note("a"));
    quitAfter(10ms);
    run();
    EXPECT_THAT(notes, ElementsAre("a", "b"));
}

TEST_F(EventLoopMainQueueTest, workOfTheSameTimeRunsInTheOrderOfItsMaking) {
    for (const char* text : {"a", "b", "c", "d"})
        queue.after(0ms, note(text));
    quitAfter(0ms);
    run();
    EXPECT_THAT(notes, ElementsAre("a", "b", "c", "d"));
}

TEST_F(EventLoopMainQueueTest, runsWhatWorkDefers) {
    queue.after(1ms, [this] {
        notes.push_back("outer");
        queue.after(1ms, note("inner"));
        quitAfter(1ms);
    });
    run();
    EXPECT_THAT(notes, ElementsAre("outer", "inner"));
}

TEST_F(EventLoopMainQueueTest, workMayRunAnEventLoopOfItsOwn) {
    queue.after(0ms, [this] {
        QEventLoop inner;
        queue.after(0ms, [&inner] { inner.quit(); });
        inner.exec();
        notes.push_back("inner loop ended");
    });
    queue.after(1ms, note("next"));
    quitAfter(5ms);
    run();
    EXPECT_THAT(notes, testing::UnorderedElementsAre("inner loop ended", "next"));
}

TEST_F(EventLoopMainQueueTest, isIdleOnceAllWorkHasRun) {
    EXPECT_TRUE(queue.isIdle());
    queue.after(1ms, [this] {
        notes.push_back(queue.isIdle() ? "idle" : "busy");
        loop.quit();
    });
    EXPECT_FALSE(queue.isIdle());
    run();
    EXPECT_TRUE(queue.isIdle());
    EXPECT_THAT(notes, ElementsAre("idle")); // what runs is not pending
}

TEST_F(EventLoopMainQueueTest, tellsOnceWhenTheLastWorkHasRun) {
    queue.after(2ms, note("b"));
    queue.after(1ms, note("a"));
    queue.whenNextIdle([this] {
        notes.push_back(queue.isIdle() ? "idle" : "busy");
        loop.quit();
    });
    run();
    EXPECT_THAT(notes, ElementsAre("a", "b", "idle"));
    quitAfter(0ms);
    run();
    EXPECT_THAT(notes, ElementsAre("a", "b", "idle"));
}

TEST_F(EventLoopMainQueueTest, anAnimationIsNoPendingWork) {
    const auto animation = queue.animate(200ms, tick);
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(EventLoopMainQueueTest, ticksFromZeroToOneAndEndsWithExactlyOne) {
    std::unique_ptr<MainQueue::Ticking> animation = queue.animate(60ms, [this](double progress) {
        ticks.push_back(progress);
        if (progress == 1.0)
            loop.quit();
    });
    EXPECT_THAT(ticks, ElementsAre()); // not within animate
    run();
    EXPECT_TRUE(std::is_sorted(ticks.begin(), ticks.end()));
    EXPECT_GE(ticks.front(), 0.0);
    EXPECT_EQ(std::count(ticks.begin(), ticks.end(), 1.0), 1);
}

TEST_F(EventLoopMainQueueTest, theLastTickIsNeverEarly) {
    const auto start = Clock::now();
    const auto animation = queue.animate(25ms, [this](double progress) {
        if (progress == 1.0)
            loop.quit();
    });
    run();
    EXPECT_GE(Clock::now() - start, 25ms);
}

TEST_F(EventLoopMainQueueTest, theLastTickComesBeforeWorkThatIsDueThen) {
    const auto animation = queue.animate(3ms, [this](double progress) { // less than a frame
        notes.push_back(progress == 1.0 ? "end" : "tick");
    });
    queue.after(3ms, note("completion"));
    quitAfter(40ms);
    run();
    ASSERT_GE(notes.size(), 2U);
    EXPECT_EQ(notes[notes.size() - 2], "end");
    EXPECT_EQ(notes.back(), "completion");
}

TEST_F(EventLoopMainQueueTest, anAnimationWithoutDurationEndsAtTheFirstTick) {
    const auto none = queue.animate(0ms, tick);
    quitAfter(40ms);
    run();
    EXPECT_THAT(ticks, ElementsAre(1.0));
}

TEST_F(EventLoopMainQueueTest, destroyingTheHandleStopsTheTicks) {
    std::unique_ptr<MainQueue::Ticking> animation;
    animation = queue.animate(10s, [&](double) {
        notes.push_back("tick");
        animation.reset();
        quitAfter(50ms);
    });
    run();
    EXPECT_THAT(notes, ElementsAre("tick"));
}

TEST_F(EventLoopMainQueueTest, aTickMayStartAnotherAnimation) {
    std::unique_ptr<MainQueue::Ticking> second;
    const auto first = queue.animate(1ms, [&](double progress) {
        if (progress == 1.0)
            second = queue.animate(1ms, [this](double inner) {
                if (inner == 1.0)
                    loop.quit();
            });
    });
    run();
    EXPECT_TRUE(second); // the inner animation has ended the loop
}

TEST_F(EventLoopMainQueueTest, withReducedMotionNoTimerRunsAfterTheOneTick) {
    queue.setReducedMotion(true);
    bool isTickingStill = true;
    const auto animation = queue.animate(10s, tick);
    queue.after(60ms, [&] {
        isTickingStill = isTicking(); // the timer of this work has stopped
        loop.quit();
    });
    const auto start = Clock::now();
    run();
    EXPECT_THAT(ticks, ElementsAre(1.0));
    EXPECT_FALSE(isTickingStill);
    EXPECT_GE(Clock::now() - start, 60ms) << "deferred work keeps its time";
}

TEST_F(EventLoopMainQueueTest, aHandleMayOutliveTheQueue) {
    std::unique_ptr<MainQueue::Ticking> animation;
    {
        EventLoopMainQueue inner;
        animation = inner.animate(1ms, tick);
        inner.after(1ms, note("gone with its queue"));
    }
    quitAfter(40ms);
    run();
    EXPECT_THAT(ticks, ElementsAre());
    EXPECT_THAT(notes, ElementsAre());
}

TEST_F(EventLoopMainQueueTest, noTimerRunsAtRest) {
    EXPECT_FALSE(isTicking());
    const auto animation = queue.animate(1ms, tick);
    EXPECT_TRUE(isTicking());
    quitAfter(60ms);
    run();
    EXPECT_FALSE(isTicking());
}

TEST_F(EventLoopMainQueueTest, noTimerRunsAfterAHandleIsDestroyed) {
    { const auto animation = queue.animate(10s, tick); }
    quitAfter(60ms);
    run();
    EXPECT_FALSE(isTicking());
}

TEST_F(EventLoopMainQueueTest, isTheQueueInForceUnlessAnotherIsSet) {
    MainQueue& queueInForce = MainQueue::current();
    EXPECT_NE(dynamic_cast<EventLoopMainQueue*>(&queueInForce), nullptr);
    EXPECT_EQ(MainQueue::setCurrent(&queue), nullptr);
    EXPECT_EQ(&MainQueue::current(), &queue);
    EXPECT_EQ(MainQueue::setCurrent(nullptr), &queue);
    EXPECT_EQ(&MainQueue::current(), &queueInForce);
}

TEST_F(EventLoopMainQueueTest, finishesWithoutAnEventLoop) {
    const auto start = Clock::now();
    queue.after(20ms, note("last"));
    queue.after(1ms, [&] { queue.after(2ms, note("deferred by the first")); });
    queue.whenNextIdle(note("idle"));
    queue.finish();
    EXPECT_GE(Clock::now() - start, 20ms);
    EXPECT_EQ(notes, (std::vector<std::string>{"deferred by the first", "last", "idle"}));
    EXPECT_TRUE(queue.isIdle());
    queue.finish();
}

// The queue of the process outlives an application and works with the next one.
TEST(EventLoopMainQueueApplicationTest, servesOneApplicationAfterAnother) {
    EventLoopMainQueue queue;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    int runs = 0;
    for (int i = 0; i < 2; ++i) {
        int argc = 1;
        const QCoreApplication application(argc, argv);
        QEventLoop loop;
        const auto animation = queue.animate(1ms, [&](double progress) {
            if (progress == 1.0)
                ++runs;
        });
        queue.after(1ms, [&] { loop.quit(); });
        loop.exec();
    }
    EXPECT_EQ(runs, 2);
}
