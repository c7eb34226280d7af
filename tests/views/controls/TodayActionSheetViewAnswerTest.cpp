#include "views/controls/TodayActionSheetViewFixture.h"

namespace sheet_test {

// --- answering

struct Answer {
    const char* name;
    std::size_t place;
    std::int64_t index;
    std::vector<double> alphas; // of the three choices and Cancel after the fade
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
            sheet_.delegate = std::make_shared<Receiver>(); // released as well
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

// --- presses after the answer

class AnsweredSheet : public ActionSheetClicks {
protected:
    View* hitAt(const Button& button) const {
        return sheet->hitTest(sheet->frame().topLeft() + button.frame().center());
    }
};

TEST_F(AnsweredSheet, passesNoPressToItsButtons) {
    for (const Button* button : buttons())
        EXPECT_EQ(hitAt(*button), button);
    sheet->checkButtonClick2();
    queue.advance(300ms);
    for (std::size_t i = 0; i < buttons().size(); ++i) {
        EXPECT_EQ(hitAt(*buttons()[i]), sheet.get());
        const double alpha = i == 1 ? 1 : 0;
        support::press(*buttons()[i], {100, 18});
        EXPECT_EQ(buttons()[i]->alphaValue(), alpha) << i;
        support::release(*buttons()[i], {100, 18});
        EXPECT_EQ(buttons()[i]->alphaValue(), alpha) << i;
    }
    EXPECT_EQ(sheet->hitTest(QPointF(-1, 10)), nullptr);
}

TEST_F(AnsweredSheet, passesPressesAgainWhenItIsShownAgain) {
    sheet->checkButtonClick2();
    showThree();
    EXPECT_EQ(hitAt(*buttons()[0]), buttons()[0]);
}

TEST_F(AnsweredSheet, fadesAButtonThatIsHeldMeanwhile) {
    support::press(*sheet->checkButton3, {100, 18});
    sheet->checkButtonClick1(); // by a key, say
    queue.advance(300ms);
    support::release(*sheet->checkButton3, {100, 18});
    EXPECT_THAT(alphas(), ElementsAre(1, 0, 0, 0));
    queue.advance(10s);
    EXPECT_THAT(receiver->indices, ElementsAre(1));
}

// --- the check mark

TEST_F(ActionSheetClicks, checkWithTheWhitePaidImage) {
    sheet->checkButtonClick1();
    const auto paid = platform::imageNamed(QStringLiteral("paid"));
    EXPECT_EQ(sheet->checkButton1->image().pixels(1), paid.tinted(Qt::white).pixels(1));
}

TEST_F(ActionSheetClicks, showTheMouseUntilTheSheetIsAnswered) {
    const auto cursor = [this] { return root.cursor().shape(); };
    for (const Button* button : buttons()) {
        support::hover(root, sheet->mapTo(&root, button->geometry().center()));
        EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    }
    support::hover(root, sheet->mapTo(&root, sheet->titleLabel->geometry().center()));
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    support::hover(root, sheet->mapTo(&root, sheet->checkButton1->geometry().center()));
    ASSERT_EQ(cursor(), Qt::PointingHandCursor);
    sheet->checkButtonClick1();
    queue.advance(50ms);
    support::settle();
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    support::leave(root);
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

} // namespace sheet_test
