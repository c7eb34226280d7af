#include "views/controls/TodayActionSheetViewFixture.h"

namespace sheet_test {

// --- making one

TEST_F(ActionSheet, isFreshEachTime) {
    EXPECT_NE(TodayActionSheetView::createNewActionSheet(), sheet);
}

TEST_F(ActionSheet, isNoneWithoutItsInterfaceFile) {
    const InterfaceFileOverride none(sheetFile, nullptr);
    EXPECT_EQ(TodayActionSheetView::createNewActionSheet(), nullptr);
}

TEST_F(ActionSheet, isNoneWhereTheInterfaceFileHoldsNoSheet) {
    const InterfaceFileOverride empty(sheetFile, [] { return InterfaceFile::TopLevelObjects(); });
    EXPECT_EQ(TodayActionSheetView::createNewActionSheet(), nullptr);
    const InterfaceFileOverride other(sheetFile, [] {
        return InterfaceFile::TopLevelObjects{platform::makeView<View>(), nullptr};
    });
    EXPECT_EQ(TodayActionSheetView::createNewActionSheet(), nullptr);
}

TEST_F(ActionSheet, isTheFirstSheetOfTheInterfaceFile) {
    const auto first = platform::makeView<TodayActionSheetView>();
    const auto second = platform::makeView<TodayActionSheetView>();
    const InterfaceFileOverride file(sheetFile, [&] {
        return InterfaceFile::TopLevelObjects{platform::makeView<View>(), first, second};
    });
    EXPECT_EQ(TodayActionSheetView::createNewActionSheet(), first);
}

// --- awakeFromNib

TEST_F(ActionSheet, isLoadedWithItsDefaults) {
    EXPECT_EQ(sheet->numberOfButton, 2);
    EXPECT_EQ(sheet->delegate, nullptr);
    EXPECT_EQ(sheet->contentHeight(), 197);
    for (const Button* button : buttons()) {
        EXPECT_FALSE(button->isHidden());
        EXPECT_EQ(button->alphaValue(), 1);
    }
}

TEST_F(ActionSheet, hasATranslucentGreyBand) {
    const QColor color = sheet->titleBackgroundView->fillColor();
    EXPECT_NEAR(color.redF(), 0.5, 1e-4);
    EXPECT_NEAR(color.greenF(), 0.5, 1e-4);
    EXPECT_NEAR(color.blueF(), 0.5, 1e-4);
    EXPECT_NEAR(color.alphaF(), 0.33, 1e-4);
}

TEST_F(ActionSheet, hasTheTitleOfCancelByItsKey) {
    EXPECT_EQ(sheet->theCancelButton->attributedTitle().text, QStringLiteral("CancelButtonTitle"))
        << "no texts are loaded here, so the key shows itself";
}

TEST_F(ActionSheet, placesTitlesFiftyInAndEightDown) {
    for (const Button* button : buttons()) {
        const auto& cell = dynamic_cast<const TodayTintButtonCell&>(button->cell());
        EXPECT_EQ(cell.titleXOffset, 50);
        EXPECT_EQ(cell.titleYOffset, 8);
        EXPECT_EQ(cell.imageCenterX, button == sheet->theCancelButton.get()) << "Cancel's is left as it was";
    }
}

TEST_F(ActionSheet, registersItsInterfaceFileOnce) {
    controls::registerActionSheetInterfaceFile();
    const InterfaceFileOverride none(sheetFile, nullptr);
    controls::registerActionSheetInterfaceFile();
    EXPECT_FALSE(InterfaceFile::named(sheetFile).has_value());
}

// --- showing

TEST_F(ActionSheet, ofTwoChoicesHidesTheThird) {
    showTwo();
    EXPECT_TRUE(sheet->checkButton3->isHidden());
    EXPECT_EQ(sheet->numberOfButton, 2);
    EXPECT_EQ(sheet->verticalConstraintCancel->constant(), 165);
    EXPECT_EQ(sheet->theCancelButton->frame().y(), 165);
    EXPECT_EQ(sheet->contentHeight(), 197);
}

TEST_F(ActionSheet, ofTwoChoicesShowsTwoAndCancel) {
    showTwo();
    showWindow();
    std::vector<bool> visible;
    for (const Button* button : buttons())
        visible.push_back(button->isVisible());
    EXPECT_THAT(visible, ElementsAre(true, true, false, true));
}

TEST_F(ActionSheet, ofThreeChoicesMakesRoomForThem) {
    showThree();
    EXPECT_FALSE(sheet->checkButton3->isHidden());
    EXPECT_EQ(sheet->numberOfButton, 3);
    EXPECT_EQ(sheet->verticalConstraintCancel->constant(), 213);
    EXPECT_EQ(sheet->theCancelButton->frame().y(), 213);
    EXPECT_EQ(sheet->contentHeight(), 245);
}

TEST_F(ActionSheet, anyOtherNumberOfChoicesIsAsHighAsThree) {
    for (const std::int64_t number : {0, 1, 3, 4, -2}) {
        sheet->numberOfButton = number;
        EXPECT_EQ(sheet->contentHeight(), 245);
    }
}

TEST_F(ActionSheet, anEmptyThirdChoiceIsAChoice) {
    sheet->showWithTitle(QStringLiteral("t"), receiver, one, two, QString());
    EXPECT_EQ(sheet->numberOfButton, 3);
    EXPECT_FALSE(sheet->checkButton3->isHidden());
}

// A sheet can be shown once only, on purpose.
TEST_F(ActionSheet, doesNotBringTheThirdChoiceBack) {
    showTwo();
    showThree();
    EXPECT_TRUE(sheet->checkButton3->isHidden());
    EXPECT_EQ(sheet->numberOfButton, 3);
    EXPECT_EQ(sheet->contentHeight(), 245);
}

TEST_F(ActionSheet, showsItsTexts) {
    showThree();
    EXPECT_EQ(sheet->titleLabel->stringValue(), QStringLiteral("Rent: 9"));
    EXPECT_EQ(sheet->checkButton1->attributedTitle().text, one);
    EXPECT_EQ(sheet->checkButton2->attributedTitle().text, two);
    EXPECT_EQ(sheet->checkButton3->attributedTitle().text, three);
}

TEST_F(ActionSheet, showsItsTitlesWhiteNaturallyAlignedAtFifteenPoints) {
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        sheet->setLayoutDirection(direction);
        showThree();
        for (const Button* button : buttons()) {
            EXPECT_EQ(button->attributedTitle().font.pixelSize(), 15);
            EXPECT_EQ(button->attributedTitle().foregroundColor, QColor(Qt::white));
            EXPECT_EQ(button->attributedTitle().alignment, Qt::Alignment(Qt::AlignLeading));
        }
    }
}

TEST_F(ActionSheet, takesItsDelegate) {
    showTwo();
    EXPECT_EQ(sheet->delegate, receiver);
}

} // namespace sheet_test
