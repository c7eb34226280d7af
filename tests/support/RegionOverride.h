#pragma once

#include "platform/system/Region.h"

#include <optional>
#include <utility>

namespace support {

// Replaces the current region for as long as this object lives.
class RegionOverride final {
public:
    explicit RegionOverride(platform::Region region)
        : previous_(platform::Region::setCurrent(std::move(region))) {}
    ~RegionOverride() { platform::Region::setCurrent(std::move(previous_)); }
    RegionOverride(const RegionOverride&) = delete;
    RegionOverride& operator=(const RegionOverride&) = delete;

private:
    std::optional<platform::Region> previous_;
};

} // namespace support
