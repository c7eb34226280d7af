#include "platform/views/AnimationGroup.h"

#include "platform/views/LayoutConstraint.h"
#include "platform/views/View.h"
#include "support/ManualMainQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

using namespace std::chrono_literals;
using platform::AnimationGroup;
using platform::LayoutConstraint;
using platform::View;
using support::ManualMainQueue;
using testing::ElementsAre;

namespace {

// --- the constraint itself

TEST(LayoutConstraint, tellsOfEachChangeOnce) {
    QObject owner;
    LayoutConstraint constraint(5, &owner);
    std::vector<double> seen;
    constraint.setChanged([&] { seen.push_back(constraint.constant()); });
    EXPECT_EQ(constraint.constant(), 5);
    constraint.setConstant(5);
    constraint.setConstant(7.5);
    constraint.setConstant(-1);
    EXPECT_THAT(seen, ElementsAre(7.5, -1));
}

TEST(LayoutConstraint, needsNobodyToTell) {
    QObject owner;
    LayoutConstraint constraint(5, &owner);
    constraint.setConstant(6);
    EXPECT_EQ(constraint.constant(), 6);
}

// --- groups

class Animation : public testing::Test {
protected:
    void slide(double target, platform::MainQueue::Duration duration, const std::string& name = {}) {
        AnimationGroup group(duration);
        if (!name.empty())
            group.setCompletionHandler([this, name] { completed.push_back(name); });
        group.moveConstant(*constraint, target);
        group.end();
    }

    ManualMainQueue queue;
    QObject owner;
    std::unique_ptr<LayoutConstraint> constraint = std::make_unique<LayoutConstraint>(0, nullptr);
    std::unique_ptr<View> view = std::make_unique<View>();
    std::vector<std::string> completed;
};

TEST_F(Animation, startsWhereItStands) {
    slide(-120, 200ms);
    EXPECT_EQ(constraint->constant(), 0) << "never within the call";
    queue.advance(0ms);
    EXPECT_EQ(constraint->constant(), 0);
}

// The pace is half a cosine: (1 - cos(pi t)) / 2.
TEST_F(Animation, easesInAndOut) {
    slide(-120, 200ms);
    queue.advance(50ms);
    EXPECT_NEAR(constraint->constant(), -120 * 0.146446609, 1e-6);
    queue.advance(50ms);
    EXPECT_NEAR(constraint->constant(), -60, 1e-9);
    queue.advance(50ms);
    EXPECT_NEAR(constraint->constant(), -120 * 0.853553391, 1e-6);
    queue.advance(50ms);
    EXPECT_EQ(constraint->constant(), -120) << "exactly at the end";
}

TEST_F(Animation, endsExactlyAtItsTargetAlsoOnAFraction) {
    constraint->setConstant(0.1);
    slide(0.3, 200ms);
    queue.advance(1s);
    EXPECT_EQ(constraint->constant(), 0.3);
}

TEST_F(Animation, standsStillAfterItsEnd) {
    slide(-120, 200ms, "slide");
    queue.advance(200ms);
    constraint->setConstant(5);
    queue.advance(1s);
    EXPECT_EQ(constraint->constant(), 5);
    EXPECT_TRUE(queue.isIdle());
}

TEST_F(Animation, completesOnceAtItsEnd) {
    slide(-120, 200ms, "slide");
    queue.advance(199ms);
    EXPECT_THAT(completed, ElementsAre());
    queue.advance(1ms);
    EXPECT_THAT(completed, ElementsAre("slide"));
    queue.advance(1s);
    EXPECT_THAT(completed, ElementsAre("slide"));
}

TEST_F(Animation, hasArrivedWhenItCompletes) {
    double seen = 0;
    AnimationGroup group(200ms);
    group.moveConstant(*constraint, -120);
    group.setCompletionHandler([&] { seen = constraint->constant(); });
    group.end();
    queue.advance(200ms);
    EXPECT_EQ(seen, -120);
}

TEST_F(Animation, completesWithNothingToMove) {
    slide(0, 200ms, "nothing to do");
    AnimationGroup empty(100ms);
    empty.setCompletionHandler([this] { completed.push_back("empty"); });
    empty.end();
    queue.advance(200ms);
    EXPECT_THAT(completed, ElementsAre("empty", "nothing to do"));
}

TEST_F(Animation, doesNothingUntilItIsEnded) {
    {
        AnimationGroup group(200ms);
        group.setCompletionHandler([this] { completed.push_back("never"); });
        group.moveConstant(*constraint, -120);
        group.fadeAlpha(*view, 0);
        queue.advance(1s);
        EXPECT_EQ(constraint->constant(), 0);
    }
    queue.advance(1s);
    EXPECT_EQ(constraint->constant(), 0);
    EXPECT_EQ(view->alphaValue(), 1);
    EXPECT_THAT(completed, ElementsAre());
}

TEST_F(Animation, isNotStoppedByAGroupThatIsNeverEnded) {
    slide(-120, 200ms);
    AnimationGroup never(200ms);
    never.moveConstant(*constraint, 55);
    queue.advance(200ms);
    EXPECT_EQ(constraint->constant(), -120);
}

// --- taking over

TEST_F(Animation, isTakenOverByALaterOneFromWhereItStands) {
    slide(-120, 200ms, "opening");
    queue.advance(100ms);
    slide(0, 200ms, "closing");
    EXPECT_NEAR(constraint->constant(), -60, 1e-9);
    queue.advance(100ms);
    EXPECT_NEAR(constraint->constant(), -30, 1e-9) << "half way from -60 to 0; the first moves nothing now";
    queue.advance(100ms);
    EXPECT_EQ(constraint->constant(), 0);
}

TEST_F(Animation, completesAtItsOwnEndWhenTakenOver) {
    slide(-120, 200ms, "opening");
    queue.advance(100ms);
    slide(0, 200ms, "closing");
    queue.advance(99ms);
    EXPECT_THAT(completed, ElementsAre());
    queue.advance(1ms);
    EXPECT_THAT(completed, ElementsAre("opening"));
    EXPECT_NEAR(constraint->constant(), -30, 1e-9) << "its end moves what it lost nowhere";
    queue.advance(100ms);
    EXPECT_THAT(completed, ElementsAre("opening", "closing"));
}

TEST_F(Animation, groupsOfOneDurationCompleteInTheirOrder) {
    slide(1, 200ms, "first");
    slide(2, 200ms, "second");
    slide(3, 200ms, "third");
    queue.advance(200ms);
    EXPECT_THAT(completed, ElementsAre("first", "second", "third"));
    EXPECT_EQ(constraint->constant(), 3);
}

TEST_F(Animation, aShorterLaterGroupWinsForGood) {
    slide(-120, 300ms, "long");
    queue.advance(10ms);
    slide(50, 100ms, "short");
    queue.advance(100ms);
    EXPECT_EQ(constraint->constant(), 50);
    queue.advance(1s);
    EXPECT_EQ(constraint->constant(), 50);
    EXPECT_THAT(completed, ElementsAre("short", "long"));
}

TEST_F(Animation, settingTheConstantStopsItsMoveButNotTheCompletion) {
    slide(-120, 200ms, "slide");
    queue.advance(100ms);
    constraint->setConstant(7);
    queue.advance(50ms);
    EXPECT_EQ(constraint->constant(), 7);
    queue.advance(50ms);
    EXPECT_EQ(constraint->constant(), 7);
    EXPECT_THAT(completed, ElementsAre("slide"));
}

TEST_F(Animation, aLaterFadeTakesOverTheAlpha) {
    AnimationGroup out(300ms);
    out.fadeAlpha(*view, 0);
    out.end();
    queue.advance(150ms);
    AnimationGroup in(300ms);
    in.fadeAlpha(*view, 1);
    in.end();
    queue.advance(150ms);
    EXPECT_NEAR(view->alphaValue(), 0.75, 1e-9) << "also at the first one's end";
    queue.advance(150ms);
    EXPECT_EQ(view->alphaValue(), 1);
}

// --- what may go on the way

TEST_F(Animation, leavesOutAConstraintThatDies) {
    slide(-120, 200ms, "slide");
    queue.advance(100ms);
    constraint.reset();
    queue.advance(100ms);
    EXPECT_THAT(completed, ElementsAre("slide"));
}

TEST_F(Animation, leavesOutAViewThatDies) {
    AnimationGroup group(300ms);
    View other;
    group.fadeAlpha(*view, 0);
    group.fadeAlpha(other, 0);
    group.setCompletionHandler([this] { completed.push_back("fade"); });
    group.end();
    queue.advance(150ms);
    EXPECT_NEAR(other.alphaValue(), 0.5, 1e-9);
    view.reset();
    queue.advance(150ms);
    EXPECT_EQ(other.alphaValue(), 0);
    EXPECT_THAT(completed, ElementsAre("fade"));
}

TEST_F(Animation, mayEndTheConstraintFromItsOwnChange) {
    constraint->setChanged([this] { constraint.reset(); });
    slide(-120, 200ms, "slide");
    queue.advance(100ms);
    EXPECT_EQ(constraint, nullptr);
    queue.advance(100ms);
    EXPECT_THAT(completed, ElementsAre("slide"));
}

TEST_F(Animation, itsCompletionHoldsWhatItHoldsUntilItHasRun) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> weak = held;
    {
        AnimationGroup group(200ms);
        group.setCompletionHandler([held] { (void)held; });
        group.end();
    }
    held.reset();
    queue.advance(199ms);
    EXPECT_FALSE(weak.expired());
    queue.advance(1ms);
    EXPECT_TRUE(weak.expired());
}

TEST_F(Animation, mayStartAnotherWhenItCompletes) {
    AnimationGroup group(200ms);
    group.moveConstant(*constraint, 10);
    group.setCompletionHandler([this] { slide(20, 200ms, "second"); });
    group.end();
    queue.advance(300ms);
    EXPECT_NEAR(constraint->constant(), 15, 1e-9);
    queue.advance(100ms);
    EXPECT_THAT(completed, ElementsAre("second"));
}

TEST_F(Animation, ofNoDurationArrivesAtOnceButNotWithinTheCall) {
    slide(-120, 0ms, "slide");
    EXPECT_EQ(constraint->constant(), 0);
    queue.advance(0ms);
    EXPECT_EQ(constraint->constant(), -120);
    EXPECT_THAT(completed, ElementsAre("slide"));
}

TEST_F(Animation, fadesAlphaAndMovesOtherNumbersAtTheSamePace) {
    std::vector<double> seen;
    AnimationGroup group(300ms);
    group.fadeAlpha(*view, 0);
    group.progress([&](double progress) { seen.push_back(progress); });
    group.end();
    queue.advance(75ms);
    EXPECT_NEAR(view->alphaValue(), 1 - 0.146446609, 1e-6);
    EXPECT_NEAR(seen.back(), 0.146446609, 1e-6);
    queue.advance(225ms);
    EXPECT_EQ(view->alphaValue(), 0);
    EXPECT_EQ(seen.back(), 1);
}

} // namespace
