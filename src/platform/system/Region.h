#pragma once

#include <optional>
#include <string>

namespace platform {

// The locale of dates, which determines the calendar too, and the time zone. Main thread only.
struct Region {
    std::string locale;   // an ICU locale name, such as "th_TH@calendar=buddhist"
    std::string timeZone; // a value of TZ, such as "America/Sao_Paulo"; see currentTimeZone()

    bool operator==(const Region&) const = default;

    // The locale of LC_ALL, LC_TIME or LANG, in that order, and the time zone of TZ or, where that is unset,
    // of the file /etc/localtime, unless another region was set. Both are looked up at each call, so that
    // changes are seen. A POSIX locale ("C", "POSIX" or an empty one) is "en_US_POSIX".
    [[nodiscard]] static Region current();

    // Replaces the current region; nullopt restores that of the environment. Returns the region that was set
    // before, if any.
    static std::optional<Region> setCurrent(std::optional<Region> region);
};

} // namespace platform
