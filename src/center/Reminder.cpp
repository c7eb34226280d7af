#include "center/Reminder.h"

#include "center/BaseFolders.h"
#include "platform/storage/Files.h"
#include "platform/system/Clock.h"
#include "platform/system/CurrentTimeZone.h"
#include "platform/system/NumberText.h"
#include "platform/system/WholeSeconds.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>

namespace center {

namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr std::int64_t secondsOfDay = 86'400;

// Where the clocks go back over midnight, the time of day of tomorrow may have been shown already. The alarm
// then waits for so long instead of ringing at once, again and again.
constexpr std::int64_t shortestWait = std::int64_t{15} * 60;

std::int64_t dayOf(std::int64_t wallTime) {
    return (wallTime - (wallTime % secondsOfDay + secondsOfDay) % secondsOfDay) / secondsOfDay;
}

// A day as YYYY-MM-DD.
std::string textOf(std::int64_t day) {
    const std::chrono::year_month_day date{sys_days{days{day}}};
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return text;
}

std::optional<std::int64_t> dayFromText(std::string_view text) {
    if (text.ends_with('\n'))
        text.remove_suffix(1);
    if (text.size() != 10 || text[4] != '-' || text[7] != '-')
        return std::nullopt;
    const auto year = platform::numberFromText<int>(text.substr(0, 4));
    const auto month = platform::numberFromText<unsigned>(text.substr(5, 2));
    const auto day = platform::numberFromText<unsigned>(text.substr(8, 2));
    if (!year || !month || !day)
        return std::nullopt;
    const auto date = std::chrono::year{*year} / static_cast<int>(*month) / static_cast<int>(*day);
    return date.ok() ? std::optional(sys_days{date}.time_since_epoch().count()) : std::nullopt;
}

} // namespace

Reminder::Reminder(std::string file, std::unique_ptr<platform::WallClockAlarm> alarm,
                   std::unique_ptr<platform::PathWatcher> zoneWatcher)
    : file_(std::move(file))
    , alarm_(std::move(alarm))
    , zoneWatcher_(std::move(zoneWatcher)) {
    if (const auto text = platform::readFile(file_))
        lastDay_ = dayFromText(*text);
    alarm_->setRung([this] { look(); });
    zoneWatcher_->setChanged([this](platform::PathWatcher::Change) {
        zoneWatcher_->watch({{platform::currentTimeZoneFile()}, {}});
        look();
    });
    zoneWatcher_->watch({{platform::currentTimeZoneFile()}, {}});
    look();
}

Reminder::~Reminder() = default;

std::string Reminder::defaultFile() {
    return platform::pathByAppending(stateFolder(), "korvel-today/reminded");
}

void Reminder::setCounts(int overdue, int dueToday) {
    counts_ = {overdue, dueToday};
    look();
}

void Reminder::setSessionInUse(bool isInUse) {
    isInUse_ = isInUse;
    look();
}

void Reminder::setSettings(const NotificationSettings& settings) {
    settings_ = settings;
    look();
}

// The handler comes last, as it may change anything.
void Reminder::look() {
    const auto now = platform::wholeSeconds(platform::Clock::current().now());
    if (!now || !settings_.isEnabled) {
        alarm_->setMoment(std::numeric_limits<double>::infinity());
        return;
    }
    const platform::TimeZone& zone = platform::currentTimeZone();
    const std::int64_t today = dayOf(zone.wallTimeAt(*now));
    const auto startOn = [&](std::int64_t day) {
        return zone.momentOf(day * secondsOfDay + std::int64_t{settings_.minuteOfDay} * 60);
    };
    const bool hasStarted = *now >= startOn(today);
    const std::int64_t next = hasStarted ? std::max(startOn(today + 1), *now + shortestWait) : startOn(today);
    alarm_->setMoment(static_cast<double>(next));
    if (hasStarted && isInUse_ && !counts_.isNone() && !isOver(today))
        remind(today);
}

bool Reminder::isOver(std::int64_t day) const {
    return lastDay_ && day <= *lastDay_ && *lastDay_ <= day + 1;
}

// The day is kept first: a process that ends in between reminds once less rather than twice. Where it cannot
// be kept, it counts as long as this process runs.
void Reminder::remind(std::int64_t day) {
    if (!remind_)
        return;
    lastDay_ = day;
    const std::size_t slash = file_.rfind('/');
    if (slash == std::string::npos || !platform::makeFolders(file_.substr(0, slash)))
        static_cast<void>(platform::replaceFile(file_, textOf(day) + "\n"));
    remind_(counts_.overdue, counts_.dueToday);
}

} // namespace center
