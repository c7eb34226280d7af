#include "views/controls/TodayActionSheetViewFixture.h"

namespace sheet_test {

// --- layout

TEST_F(ActionSheet, standsTenPointsAboveItsSuperviewsTop) {
    sheet->setUnflippedFrame(QRectF(0, 200 - 245 + 10, 320, 245), 200);
    EXPECT_EQ(sheet->frame(), QRectF(0, -10, 320, 245));
    sheet->setUnflippedFrame(QRectF(0, 300 - 300 + 10, 320, 300), 300);
    EXPECT_EQ(sheet->frame(), QRectF(0, -10, 320, 300));
}

TEST_F(ActionSheet, leavesItsTopTenPointsEmpty) {
    showThree();
    for (const View* view : sheet->subviews())
        EXPECT_GE(view->frame().y(), 10);
}

TEST_F(ActionSheet, hasChoicesOf48PointsThatFitAboveCancel) {
    showThree();
    EXPECT_EQ(sheet->checkButton2->frame().y() - sheet->checkButton1->frame().y(), 48);
    EXPECT_EQ(sheet->checkButton3->frame().y() - sheet->checkButton2->frame().y(), 48);
    EXPECT_LE(sheet->checkButton3->frame().bottom(), 213);
    EXPECT_EQ(sheet->theCancelButton->frame().bottom(), sheet->contentHeight());
    showTwo();
    EXPECT_LE(sheet->checkButton2->frame().bottom(), 165);
    EXPECT_EQ(sheet->theCancelButton->frame().bottom(), sheet->contentHeight());
}

TEST_F(ActionSheet, stretchesItsPartsOverItsWidth) {
    sheet->setFrame(QRectF(0, 0, 400, 245));
    for (const Button* button : buttons())
        EXPECT_EQ(button->frame().width(), 400);
    EXPECT_EQ(sheet->titleBackgroundView->frame(), QRectF(0, 10, 400, 40));
    EXPECT_EQ(sheet->titleLabel->frame().center().x(), 200);
    sheet->setFrame(QRectF(0, 0, 320, 245));
    EXPECT_EQ(sheet->titleLabel->frame(), QRectF(12, 10, 296, 40)) << "and back, without drift";
}

TEST_F(ActionSheet, keepsItsTitlesInsideTheirButtons) {
    showThree();
    const double height = QFontMetricsF(sheet->checkButton1->attributedTitle().font).height();
    for (const Button* button : buttons())
        EXPECT_LE(8 + height, button->frame().height());
}

// --- assistive programs

TEST_F(ActionSheet, isADialogNamedByItsTitle) {
    showThree();
    EXPECT_EQ(sheet->accessibleTraits().role, QAccessible::Dialog);
    EXPECT_EQ(sheet->accessibleTraits().name, QStringLiteral("Rent: 9"));
}

// --- faults of the interface file

class ActionSheetDeathTest : public ActionSheet {};

TEST_F(ActionSheetDeathTest, anUnconnectedOutletIsFatalOnWaking) {
    const auto bare = platform::makeView<TodayActionSheetView>();
    EXPECT_EXIT(bare->awakeFromNib(), testing::KilledBySignal(SIGABRT), "^$");
}

struct OutletLoss {
    const char* name;
    void (*disconnect)(TodayActionSheetView&);
    void (*use)(TodayActionSheetView&);
};

void wake(TodayActionSheetView& sheet) {
    sheet.awakeFromNib();
}
void show(TodayActionSheetView& sheet) {
    const QString text = QStringLiteral("x");
    sheet.showWithTitle(text, nullptr, text, text, text);
}

class ActionSheetOutletDeathTest : public ActionSheet, public testing::WithParamInterface<OutletLoss> {};

TEST_P(ActionSheetOutletDeathTest, isFatalToUseUnconnected) {
    GetParam().disconnect(*sheet);
    EXPECT_EXIT(GetParam().use(*sheet), testing::KilledBySignal(SIGABRT), "^$");
}

INSTANTIATE_TEST_SUITE_P(
    Outlets, ActionSheetOutletDeathTest,
    testing::Values(OutletLoss{"titleBackgroundView",
                               [](auto& sheet) { sheet.titleBackgroundView = nullptr; }, wake},
                    OutletLoss{"titleLabel", [](auto& sheet) { sheet.titleLabel = nullptr; }, show},
                    OutletLoss{"checkButton1", [](auto& sheet) { sheet.checkButton1 = nullptr; }, wake},
                    OutletLoss{"checkButton2", [](auto& sheet) { sheet.checkButton2 = nullptr; }, wake},
                    OutletLoss{"checkButton3", [](auto& sheet) { sheet.checkButton3 = nullptr; }, wake},
                    OutletLoss{"theCancelButton", [](auto& sheet) { sheet.theCancelButton = nullptr; }, wake},
                    OutletLoss{"verticalConstraintCancel",
                               [](auto& sheet) { sheet.verticalConstraintCancel = nullptr; }, show},
                    OutletLoss{"theThirdChoiceOnAClick", [](auto& sheet) { sheet.checkButton3 = nullptr; },
                               [](auto& sheet) { sheet.checkButtonClick1(); }},
                    OutletLoss{"cancelOnAClick", [](auto& sheet) { sheet.theCancelButton = nullptr; },
                               [](auto& sheet) { sheet.checkButtonClick2(); }},
                    OutletLoss{"aChoiceOnCancel", [](auto& sheet) { sheet.checkButton2 = nullptr; },
                               [](auto& sheet) { sheet.cancelButtonClick(); }}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(ActionSheetDeathTest, aCellOfAnotherClassIsFatalOnWaking) {
    for (Button* button : buttons()) {
        const auto tint = button->sharedCell();
        button->setCell(std::make_shared<platform::ButtonCell>());
        EXPECT_EXIT(sheet->awakeFromNib(), testing::KilledBySignal(SIGABRT), "^$");
        button->setCell(tint);
    }
    sheet->awakeFromNib();
}

TEST_F(ActionSheetDeathTest, aMissingPaidImageIsFatalOnAChoiceAndNotOnCancel) {
    const support::BundleImageHidden hidden(QStringLiteral("paid"));
    showThree();
    EXPECT_EXIT(sheet->checkButtonClick1(), testing::KilledBySignal(SIGABRT), "^$");
    sheet->cancelButtonClick();
    queue.advance(500ms);
    EXPECT_THAT(receiver->indices, ElementsAre(0));
}

} // namespace sheet_test
