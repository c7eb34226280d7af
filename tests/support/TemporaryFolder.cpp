#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace support {

namespace files = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (files::temp_directory_path() / "korvel-test-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        ADD_FAILURE() << "no temporary folder can be made as " << pattern;
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code error;
    files::remove_all(path_, error);
    EXPECT_FALSE(error) << path_ << " stays: " << error.message();
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
