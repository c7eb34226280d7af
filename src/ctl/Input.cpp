#include "ctl/Input.h"

#include "platform/storage/Files.h"

#include <algorithm>
#include <istream>

namespace ctl {

std::optional<std::string> readInput(const std::string& file, std::istream& standardInput,
                                     std::error_code& error) {
    return file == "-" ? readToEnd(standardInput, longestInput, error) : platform::readFile(file, &error);
}

std::optional<std::string> readToEnd(std::istream& stream, std::size_t longest, std::error_code& error) {
    constexpr std::size_t piece = std::size_t{128} << 10U;
    std::string bytes;
    while (stream && bytes.size() < longest) {
        const std::size_t length = bytes.size();
        bytes.resize(length + std::min(piece, longest - length));
        stream.read(bytes.data() + length, static_cast<std::streamsize>(bytes.size() - length));
        bytes.resize(length + static_cast<std::size_t>(stream.gcount()));
    }
    const bool isAtEnd = !stream || stream.peek() == std::istream::traits_type::eof();
    if (stream.bad())
        error = make_error_code(std::errc::io_error);
    else if (!isAtEnd)
        error = make_error_code(std::errc::file_too_large);
    else
        return bytes;
    return std::nullopt;
}

std::error_code readingError(const std::string& file) {
    std::error_code error;
    if (platform::readFile(file, &error) || error == std::errc::no_such_file_or_directory)
        return {};
    return error;
}

} // namespace ctl
