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
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QTranslator>

#include <filesystem>
#include <memory>
#include <set>
#include <string>

using namespace std::chrono_literals;

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
