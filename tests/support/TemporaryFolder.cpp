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

// The environment variable that names the holder of the process that started this one.
constexpr const char* holderVariable = "KORVEL_TEST_HOLDER";

// The folder for new holders: the holder of the process that waits for the death of this one, if any.
files::path placeOfHolders() {
    static const std::string inherited = [] {
        const char* value = std::getenv(holderVariable);
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
    if (const char* value = std::getenv(holderVariable))
        before_ = value;
    setenv(holderVariable, holder_.c_str(), 1);
}

TemporaryFolder::~TemporaryFolder() {
    if (before_)
        setenv(holderVariable, before_->c_str(), 1);
    else
        unsetenv(holderVariable);
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
