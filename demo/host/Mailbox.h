#pragma once

#include <string>
#include <system_error>
#include <vector>

// How a URL gets from the process that the desktop starts with it to the window: through a fifo, in which
// each URL ends with a NUL. A URL is written by one call and at most PIPE_BUF bytes long, so that two never
// mix.
namespace host {

// Makes the fifo, closed to other users.
[[nodiscard]] std::error_code makeMailbox(const std::string& path);

// Puts a URL in. Never blocks: where nobody holds the mailbox open, or where it is full, that is the error.
[[nodiscard]] std::error_code deliver(const std::string& path, const std::string& url);

// Holds a mailbox open. What is delivered waits in it for as long as anyone does.
class Mailbox final {
public:
    explicit Mailbox(const std::string& path);
    ~Mailbox();
    Mailbox(const Mailbox&) = delete;
    Mailbox& operator=(const Mailbox&) = delete;

    [[nodiscard]] bool isOpen() const { return file_ >= 0; }
    // Readable when a URL waits.
    [[nodiscard]] int descriptor() const { return file_; }
    // The URLs that wait, the oldest first.
    [[nodiscard]] std::vector<std::string> take();

private:
    int file_;
    std::string unfinished_;
};

} // namespace host
