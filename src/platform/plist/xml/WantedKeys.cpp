#include "platform/plist/xml/WantedKeys.h"

#include <algorithm>

namespace platform::plist {

// A key whose place is taken is not found by its spelling but by its text, which is only slower.
WantedKeys::WantedKeys(std::vector<std::string_view> keys)
    : keys_(std::move(keys)) {
    for (std::size_t key = 0; key < keys_.size(); ++key) {
        lengths_ |= std::uint64_t{1} << std::min<std::size_t>(keys_[key].size(), 63);
        const std::string text = std::string(keys_[key]).append(closeTag);
        const bool isPlain = keys_[key].find_first_of("<&") == std::string_view::npos &&
                             std::all_of(text.begin(), text.end(), [](char c) { return c > 0; });
        if (text.size() < sizeof(std::uint64_t) || !isPlain)
            continue;
        const std::uint64_t first = loadWord(text.data());
        std::uint8_t& place = places_[placeOf(first)];
        if (place != 0)
            continue;
        spellings_.push_back({first, loadWord(text.data() + text.size() - sizeof first), text, key});
        place = static_cast<std::uint8_t>(spellings_.size());
    }
}

std::size_t WantedKeys::find(std::string_view text) const {
    if ((lengths_ >> std::min<std::size_t>(text.size(), 63) & 1U) == 0)
        return none;
    for (std::size_t key = 0; key < keys_.size(); ++key)
        if (keys_[key].size() == text.size() && keys_[key] == text)
            return key;
    return none;
}

} // namespace platform::plist
