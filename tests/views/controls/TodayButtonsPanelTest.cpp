#include "views/controls/TodayButtonsPanel.h"

#include "platform/images/BundleImages.h"
#include "platform/views/Button.h"
#include "support/Application.h"
#include "support/BundleImageHidden.h"
#include "support/Events.h"
#include "views/controls/TodayTintButtonCell.h"

#include <QMetaProperty>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

using platform::Button;
using platform::View;
using testing::ElementsAre;

namespace {

class Receiver final : public TodayButtonsPanelDelegate {
public:
    void buttonsPanelUserClickAction(TodayTransactionAction action) override { actions.push_back(action); }

    std::vector<TodayTransactionAction> actions;
};

class ButtonsPanel : public testing::Test {
protected:
    ButtonsPanel() {
        root.addSubview(panel);
        panel.setFrame(QRectF(100, 0, 200, 50));
    }

    Button& button(std::size_t place) { return dynamic_cast<Button&>(*panel.subviews().at(place)); }
    std::vector<QRectF> frames() {
        std::vector<QRectF> all;
        for (const View* view : panel.subviews())
            all.push_back(view->frame());
        return all;
    }
    bool isTinted(std::size_t place) {
        return dynamic_cast<TodayTintButtonCell*>(&button(place).cell()) != nullptr;
    }

    View root;
    TodayButtonsPanel panel;
    std::shared_ptr<Receiver> receiver = std::make_shared<Receiver>();
};

enum : std::size_t { paidPlace, laterPlace, infoPlace, deletePlace };

TEST_F(ButtonsPanel, hasNoButtonsUntilTheyAreMade) {
    EXPECT_TRUE(panel.subviews().empty());
    EXPECT_EQ(panel.delegate, nullptr);
}

TEST_F(ButtonsPanel, hasItsSizesAsReadOnlyProperties) {
    EXPECT_EQ(panel.buttonSize, 50);
    EXPECT_EQ(panel.marginX, -5);
    EXPECT_EQ(panel.property("buttonSize"), QVariant(50.0));
    EXPECT_EQ(panel.property("marginX"), QVariant(-5.0));
    EXPECT_FALSE(panel.metaObject()->property(panel.metaObject()->indexOfProperty("marginX")).isWritable());
    EXPECT_FALSE(
        panel.metaObject()->property(panel.metaObject()->indexOfProperty("buttonSize")).isWritable());
}

TEST_F(ButtonsPanel, startsFivePointsOutsideItsLeftEdge) {
    panel.generateButtons();
    EXPECT_THAT(frames(), ElementsAre(QRectF(-5, 0, 50, 50), QRectF(45, 0, 50, 50), QRectF(95, 0, 50, 50),
                                      QRectF(145, 0, 50, 50)));
}

TEST_F(ButtonsPanel, runsFromTheRightWhereReadingStartsThere) {
    panel.setLayoutDirection(Qt::RightToLeft);
    panel.generateButtons();
    EXPECT_THAT(frames(), ElementsAre(QRectF(145, 0, 50, 50), QRectF(95, 0, 50, 50), QRectF(45, 0, 50, 50),
                                      QRectF(-5, 0, 50, 50)))
        << "made in the same order; the leftmost still starts outside the left edge";
    EXPECT_EQ(button(deletePlace).geometry(), QRect(-5, 0, 50, 50)) << "physical, never mirrored again";
}

TEST_F(ButtonsPanel, takesTheDirectionOfItsSuperviews) {
    root.setLayoutDirection(Qt::RightToLeft);
    panel.generateButtons();
    EXPECT_EQ(frames().front(), QRectF(145, 0, 50, 50));
}

TEST_F(ButtonsPanel, doesNotFollowALaterChangeOfDirection) {
    panel.generateButtons();
    panel.setLayoutDirection(Qt::RightToLeft);
    panel.setFrame(QRectF(100, 0, 220, 50));
    EXPECT_EQ(frames().front(), QRectF(-5, 0, 50, 50));
    EXPECT_EQ(button(paidPlace).geometry(), QRect(-5, 0, 50, 50));
}

TEST_F(ButtonsPanel, makesFourMoreButtonsAtEachCall) {
    panel.generateButtons();
    panel.generateButtons();
    ASSERT_EQ(panel.subviews().size(), 8U);
    EXPECT_EQ(frames()[4], QRectF(-5, 0, 50, 50)) << "on top of the first";
}

TEST_F(ButtonsPanel, tintsInfoAndDeleteWhiteAndNoOthers) {
    panel.generateButtons();
    EXPECT_FALSE(isTinted(paidPlace));
    EXPECT_FALSE(isTinted(laterPlace));
    ASSERT_TRUE(isTinted(infoPlace));
    ASSERT_TRUE(isTinted(deletePlace));
    EXPECT_EQ(dynamic_cast<TodayTintButtonCell&>(button(infoPlace).cell()).tintColor, QColor(Qt::white));
    EXPECT_EQ(dynamic_cast<TodayTintButtonCell&>(button(deletePlace).cell()).tintColor, QColor(Qt::white));
    EXPECT_NE(&button(infoPlace).cell(), &button(deletePlace).cell()) << "each has a cell of its own";
}

TEST_F(ButtonsPanel, showsTheBundlesImages) {
    panel.generateButtons();
    const char* const names[] = {"paid", "later", "info", "delete"};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto image = platform::imageNamed(QLatin1String(names[i]));
        ASSERT_TRUE(image) << names[i];
        EXPECT_EQ(button(i).image().pixels(1), image.pixels(1)) << names[i];
    }
}

TEST_F(ButtonsPanel, drawsPaidAndLaterAsTheyAre) {
    panel.generateButtons();
    for (const std::size_t place : {paidPlace, laterPlace}) {
        const QImage image = support::painted(button(place));
        const QImage art = button(place).image().pixels(1);
        const QPoint corner((50 - art.width()) / 2, (50 - art.height()) / 2);
        EXPECT_EQ(image.copy(QRect(corner, art.size())), art);
    }
}

TEST_F(ButtonsPanel, drawsInfoAndDeleteWhite) {
    panel.generateButtons();
    for (const std::size_t place : {infoPlace, deletePlace}) {
        const QImage image = support::painted(button(place));
        int opaque = 0;
        for (int y = 0; y < 50; ++y)
            for (int x = 0; x < 50; ++x)
                if (image.pixelColor(x, y).alpha() == 255) {
                    ++opaque;
                    EXPECT_EQ(image.pixelColor(x, y), QColor(Qt::white));
                }
        EXPECT_GT(opaque, 0);
    }
}

TEST_F(ButtonsPanel, showsNothingButTheImages) {
    panel.generateButtons();
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_FALSE(button(i).isBordered());
        EXPECT_EQ(button(i).focusRingType(), Button::FocusRingType::None);
        EXPECT_TRUE(button(i).attributedTitle().isEmpty());
    }
}

TEST_F(ButtonsPanel, leavesAButtonWithoutItsMissingImage) {
    const support::BundleImageHidden hidden(QStringLiteral("info"));
    panel.generateButtons();
    ASSERT_EQ(panel.subviews().size(), 4U);
    EXPECT_TRUE(button(infoPlace).image().isNull());
    EXPECT_FALSE(button(deletePlace).image().isNull());
    EXPECT_TRUE(support::inkOf(support::painted(button(infoPlace))).isNull()) << "and it still draws";
}

TEST_F(ButtonsPanel, namesItsButtonsForAssistivePrograms) {
    panel.generateButtons();
    const char* const keys[] = {"PaidButtonHelp", "LaterButtonHelp", "InfoButtonHelp", "DeleteButtonHelp"};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(button(i).accessibleTraits().name, QLatin1String(keys[i])) << "no texts are loaded here";
}

// --- clicks

class ButtonsPanelClicks : public ButtonsPanel {
protected:
    void SetUp() override {
        panel.generateButtons();
        panel.delegate = receiver;
        support::showWindow(root, 300, 50);
    }
};

struct Choice {
    const char* name;
    std::size_t place;
    TodayTransactionAction action;
};

class ButtonsPanelChoice : public ButtonsPanelClicks, public testing::WithParamInterface<Choice> {};

TEST_P(ButtonsPanelChoice, isReportedOnceAClick) {
    support::press(button(GetParam().place), {25, 25});
    EXPECT_TRUE(receiver->actions.empty());
    support::release(button(GetParam().place), {25, 25});
    EXPECT_THAT(receiver->actions, ElementsAre(GetParam().action));
}

INSTANTIATE_TEST_SUITE_P(Buttons, ButtonsPanelChoice,
                         testing::Values(Choice{"paid", paidPlace, TodayTransactionAction::Paid()},
                                         Choice{"later", laterPlace, TodayTransactionAction::Later(0)},
                                         Choice{"info", infoPlace, TodayTransactionAction::Info()},
                                         Choice{"delete", deletePlace,
                                                TodayTransactionAction::Delete(false)}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ButtonsPanelClicks, areTheHandlersAlso) {
    panel.buttonPaidClick();
    panel.buttonLaterClick();
    panel.buttonInfoClick();
    panel.buttonDeleteClick();
    EXPECT_THAT(receiver->actions,
                ElementsAre(TodayTransactionAction::Paid(), TodayTransactionAction::Later(0),
                            TodayTransactionAction::Info(), TodayTransactionAction::Delete(false)));
}

TEST_F(ButtonsPanelClicks, withoutADelegateAreDropped) {
    panel.delegate = nullptr;
    for (std::size_t i = 0; i < 4; ++i)
        support::click(button(i));
    EXPECT_TRUE(receiver->actions.empty());
}

TEST_F(ButtonsPanelClicks, keepTheDelegateAliveUntilItReturns) {
    class Leaving final : public TodayButtonsPanelDelegate {
    public:
        explicit Leaving(TodayButtonsPanel& panel)
            : panel_(panel) {}
        void buttonsPanelUserClickAction(TodayTransactionAction) override {
            panel_.delegate = nullptr;
            ++calls; // of this, which must still be there
        }
        int calls = 0;

    private:
        TodayButtonsPanel& panel_;
    };
    auto leaving = std::make_shared<Leaving>(panel);
    const std::weak_ptr<Leaving> weak = leaving;
    panel.delegate = std::move(leaving);
    support::click(button(paidPlace));
    EXPECT_TRUE(weak.expired());
}

TEST_F(ButtonsPanelClicks, holdTheDelegateStrongly) {
    const std::weak_ptr<Receiver> weak = receiver;
    receiver.reset();
    EXPECT_FALSE(weak.expired());
    panel.delegate = nullptr;
    EXPECT_TRUE(weak.expired());
}

TEST_F(ButtonsPanelClicks, missTheStripOutsideThePanel) {
    support::click(root, {97, 25});
    EXPECT_TRUE(receiver->actions.empty());
    support::click(root, {100, 25});
    EXPECT_THAT(receiver->actions, ElementsAre(TodayTransactionAction::Paid()));
}

TEST_F(ButtonsPanelClicks, dimPaidAndLaterLikeTheRest) {
    for (std::size_t i = 0; i < 4; ++i) {
        support::press(button(i), {25, 25});
        EXPECT_EQ(button(i).alphaValue(), 0.5);
        support::release(button(i), {25, 25});
        EXPECT_EQ(button(i).alphaValue(), 1);
    }
}

} // namespace
