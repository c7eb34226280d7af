#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace support {

namespace files = std::filesystem;

namespace {

// What a process hands on to those that it starts: its holder.
constexpr const char* handedOn = "KORVEL_TEST_HOLDER";

// Where to make holders: in that of the process that waits for the death of this one, if any.
files::path placeOfHolders() {
    static const std::string inherited = [] {
        const char* value = std::getenv(handedOn);
        return std::string(value ? value : "");
    }();
    return files::is_directory(inherited) ? files::path(inherited) : files::temp_directory_path();
}

} // namespace

TemporaryFolder::TemporaryFolder() {
    holder_ = (placeOfHolders() / "korvel-test-XXXXXX").string();
    if (!mkdtemp(holder_.data()))
        ADD_FAILURE() << "no temporary folder can be made as " << holder_;
    path_ = holder_ + "/folder";
    files::create_directory(path_);
    if (const char* value = std::getenv(handedOn))
        before_ = value;
    setenv(handedOn, holder_.c_str(), 1);
}

TemporaryFolder::~TemporaryFolder() {
    if (before_)
        setenv(handedOn, before_->c_str(), 1);
    else
        unsetenv(handedOn);
    std::error_code error;
    files::remove_all(holder_, error);
    EXPECT_FALSE(error) << holder_ << " stays: " << error.message();
}

std::string TemporaryFolder::write(std::string_view name, std::string_view bytes) const {
    const files::path file = path(name);
    files::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    EXPECT_TRUE(stream) << "cannot write " << file;
    return file.string();
}

std::string TemporaryFolder::read(std::string_view name) const {
    std::ifstream stream(path(name), std::ios::binary);
    EXPECT_TRUE(stream) << "cannot read " << path(name);
    return {std::istreambuf_iterator<char>(stream), {}};
}

bool TemporaryFolder::has(std::string_view name) const {
    return files::exists(path(name));
}

std::size_t TemporaryFolder::count(std::string_view name) const {
    return static_cast<std::size_t>(
        std::distance(files::directory_iterator(path(name)), files::directory_iterator()));
}

} // namespace support
