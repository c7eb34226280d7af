#pragma once

#include <optional>
#include <string>

namespace platform {

// Where and how the user counts days: the locale of dates (LC_TIME, which names the calendar too) and the
// time zone. Both are looked up afresh at each use, so that a change of either is seen. Cheap: a use makes
// one system call at most, and reads a name only when it changed. Main thread only.
struct Region {
    std::string locale;   // an ICU locale name, as "th_TH@calendar=buddhist"
    std::string timeZone; // an Olson name, as "America/Sao_Paulo"

    bool operator==(const Region&) const = default;

    // The process's region: LC_ALL, LC_TIME or LANG, in that order, and TZ or the system's zone; or the one
    // set. A POSIX locale ("C", "POSIX", none) is "en_US_POSIX".
    [[nodiscard]] static Region current();
};

// Another region for as long as it lives (tests, --locale); then the one before it is in force again.
class RegionOverride final {
public:
    explicit RegionOverride(Region region);
    ~RegionOverride();
    RegionOverride(const RegionOverride&) = delete;
    RegionOverride& operator=(const RegionOverride&) = delete;

private:
    std::optional<Region> previous_;
};

} // namespace platform
