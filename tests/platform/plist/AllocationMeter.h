#pragma once

#include <cstddef>

// What operator new gives while it lives: the number of blocks, and the most bytes that were in use at once.
class AllocationMeter final {
public:
    AllocationMeter();
    [[nodiscard]] std::size_t peak() const;
    [[nodiscard]] std::size_t count() const;
};
