#include "platform/views/Disposal.h"

#include "platform/views/ViewFixture.h"

#include <QCoreApplication>

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <vector>

namespace view_test {

namespace {

// Notes its number as it goes, and lets go of another view then.
class Numbered final : public View {
public:
    Numbered(int number, std::vector<int>& gone)
        : number_(number)
        , gone_(gone) {}
    ~Numbered() override { gone_.push_back(number_); }

    std::shared_ptr<View> other;

private:
    int number_;
    std::vector<int>& gone_;
};

class Disposal : public testing::Test {
protected:
    // Makes so many views and lets go of them at once.
    void letGoOf(int count) {
        std::vector<std::shared_ptr<View>> views;
        for (int i = 0; i < count; ++i)
            views.push_back(platform::makeView<Numbered>(i, gone));
        while (!views.empty())
            views.erase(views.begin());
    }

    static void nextTurn() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    std::vector<int> gone;
};

} // namespace

TEST_F(Disposal, aFewViewsGoInTheNextTurn) {
    letGoOf(3);
    EXPECT_THAT(gone, ElementsAre());
    nextTurn();
    EXPECT_THAT(gone, ElementsAre(0, 1, 2));
}

TEST_F(Disposal, soDoThoseThatComeAfterThem) {
    letGoOf(1);
    nextTurn();
    letGoOf(1);
    nextTurn();
    EXPECT_EQ(gone.size(), 2U);
}

TEST_F(Disposal, manyViewsGoInSlicesAndInOrder) {
    letGoOf(200);
    nextTurn();
    ASSERT_EQ(gone.size(), 32U);
    nextTurn();
    EXPECT_EQ(gone.size(), 32U) << "events are served first";
    for (int turn = 0; turn < 100 && gone.size() < 200; ++turn) {
        const std::size_t before = gone.size();
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        EXPECT_LE(gone.size(), before + 32);
    }
    ASSERT_EQ(gone.size(), 200U);
    EXPECT_TRUE(std::is_sorted(gone.begin(), gone.end()));
}

TEST_F(Disposal, viewsThatComeWhileOthersWaitGoAfterThem) {
    letGoOf(40);
    nextTurn();
    letGoOf(1);
    for (int turn = 0; turn < 100 && gone.size() < 41; ++turn)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    ASSERT_EQ(gone.size(), 41U);
    EXPECT_EQ(gone.back(), 0);
    EXPECT_EQ(gone[39], 39);
}

TEST_F(Disposal, aViewThatLetsGoOfAnotherTakesItAlong) {
    {
        const auto holder = platform::makeView<Numbered>(1, gone);
        holder->other = platform::makeView<Numbered>(2, gone);
    }
    nextTurn();
    EXPECT_THAT(gone, ElementsAre(1, 2));
}

TEST_F(Disposal, allGoAtOnceWhenAsked) {
    letGoOf(200);
    platform::deleteWaitingViews();
    EXPECT_EQ(gone.size(), 200U);
    nextTurn();
    letGoOf(1);
    nextTurn();
    EXPECT_EQ(gone.size(), 201U);
}

TEST_F(Disposal, noneOutlivesTheApplication) {
    const auto endApplication = [this] {
        letGoOf(200);
        nextTurn();
        qApp->~QCoreApplication();
        _exit(gone.size() == 200 ? 0 : 1);
    };
    EXPECT_EXIT(endApplication(), testing::ExitedWithCode(0), "");
}

} // namespace view_test
