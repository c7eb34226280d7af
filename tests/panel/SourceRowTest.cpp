// The row of a file that the first run offers.
#include "panel/SourceRow.h"

#include "platform/views/Accessibility.h"
#include "platform/views/ScrollView.h"
#include "support/AccessibleEvents.h"
#include "support/Application.h"
#include "support/Environment.h"
#include "support/Events.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QTranslator>

#include <memory>

using panel::Source;
using panel::SourceRow;

namespace {

class SourceRowTest : public testing::Test {
protected:
    static void SetUpTestSuite() { platform::installViewAccessibility(); }
    SourceRowTest() {
        QCoreApplication::installTranslator(&english);
        EXPECT_TRUE(english.load(QStringLiteral(":/translations/korvel-today_en.qm")));
        row->setChosen([this] { ++chosen; });
        stage.addSubview(*row);
        layOut();
        support::showWindow(stage, 320, 200);
    }
    ~SourceRowTest() override {
        support::leave(stage);
        QCoreApplication::removeTranslator(&english);
    }

    void layOut() { row->setFrame(QRectF(0, 0, 320, row->heightForWidth(320))); }
    [[nodiscard]] QImage picture() const { return support::painted(*row); }
    [[nodiscard]] platform::AccessibleTraits traits() const { return row->accessibleTraits(); }
    // Where texts are: what is painted beside the icon, without the line below the row.
    [[nodiscard]] QRect text() const {
        const bool isMirrored = row->layoutDirection() == Qt::RightToLeft;
        const QImage all = picture();
        const QRect texts(isMirrored ? 0 : 45, 0, all.width() - 45, all.height() - 1);
        return support::inkOf(all.copy(texts)).translated(texts.topLeft());
    }

    const support::EnvironmentVariable home{"HOME", "/home/anna"};
    const Source bills{7, QStringLiteral("HomeBank"), QStringLiteral("/home/anna/Documents/bills.xhb")};
    QTranslator english;
    platform::View stage;
    std::shared_ptr<SourceRow> row = platform::makeView<SourceRow>(bills);
    int chosen = 0;
};

constexpr QPoint middle(160, 25);

TEST_F(SourceRowTest, isAsHighAsARowOfTheList) {
    EXPECT_EQ(row->heightForWidth(320), 50);
    EXPECT_EQ(row->heightForWidth(40), 50);
}

TEST_F(SourceRowTest, tellsAssistiveProgramsWhatItDoes) {
    EXPECT_EQ(traits().role, QAccessible::Button);
    EXPECT_EQ(traits().name, QStringLiteral("Show bills.xhb, HomeBank"));
    EXPECT_EQ(traits().description, QStringLiteral("~/Documents"));
    EXPECT_EQ(traits().actions, QStringList{QAccessibleActionInterface::pressAction()});
    EXPECT_FALSE(traits().isBusy);
}

TEST_F(SourceRowTest, namesAFolderElsewhereInFull) {
    row->setSource({7, bills.program, QStringLiteral("/home/annabel/bills.xhb")});
    EXPECT_EQ(traits().description, QStringLiteral("/home/annabel"));
    row->setSource({7, bills.program, QStringLiteral("/home/anna/bills.xhb")});
    EXPECT_EQ(traits().description, QStringLiteral("~"));
    row->setSource({7, bills.program, QStringLiteral("/bills.xhb")});
    EXPECT_EQ(traits().description, QStringLiteral("/"));
}

TEST_F(SourceRowTest, isChosenByAClickOnce) {
    support::click(stage, middle);
    EXPECT_EQ(chosen, 1);
    EXPECT_TRUE(row->isReading());
    support::click(stage, middle);
    support::pressKey(*row, Qt::Key_Space);
    row->performAccessibleAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(chosen, 1) << "it is being read";
}

TEST_F(SourceRowTest, saysThatTheFileIsBeingRead) {
    const QImage before = picture();
    const support::AccessibleEvents events;
    support::click(stage, middle);
    EXPECT_NE(picture(), before);
    EXPECT_TRUE(traits().isBusy);
    EXPECT_EQ(traits().description, QStringLiteral("~/Documents, Reading the file…"));
    EXPECT_EQ(events.count(QAccessible::StateChanged, row.get()), 1U);
    EXPECT_EQ(events.count(QAccessible::DescriptionChanged, row.get()), 1U);
    EXPECT_EQ(row->heightForWidth(320), 50);
}

TEST_F(SourceRowTest, saysWhatWasWrongBelowAndCanBeChosenAgain) {
    support::click(stage, middle);
    row->setFault(QStringLiteral("/home/anna/Documents/bills.xhb is encrypted"));
    EXPECT_FALSE(row->isReading());
    EXPECT_FALSE(traits().isBusy);
    EXPECT_EQ(traits().description, QStringLiteral("~/Documents, ~/Documents/bills.xhb is encrypted"));
    EXPECT_GT(row->heightForWidth(320), 50 + 12);
    EXPECT_LT(row->heightForWidth(320), row->heightForWidth(200)) << "the sentence wraps";
    layOut();
    EXPECT_GT(text().bottom(), 55);
    EXPECT_LT(text().bottom(), row->height() - 4) << "nothing is cut";
    support::click(stage, middle);
    EXPECT_EQ(chosen, 2);
    EXPECT_EQ(row->heightForWidth(320), 50) << "the answer is yet to come";
}

TEST_F(SourceRowTest, isANewOfferForAnotherFile) {
    support::click(stage, middle);
    row->setSource(bills);
    EXPECT_TRUE(row->isReading()) << "the same file";
    row->setSource({7, bills.program, QStringLiteral("/home/anna/other.xhb")});
    EXPECT_FALSE(row->isReading());
    EXPECT_EQ(traits().name, QStringLiteral("Show other.xhb, HomeBank"));
    row->setFault(QStringLiteral("It is damaged."));
    row->setSource(bills);
    EXPECT_EQ(row->heightForWidth(320), 50);
}

// --- mouse and keyboard

TEST_F(SourceRowTest, dimsWhileItIsPressed) {
    const QImage before = picture();
    support::press(stage, middle);
    const QImage pressed = picture();
    EXPECT_NE(pressed, before);
    support::drag(stage, QPoint(160, 120));
    EXPECT_EQ(picture(), before);
    support::drag(stage, middle);
    EXPECT_EQ(picture(), pressed);
    support::drag(stage, QPoint(160, 120));
    support::release(stage, QPoint(160, 120));
    EXPECT_EQ(chosen, 0) << "it was released elsewhere";
}

TEST_F(SourceRowTest, forgetsAPressThatIsCancelled) {
    const QImage before = picture();
    support::press(stage, middle);
    platform::View::dropHeldPress();
    EXPECT_EQ(picture(), before);
    support::release(stage, middle);
    EXPECT_EQ(chosen, 0);
}

TEST_F(SourceRowTest, showsTheHoverWhereAClickWouldAct) {
    support::hover(stage, middle);
    EXPECT_EQ(stage.cursor().shape(), Qt::PointingHandCursor);
    const QRect tint = support::inkOf(picture().copy(0, 0, 4, 49));
    EXPECT_EQ(tint, QRect(0, 1, 4, 47)) << "as in the list";
    support::click(stage, middle);
    support::settle();
    EXPECT_EQ(stage.cursor().shape(), Qt::ArrowCursor);
    EXPECT_TRUE(support::inkOf(picture().copy(0, 0, 4, 49)).isNull());
}

TEST_F(SourceRowTest, isChosenByTheKeyboard) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        support::pressKey(*row, key);
        row->setFault(QStringLiteral("It is damaged."));
    }
    EXPECT_EQ(chosen, 3);
    support::pressKey(*row, Qt::Key_A);
    EXPECT_EQ(chosen, 3);
}

TEST_F(SourceRowTest, hasARingWhenAKeyHasBroughtTheFocus) {
    const QImage before = picture();
    row->setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(picture(), before);
    row->clearFocus();
    row->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(support::inkOf(picture().copy(0, 0, 4, 49)), QRect(0, 1, 4, 47));
}

TEST_F(SourceRowTest, comesIntoSightWithTheFocus) {
    platform::ScrollView scrollView;
    auto list = platform::makeView<platform::View>();
    auto last = platform::makeView<SourceRow>(bills);
    list->addSubview(*last);
    last->setFrame(QRectF(0, 150, 320, 50));
    support::showWindow(scrollView, 320, 100);
    scrollView.setDocumentView(list.get());
    scrollView.setDocumentHeight(200);
    ASSERT_EQ(scrollView.offset(), 0);
    last->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(scrollView.offset(), 100);
}

// --- the texts

TEST_F(SourceRowTest, cutsLongNamesInTheirMiddle) {
    EXPECT_TRUE(row->toolTipText().isEmpty()) << "there is room for them";
    const QString longName(200, QLatin1Char('m'));
    row->setSource({7, bills.program, QStringLiteral("/home/anna/") + longName + QStringLiteral(".xhb")});
    EXPECT_LE(text().right(), 319);
    EXPECT_GT(text().right(), 290);
    EXPECT_TRUE(row->toolTipText().contains(QStringLiteral("~/") + longName));
    const QImage one = picture();
    row->setSource({7, bills.program, QStringLiteral("/home/anna/") + longName + QStringLiteral(".abc")});
    EXPECT_NE(picture(), one) << "the end of the name is shown";
}

TEST_F(SourceRowTest, cutsALongFolderButNotTheProgram) {
    const QString folder(200, QLatin1Char('m'));
    row->setSource({7, bills.program, QStringLiteral("/home/anna/") + folder + QStringLiteral("/a")});
    EXPECT_FALSE(row->toolTipText().isEmpty());
    const auto programPicture = [this] { return picture().copy(50, 26, 55, 18); };
    const QImage cut = programPicture();
    row->setSource(bills);
    EXPECT_EQ(programPicture(), cut);
    row->setSource({7, QStringLiteral("GnuCash"), bills.path});
    EXPECT_NE(programPicture(), cut);
}

TEST_F(SourceRowTest, staysOnOneLineForAFileWhoseNameHasTwo) {
    row->setSource({7, bills.program, QStringLiteral("/home/anna/a\nb\nc\nd.xhb")});
    EXPECT_LT(text().bottom(), 46);
    EXPECT_EQ(row->heightForWidth(320), 50);
}

TEST_F(SourceRowTest, standsTheOtherWayRoundWhereTheLanguageDoes) {
    row->setFault(QStringLiteral("It is damaged."));
    layOut();
    const QRect icon(0, 0, 45, 49);
    EXPECT_FALSE(support::inkOf(picture().copy(icon)).isNull());
    EXPECT_LT(text().left(), 55);
    EXPECT_LT(text().right(), 280);
    row->setLayoutDirection(Qt::RightToLeft);
    EXPECT_FALSE(support::inkOf(picture().copy(icon.translated(275, 0))).isNull());
    EXPECT_GT(text().right(), 260);
    EXPECT_LT(text().right(), 271);
    EXPECT_GT(text().left(), 45);
}

} // namespace
