#pragma once

#include <system_error>

namespace platform {

// Failures that no system call reports.
enum class StorageError {
    LockHeld = 1,  // another program has kept a folder locked for too long
    NoXmlForm,     // a value that has no XML form was to be written
    NotADictionary // settings whose root is no dictionary
};

[[nodiscard]] std::error_code make_error_code(StorageError error);

// The error of a change that has been made, but which a crash may undo, because the sync after it failed with
// this error of a system call. It equals the same std::errc values as that error.
[[nodiscard]] std::error_code unsynced(const std::error_code& cause);

// Whether a change with this result has been made, be it safe from a crash or not.
[[nodiscard]] bool isMade(const std::error_code& result);

// The first of the two that says that a change has not been made, else the first that is an error at all.
[[nodiscard]] std::error_code worseOf(const std::error_code& a, const std::error_code& b);

} // namespace platform

template <>
struct std::is_error_code_enum<platform::StorageError> : std::true_type {};
