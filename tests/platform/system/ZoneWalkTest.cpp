#include "platform/system/Calendar.h"
#include "platform/system/CurrentTimeZone.h"
#include "support/Environment.h"
#include "support/Moments.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <ctime>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

// Compares offsets, starts of days and wrapped days with those that follow from the C library's
// localtime_r(), in every zone of the installed time zone database.

using platform::Calendar;
using platform::currentTimeZone;
using support::EnvironmentVariable;

namespace {

constexpr std::int64_t secondsOfDay = 86400;
constexpr std::int64_t firstMoment = 0;            // 1970
constexpr std::int64_t lastMoment = 2'145'916'799; // the end of 2037

std::vector<std::string> zoneNames() {
    std::vector<std::string> names;
    std::ifstream table("/usr/share/zoneinfo/zone1970.tab");
    for (std::string line; std::getline(table, line);) {
        std::istringstream fields(line);
        std::string countries;
        std::string place;
        std::string name;
        if (!line.starts_with('#') && fields >> countries >> place >> name)
            names.push_back(name);
    }
    return names;
}

std::int64_t offsetOfTheCLibrary(std::int64_t moment) {
    const std::time_t time = moment;
    std::tm parts{};
    localtime_r(&time, &parts);
    return parts.tm_gmtoff;
}

// The offsets of the C library's zone, found by looking at every second day and halving the time in which
// they change.
class ModelZone {
public:
    ModelZone() {
        constexpr std::int64_t step = 2 * secondsOfDay;
        const std::int64_t end = lastMoment + 100 * secondsOfDay;
        std::int64_t known = firstMoment - 100 * secondsOfDay;
        spans_.push_back({known, offsetOfTheCLibrary(known)});
        for (; known < end; known += step)
            if (offsetOfTheCLibrary(known + step) != spans_.back().offset)
                findChange(known, known + step);
    }

    [[nodiscard]] std::vector<std::int64_t> changes() const {
        std::vector<std::int64_t> moments;
        for (std::size_t i = 1; i < spans_.size(); ++i)
            moments.push_back(spans_[i].start);
        return moments;
    }

    // The start of a local day: the first moment with the wall time of its midnight, or the end of the gap.
    [[nodiscard]] std::int64_t startOfDay(std::int64_t moment) const {
        const std::int64_t wallTime = moment + offsetOfTheCLibrary(moment);
        const std::int64_t midnight = wallTime - (wallTime % secondsOfDay + secondsOfDay) % secondsOfDay;
        const Place place = find(midnight);
        return place.isInGap ? spans_[place.span + 1].start : midnight - spans_[place.span].offset;
    }

    // The moment with the same time on another day of the month.
    [[nodiscard]] std::int64_t wrapped(std::int64_t moment, int days) const {
        using namespace std::chrono;
        const std::int64_t wallTime = moment + offsetOfTheCLibrary(moment);
        const auto start = floor<std::chrono::days>(sys_seconds(seconds(wallTime)));
        const year_month_day date(start);
        const auto length =
            static_cast<int>(static_cast<unsigned>((date.year() / date.month() / last).day()));
        const int index = static_cast<int>(static_cast<unsigned>(date.day())) - 1;
        const std::int64_t shift = (index + days) % length - index;
        const std::int64_t moved = wallTime + shift * secondsOfDay;
        return shift == 0 ? moment : moved - spans_[find(moved).span].offset;
    }

private:
    struct Span {
        std::int64_t start;
        std::int64_t offset;
    };
    struct Place {
        std::size_t span; // the one before the gap if it is in a gap
        bool isInGap;
    };

    void findChange(std::int64_t before, std::int64_t after) {
        while (after - before > 1) {
            const std::int64_t middle = (before + after) / 2;
            (offsetOfTheCLibrary(middle) == spans_.back().offset ? before : after) = middle;
        }
        spans_.push_back({after, offsetOfTheCLibrary(after)});
    }

    [[nodiscard]] Place find(std::int64_t wallTime) const {
        for (std::size_t i = 0; i + 1 < spans_.size(); ++i) {
            const std::int64_t end = spans_[i + 1].start;
            if (wallTime - spans_[i].offset < end)
                return {i, false};
            if (wallTime - spans_[i + 1].offset < end)
                return {i, true};
        }
        return {spans_.size() - 1, false};
    }

    std::vector<Span> spans_;
};

// 400 moments evenly spread, and those around each change of the clocks.
std::vector<std::int64_t> momentsToCompare(const ModelZone& zone) {
    std::vector<std::int64_t> moments;
    constexpr std::int64_t step = (lastMoment - firstMoment) / 400;
    for (std::int64_t moment = firstMoment; moment <= lastMoment; moment += step)
        moments.push_back(moment);
    for (const std::int64_t change : zone.changes())
        for (const std::int64_t distance : {-secondsOfDay, std::int64_t{-1}, std::int64_t{0}, secondsOfDay})
            moments.push_back(change + distance);
    return moments;
}

} // namespace

TEST(ZoneWalkTest, daysAgreeWithTheCLibraryInEveryZone) {
    const EnvironmentVariable locale("LC_ALL", "en_US.UTF-8");
    const EnvironmentVariable tz("TZ", "UTC");
    const std::vector<std::string> names = zoneNames();
    ASSERT_GT(names.size(), 300U);
    std::size_t compared = 0;
    for (const std::string& name : names) {
        tz.set(name.c_str());
        tzset();
        const ModelZone model;
        for (const std::int64_t moment : momentsToCompare(model)) {
            const auto date = static_cast<double>(moment);
            ASSERT_EQ(currentTimeZone().offsetAt(moment).seconds, offsetOfTheCLibrary(moment))
                << name << " at " << moment;
            // No days give the start of the day itself.
            constexpr int amounts[] = {0, 1, 3, 7, 40};
            const int days = amounts[compared++ % std::size(amounts)];
            const auto moved = Calendar::dateByAddingDaysWrapping(date, days);
            ASSERT_EQ(moved, model.wrapped(moment, days))
                << name << " at " << moment << " and " << days << " days";
            ASSERT_EQ(Calendar::startOfDay(*moved), model.startOfDay(model.wrapped(moment, days)))
                << name << " at " << moment << " and " << days << " days";
        }
    }
    RecordProperty("zones", static_cast<int>(names.size()));
    RecordProperty("moments", static_cast<int>(compared));
}
