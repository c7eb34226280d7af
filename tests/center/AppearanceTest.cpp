#include "center/Appearance.h"

#include "support/Environment.h"
#include "support/FakeService.h"
#include "support/ManualWatches.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QMap>
#include <QPalette>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using center::Appearance;
using center::ColorScheme;
using testing::ElementsAre;
using testing::IsEmpty;
using Change = platform::PathWatcher::Change;

namespace {

using Groups = QMap<QString, QVariantMap>;

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString readAll = QStringLiteral("ReadAll");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString gnomeGroup = QStringLiteral("org.gnome.desktop.interface");
const QString colorScheme = QStringLiteral("color-scheme");
const QString reducedMotion = QStringLiteral("reduced-motion");
const QString enableAnimations = QStringLiteral("enable-animations");

bool hasDarkWindows() {
    const QPalette palette = QApplication::palette();
    return palette.color(QPalette::Window).lightness() < 100 &&
           palette.color(QPalette::WindowText).lightness() > 200;
}

class AppearanceTest : public testing::Test {
protected:
    AppearanceTest() { qDBusRegisterMetaType<Groups>(); }
    ~AppearanceTest() override { QApplication::setPalette(QPalette()); }

    void startPortal(const Groups& groups) {
        portal = std::make_unique<support::FakeService>(bus, portalName);
        portal->answer(readAll, {QVariant::fromValue(groups)});
    }

    Appearance& make() {
        auto own = std::make_unique<support::ManualWatcher>();
        watcher = own.get();
        appearance = std::make_unique<Appearance>(bus.connection(), kdeFile, std::move(own));
        appearance->setColorSchemeChanged([this](ColorScheme scheme) { schemes.push_back(scheme); });
        appearance->setReducedMotionChanged([this](bool isReduced) { motions.push_back(isReduced); });
        bus.settle();
        return *appearance;
    }

    void settingChanges(const QString& group, const QString& key, const QVariant& value) const {
        portal->send(portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                     {group, key, QVariant::fromValue(QDBusVariant(value))});
        bus.settle();
    }

    // Whether motion is reduced with these settings of the portal and of KDE.
    bool isReducedBy(const Groups& groups, const std::string& kdeglobals = "") {
        folder.write("kdeglobals", kdeglobals);
        portal.reset();
        startPortal(groups);
        return make().isMotionReduced();
    }

    support::PrivateBus bus;
    support::TemporaryFolder folder;
    const std::string kdeFile = folder.path("kdeglobals");
    std::unique_ptr<support::FakeService> portal;
    std::unique_ptr<Appearance> appearance;
    support::ManualWatcher* watcher = nullptr;
    std::vector<ColorScheme> schemes;
    std::vector<bool> motions;
};

} // namespace

// --- the colour scheme

TEST_F(AppearanceTest, isLightWithoutAPortal) {
    make();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::Light);
    EXPECT_FALSE(appearance->isMotionReduced());
    const Appearance nowhere(QDBusConnection(QStringLiteral("none")), kdeFile,
                             std::make_unique<support::ManualWatcher>());
    EXPECT_EQ(nowhere.colorScheme(), ColorScheme::Light);
    EXPECT_THAT(schemes, IsEmpty());
    EXPECT_THAT(motions, IsEmpty());
}

TEST_F(AppearanceTest, isWhatThePortalTells) {
    startPortal({{appearanceGroup, {{colorScheme, 1U}}}});
    make();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::Dark);
    EXPECT_THAT(schemes, ElementsAre(ColorScheme::Dark));
    ASSERT_FALSE(portal->calls(readAll).empty());
    EXPECT_EQ(portal->calls(readAll)[0].path, portalPath);
}

TEST_F(AppearanceTest, followsThePortal) {
    startPortal({{appearanceGroup, {{colorScheme, 0U}}}});
    make();
    for (const uint value : {1U, 1U, 2U, 1U, 0U, 99U})
        settingChanges(appearanceGroup, colorScheme, value);
    EXPECT_THAT(schemes,
                ElementsAre(ColorScheme::Dark, ColorScheme::Light, ColorScheme::Dark, ColorScheme::Light));
}

TEST_F(AppearanceTest, asksAPortalThatComesLater) {
    make();
    startPortal({{appearanceGroup, {{colorScheme, 1U}, {reducedMotion, 1U}}}});
    bus.settle();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::Dark);
    EXPECT_TRUE(appearance->isMotionReduced());
}

TEST_F(AppearanceTest, staysAsItWasWhenThePortalGoes) {
    startPortal({{appearanceGroup, {{colorScheme, 1U}}}});
    make();
    portal.reset();
    bus.settle();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::Dark);
}

TEST_F(AppearanceTest, ignoresValuesOfAnotherType) {
    startPortal({{appearanceGroup, {{colorScheme, QStringLiteral("dark")}, {reducedMotion, true}}},
                 {gnomeGroup, {{enableAnimations, 0}}}});
    make();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::Light);
    EXPECT_FALSE(appearance->isMotionReduced());
}

TEST_F(AppearanceTest, doesWithoutAPortalThatRefuses) {
    portal = std::make_unique<support::FakeService>(bus, portalName);
    make();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::Light);
}

// --- windows

TEST_F(AppearanceTest, givesWindowsTheScheme) {
    startPortal({{appearanceGroup, {{colorScheme, 2U}}}});
    make();
    EXPECT_FALSE(hasDarkWindows());
    const QColor before = QApplication::palette().color(QPalette::Window);
    settingChanges(appearanceGroup, colorScheme, 1U);
    EXPECT_TRUE(hasDarkWindows());
    settingChanges(appearanceGroup, colorScheme, 0U);
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), before);
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::Light);
}

TEST_F(AppearanceTest, leavesADarkPaletteOfThePlatform) {
    const QPalette platform(QColor(10, 20, 30));
    QApplication::setPalette(platform);
    make();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::Dark) << "nobody has told another";
    startPortal({{appearanceGroup, {{colorScheme, 1U}}}});
    bus.settle();
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), platform.color(QPalette::Window));
}

// --- motion

TEST_F(AppearanceTest, reducesMotionAsTheFirstThatTellsSays) {
    const QVariantMap reduced{{reducedMotion, 1U}};
    const QVariantMap full{{reducedMotion, 0U}};
    const QVariantMap still{{enableAnimations, false}};
    const QVariantMap lively{{enableAnimations, true}};
    const std::string kde = "[KDE]\nAnimationDurationFactor=0\n";
    const struct {
        const char* phrase;
        Groups portal;
        std::string kde;
        bool expected;
    } rows[] = {
        {"nobody", {}, "", false},
        {"the portal", {{appearanceGroup, reduced}}, "", true},
        {"the portal, against the others", {{appearanceGroup, full}, {gnomeGroup, still}}, kde, false},
        {"GNOME", {{gnomeGroup, still}}, "", true},
        {"GNOME, against KDE", {{gnomeGroup, lively}}, kde, false},
        {"KDE", {{appearanceGroup, {{colorScheme, 1U}}}}, kde, true},
    };
    for (const auto& row : rows)
        EXPECT_EQ(isReducedBy(row.portal, row.kde), row.expected) << row.phrase;
}

TEST_F(AppearanceTest, readsTheFileOfKde) {
    const struct {
        const char* text;
        bool expected;
    } rows[] = {
        {"[KDE]\nAnimationDurationFactor=0", true},
        {"[KDE]\r\n AnimationDurationFactor = 0.0 \r\n[Other]\nx=1\n", true},
        {"[KDE][$i]\nAnimationDurationFactor[$i]=0\n", true},
        {"[KDE]\nAnimationDurationFactor=0.5\n", false},
        {"[KDE]\nAnimationDurationFactor=\n", false},
        {"[KDE]\nAnimationDurationFactor=none\n", false},
        {"[KDE]\n#AnimationDurationFactor=0\n", false},
        {"[Other]\nAnimationDurationFactor=0\n", false},
        {"AnimationDurationFactor=0\n[KDE]\n", false},
        {"[KDE]\nAnimationDurationFactor=0\nAnimationDurationFactor=1\n", false},
        {"", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(isReducedBy({}, row.text), row.expected) << row.text;
}

TEST_F(AppearanceTest, followsAllOfThem) {
    startPortal({});
    make();
    EXPECT_EQ(watcher->paths.files, std::vector{kdeFile});
    folder.write("kdeglobals", "[KDE]\nAnimationDurationFactor=0\n");
    watcher->tell(Change::Path);
    EXPECT_THAT(motions, ElementsAre(true));
    settingChanges(gnomeGroup, enableAnimations, true);
    settingChanges(appearanceGroup, reducedMotion, 1U);
    settingChanges(appearanceGroup, reducedMotion, 0U);
    EXPECT_THAT(motions, ElementsAre(true, false, true, false));
    EXPECT_THAT(schemes, IsEmpty());
}

TEST_F(AppearanceTest, findsTheFileOfKdeAmongTheUsersSettings) {
    const support::EnvironmentVariable config("XDG_CONFIG_HOME", "/config");
    EXPECT_EQ(Appearance::defaultKdeFile(), "/config/kdeglobals");
}
