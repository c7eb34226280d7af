#include "center/Appearance.h"

#include "center/BaseFolders.h"
#include "platform/storage/Files.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QMap>
#include <QPalette>
#include <QStringList>
#include <QVariantMap>

#include <charconv>
#include <string_view>

namespace center {

namespace {

QString appearanceGroup() {
    return QStringLiteral("org.freedesktop.appearance");
}

QString gnomeGroup() {
    return QStringLiteral("org.gnome.desktop.interface");
}

QString portalPath() {
    return QStringLiteral("/org/freedesktop/portal/desktop");
}

QString settingsInterface() {
    return QStringLiteral("org.freedesktop.portal.Settings");
}

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QPalette darkPalette() {
    QPalette palette(QColor(0x35, 0x38, 0x3d), QColor(0x2a, 0x2d, 0x31)); // button, window
    palette.setColor(QPalette::Base, QColor(0x1e, 0x20, 0x23));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x29, 0x2d));
    palette.setColor(QPalette::ToolTipBase, QColor(0x1e, 0x20, 0x23));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, QColor(0xee, 0xef, 0xf1));
        palette.setColor(QPalette::Disabled, role, QColor(0x8a, 0x8e, 0x95));
    }
    palette.setColor(QPalette::PlaceholderText, QColor(0x8a, 0x8e, 0x95));
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x6f, 0xd0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x8a, 0xb4, 0xf8));
    return palette;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view spaces = " \t\r";
    const std::size_t first = text.find_first_not_of(spaces);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(spaces) - first + 1);
}

// Whether a kdeglobals file has animations of no duration: AnimationDurationFactor=0 in the group [KDE]. Not
// with QSettings, whose INI format differs from KDE's in escapes and lists.
bool isWithoutAnimations(std::string_view text) {
    bool isInGroup = false;
    bool isWithout = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (line.starts_with('['))
            isInGroup = line == "[KDE]" || line == "[KDE][$i]"; // one that may not be changed
        const std::size_t equals = line.find('=');
        if (!isInGroup || equals == std::string_view::npos)
            continue;
        const std::string_view key = trimmed(line.substr(0, equals));
        if (key != "AnimationDurationFactor" && key != "AnimationDurationFactor[$i]")
            continue;
        const std::string_view value = trimmed(line.substr(equals + 1));
        double factor = 1;
        const auto read = std::from_chars(value.data(), value.data() + value.size(), factor);
        isWithout = read.ec == std::errc() && factor == 0;
    }
    return isWithout;
}

} // namespace

Appearance::Appearance(const QDBusConnection& bus, std::string kdeFile,
                       std::unique_ptr<platform::PathWatcher> kdeWatcher)
    : portal_(bus, QStringLiteral("org.freedesktop.portal.Desktop"), BusService::Start::ByCall)
    , kdeFile_(std::move(kdeFile))
    , kdeWatcher_(std::move(kdeWatcher)) {
    portal_.setOwnerChanged([this] {
        if (portal_.isPresent())
            readPortal();
    });
    portal_.listen(portalPath(), settingsInterface(), QStringLiteral("SettingChanged"),
                   [this](const QDBusMessage& signal) {
                       const QVariantList arguments = signal.arguments();
                       take(arguments.value(0).toString(), arguments.value(1).toString(), arguments.value(2));
                       update();
                   });
    kdeWatcher_->setChanged([this](platform::PathWatcher::Change) {
        readKdeFile();
        update();
    });
    readKdeFile();
    update();
    readPortal();
}

Appearance::~Appearance() = default;

std::string Appearance::defaultKdeFile() {
    return platform::pathByAppending(configFolder(), "kdeglobals");
}

// One call for all settings, which every version of the portal knows. A portal that goes keeps what it told.
void Appearance::readPortal() {
    portal_.call(portalPath(), settingsInterface(), QStringLiteral("ReadAll"),
                 {QStringList{appearanceGroup(), gnomeGroup()}}, [this](const QDBusMessage& reply) {
                     if (reply.type() == QDBusMessage::ReplyMessage)
                         takeSettings(reply);
                 });
}

void Appearance::takeSettings(const QDBusMessage& reply) {
    preferences_ = {};
    const auto groups = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().value(0));
    for (auto group = groups.begin(); group != groups.end(); ++group)
        for (auto entry = group->begin(); entry != group->end(); ++entry)
            take(group.key(), entry.key(), entry.value());
    update();
}

// A value of another type than expected counts as none.
void Appearance::take(const QString& group, const QString& key, const QVariant& value) {
    QVariant plain = value;
    while (plain.metaType() == QMetaType::fromType<QDBusVariant>())
        plain = plain.value<QDBusVariant>().variant();
    const auto number = plain.typeId() == QMetaType::UInt ? std::optional(plain.toUInt()) : std::nullopt;
    if (group == appearanceGroup() && key == QLatin1String("color-scheme"))
        preferences_.colorScheme = number;
    else if (group == appearanceGroup() && key == QLatin1String("reduced-motion"))
        preferences_.reducedMotion = number;
    else if (group == gnomeGroup() && key == QLatin1String("enable-animations"))
        preferences_.gnomeAnimations =
            plain.typeId() == QMetaType::Bool ? std::optional(plain.toBool()) : std::nullopt;
}

void Appearance::readKdeFile() {
    kdeWatcher_->watch({{kdeFile_}, {}});
    isKdeWithoutAnimations_ = isWithoutAnimations(platform::readFile(kdeFile_).value_or(std::string()));
}

void Appearance::update() {
    applyScheme();
    const ColorScheme scheme = preferredScheme();
    const bool isOtherScheme = scheme != std::exchange(scheme_, scheme);
    const bool isReduced = prefersReducedMotion();
    const bool isOtherMotion = isReduced != std::exchange(isMotionReduced_, isReduced);
    if (isOtherScheme && colorSchemeChanged_)
        colorSchemeChanged_(scheme);
    if (isOtherMotion && reducedMotionChanged_)
        reducedMotionChanged_(isReduced);
}

ColorScheme Appearance::preferredScheme() const {
    if (preferences_.colorScheme == 1U)
        return ColorScheme::Dark;
    if (preferences_.colorScheme == 2U)
        return ColorScheme::Light;
    return isDark(QApplication::palette()) ? ColorScheme::Dark : ColorScheme::Light;
}

bool Appearance::prefersReducedMotion() const {
    if (preferences_.reducedMotion)
        return preferences_.reducedMotion == 1U;
    if (preferences_.gnomeAnimations)
        return !*preferences_.gnomeAnimations;
    return isKdeWithoutAnimations_;
}

// The palette without colours of its own is the platform's.
void Appearance::applyScheme() {
    const bool wantsDark = preferences_.colorScheme == 1U;
    if (wantsDark && !hasDarkPalette_ && !isDark(QApplication::palette())) {
        hasDarkPalette_ = true;
        QApplication::setPalette(darkPalette());
    } else if (!wantsDark && hasDarkPalette_) {
        hasDarkPalette_ = false;
        QApplication::setPalette(QPalette());
    }
}

} // namespace center
