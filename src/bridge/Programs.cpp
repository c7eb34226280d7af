#include "bridge/Programs.h"

#include "platform/storage/Files.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>

namespace bridge {

namespace {

// The first bytes of a regular file, few enough to look at many files.
std::optional<std::string> startOf(const std::string& path) {
    constexpr qint64 enough = 4096;
    const QString name = QFile::decodeName(path.c_str());
    QFile file(name);
    if (!QFileInfo(name).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.read(enough).toStdString();
}

} // namespace

const Program* programOf(Programs programs, std::string_view name) {
    const auto found = std::find_if(programs.begin(), programs.end(),
                                    [&](const Program& program) { return program.name == name; });
    return found == programs.end() ? nullptr : &*found;
}

const Program* programOfFile(Programs programs, const std::string& path) {
    const std::optional<std::string> start = startOf(path);
    if (!start)
        return nullptr;
    const auto found = std::find_if(programs.begin(), programs.end(),
                                    [&](const Program& program) { return program.recognises(path, *start); });
    return found == programs.end() ? nullptr : &*found;
}

bool hasEndingOf(const Program& program, std::string_view path) {
    std::string_view rest = program.endings;
    while (!rest.empty()) {
        const std::string_view ending = rest.substr(0, rest.find(' '));
        if (path.ends_with(ending))
            return true;
        rest.remove_prefix(std::min(rest.size(), ending.size() + 1));
    }
    return false;
}

bool readBytesOf(const std::string& path, std::string& bytes, Reading& reading) {
    std::error_code error;
    std::optional<std::string> read = platform::readFile(path, &error);
    if (!read) {
        reading.fault = "cannot be read: " + error.message();
        return false;
    }
    bytes = std::move(*read);
    return true;
}

} // namespace bridge
