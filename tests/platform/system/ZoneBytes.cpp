#include "ZoneBytes.h"

namespace platform_test {

namespace {

constexpr char names[] = {'A', 'B', 'C', '\0'};

std::string header(char version, std::size_t transitions, std::size_t types) {
    std::string bytes = "TZif";
    bytes += version;
    bytes.append(15, '\0');
    for (const std::size_t count :
         {std::size_t{0}, std::size_t{0}, std::size_t{0}, transitions, types, sizeof names})
        bytes += bigEndian(static_cast<std::int64_t>(count), 4);
    return bytes;
}

std::string block(const ZoneBytes& zone, char version, int timeSize) {
    std::string bytes = header(version, zone.transitions.size(), zone.offsets.size());
    for (const auto& transition : zone.transitions)
        bytes += bigEndian(transition.moment, timeSize);
    for (const auto& transition : zone.transitions)
        bytes += transition.type;
    for (const std::int32_t offset : zone.offsets)
        bytes += bigEndian(offset, 4).append(2, '\0'); // standard time, name 0
    return bytes.append(names, sizeof names);
}

} // namespace

std::string ZoneBytes::text() const {
    ZoneBytes old;
    old.offsets = {4321};
    return block(old, version, 4) + block(*this, version, 8) + '\n' + rule + '\n';
}

std::string ZoneBytes::textOfVersion1() const {
    return block(*this, '\0', 4);
}

std::string bigEndian(std::int64_t number, int size) {
    std::string bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes += static_cast<char>(static_cast<std::uint64_t>(number) >> shift & 0xff);
    return bytes;
}

} // namespace platform_test
