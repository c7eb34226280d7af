#include "ctl/Bomb.h"

#include <cstddef>
#include <vector>

namespace ctl {

namespace {

constexpr std::size_t levels = 30;

std::string shortText(const std::string& ascii) {
    return static_cast<char>(0x50 + ascii.size()) + ascii;
}

std::string bigEndian(std::size_t number, std::size_t width) {
    std::string bytes(width, '\0');
    for (std::size_t at = width; at > 0; number >>= 8)
        bytes[--at] = static_cast<char>(number & 0xFF);
    return bytes;
}

// A list of these objects, the first being its root, with references and offsets of two bytes.
std::string binaryList(const std::vector<std::string>& objects) {
    std::string bytes = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += bigEndian(bytes.size(), 2);
        bytes += object;
    }
    const std::size_t table = bytes.size();
    return bytes + offsets + std::string(6, '\0') + "\2\2" + bigEndian(objects.size(), 8) + bigEndian(0, 8) +
           bigEndian(table, 8);
}

// A root that names object 1, which is a text, and object 2, the outermost array.
std::string listOf(const std::string& root, const std::string& text) {
    std::vector<std::string> objects = {root, shortText(text)};
    for (std::size_t level = 0; level < levels; ++level) {
        const std::string inner = bigEndian(objects.size() + 1, 2);
        objects.push_back('\xA2' + inner + inner);
    }
    objects.push_back(shortText("boom"));
    return binaryList(objects);
}

} // namespace

std::string bombArray() {
    return listOf('\xA1' + bigEndian(2, 2), "");
}

std::string bombOfKey(const std::string& key) {
    return listOf('\xD1' + bigEndian(1, 2) + bigEndian(2, 2), key);
}

} // namespace ctl
