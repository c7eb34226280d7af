#include "center/Settings.h"

#include "center/BaseFolders.h"
#include "platform/storage/Files.h"

#include <QDebug>
#include <QRegularExpression>
#include <QSettings>

#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>

namespace center {

namespace {

// A value as it can be printed: in quotation marks, with escapes.
QString quoted(const QString& value) {
    QString text;
    QDebug(&text).nospace() << value;
    return text;
}

std::optional<bool> truthOf(const QString& value) {
    const QString word = value.trimmed().toLower();
    if (word == QLatin1String("true"))
        return true;
    return word == QLatin1String("false") ? std::optional(false) : std::nullopt;
}

// The minutes after midnight of a time of day such as 09:00.
std::optional<int> minutesOf(const QString& value) {
    static const QRegularExpression time(QStringLiteral("^([01]?[0-9]|2[0-3]):([0-5][0-9])$"));
    const QRegularExpressionMatch found = time.match(value.trimmed());
    if (!found.hasMatch())
        return std::nullopt;
    return found.captured(1).toInt() * 60 + found.captured(2).toInt();
}

// Only a file is read: a pipe would be waited for.
bool isFile(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

// Reads one file, and notes what is wrong with it. QSettings keeps what it has read for as long as the file
// has the same length and the same time of its last change; only of two versions within one tick of that
// clock might it give the first.
class Reading final {
public:
    explicit Reading(const std::string& file)
        : settings_(QString::fromStdString(isFile(file) ? file : "/dev/null"), QSettings::IniFormat) {
        if (settings_.status() != QSettings::NoError)
            faults_.append(settings_.fileName() + QStringLiteral(": cannot be read as an INI file"));
    }

    // Sets a value to that of a key, if the file has the key and converting its text succeeds.
    template <class Value>
    void read(const QString& key, std::optional<Value> (*convert)(const QString&), const char* wanted,
              Value& value) {
        if (settings_.status() != QSettings::NoError || !settings_.contains(key))
            return;
        // A text with commas is a list to QSettings.
        const QString text = settings_.value(key).toStringList().join(QStringLiteral(", "));
        if (const auto converted = convert(text))
            value = *converted;
        else
            faults_.append(QStringLiteral("%1: %2: %3 is not %4")
                               .arg(settings_.fileName(), key, quoted(text), QLatin1String(wanted)));
    }

    [[nodiscard]] const QStringList& faults() const { return faults_; }

private:
    QSettings settings_;
    QStringList faults_;
};

} // namespace

Settings::Settings(std::string file, std::unique_ptr<platform::PathWatcher> watcher)
    : file_(std::move(file))
    , watcher_(std::move(watcher)) {
    watcher_->setChanged([this](platform::PathWatcher::Change) { readAgain(); });
    watchAndRead();
}

Settings::~Settings() = default;

std::string Settings::defaultFile() {
    return platform::pathByAppending(configFolder(), "korvel-today/settings.ini");
}

// A change that comes while the file is read is told afterwards.
void Settings::watchAndRead() {
    watcher_->watch({{file_}, {}});
    notifications_ = {};
    Reading reading(file_);
    reading.read(QStringLiteral("notifications/enabled"), &truthOf, "true or false",
                 notifications_.isEnabled);
    reading.read(QStringLiteral("notifications/time"), &minutesOf, "a time of day such as 09:00",
                 notifications_.minuteOfDay);
    for (const QString& fault : reading.faults())
        if (!faults_.contains(fault))
            std::fprintf(stderr, "korvel-today: %s\n", qUtf8Printable(fault));
    faults_ = reading.faults();
}

void Settings::readAgain() {
    const NotificationSettings before = notifications_;
    watchAndRead();
    if (notifications_ != before && changed_)
        changed_();
}

} // namespace center
