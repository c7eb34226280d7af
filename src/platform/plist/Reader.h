#pragma once

#include "platform/plist/Value.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

// Bytes to values. The three forms are tried in the platform's order: binary, XML, old ASCII.
namespace platform::plist {

// Why a list was refused, and where.
struct Error {
    std::size_t offset = 0; // in bytes from the start of the input
    std::size_t line = 0;   // from 1; 0 for the binary form
    std::string message;    // one sentence, without a full stop
};

using ReadResult = std::variant<Value, Error>;

// Never reads a file and never depends on the process's locale. No input makes it use more than a small
// multiple of its own length, in memory or in time.
[[nodiscard]] ReadResult read(std::string_view bytes);

} // namespace platform::plist
