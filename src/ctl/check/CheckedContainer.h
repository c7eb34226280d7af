#pragma once

#include "ctl/check/Finding.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ctl {

// What the checks of one container start from: where its files are and what its settings say, as the panel
// reads them.
struct CheckedContainer {
    std::string path;
    bool exists = false;

    std::string feed;
    std::string settings;
    std::string accountKey;
    std::string accountFolder;
    std::string log;
    std::string icons;

    std::int64_t dayCount = 0;
    // The last moment that the feed shows; absent where the day count or the calendar yields none.
    std::optional<double> limit;
    // Whether the panel shows no transaction, so that it does not open the feed.
    bool hidesList = false;

    [[nodiscard]] static CheckedContainer lookUp();
};

} // namespace ctl
