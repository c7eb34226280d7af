#include "center/UrlOpener.h"

#include "support/Environment.h"
#include "support/FakeService.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QFile>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

using center::TransientService;
using center::UrlOpener;
using support::EnvironmentVariable;
using support::waitFor;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

const QString url = QStringLiteral("korvelWidget://tw_all_transactions");
const QString managerName = QStringLiteral("org.freedesktop.systemd1");
const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString startUnit = QStringLiteral("StartTransientUnit");

std::vector<std::string> textsOf(const QStringList& list) {
    std::vector<std::string> texts;
    for (const QString& text : list)
        texts.push_back(text.toStdString());
    return texts;
}

// A service as the manager was asked for it.
struct Asked {
    std::string unit;
    std::string mode;
    std::map<std::string, std::string> texts;
    std::vector<std::string> environment;
    std::string path;
    std::vector<std::string> arguments;
    std::vector<std::string> flags;
};

void takeCommand(const QDBusArgument& commands, Asked& asked) {
    QStringList arguments;
    QStringList flags;
    QString path;
    commands.beginArray();
    commands.beginStructure();
    commands >> path >> arguments >> flags;
    commands.endStructure();
    EXPECT_TRUE(commands.atEnd());
    asked.path = path.toStdString();
    asked.arguments = textsOf(arguments);
    asked.flags = textsOf(flags);
}

Asked askedBy(const support::FakeService::Call& call) {
    Asked asked;
    asked.unit = call.arguments.value(0).toString().toStdString();
    asked.mode = call.arguments.value(1).toString().toStdString();
    const auto properties = call.arguments.value(2).value<QDBusArgument>();
    EXPECT_EQ(properties.currentSignature(), QStringLiteral("a(sv)"));
    EXPECT_EQ(call.arguments.value(3).value<QDBusArgument>().currentSignature(), QStringLiteral("a(sa(sv))"));
    properties.beginArray();
    while (!properties.atEnd()) {
        QString name;
        QDBusVariant value;
        properties.beginStructure();
        properties >> name >> value;
        properties.endStructure();
        if (name == QLatin1String("Environment"))
            asked.environment = textsOf(value.variant().toStringList());
        else if (name == QLatin1String("ExecStartEx"))
            takeCommand(value.variant().value<QDBusArgument>(), asked);
        else
            asked.texts[name.toStdString()] = value.variant().toString().toStdString();
    }
    return asked;
}

class UrlOpenerTest : public testing::Test {
protected:
    // gio, which notes its last argument.
    UrlOpenerTest() {
        std::ofstream(gio) << "#!/bin/sh\nprintf %s \"$2\" > '" << folder.path() << "/new'\n/bin/mv '"
                           << folder.path() << "/new' '" << folder.path() << "/opened'\n";
        std::filesystem::permissions(gio, std::filesystem::perms::owner_all);
    }

    [[nodiscard]] std::string openedByChild() const {
        std::ifstream file(folder.path() + "/opened");
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    [[nodiscard]] Asked askOnce(const QString& text) {
        support::FakeService manager(bus, managerName);
        manager.answer(startUnit, {QVariant::fromValue(QDBusObjectPath(QStringLiteral("/job/1")))});
        UrlOpener opener(bus.connection(), UrlOpener::Way::Service);
        EXPECT_TRUE(opener.open(text));
        EXPECT_TRUE(waitFor([&] { return manager.calls(startUnit).size() == 1; }));
        bus.settle();
        return askedBy(manager.calls(startUnit).at(0));
    }

    support::PrivateBus bus; // before its daemon is no longer on PATH
    support::TemporaryFolder folder;
    std::string gio = folder.path() + "/gio";
    EnvironmentVariable path{"PATH", folder.path()};
};

} // namespace

TEST_F(UrlOpenerTest, opensByAChildWhereItIsNotConfined) {
    const support::FakeService manager(bus, managerName);
    UrlOpener opener(bus.connection(), UrlOpener::Way::Child);
    EXPECT_TRUE(opener.open(url));
    EXPECT_TRUE(waitFor([this] { return openedByChild() == url.toStdString(); }));
    bus.settle();
    EXPECT_TRUE(manager.calls(startUnit).empty());
}

TEST_F(UrlOpenerTest, asksTheManagerForAServiceWithTheTextAsItStands) {
    const QString text = QStringLiteral("/home/\u00e4/a $HOME %h ${PATH} \"b\"\\\n");
    const Asked asked = askOnce(text);
    EXPECT_EQ(asked.path, gio);
    EXPECT_THAT(asked.arguments, ElementsAre("gio", "open", text.toStdString()));
    EXPECT_THAT(asked.flags, ElementsAre("no-env-expand"));
    EXPECT_EQ(asked.mode, "fail");
    EXPECT_EQ(openedByChild(), "");
}

TEST_F(UrlOpenerTest, serviceOutlivesTheOpenerAndLeavesNoTraceOfAFailure) {
    const Asked asked = askOnce(url);
    EXPECT_EQ(asked.texts.at("Type"), "exec");
    EXPECT_EQ(asked.texts.at("ExitType"), "cgroup");
    EXPECT_EQ(asked.texts.at("CollectMode"), "inactive-or-failed");
    EXPECT_EQ(asked.texts.at("StandardOutput"), "null");
}

TEST_F(UrlOpenerTest, eachServiceHasANameOfItsOwnThatIsNoApplications) {
    const std::string first = askOnce(url).unit;
    EXPECT_THAT(first, testing::MatchesRegex("korvel-today-open-[0-9a-f]{32}\\.service"));
    EXPECT_NE(askOnce(url).unit, first);
}

TEST_F(UrlOpenerTest, serviceHasTheEnvironmentOfTheSession) {
    const EnvironmentVariable display("DISPLAY", ":7");
    const EnvironmentVariable desktop("XDG_CURRENT_DESKTOP", "test");
    const EnvironmentVariable messages("LC_MESSAGES", "de_DE.UTF-8");
    const EnvironmentVariable own("INVOCATION_ID", "0123");
    const EnvironmentVariable notify("NOTIFY_SOCKET", "/run/notify");
    const std::vector<std::string> environment = askOnce(url).environment;
    EXPECT_THAT(environment, Contains("DISPLAY=:7"));
    EXPECT_THAT(environment, Contains("XDG_CURRENT_DESKTOP=test"));
    EXPECT_THAT(environment, Contains("LC_MESSAGES=de_DE.UTF-8"));
    EXPECT_THAT(environment, Not(Contains("INVOCATION_ID=0123"))) << "it tells of this process's own service";
    EXPECT_THAT(environment, Not(Contains("NOTIFY_SOCKET=/run/notify")));
}

// One of them would have the manager refuse the whole service.
TEST_F(UrlOpenerTest, leavesOutVariablesThatNoManagerTakes) {
    const EnvironmentVariable control("XDG_A", "a\x1b[0m");
    const EnvironmentVariable lines("XDG_B", "a\nb");
    const EnvironmentVariable broken("XDG_C", "a\xff");
    const EnvironmentVariable empty("XDG_D", "");
    std::vector<std::string> found;
    for (const std::string& assignment : TransientService::environmentOfSession())
        if (assignment.starts_with("XDG_") && assignment.find('=') == 5)
            found.push_back(assignment);
    EXPECT_THAT(found, ElementsAre("XDG_D="));
}

TEST_F(UrlOpenerTest, opensByAChildWhereTheManagerRefuses) {
    const support::FakeService manager(bus, managerName);
    UrlOpener opener(bus.connection(), UrlOpener::Way::Service);
    EXPECT_TRUE(opener.open(url));
    EXPECT_TRUE(waitFor([this] { return openedByChild() == url.toStdString(); }));
    EXPECT_EQ(manager.calls(startUnit).size(), 1U);
}

TEST_F(UrlOpenerTest, opensByAChildWhereNoManagerIs) {
    UrlOpener opener(bus.connection(), UrlOpener::Way::Service);
    EXPECT_TRUE(opener.open(url));
    EXPECT_TRUE(waitFor([this] { return openedByChild() == url.toStdString(); }));
}

TEST_F(UrlOpenerTest, opensByAChildWithoutABus) {
    UrlOpener opener(QDBusConnection(QStringLiteral("none")), UrlOpener::Way::Service);
    EXPECT_TRUE(opener.open(url));
    EXPECT_TRUE(waitFor([this] { return openedByChild() == url.toStdString(); }));
}

TEST_F(UrlOpenerTest, opensNothingTwiceWhereTheManagerGoesWithoutAnAnswer) {
    auto manager = std::make_unique<support::FakeService>(bus, managerName);
    manager->staySilentTo(startUnit);
    UrlOpener opener(bus.connection(), UrlOpener::Way::Service);
    EXPECT_TRUE(opener.open(url));
    EXPECT_TRUE(waitFor([&] { return manager->calls(startUnit).size() == 1; }));
    manager.reset();
    bus.settle();
    EXPECT_EQ(openedByChild(), "");
}

TEST_F(UrlOpenerTest, isFalseWhereNoOpenerIsInstalled) {
    const support::FakeService manager(bus, managerName);
    std::filesystem::remove(gio);
    for (const auto way : {UrlOpener::Way::Child, UrlOpener::Way::Service}) {
        UrlOpener opener(bus.connection(), way);
        EXPECT_FALSE(opener.open(url));
    }
    bus.settle();
    EXPECT_TRUE(manager.calls(startUnit).empty());
}

TEST_F(UrlOpenerTest, asksThePortalInASandbox) {
    support::FakeService portal(bus, portalName);
    portal.answer(QStringLiteral("OpenURI"),
                  {QVariant::fromValue(QDBusObjectPath(QStringLiteral("/request/1")))});
    UrlOpener opener(bus.connection(), UrlOpener::Way::Portal);
    EXPECT_TRUE(opener.open(url));
    EXPECT_TRUE(waitFor([&] { return portal.calls(QStringLiteral("OpenURI")).size() == 1; }));
    const auto call = portal.calls(QStringLiteral("OpenURI")).at(0);
    EXPECT_EQ(call.path, QStringLiteral("/org/freedesktop/portal/desktop"));
    EXPECT_EQ(call.arguments.mid(0, 2), (QVariantList{QString(), url}));
}

TEST_F(UrlOpenerTest, showsThePortalTheFolderItself) {
    support::FakeService portal(bus, portalName);
    const QString method = QStringLiteral("OpenFile");
    portal.answer(method, {QVariant::fromValue(QDBusObjectPath(QStringLiteral("/request/1")))});
    UrlOpener opener(bus.connection(), UrlOpener::Way::Portal);
    EXPECT_TRUE(opener.open(QString::fromStdString(folder.path())));
    EXPECT_TRUE(waitFor([&] { return portal.calls(method).size() == 1; }));
    const auto shown = portal.calls(method).at(0).arguments.value(1).value<QDBusUnixFileDescriptor>();
    struct stat here {};
    struct stat there {};
    ASSERT_EQ(stat(folder.path().c_str(), &here), 0);
    ASSERT_EQ(fstat(shown.fileDescriptor(), &there), 0);
    EXPECT_EQ(there.st_ino, here.st_ino);
    EXPECT_FALSE(opener.open(QString::fromStdString(folder.path() + "/none")));
}

TEST_F(UrlOpenerTest, startsNothingItselfInASandbox) {
    for (const QDBusConnection& its : {bus.connection(), QDBusConnection(QStringLiteral("none"))}) {
        UrlOpener opener(its, UrlOpener::Way::Portal);
        EXPECT_EQ(opener.open(url), its.isConnected());
        bus.settle();
    }
    EXPECT_EQ(openedByChild(), "");
}

TEST(UrlOpenerStatusTest, tellsWhoIsConfined) {
    const struct {
        const char* what;
        const char* status;
        bool isConfined;
    } rows[] = {
        {"free", "Name:\ta\nNoNewPrivs:\t0\nSeccomp:\t0\nSeccomp_filters:\t0\n", false},
        {"no new privileges", "Name:\ta\nNoNewPrivs:\t1\nSeccomp:\t0\n", true},
        {"a filter", "Name:\ta\nNoNewPrivs:\t0\nSeccomp:\t2\n", true},
        {"first line", "NoNewPrivs:\t1", true},
        {"of a kernel without both", "Name:\ta\n", false},
        {"a name that holds the words", "Name:\tNoNewPrivs:\t1\nNoNewPrivs:\t0\n", false},
        {"cannot be read", "", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(UrlOpener::isConfined(row.status), row.isConfined) << row.what;
}
