#include "platform/system/ZoneFile.h"

#include <algorithm>

namespace platform {

namespace {

// Removes the first bytes. Absent, and nothing is removed, if there are fewer.
std::optional<std::string_view> take(std::string_view& bytes, std::uint64_t size) {
    if (size > bytes.size())
        return std::nullopt;
    const std::string_view taken = bytes.substr(0, size);
    bytes.remove_prefix(size);
    return taken;
}

std::uint64_t unsignedNumber(std::string_view bytes) {
    std::uint64_t number = 0;
    for (const char byte : bytes)
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

std::int64_t signedNumber(std::string_view bytes) {
    const std::uint64_t number = unsignedNumber(bytes);
    return bytes.size() == 4 ? static_cast<std::int32_t>(static_cast<std::uint32_t>(number))
                             : static_cast<std::int64_t>(number);
}

// The footer: a rule between two newlines. An empty one is valid and gives no rule.
bool readFooter(std::string_view bytes, std::optional<PosixZoneRule>& rule) {
    if (!bytes.starts_with('\n'))
        return false;
    const std::size_t end = bytes.find('\n', 1);
    if (end == std::string_view::npos)
        return false;
    const std::string_view text = bytes.substr(1, end - 1);
    rule = PosixZoneRule::fromText(text);
    return rule || text.empty();
}

} // namespace

// The header of a data block: how many entries each of its parts has.
struct ZoneFile::Counts {
    std::uint64_t utIndicators = 0;
    std::uint64_t standardIndicators = 0;
    std::uint64_t leapSeconds = 0;
    std::uint64_t transitions = 0;
    std::uint64_t types = 0;
    std::uint64_t designationBytes = 0;

    // Removes the 44 bytes of a header; version is its version byte.
    static std::optional<Counts> take(std::string_view& bytes, char& version) {
        constexpr std::size_t countsAt = 20;
        const auto header = platform::take(bytes, 44);
        if (!header || !header->starts_with("TZif"))
            return std::nullopt;
        version = (*header)[4];
        const auto count = [&](std::size_t index) {
            return unsignedNumber(header->substr(countsAt + 4 * index, 4));
        };
        return Counts{count(0), count(1), count(2), count(3), count(4), count(5)};
    }

    // Counts have 32 bits, so that the sum has no overflow.
    [[nodiscard]] std::uint64_t dataSize(std::size_t timeSize) const {
        return transitions * (timeSize + 1) + types * 6 + designationBytes + leapSeconds * (timeSize + 4) +
               standardIndicators + utIndicators;
    }
};

std::optional<ZoneFile> ZoneFile::fromBytes(std::string_view bytes) {
    constexpr std::size_t shortTime = 4;
    constexpr std::size_t longTime = 8;
    ZoneFile file;
    char version = 0;
    const auto oldCounts = Counts::take(bytes, version);
    const auto oldData = oldCounts ? take(bytes, oldCounts->dataSize(shortTime)) : std::nullopt;
    if (!oldData)
        return std::nullopt;
    if (version == 0)
        return file.readData(*oldData, *oldCounts, shortTime) ? std::optional(file) : std::nullopt;

    const auto counts = Counts::take(bytes, version);
    const auto data = counts ? take(bytes, counts->dataSize(longTime)) : std::nullopt;
    if (!data || !file.readData(*data, *counts, longTime) || !readFooter(bytes, file.rule_))
        return std::nullopt;
    return file;
}

// The data has the size that the counts give.
bool ZoneFile::readData(std::string_view data, const Counts& counts, std::size_t timeSize) {
    constexpr std::int64_t smallestOffset = -89999; // RFC 8536, 3.2: utoff
    constexpr std::int64_t largestOffset = 93599;
    const std::string_view moments = data.substr(0, counts.transitions * timeSize);
    const std::string_view indices = data.substr(moments.size(), counts.transitions);
    const std::string_view types = data.substr(moments.size() + indices.size(), counts.types * 6);
    std::vector<std::int32_t> offsets;
    for (std::size_t type = 0; type < counts.types; ++type) {
        const std::int64_t offset = signedNumber(types.substr(type * 6, 4));
        if (offset < smallestOffset || offset > largestOffset)
            return false;
        offsets.push_back(static_cast<std::int32_t>(offset));
    }
    if (offsets.empty())
        return false;
    firstOffset_ = offsets.front();
    for (std::size_t i = 0; i < counts.transitions; ++i) {
        const std::int64_t moment = signedNumber(moments.substr(i * timeSize, timeSize));
        const auto type = static_cast<unsigned char>(indices[i]);
        if (type >= offsets.size() || (i > 0 && moment <= transitions_.back().moment))
            return false;
        transitions_.push_back({moment, offsets[type]});
    }
    return true;
}

ZoneOffset ZoneFile::offsetAt(std::int64_t moment) const {
    const auto isBefore = [](std::int64_t value, const Transition& next) { return value < next.moment; };
    const auto next = std::upper_bound(transitions_.begin(), transitions_.end(), moment, isBefore);
    if (next == transitions_.end() && rule_)
        return rule_->offsetAt(moment);
    const std::int32_t offset = next == transitions_.begin() ? firstOffset_ : std::prev(next)->offset;
    return {offset, next == transitions_.end() ? ZoneOffset::never : next->moment};
}

} // namespace platform
