#include "center/Tray.h"

#include "TrayDesktop.h"
#include "center/TrayIcon.h"
#include "support/FakeService.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <memory>
#include <optional>
#include <string>
#include <vector>

using center::Tray;
using support::waitFor;
using testing::ElementsAre;

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

const QString introspection = QStringLiteral(R"(
<interface name="org.kde.StatusNotifierWatcher">
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
</interface>)");

struct Choice {
    int id = 0;
    QString label;
};

// The entries of the layout of a menu (com.canonical.dbusmenu).
std::vector<Choice> choicesOf(const QDBusMessage& layout) {
    std::vector<Choice> choices;
    const auto root = layout.arguments().value(1).value<QDBusArgument>();
    int rootId = 0;
    QVariantMap properties;
    root.beginStructure();
    root >> rootId >> properties;
    root.beginArray();
    while (!root.atEnd()) {
        QDBusVariant entry;
        root >> entry;
        const auto fields = entry.variant().value<QDBusArgument>();
        Choice choice;
        properties.clear();
        fields.beginStructure();
        fields >> choice.id >> properties;
        choice.label = properties.value(QStringLiteral("label")).toString();
        if (!choice.label.isEmpty())
            choices.push_back(choice);
    }
    return choices;
}

// A watcher of the tray's items, and the host that asks the items.
class TrayTest : public testing::Test {
protected:
    enum class Host { Registered, Absent };

    void startWatcher(Host host) {
        watcher = std::make_unique<support::FakeService>(bus, watcherName);
        watcher->setIntrospection(introspection);
        watcher->answer(QStringLiteral("RegisterStatusNotifierItem"), {});
        setHost(host);
    }

    void setHost(Host host) const {
        watcher->setProperty(QStringLiteral("IsStatusNotifierHostRegistered"), host == Host::Registered);
    }

    void hostComes() const {
        setHost(Host::Registered);
        watcher->send(watcherPath, watcherName, QStringLiteral("StatusNotifierHostRegistered"));
    }

    void hostGoes() const {
        setHost(Host::Absent);
        watcher->send(watcherPath, watcherName, QStringLiteral("StatusNotifierHostUnregistered"));
    }

    // Waits for a number of items that have been registered with this watcher so far.
    [[nodiscard]] bool hasRegistered(std::size_t count) const {
        return waitFor([&] { return registered().size() >= count; }) && registered().size() == count;
    }

    [[nodiscard]] std::vector<QString> registered() const {
        std::vector<QString> items;
        for (const auto& call : watcher->calls(QStringLiteral("RegisterStatusNotifierItem")))
            items.push_back(call.arguments.value(0).toString());
        return items;
    }

    QDBusMessage ask(const QString& path, const QString& interface, const QString& method,
                     const QVariantList& arguments) const {
        QDBusMessage question = QDBusMessage::createMethodCall(registered().back(), path, interface, method);
        question.setArguments(arguments);
        const QDBusPendingCallWatcher reply(bus.connection().asyncCall(question));
        EXPECT_TRUE(waitFor([&] { return reply.isFinished(); }));
        EXPECT_EQ(reply.reply().errorMessage(), QString());
        return reply.reply();
    }

    [[nodiscard]] QVariant property(const QString& name) const {
        return ask(itemPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                   {itemInterface, name})
            .arguments()
            .value(0)
            .value<QDBusVariant>()
            .variant();
    }

    [[nodiscard]] QString toolTip() const {
        const auto fields = property(QStringLiteral("ToolTip")).value<QDBusArgument>();
        QString icon;
        QString title;
        fields.beginStructure();
        fields >> icon;
        fields.beginArray();
        fields.endArray();
        fields >> title;
        return title;
    }

    struct Picture {
        int width = 0;
        int height = 0;
        QByteArray pixels; // ARGB, the most significant byte first

        bool operator==(const Picture&) const = default;
    };

    [[nodiscard]] std::vector<Picture> pictures() const {
        const auto list = property(QStringLiteral("IconPixmap")).value<QDBusArgument>();
        std::vector<Picture> found;
        list.beginArray();
        while (!list.atEnd()) {
            Picture picture;
            list.beginStructure();
            list >> picture.width >> picture.height >> picture.pixels;
            list.endStructure();
            found.push_back(picture);
        }
        list.endArray();
        return found;
    }

    [[nodiscard]] std::vector<Choice> choices() const {
        const QString path = property(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
        return choicesOf(ask(path, menuInterface, QStringLiteral("GetLayout"), {0, -1, QStringList()}));
    }

    void choose(int id) const {
        const QString path = property(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
        ask(path, menuInterface, QStringLiteral("Event"),
            {id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
    }

    const support::PrivateBus& bus = TrayDesktop::current().bus();
    std::unique_ptr<support::FakeService> watcher;
};

} // namespace

// --- the races of a login

TEST_F(TrayTest, appearsWhereAHostIsRegistered) {
    startWatcher(Host::Registered);
    const Tray tray(bus.connection());
    EXPECT_TRUE(waitFor([&] { return tray.isShown(); }));
    EXPECT_TRUE(hasRegistered(1));
}

TEST_F(TrayTest, waitsForAWatcher) {
    const Tray tray(bus.connection());
    bus.settle();
    EXPECT_FALSE(tray.isShown());
    startWatcher(Host::Registered);
    EXPECT_TRUE(waitFor([&] { return tray.isShown(); }));
    EXPECT_TRUE(hasRegistered(1));
}

TEST_F(TrayTest, waitsForAHost) {
    startWatcher(Host::Absent);
    const Tray tray(bus.connection());
    bus.settle();
    EXPECT_FALSE(tray.isShown());
    hostComes();
    EXPECT_TRUE(waitFor([&] { return tray.isShown(); }));
    EXPECT_TRUE(hasRegistered(1));
}

TEST_F(TrayTest, waitsForAWatcherAndThenForItsHost) {
    const Tray tray(bus.connection());
    bus.settle();
    startWatcher(Host::Absent);
    bus.settle();
    EXPECT_FALSE(tray.isShown());
    hostComes();
    EXPECT_TRUE(hasRegistered(1));
}

TEST_F(TrayTest, goesWithTheHostAndComesWithTheNext) {
    startWatcher(Host::Registered);
    const Tray tray(bus.connection());
    EXPECT_TRUE(hasRegistered(1));
    hostGoes();
    EXPECT_TRUE(waitFor([&] { return !tray.isShown(); }));
    hostComes();
    EXPECT_TRUE(hasRegistered(2));
    EXPECT_TRUE(tray.isShown());
    EXPECT_NE(registered()[0], registered()[1]);
}

TEST_F(TrayTest, staysWhileOneOfTwoHostsIsThere) {
    startWatcher(Host::Registered);
    const Tray tray(bus.connection());
    EXPECT_TRUE(hasRegistered(1));
    watcher->send(watcherPath, watcherName, QStringLiteral("StatusNotifierHostUnregistered"));
    bus.settle();
    EXPECT_TRUE(tray.isShown());
    EXPECT_EQ(registered().size(), 1U);
}

TEST_F(TrayTest, isMadeAnewForAnotherHost) {
    startWatcher(Host::Registered);
    const Tray tray(bus.connection());
    EXPECT_TRUE(hasRegistered(1));
    hostComes();
    EXPECT_TRUE(hasRegistered(2));
}

TEST_F(TrayTest, isMadeAnewForEachWatcher) {
    startWatcher(Host::Registered);
    const Tray tray(bus.connection());
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(hasRegistered(1)) << i;
        watcher.reset();
        EXPECT_TRUE(waitFor([&] { return !tray.isShown(); })) << i;
        startWatcher(Host::Registered);
        EXPECT_TRUE(waitFor([&] { return tray.isShown(); })) << i;
    }
}

TEST_F(TrayTest, needsAWatcherThatKnowsItsHosts) {
    watcher = std::make_unique<support::FakeService>(bus, watcherName);
    const Tray tray(bus.connection());
    bus.settle();
    EXPECT_FALSE(tray.isShown());
}

TEST_F(TrayTest, doesNotWaitForAWatcherThatDoesNotAnswer) {
    startWatcher(Host::Registered);
    watcher->staySilentTo(QStringLiteral("Get"));
    const Tray tray(bus.connection());
    bus.settle();
    EXPECT_FALSE(watcher->calls(QStringLiteral("Get")).empty());
    EXPECT_FALSE(tray.isShown());
}

// The first answer belongs to a host that has gone meanwhile.
TEST_F(TrayTest, believesTheLastAnswer) {
    startWatcher(Host::Absent);
    const Tray tray(bus.connection());
    bus.settle();
    hostComes();
    hostGoes();
    hostComes();
    hostGoes();
    bus.settle();
    EXPECT_FALSE(tray.isShown());
}

TEST_F(TrayTest, isAbsentWithoutABus) {
    startWatcher(Host::Registered);
    Tray tray(QDBusConnection(QStringLiteral("none")));
    tray.setCounts(1, 1);
    bus.settle();
    EXPECT_FALSE(tray.isShown());
}

// --- what it shows

TEST_F(TrayTest, tellsTheCounts) {
    startWatcher(Host::Registered);
    Tray tray(bus.connection());
    EXPECT_TRUE(hasRegistered(1));
    EXPECT_EQ(toolTip(), QStringLiteral("Korvel Today\nNothing is due"));
    tray.setCounts(2, 1);
    EXPECT_EQ(toolTip(), QStringLiteral("Korvel Today\n2 overdue, 1 due today"));
    tray.setCounts(0, 3);
    EXPECT_EQ(toolTip(), QStringLiteral("Korvel Today\n3 due today"));
}

TEST_F(TrayTest, hasAnotherIconWhenSomethingIsOverdue) {
    startWatcher(Host::Registered);
    Tray tray(bus.connection());
    EXPECT_TRUE(hasRegistered(1));
    const auto usual = pictures();
    ASSERT_FALSE(usual.empty());
    tray.setCounts(0, 3);
    EXPECT_EQ(pictures(), usual);
    tray.setCounts(1, 0);
    EXPECT_NE(pictures(), usual);
    tray.setCounts(0, 0);
    EXPECT_EQ(pictures(), usual);
}

TEST_F(TrayTest, followsTheColorScheme) {
    startWatcher(Host::Registered);
    Tray tray(bus.connection());
    EXPECT_TRUE(hasRegistered(1));
    const auto light = pictures();
    tray.setColorScheme(center::ColorScheme::Dark);
    EXPECT_NE(pictures(), light);
}

TEST_F(TrayTest, keepsItAllWhenItIsMadeAnew) {
    startWatcher(Host::Registered);
    Tray tray(bus.connection());
    tray.setCounts(2, 1);
    EXPECT_TRUE(hasRegistered(1));
    const auto before = pictures();
    hostComes();
    EXPECT_TRUE(hasRegistered(2));
    EXPECT_EQ(toolTip(), QStringLiteral("Korvel Today\n2 overdue, 1 due today"));
    EXPECT_EQ(pictures(), before);
    EXPECT_EQ(choices().size(), 5U);
}

// --- what it does

TEST_F(TrayTest, aClickToggles) {
    startWatcher(Host::Registered);
    Tray tray(bus.connection());
    int toggled = 0;
    tray.setToggled([&](QPoint) { ++toggled; });
    EXPECT_TRUE(hasRegistered(1));
    ask(itemPath, itemInterface, QStringLiteral("Activate"), {10, 20});
    EXPECT_TRUE(waitFor([&] { return toggled == 1; }));
    ask(itemPath, itemInterface, QStringLiteral("SecondaryActivate"), {10, 20});
    bus.settle();
    EXPECT_EQ(toggled, 1);
}

TEST_F(TrayTest, eachChoiceOfTheMenuIsTold) {
    startWatcher(Host::Registered);
    Tray tray(bus.connection());
    std::vector<std::string> chosen;
    tray.setShowChosen([&] { chosen.emplace_back("show"); });
    tray.setAddChosen([&] { chosen.emplace_back("add"); });
    tray.setOpenApplicationChosen([&] { chosen.emplace_back("application"); });
    tray.setShowFolderChosen([&] { chosen.emplace_back("folder"); });
    tray.setQuitChosen([&] { chosen.emplace_back("quit"); });
    EXPECT_TRUE(hasRegistered(1));
    std::vector<std::string> labels;
    for (const Choice& choice : choices()) {
        labels.push_back(choice.label.toStdString());
        const std::size_t before = chosen.size();
        choose(choice.id);
        EXPECT_TRUE(waitFor([&] { return chosen.size() == before + 1; })) << labels.back();
    }
    EXPECT_THAT(labels, ElementsAre("Show", "Add a transaction", "Open the finance application",
                                    "Show the shared folder", "Quit"));
    EXPECT_THAT(chosen, ElementsAre("show", "add", "application", "folder", "quit"));
}
