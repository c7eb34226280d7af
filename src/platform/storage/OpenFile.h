#pragma once

#include "platform/storage/FileSystemCalls.h"

#include <cerrno>
#include <string_view>
#include <system_error>

namespace platform {

// An open file or folder, closed at the latest with this object.
class OpenFile final {
public:
    explicit OpenFile(int number)
        : number_(number) {}
    ~OpenFile() { (void)close(); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    [[nodiscard]] int number() const { return number_; }

    // 0, or -1 and errno: the last chance of a file system to report a failed write.
    int close() {
        const int number = number_;
        number_ = -1;
        return number < 0 ? 0 : FileSystemCalls::current().close(number);
    }

private:
    int number_;
};

// Makes a system call again for as long as a signal interrupts it.
template <typename Call>
auto retryInterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

[[nodiscard]] inline std::error_code lastError() {
    return {errno, std::generic_category()};
}

[[nodiscard]] inline bool holdsNul(std::string_view path) {
    return path.find('\0') != std::string_view::npos;
}

} // namespace platform
