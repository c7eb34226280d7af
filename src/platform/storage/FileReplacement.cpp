#include "platform/storage/FileReplacement.h"

#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/Files.h"
#include "platform/storage/OpenFile.h"

namespace platform {

namespace {

std::error_code errorOf(std::errc error) {
    return std::make_error_code(error);
}

// What stands at the target; soft where that is nothing.
std::error_code inspect(int folder, const std::string& name, std::optional<struct stat>& old) {
    struct stat status {};
    if (FileSystemCalls::current().statusAt(folder, name.c_str(), &status) != 0)
        return errno == ENOENT ? std::error_code{} : lastError();
    if (S_ISDIR(status.st_mode))
        return errorOf(std::errc::is_a_directory);
    if (!S_ISREG(status.st_mode))
        return errorOf(std::errc::invalid_argument);
    old = status;
    return {};
}

} // namespace

std::error_code FileReplacement::begin() {
    if (const auto error = place_.find(path_))
        return error;
    if (const auto error = inspect(place_.folder(), place_.name(), old_))
        return error;
    return file_.emplace(place_.folder()).make(old_);
}

std::error_code FileReplacement::write(std::string_view bytes) {
    if (!file_)
        if (const auto error = begin())
            return error;
    return file_->write(bytes);
}

std::error_code FileReplacement::complete() {
    if (const auto error = file_->complete(old_))
        return error;
    if (const auto error = file_->takePlaceOf(place_.name()))
        return error;
    return place_.syncFolder();
}

bool FileReplacement::append(std::string_view bytes) {
    if (!error_)
        error_ = write(bytes);
    return !error_;
}

std::error_code FileReplacement::finish() {
    if (append({}))
        error_ = complete();
    return error_;
}

std::error_code replaceFile(const std::string& path, std::string_view bytes) {
    FileReplacement replacement(path);
    replacement.append(bytes);
    return replacement.finish();
}

} // namespace platform
