#pragma once

#include "platform/plist/text/Swar.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The keys that a reader of records looks for.
namespace platform::plist {

// Finds a wanted key; keys are named by their place among them.
class WantedKeys final {
public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    static constexpr std::string_view closeTag = "</key>";

    explicit WantedKeys(std::vector<std::string_view> keys);
    [[nodiscard]] std::size_t size() const { return keys_.size(); }
    // By its text.
    [[nodiscard]] std::size_t find(std::string_view text) const;
    // By the bytes that follow its start tag, where these are its text and its close tag as programs write
    // them.
    struct Match {
        std::size_t key = none;
        std::size_t length = 0; // of text and close tag
    };
    [[nodiscard]] Match match(std::string_view following) const;

private:
    // A key's text and close tag, told by its first and its last eight bytes, and by all of them where these
    // leave something out.
    struct Spelling {
        std::uint64_t first = 0;
        std::uint64_t last = 0;
        std::string text;
        std::size_t key = none;
    };
    static constexpr unsigned tableBits = 8;
    [[nodiscard]] static std::size_t placeOf(std::uint64_t first) {
        return static_cast<std::size_t>((first * 0x9E3779B97F4A7C15U) >> (64 - tableBits));
    }

    std::vector<std::string_view> keys_;
    std::uint64_t lengths_ = 0; // a bit for each length, the last for all longer ones
    std::vector<Spelling> spellings_;
    std::array<std::uint8_t, std::size_t{1} << tableBits>
        places_{}; // one more than a spelling's number; 0 for none
};

inline WantedKeys::Match WantedKeys::match(std::string_view following) const {
    constexpr std::size_t width = sizeof(std::uint64_t);
    if (following.size() < width)
        return {};
    const std::uint64_t first = loadWord(following.data());
    const std::size_t place = places_[placeOf(first)];
    if (place == 0)
        return {};
    const Spelling& spelling = spellings_[place - 1];
    const std::size_t length = spelling.text.size();
    if (spelling.first != first || length > following.size() ||
        spelling.last != loadWord(following.data() + length - width))
        return {};
    if (length > 2 * width && following.substr(0, length) != spelling.text)
        return {};
    return {spelling.key, length};
}

} // namespace platform::plist
