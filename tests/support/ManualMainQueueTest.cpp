#include "support/ManualMainQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace std::chrono_literals;
using platform::MainQueue;
using support::ManualMainQueue;
using testing::ElementsAre;

namespace {

class ManualMainQueueTest : public testing::Test {
protected:
    MainQueue::Work note(const std::string& text) {
        return [this, text] { notes.push_back(text); };
    }

    ManualMainQueue queue;
    std::vector<std::string> notes;
    std::vector<double> ticks;
    MainQueue::Tick tick = [this](double progress) { ticks.push_back(progress); };
};

} // namespace

TEST_F(ManualMainQueueTest, runsWorkOnceItIsDue) {
    queue.after(300ms, note("refresh"));
    queue.advance(299ms);
    EXPECT_THAT(notes, ElementsAre());
    queue.advance(1ms);
    EXPECT_THAT(notes, ElementsAre("refresh"));
    queue.advance(1h);
    EXPECT_THAT(notes, ElementsAre("refresh"));
}

TEST_F(ManualMainQueueTest, neverRunsWorkWithinAfter) {
    queue.after(0ms, note("now"));
    EXPECT_THAT(notes, ElementsAre());
    queue.advance(0ms);
    EXPECT_THAT(notes, ElementsAre("now"));
}

TEST_F(ManualMainQueueTest, takesANegativeDelayAsNone) {
    queue.advance(1s);
    queue.after(-5s, note("late"));
    queue.after(0s, note("later"));
    queue.advance(0s);
    EXPECT_THAT(notes, ElementsAre("late", "later"));
}

TEST_F(ManualMainQueueTest, aDelayBeyondTheEndOfTimeWaits) {
    queue.advance(1s);
    queue.after(MainQueue::Duration::max(), note("never"));
    queue.advance(24h * 365);
    EXPECT_THAT(notes, ElementsAre());
    EXPECT_FALSE(queue.isIdle());
}

TEST_F(ManualMainQueueTest, runsInTheOrderOfDueTimes) {
    queue.after(20ms, note("b"));
    queue.after(10ms, note("a"));
    queue.after(20ms, note("c"));
    queue.advance(1s);
    EXPECT_THAT(notes, ElementsAre("a", "b", "c"));
}

TEST_F(ManualMainQueueTest, runsOnTheWayWhatWorkDefers) {
    queue.after(10ms, [this] {
        notes.push_back("outer");
        queue.after(10ms, note("inner"));
        queue.after(100ms, note("beyond"));
    });
    queue.advance(50ms);
    EXPECT_THAT(notes, ElementsAre("outer", "inner"));
    queue.advance(60ms);
    EXPECT_THAT(notes, ElementsAre("outer", "inner", "beyond"));
}

TEST_F(ManualMainQueueTest, isIdleWithoutPendingWork) {
    EXPECT_TRUE(queue.isIdle());
    queue.after(1ms, [this] { notes.push_back(queue.isIdle() ? "idle" : "busy"); });
    EXPECT_FALSE(queue.isIdle());
    EXPECT_EQ(queue.pendingCount(), 1U);
    queue.advance(1ms);
    EXPECT_TRUE(queue.isIdle());
    EXPECT_THAT(notes, ElementsAre("idle")); // what runs is not pending
}

TEST_F(ManualMainQueueTest, tellsOnceWhenTheLastWorkHasRun) {
    queue.after(10ms, note("a"));
    queue.after(20ms, note("b"));
    queue.whenNextIdle([this] { notes.push_back(queue.isIdle() ? "idle" : "busy"); });
    queue.advance(10ms);
    EXPECT_THAT(notes, ElementsAre("a"));
    queue.advance(10ms);
    EXPECT_THAT(notes, ElementsAre("a", "b", "idle"));
    queue.after(0ms, note("c"));
    queue.advance(0ms);
    EXPECT_THAT(notes, ElementsAre("a", "b", "idle", "c"));
}

TEST_F(ManualMainQueueTest, anIdleQueueTellsAfterTheNextWork) {
    queue.whenNextIdle(note("idle"));
    queue.advance(1s);
    EXPECT_THAT(notes, ElementsAre());
    queue.after(0ms, note("work"));
    queue.advance(0ms);
    EXPECT_THAT(notes, ElementsAre("work", "idle"));
}

TEST_F(ManualMainQueueTest, isNotIdleWhenTheLastWorkDefersMore) {
    queue.after(10ms, [this] { queue.after(10ms, note("inner")); });
    queue.whenNextIdle(note("idle"));
    queue.advance(10ms);
    EXPECT_THAT(notes, ElementsAre());
    queue.advance(10ms);
    EXPECT_THAT(notes, ElementsAre("inner", "idle"));
}

TEST_F(ManualMainQueueTest, destroysTheLastWorkBeforeItTells) {
    const auto held = std::make_shared<int>(0);
    queue.after(0ms, [held] {});
    queue.whenNextIdle([this, &held] { notes.push_back(std::to_string(held.use_count())); });
    queue.advance(0ms);
    EXPECT_THAT(notes, ElementsAre("1"));
}

TEST_F(ManualMainQueueTest, aNoticeMayDeferWorkAndAskForTheNextTime) {
    queue.after(0ms, {});
    queue.whenNextIdle([this] {
        notes.push_back("first");
        queue.after(10ms, note("work"));
        queue.whenNextIdle(note("second"));
    });
    queue.whenNextIdle({});
    queue.advance(10ms);
    EXPECT_THAT(notes, ElementsAre("first", "work", "second"));
}

TEST_F(ManualMainQueueTest, anAnimationIsNoPendingWork) {
    const auto animation = queue.animate(200ms, tick);
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(ManualMainQueueTest, ticksWithTheShareThatHasPassed) {
    const auto animation = queue.animate(200ms, tick);
    EXPECT_THAT(ticks, ElementsAre());
    queue.advance(50ms);
    queue.advance(50ms);
    queue.advance(100ms);
    queue.advance(100ms);
    EXPECT_THAT(ticks, ElementsAre(0.25, 0.5, 1.0));
}

TEST_F(ManualMainQueueTest, anAnimationWithoutDurationEndsAtTheFirstTick) {
    const auto none = queue.animate(0ms, tick);
    const auto negative = queue.animate(-1ms, tick);
    EXPECT_THAT(ticks, ElementsAre());
    queue.advance(0ms);
    queue.advance(1ms);
    EXPECT_THAT(ticks, ElementsAre(1.0, 1.0));
}

TEST_F(ManualMainQueueTest, withReducedMotionAnAnimationEndsAtTheFirstTick) {
    const auto before = queue.animate(200ms, tick);
    queue.setReducedMotion(true);
    const auto animation =
        queue.animate(200ms, [this](double progress) { notes.push_back(progress == 1.0 ? "end" : "tick"); });
    queue.after(200ms, note("completion"));
    EXPECT_THAT(notes, ElementsAre());
    queue.advance(50ms);
    EXPECT_THAT(notes, ElementsAre("end"));
    EXPECT_THAT(ticks, ElementsAre(0.25)) << "it had started before";
    queue.advance(149ms);
    EXPECT_THAT(notes, ElementsAre("end"));
    queue.advance(1ms);
    EXPECT_THAT(notes, ElementsAre("end", "completion"));
}

TEST_F(ManualMainQueueTest, ticksComeBeforeWorkThatIsDueThen) {
    queue.after(200ms, note("completion"));
    const auto animation =
        queue.animate(200ms, [this](double progress) { notes.push_back(progress == 1.0 ? "end" : "tick"); });
    queue.advance(1s);
    EXPECT_THAT(notes, ElementsAre("end", "completion"));
}

TEST_F(ManualMainQueueTest, destroyingTheHandleStopsTheTicks) {
    auto animation = queue.animate(200ms, tick);
    queue.advance(50ms);
    animation.reset();
    queue.advance(1s);
    EXPECT_THAT(ticks, ElementsAre(0.25));
}

TEST_F(ManualMainQueueTest, aTickMayDestroyItsOwnHandle) {
    std::unique_ptr<MainQueue::Ticking> animation;
    std::string captured = "a text that is too long for a string's own buffer";
    animation = queue.animate(200ms, [this, &animation, captured](double) {
        animation.reset();
        notes.push_back(captured);
    });
    queue.advance(50ms);
    queue.advance(50ms);
    EXPECT_THAT(notes, ElementsAre(captured));
}

TEST_F(ManualMainQueueTest, aTickMayDestroyAnotherHandle) {
    std::unique_ptr<MainQueue::Ticking> second;
    const auto first = queue.animate(200ms, [&second](double) { second.reset(); });
    second = queue.animate(200ms, tick);
    queue.advance(50ms);
    EXPECT_THAT(ticks, ElementsAre());
}

TEST_F(ManualMainQueueTest, aTickMayStartAnotherAnimation) {
    std::unique_ptr<MainQueue::Ticking> second;
    const auto first = queue.animate(100ms, [&](double) {
        if (!second)
            second = queue.animate(100ms, tick);
    });
    queue.advance(50ms);
    queue.advance(50ms);
    queue.advance(50ms);
    EXPECT_THAT(ticks, ElementsAre(0.5, 1.0));
}

TEST_F(ManualMainQueueTest, workMayDestroyAHandle) {
    auto animation = queue.animate(200ms, tick);
    queue.after(100ms, [&animation] { animation.reset(); });
    queue.advance(1s);
    EXPECT_THAT(ticks, ElementsAre(0.5));
}

TEST_F(ManualMainQueueTest, aHandleMayOutliveTheQueue) {
    std::unique_ptr<MainQueue::Ticking> animation;
    {
        ManualMainQueue inner;
        animation = inner.animate(200ms, tick);
    }
    animation.reset();
    EXPECT_THAT(ticks, ElementsAre());
}

TEST_F(ManualMainQueueTest, workWithoutAFunctionDoesNothing) {
    queue.after(1ms, {});
    const auto animation = queue.animate(1ms, {});
    queue.advance(2ms);
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(ManualMainQueueTest, finishesAllWorkAtItsTime) {
    queue.after(300ms, note("refresh"));
    queue.after(100ms, [&] { queue.after(100ms, note("report")); });
    queue.finish();
    EXPECT_THAT(notes, ElementsAre("report", "refresh"));
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(ManualMainQueueTest, isInForceWhileItLives) {
    EXPECT_EQ(&MainQueue::current(), &queue);
    {
        const ManualMainQueue inner;
        EXPECT_EQ(&MainQueue::current(), &inner);
    }
    EXPECT_EQ(&MainQueue::current(), &queue);
}

TEST_F(ManualMainQueueTest, pendingWorkMayDeferAsItIsDestroyed) {
    struct Deferring {
        ~Deferring() {
            MainQueue::current().after(1ms, [] {});
        }
    };
    {
        ManualMainQueue inner;
        inner.after(1s, [held = std::make_shared<Deferring>()] {});
    }
    EXPECT_FALSE(queue.isIdle());
}
