#pragma once

#include "platform/storage/FileSystemCalls.h"

#include <cerrno>
#include <string_view>
#include <system_error>

namespace platform {

// Owns the descriptor of an open file or folder.
class OpenFile final {
public:
    explicit OpenFile(int number)
        : number_(number) {}
    ~OpenFile() { (void)close(); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    [[nodiscard]] int number() const { return number_; }

    // Returns 0, or -1 with errno set: some file systems report a failed write only here.
    int close() {
        const int number = number_;
        number_ = -1;
        return number < 0 ? 0 : FileSystemCalls::current().close(number);
    }

private:
    int number_;
};

// Repeats a system call while signals interrupt it.
template <typename Call>
auto retryInterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

// The error of the last failed system call.
[[nodiscard]] inline std::error_code lastError() {
    return {errno, std::generic_category()};
}

[[nodiscard]] inline bool holdsNul(std::string_view path) {
    return path.find('\0') != std::string_view::npos;
}

} // namespace platform
