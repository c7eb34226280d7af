#include "ctl/Moments.h"

#include "platform/system/Clock.h"
#include "platform/system/CurrentTimeZone.h"
#include "platform/system/NumberText.h"

#include <QDateTime>
#include <QTimeZone>

#include <charconv>
#include <cmath>
#include <cstdint>

namespace ctl {

namespace {

std::int64_t wallTimeOf(double moment) {
    return platform::currentTimeZone().wallTimeAt(static_cast<std::int64_t>(std::floor(moment)));
}

std::string textOfWallTime(double moment, const QString& format) {
    return QDateTime::fromSecsSinceEpoch(wallTimeOf(moment), QTimeZone::utc()).toString(format).toStdString();
}

// With the fewest digits that are read back as the same number.
std::string numberText(double number) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

// "today", "today+3", "today-2".
QDate relativeDay(std::string_view text) {
    constexpr std::string_view today = "today";
    text.remove_prefix(today.size());
    if (text.starts_with('+') && text.size() > 1 && text[1] != '-')
        text.remove_prefix(1);
    else if (!text.empty() && !text.starts_with('-'))
        return {};
    const auto days = platform::numberFromText<std::int64_t>(text.empty() ? "0" : text);
    if (!days)
        return {};
    const std::int64_t now = wallTimeOf(platform::Clock::current().now());
    return QDateTime::fromSecsSinceEpoch(now, QTimeZone::utc()).date().addDays(*days);
}

QDate dayOf(std::string_view text) {
    if (text.starts_with("today"))
        return relativeDay(text);
    return QDate::fromString(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())),
                             QStringLiteral("yyyy-MM-dd"));
}

QTime timeOf(std::string_view text) {
    const QString time = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    return QTime::fromString(time, time.size() > 5 ? QStringLiteral("HH:mm:ss") : QStringLiteral("HH:mm"));
}

} // namespace

std::optional<double> momentOfText(std::string_view text) {
    if (const auto number = platform::numberFromText<double>(text))
        return number;
    const std::size_t space = text.find(' ');
    const QDate day = dayOf(text.substr(0, space));
    const QTime time = space == std::string_view::npos ? QTime(0, 0) : timeOf(text.substr(space + 1));
    if (!day.isValid() || !time.isValid() || day.year() < 1 || day.year() > 9999)
        return std::nullopt;
    const std::int64_t wallTime = QDateTime(day, time, QTimeZone::utc()).toSecsSinceEpoch();
    return static_cast<double>(platform::currentTimeZone().momentOf(wallTime));
}

bool isInCalendar(double moment) {
    constexpr double first = -62135596800;
    constexpr double end = 253402300800;
    return moment >= first && moment < end;
}

std::string textOfMoment(double moment) {
    return isInCalendar(moment) ? textOfWallTime(moment, QStringLiteral("yyyy-MM-dd HH:mm"))
                                : numberText(moment);
}

std::string exactTextOfMoment(double moment) {
    std::string text = textOfMoment(moment);
    if (momentOfText(text) != moment && isInCalendar(moment))
        text = textOfWallTime(moment, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return momentOfText(text) == moment ? text : numberText(moment);
}

} // namespace ctl
