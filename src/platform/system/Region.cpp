#include "platform/system/Region.h"

#include "platform/system/LocaleName.h"

#include <cstdlib>
#include <optional>
#include <utility>

namespace platform {

namespace {

std::optional<Region>& chosenRegion() {
    static std::optional<Region> region;
    return region;
}

} // namespace

Region Region::current() {
    if (const auto& chosen = chosenRegion())
        return *chosen;
    const char* zone = std::getenv("TZ");
    return {dateLocaleName(), zone ? zone : "/etc/localtime"};
}

std::optional<Region> Region::setCurrent(std::optional<Region> region) {
    return std::exchange(chosenRegion(), std::move(region));
}

} // namespace platform
