// What the panel shows before a finance program has connected.
#include "panel/Welcome.h"

#include "PanelContent.h"
#include "exchange/ManualTriggers.h"
#include "panel/Panel.h"
#include "panel/Snapshot.h"
#include "panel/WelcomeView.h"
#include "platform/storage/GroupContainers.h"
#include "platform/views/Accessibility.h"
#include "support/Application.h"
#include "support/Containers.h"
#include "support/Environment.h"
#include "support/Events.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QTranslator>

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <set>
#include <string>
#include <vector>

using namespace std::chrono_literals;

using panel::SourceRow;
using panel::WelcomeView;

namespace {

class WelcomeTest : public testing::Test {
protected:
    WelcomeTest() {
        ManualTriggers manual;
        alarm = manual.alarm;
        watcher = manual.watcher;
        panel = std::make_unique<panel::Panel>(panel::Backdrop::RoundTranslucent, panel::Height::OfScreen,
                                               320, std::move(manual.triggers));
    }
    ~WelcomeTest() override {
        panel.reset();
        support::flushDeferredDeletes();
    }

    [[nodiscard]] WelcomeView* welcome() const { return panel->window().findChild<WelcomeView*>(); }
    [[nodiscard]] QString text() const { return welcome()->accessibleTraits().name; }
    [[nodiscard]] QString closingText() const {
        const auto texts = panel->window().findChildren<WelcomeView*>();
        return texts.back()->isHidden() ? QString() : texts.back()->accessibleTraits().name;
    }

    // The rows from the top to the bottom.
    [[nodiscard]] std::vector<SourceRow*> rows() const {
        const auto found = panel->window().findChildren<SourceRow*>();
        std::vector<SourceRow*> sorted(found.begin(), found.end());
        std::ranges::sort(sorted, {}, &QWidget::y);
        return sorted;
    }
    [[nodiscard]] std::vector<int> numbers() const {
        std::vector<int> all;
        for (const SourceRow* row : rows())
            all.push_back(row->source().number);
        return all;
    }
    void offer(int number, const char* name = "bills.xhb") const {
        panel->welcome()->offer(
            {number, QStringLiteral("HomeBank"), QStringLiteral("/documents/") + QString::fromUtf8(name)});
    }
    void pressKey(Qt::Key key) const { support::pressKey(*panel->window().focusWidget(), key); }
    // Opens the panel and offers files with these numbers.
    void openWith(std::initializer_list<int> offered) {
        panel->setSourceChosen([this](int number) { chosen.push_back(number); });
        panel->open();
        for (const int number : offered)
            offer(number);
        queue.advance(1s); // the window has its height
        support::settle();
    }
    void makeContainer() const { std::filesystem::create_directories(containers.path()); }
    void change() {
        alarm->ring();
        queue.advance(1s);
        support::flushDeferredDeletes();
    }

    support::Containers containers{support::Containers::Container::Absent};
    support::ManualClock clock{panel::panelTestMoment};
    support::ManualMainQueue queue;
    ManualAlarm* alarm = nullptr;
    ManualWatcher* watcher = nullptr;
    std::unique_ptr<panel::Panel> panel;
    std::vector<int> chosen;
};

constexpr int around = 2 * panel::PanelWindow::verticalMargin;

// The smallest rectangle around the pixels of a view that some text covers.
QRect textOf(platform::View& view) {
    return support::inkOf(support::painted(view));
}

} // namespace

TEST_F(WelcomeTest, isShownWithoutAContainer) {
    panel->open();
    ASSERT_NE(welcome(), nullptr);
    EXPECT_EQ(panel->window().height(), welcome()->height() + around);
    const QRect text = textOf(*welcome());
    EXPECT_GT(text.height(), 80);
    EXPECT_GE(welcome()->rect().bottom() - text.bottom(), 8) << "nothing is cut";
    EXPECT_LE(text.right(), 320);
}

TEST_F(WelcomeTest, makesRoomForTheListOfAContainerThatAppears) {
    panel->open();
    makeContainer();
    change();
    EXPECT_EQ(welcome(), nullptr);
    EXPECT_EQ(panel->window().height(), 50 + around) << "the widget's own empty list";
    containers.writeFeed("<array>" + panel::recordOf("Rent", "p", 0) + "</array>");
    change();
    EXPECT_EQ(panel->window().height(), 100 + around);
}

TEST_F(WelcomeTest, comesBackWhenTheContainerGoes) {
    makeContainer();
    panel->open();
    ASSERT_EQ(welcome(), nullptr);
    std::filesystem::remove_all(containers.path());
    change();
    EXPECT_NE(welcome(), nullptr);
    panel->close();
    panel->open();
    EXPECT_NE(welcome(), nullptr);
}

TEST_F(WelcomeTest, noticesAContainerWithoutAFileInIt) {
    panel->open();
    makeContainer();
    watcher->tell(platform::PathWatcher::Change::Path);
    queue.advance(1s);
    support::flushDeferredDeletes();
    EXPECT_EQ(welcome(), nullptr);
}

TEST_F(WelcomeTest, makesNoContainer) {
    panel->open();
    EXPECT_FALSE(std::filesystem::exists(containers.path()));
}

TEST_F(WelcomeTest, namesTheFolderFromTheHomeFolderOn) {
    const support::EnvironmentVariable home("HOME", containers.folder().path());
    panel->load();
    const std::string name = "~/" + support::Containers::identifier();
    EXPECT_TRUE(text().contains(QString::fromStdString(name))) << text().toStdString();
}

TEST_F(WelcomeTest, namesAFolderElsewhereInFull) {
    const support::EnvironmentVariable home("HOME", containers.folder().path() + "/no");
    panel->load();
    EXPECT_TRUE(text().contains(QString::fromStdString(containers.path()))) << text().toStdString();
}

TEST_F(WelcomeTest, isALabelToAssistivePrograms) {
    platform::installViewAccessibility();
    panel->load();
    QAccessibleInterface* label = QAccessible::queryAccessibleInterface(welcome());
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->role(), QAccessible::StaticText);
    EXPECT_EQ(label->text(QAccessible::Name), text());
}

// --- the files that are offered

TEST_F(WelcomeTest, asksForFilesAtEachOpeningWithoutAList) {
    int asked = 0;
    panel->setSourcesWanted([&] { ++asked; });
    panel->load();
    EXPECT_EQ(asked, 0) << "it is hidden";
    panel->open();
    EXPECT_EQ(asked, 1);
    panel->open();
    change();
    EXPECT_EQ(asked, 1) << "it is open";
    panel->close();
    EXPECT_EQ(asked, 1);
    panel->open();
    EXPECT_EQ(asked, 2);
    panel->close();
    makeContainer();
    panel->open();
    EXPECT_EQ(asked, 2) << "there is a list";
}

TEST_F(WelcomeTest, offersFilesInTheOrderInWhichTheyCome) {
    openWith({3, 1, 2});
    EXPECT_EQ(numbers(), (std::vector<int>{3, 1, 2}));
    int y = welcome()->height();
    for (const SourceRow* row : rows()) {
        EXPECT_EQ(row->geometry(), QRect(0, y, 320, 50));
        y += 50;
    }
    EXPECT_TRUE(text().endsWith(QStringLiteral("WelcomeFound"))) << "in place of the folder";
    EXPECT_EQ(closingText(), QStringLiteral("WelcomeOnlyRead"));
}

TEST_F(WelcomeTest, isAsHighAsWhatItOffers) {
    openWith({1});
    const int one = panel->window().height();
    offer(2);
    queue.advance(1s);
    EXPECT_EQ(panel->window().height(), one + 50);
    panel->welcome()->setFault(2, QStringLiteral("It is damaged."));
    queue.advance(1s);
    EXPECT_EQ(panel->window().height(), one + rows()[1]->heightForWidth(320));
    EXPECT_GT(rows()[1]->height(), 50);
    const auto texts = panel->window().findChildren<WelcomeView*>();
    EXPECT_EQ(panel->window().height(), texts.back()->geometry().bottom() + 1 + around);
    rows()[1]->performAccessibleAction(QAccessibleActionInterface::pressAction());
    queue.advance(1s);
    EXPECT_EQ(panel->window().height(), one + 50) << "its fault is gone";
}

TEST_F(WelcomeTest, changesARowInItsPlace) {
    openWith({1, 2});
    offer(1, "other.xhb");
    EXPECT_EQ(numbers(), (std::vector<int>{1, 2}));
    EXPECT_TRUE(rows()[0]->source().path.endsWith(QStringLiteral("other.xhb")));
}

TEST_F(WelcomeTest, offersFiveFilesAtMost) {
    openWith({1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(numbers(), (std::vector<int>{1, 2, 3, 4, 5}));
    offer(5, "other.xhb");
    EXPECT_TRUE(rows()[4]->source().path.endsWith(QStringLiteral("other.xhb")));
}

TEST_F(WelcomeTest, tellsOnceWhichFileIsChosen) {
    openWith({4, 9});
    const auto middle = [this](std::size_t row) {
        return rows()[row]->mapTo(&panel->window(), rows()[row]->rect().center());
    };
    support::click(panel->window(), middle(1));
    support::click(panel->window(), middle(1));
    EXPECT_EQ(chosen, std::vector<int>{9});
    panel->welcome()->setFault(9, QStringLiteral("It is damaged."));
    panel->welcome()->setFault(8, QStringLiteral("No such file was offered."));
    queue.advance(1s);
    support::click(panel->window(), middle(1));
    support::click(panel->window(), middle(0));
    EXPECT_EQ(chosen, (std::vector<int>{9, 9, 4}));
}

TEST_F(WelcomeTest, takesTheKeyboardFromRowToRow) {
    openWith({1, 2});
    pressKey(Qt::Key_Tab);
    EXPECT_EQ(panel->window().focusWidget(), rows()[0]);
    pressKey(Qt::Key_Tab);
    EXPECT_EQ(panel->window().focusWidget(), rows()[1]);
    pressKey(Qt::Key_Space);
    EXPECT_EQ(chosen, std::vector<int>{2});
    pressKey(Qt::Key_Escape);
    EXPECT_FALSE(panel->window().isVisible());
}

TEST_F(WelcomeTest, staysAsItIsWhenItIsLoadedAnew) {
    openWith({1, 2});
    pressKey(Qt::Key_Tab);
    pressKey(Qt::Key_Space);
    const TodayViewController* before = &panel->controller();
    panel->loadWhenIdle();
    queue.advance(1s);
    support::flushDeferredDeletes();
    ASSERT_NE(&panel->controller(), before);
    ASSERT_EQ(numbers(), (std::vector<int>{1, 2}));
    EXPECT_TRUE(rows()[0]->isReading());
    EXPECT_EQ(panel->window().focusWidget(), rows()[0]);
}

TEST_F(WelcomeTest, makesRoomForTheListOfAFileThatWasChosen) {
    openWith({1});
    rows()[0]->performAccessibleAction(QAccessibleActionInterface::pressAction());
    containers.writeFeed("<array>" + panel::recordOf("Rent", "p", 0) + "</array>");
    change();
    EXPECT_EQ(panel->welcome(), nullptr);
    EXPECT_TRUE(rows().empty());
    EXPECT_EQ(panel->window().height(), 100 + around);
    std::filesystem::remove_all(containers.path());
    change();
    EXPECT_TRUE(rows().empty()) << "nothing is offered before the panel is opened";
}

TEST_F(WelcomeTest, dropsAFileThatIsNotOfferedAgain) {
    openWith({1, 2});
    panel->close();
    panel->open();
    EXPECT_EQ(numbers(), (std::vector<int>{1, 2})) << "until the answer is there";
    offer(2);
    panel->close();
    panel->open();
    EXPECT_EQ(numbers(), std::vector<int>{2});
    panel->close();
    panel->open();
    support::flushDeferredDeletes();
    EXPECT_TRUE(rows().empty());
    EXPECT_TRUE(text().contains(QStringLiteral("WelcomeFolder")));
    EXPECT_TRUE(closingText().isEmpty());
    EXPECT_EQ(panel->window().height(), welcome()->height() + around);
}

TEST_F(WelcomeTest, isATextWithButtonsToAssistivePrograms) {
    platform::installViewAccessibility();
    QTranslator english;
    ASSERT_TRUE(english.load(QStringLiteral(":/translations/korvel-today_en.qm")));
    QCoreApplication::installTranslator(&english);
    openWith({1});
    QAccessibleInterface* group = QAccessible::queryAccessibleInterface(welcome()->superview());
    ASSERT_NE(group, nullptr);
    ASSERT_EQ(group->childCount(), 3);
    EXPECT_EQ(group->child(0)->role(), QAccessible::StaticText);
    EXPECT_EQ(group->child(1)->role(), QAccessible::Button);
    EXPECT_EQ(group->child(1)->text(QAccessible::Name), QStringLiteral("Show bills.xhb, HomeBank"));
    EXPECT_EQ(group->child(2)->role(), QAccessible::StaticText);
    group->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(chosen, std::vector<int>{1});
    EXPECT_TRUE(group->child(1)->state().busy);
    QCoreApplication::removeTranslator(&english);
}

// --- the texts

TEST_F(WelcomeTest, hasTheSameTextsInEveryLanguage) {
    std::set<QString> seen;
    for (const char* language : {"ar", "de", "en", "es", "fa", "fr", "he", "it", "ja", "ru"}) {
        QTranslator translator;
        ASSERT_TRUE(translator.load(
            QStringLiteral(":/translations/korvel-today_%1.qm").arg(QString::fromLatin1(language))));
        QCoreApplication::installTranslator(&translator);
        panel->load();
        EXPECT_FALSE(text().contains(QStringLiteral("Welcome"))) << "a key without a text, " << language;
        EXPECT_LT(welcome()->height(), 260) << language;
        EXPECT_TRUE(seen.insert(text()).second) << language << " is another language's";
        for (const char* key : {"WelcomeFound", "WelcomeOnlyRead", "WelcomeReading", "WelcomeShowFile"})
            EXPECT_TRUE(seen.insert(qtTrId(key)).second) << key << ", " << language;
        const QString name = qtTrId("WelcomeShowFile");
        EXPECT_TRUE(name.contains(QStringLiteral("%1")) && name.contains(QStringLiteral("%2"))) << language;
        QCoreApplication::removeTranslator(&translator);
    }
}

TEST(WelcomeView, breaksAWordThatIsTooLong) {
    WelcomeView view;
    view.setFrame(QRectF(0, 0, 100, 400));
    view.setTexts(QStringLiteral("A"), {QStringLiteral("b")});
    const int shortest = view.heightForWidth(100);
    view.setTexts(QStringLiteral("A"), {QString(60, QLatin1Char('b'))});
    const int height = view.heightForWidth(100);
    EXPECT_GT(height, shortest + 20);
    EXPECT_LE(textOf(view).right(), 100);
    view.setFrame(QRectF(0, 0, 200, 400));
    EXPECT_LT(textOf(view).bottom(), height) << "it follows the width";
}

TEST(WelcomeView, readsFromTheRightWhereTheLanguageDoes) {
    WelcomeView view;
    view.setFrame(QRectF(0, 0, 200, 100));
    view.setTexts(QStringLiteral("A"), {QStringLiteral("b")});
    EXPECT_LT(textOf(view).right(), 40);
    view.setLayoutDirection(Qt::RightToLeft);
    EXPECT_GE(textOf(view).right(), 190);
    EXPECT_GT(textOf(view).left(), 160);
}
