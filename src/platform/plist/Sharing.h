#pragma once

#include "platform/plist/Value.h"

#include <cstddef>

// A list of a few bytes can name one container so often that it fills any memory once it is written out.
namespace platform::plist {

// An estimate, within a small factor, of the size that a value takes when it is written; that of a shared
// container counted each time it stands somewhere, and only once. Neither hangs, whatever is shared.
struct WrittenSize {
    std::size_t expanded = 0; // not above half of what a size can hold
    std::size_t distinct = 0;
};
[[nodiscard]] WrittenSize writtenSize(const Value& value);

// Whether a value grows too large when it is written: to more than so many times its own size, and than a
// size that is always allowed.
[[nodiscard]] bool isBeyondMeasure(const WrittenSize& size);

} // namespace platform::plist
