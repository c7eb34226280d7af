#include "views/controls/TodayActionSheetView.h"

#include "platform/images/BundleImages.h"
#include "platform/system/ManualMainQueue.h"
#include "platform/views/InterfaceFile.h"
#include "support/Application.h"
#include "support/Events.h"
#include "views/controls/InterfaceFiles.h"

#include <QFontMetricsF>

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

using namespace std::chrono_literals;
using platform::Button;
using platform::InterfaceFile;
using platform::InterfaceFileOverride;
using platform::View;
using testing::ElementsAre;

namespace {

const QString sheetFile = QStringLiteral("TodayActionSheetView");

class Receiver final : public TodayActionSheetViewDelegate {
public:
    void actionSheetClickedButtonAtIndex(std::int64_t index) override { indices.push_back(index); }

    std::vector<std::int64_t> indices;
};

class ActionSheet : public testing::Test {
protected:
    static void SetUpTestSuite() { controls::registerInterfaceFiles(); }

    void SetUp() override {
        sheet = TodayActionSheetView::createNewActionSheet();
        ASSERT_NE(sheet, nullptr);
        root.setFrame(QRectF(0, 0, 320, 245));
        root.addSubview(*sheet);
        sheet->setFrame(QRectF(0, 0, 320, 245));
    }

    void showTwo() { sheet->showWithTitle(QStringLiteral("Rent: 9"), receiver, one, two, std::nullopt); }
    void showThree() { sheet->showWithTitle(QStringLiteral("Rent: 9"), receiver, one, two, three); }
    std::vector<Button*> buttons() const {
        return {sheet->checkButton1.get(), sheet->checkButton2.get(), sheet->checkButton3.get(),
                sheet->theCancelButton.get()};
    }
    std::vector<double> alphas() const {
        std::vector<double> all;
        for (const Button* button : buttons())
            all.push_back(button->alphaValue());
        return all;
    }
    std::vector<bool> checks() const {
        std::vector<bool> all;
        for (const Button* button : buttons())
            all.push_back(!button->image().isNull());
        return all;
    }
    void click(std::size_t place) { support::click(*buttons()[place]); }
    void showWindow() { support::showWindow(root, 320, 245); }

    platform::ManualMainQueue queue;
    View root;
    std::shared_ptr<Receiver> receiver = std::make_shared<Receiver>();
    std::shared_ptr<TodayActionSheetView> sheet;
    const QString one = QStringLiteral("Tomorrow");
    const QString two = QStringLiteral("In 3 days");
    const QString three = QStringLiteral("Next week");
};

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

// --- waking

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
    controls::registerInterfaceFiles();
    const InterfaceFileOverride none(sheetFile, nullptr);
    controls::registerInterfaceFiles();
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

// The sheet relies on being fresh from its interface file, on purpose.
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

// --- answering

struct Answer {
    const char* name;
    std::size_t place;
    std::int64_t index;
    std::vector<double> alphas; // of the three choices and Cancel, when the fade is over
    std::vector<bool> checks;
};

class ActionSheetAnswer : public ActionSheet, public testing::WithParamInterface<Answer> {};

TEST_P(ActionSheetAnswer, fadesTheOthersChecksTheChosenAndReportsItsNumber) {
    showThree();
    showWindow();
    click(GetParam().place);
    EXPECT_THAT(alphas(), ElementsAre(1, 1, 1, 1)) << "the fade has only begun";
    EXPECT_EQ(checks(), GetParam().checks);
    queue.advance(150ms);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(alphas()[i], GetParam().alphas[i] == 1 ? 1 : 0.5, 1e-9) << i;
    queue.advance(150ms);
    EXPECT_EQ(alphas(), GetParam().alphas);
    queue.advance(199ms);
    EXPECT_THAT(receiver->indices, ElementsAre());
    queue.advance(1ms);
    EXPECT_THAT(receiver->indices, ElementsAre(GetParam().index));
    queue.advance(10s);
    EXPECT_THAT(receiver->indices, ElementsAre(GetParam().index));
    EXPECT_EQ(checks(), GetParam().checks);
    for (const Button* button : buttons()) {
        EXPECT_FALSE(button->isHidden()) << "all stay in their places";
        EXPECT_TRUE(button->isEnabled());
    }
}

INSTANTIATE_TEST_SUITE_P(Buttons, ActionSheetAnswer,
                         testing::Values(Answer{"first", 0, 1, {1, 0, 0, 0}, {true, false, false, false}},
                                         Answer{"second", 1, 2, {0, 1, 0, 0}, {false, true, false, false}},
                                         Answer{"third", 2, 3, {0, 0, 1, 0}, {false, false, true, false}},
                                         Answer{"cancel", 3, 0, {0, 0, 0, 1}, {false, false, false, false}}),
                         [](const auto& row) { return std::string(row.param.name); });

class ActionSheetClicks : public ActionSheet {
protected:
    void SetUp() override {
        ActionSheet::SetUp();
        showThree();
        showWindow();
    }
};

TEST_F(ActionSheetClicks, areTheHandlersAlso) {
    sheet->checkButtonClick3();
    queue.advance(500ms);
    EXPECT_THAT(receiver->indices, ElementsAre(3));
}

TEST_F(ActionSheetClicks, afterTheFirstAreIgnoredOnAnyButton) {
    sheet->checkButtonClick2();
    queue.advance(400ms);
    sheet->checkButtonClick1();
    sheet->checkButtonClick2();
    sheet->checkButtonClick3();
    sheet->cancelButtonClick();
    EXPECT_THAT(checks(), ElementsAre(false, true, false, false));
    queue.advance(100ms);
    EXPECT_THAT(receiver->indices, ElementsAre(2));
    sheet->checkButtonClick1();
    sheet->cancelButtonClick();
    queue.advance(10s);
    EXPECT_THAT(receiver->indices, ElementsAre(2));
    EXPECT_EQ(sheet->checkButton2->alphaValue(), 1) << "nothing more fades";
}

TEST_F(ActionSheetClicks, ofADoubleClickAreOneAnswer) {
    support::doubleClick(*sheet->checkButton1, {100, 18});
    queue.advance(10s);
    EXPECT_THAT(receiver->indices, ElementsAre(1));
}

TEST_F(ActionSheetClicks, letGoOfTheDelegateAfterTheReport) {
    const std::weak_ptr<Receiver> weak = receiver;
    sheet->checkButtonClick1();
    queue.advance(499ms);
    EXPECT_EQ(sheet->delegate, receiver);
    queue.advance(1ms);
    EXPECT_EQ(sheet->delegate, nullptr);
    receiver.reset();
    EXPECT_TRUE(weak.expired());
}

TEST_F(ActionSheetClicks, tellTheDelegateBeforeTheyLetGoOfIt) {
    class Looking final : public TodayActionSheetViewDelegate {
    public:
        explicit Looking(TodayActionSheetView& sheet)
            : sheet_(sheet) {}
        void actionSheetClickedButtonAtIndex(std::int64_t) override {
            wasStillThere = sheet_.delegate.get() == this;
            sheet_.delegate = std::make_shared<Receiver>(); // let go of as well
        }
        bool wasStillThere = false;

    private:
        TodayActionSheetView& sheet_;
    };
    const auto looking = std::make_shared<Looking>(*sheet);
    sheet->delegate = looking;
    sheet->checkButtonClick1();
    queue.advance(500ms);
    EXPECT_TRUE(looking->wasStillThere);
    EXPECT_EQ(sheet->delegate, nullptr);
}

TEST_F(ActionSheetClicks, withoutADelegateReportToNobody) {
    sheet->delegate = nullptr;
    sheet->checkButtonClick1();
    queue.advance(10s);
    EXPECT_THAT(receiver->indices, ElementsAre());
}

TEST_F(ActionSheetClicks, reportToTheDelegateOfThatMoment) {
    sheet->checkButtonClick1();
    const auto later = std::make_shared<Receiver>();
    sheet->delegate = later;
    queue.advance(500ms);
    EXPECT_THAT(receiver->indices, ElementsAre());
    EXPECT_THAT(later->indices, ElementsAre(1));
}

TEST_F(ActionSheetClicks, keepTheSheetUntilTheReport) {
    const std::weak_ptr<TodayActionSheetView> weak = sheet;
    sheet->checkButtonClick1();
    sheet->removeFromSuperview();
    sheet.reset();
    queue.advance(499ms);
    EXPECT_FALSE(weak.expired());
    queue.advance(1ms);
    EXPECT_THAT(receiver->indices, ElementsAre(1));
    EXPECT_TRUE(weak.expired());
}

TEST_F(ActionSheetClicks, areTakenAgainWhenItIsShownAgain) {
    sheet->checkButtonClick2();
    queue.advance(500ms);
    showThree();
    EXPECT_EQ(sheet->checkButton1->alphaValue(), 0) << "what has faded stays so";
    EXPECT_FALSE(sheet->checkButton2->image().isNull()) << "and the check mark";
    sheet->cancelButtonClick();
    queue.advance(500ms);
    EXPECT_THAT(receiver->indices, ElementsAre(2, 0));
}

TEST_F(ActionSheetClicks, twiceInTheHalfSecondReportOnce) {
    sheet->checkButtonClick2();
    queue.advance(100ms);
    showThree();
    sheet->checkButtonClick1();
    queue.advance(10s);
    EXPECT_THAT(receiver->indices, ElementsAre(2)) << "the second report finds no delegate";
}

TEST_F(ActionSheetClicks, fadeInPlace) {
    std::vector<QRectF> before;
    for (const Button* button : buttons())
        before.push_back(button->frame());
    sheet->checkButtonClick1();
    queue.advance(300ms);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(buttons()[i]->frame(), before[i]);
}

// --- the check mark

TEST_F(ActionSheetClicks, checkWithTheWhitePaidImage) {
    sheet->checkButtonClick1();
    const auto paid = platform::imageNamed(QStringLiteral("paid"));
    EXPECT_EQ(sheet->checkButton1->image().pixels(1), paid.tinted(Qt::white).pixels(1));
}

class ActionSheetCheck : public ActionSheetClicks, public testing::WithParamInterface<Qt::LayoutDirection> {};

TEST_P(ActionSheetCheck, standsAtTheLeadingEdgeInTheMiddleOfTheHeight) {
    sheet->setLayoutDirection(GetParam());
    sheet->checkButton1->setAttributedTitle({});
    sheet->checkButton1->clearFocus(); // and its ring
    sheet->checkButtonClick1();
    const auto size = sheet->checkButton1->image().size().toSize();
    const QImage image = support::painted(*sheet->checkButton1);
    const QRect ink = support::inkOf(image);
    ASSERT_FALSE(ink.isNull());
    const int left = GetParam() == Qt::LeftToRight ? 0 : 320 - size.width();
    EXPECT_TRUE(QRect(left, (36 - size.height()) / 2, size.width(), size.height()).contains(ink));
    for (int y = ink.top(); y <= ink.bottom(); ++y)
        for (int x = ink.left(); x <= ink.right(); ++x)
            if (image.pixelColor(x, y).alpha() == 255) {
                EXPECT_EQ(image.pixelColor(x, y), QColor(Qt::white));
            }
}

INSTANTIATE_TEST_SUITE_P(Directions, ActionSheetCheck, testing::Values(Qt::LeftToRight, Qt::RightToLeft));

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
    const platform::BundleImageHidden hidden(QStringLiteral("paid"));
    showThree();
    EXPECT_EXIT(sheet->checkButtonClick1(), testing::KilledBySignal(SIGABRT), "^$");
    sheet->cancelButtonClick();
    queue.advance(500ms);
    EXPECT_THAT(receiver->indices, ElementsAre(0));
}

} // namespace
