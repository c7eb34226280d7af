#include "host/Mailbox.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host {

namespace {

std::error_code lastError() {
    return {errno, std::generic_category()};
}

} // namespace

std::error_code makeMailbox(const std::string& path) {
    return mkfifo(path.c_str(), 0600) == 0 ? std::error_code() : lastError();
}

std::error_code deliver(const std::string& path, const std::string& url) {
    if (url.size() + 1 > PIPE_BUF)
        return std::make_error_code(std::errc::message_size);
    const int file = open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return lastError();
    const bool isWritten = write(file, url.c_str(), url.size() + 1) == static_cast<ssize_t>(url.size() + 1);
    const std::error_code error = isWritten ? std::error_code() : lastError();
    close(file);
    return error;
}

// Open for writing too: without a writer it would count as ended, and always be readable.
Mailbox::Mailbox(const std::string& path)
    : file_(open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC)) {}

Mailbox::~Mailbox() {
    if (isOpen())
        close(file_);
}

std::vector<std::string> Mailbox::take() {
    std::vector<std::string> urls;
    char bytes[PIPE_BUF];
    ssize_t count = 0;
    while ((count = read(file_, bytes, sizeof bytes)) > 0)
        unfinished_.append(bytes, static_cast<std::size_t>(count));
    for (std::size_t end = 0; (end = unfinished_.find('\0')) != std::string::npos;) {
        urls.push_back(unfinished_.substr(0, end));
        unfinished_.erase(0, end + 1);
    }
    return urls;
}

} // namespace host
