#include "platform/plist/KeyLines.h"

#include "platform/plist/Text.h"
#include "platform/plist/XmlOutput.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace platform::plist {

namespace {

template <typename Word>
bool haveEqualEnds(std::string_view a, std::string_view b) {
    const std::size_t last = a.size() - sizeof(Word);
    return std::memcmp(a.data(), b.data(), sizeof(Word)) == 0 &&
           std::memcmp(a.data() + last, b.data() + last, sizeof(Word)) == 0;
}

// Keys are short: most can be compared in two words that overlap.
bool areEqual(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    if (a.size() - 8 <= 8)
        return haveEqualEnds<std::uint64_t>(a, b);
    if (a.size() - 4 <= 4)
        return haveEqualEnds<std::uint32_t>(a, b);
    return a == b;
}

void putOpening(XmlOutput& output, Kind kind, std::size_t indent) {
    switch (kind) {
    case Kind::String:
        output.tag("<string>", indent);
        break;
    case Kind::Integer:
        output.tag("<integer>", indent);
        break;
    case Kind::Real:
        output.tag("<real>", indent);
        break;
    case Kind::Boolean:
        output.tag("", indent);
        break;
    default:
        break;
    }
}

} // namespace

bool KeyLines::serves(const Dictionary& dictionary) const {
    const std::vector<Dictionary::Entry>& entries = dictionary.entries();
    return entries.size() == keys_.size() &&
           std::equal(keys_.begin(), keys_.end(), entries.begin(),
                      [](const std::string& key, const Dictionary::Entry& entry) {
                          return areEqual(key, entry.first);
                      });
}

void KeyLines::make(const Dictionary& dictionary, std::size_t indent) {
    keys_.clear();
    lines_.clear();
    for (const auto& [key, value] : dictionary.entries()) {
        lines_.push_back({keys_.size(), value.kind(), 0, 0, 0});
        keys_.push_back(key);
    }
    const auto precedes = [&](const Line& a, const Line& b) {
        return precedesInUtf16(keys_[a.entry], keys_[b.entry]);
    };
    if (!std::is_sorted(lines_.begin(), lines_.end(), precedes))
        std::sort(lines_.begin(), lines_.end(), precedes);
    XmlOutput output;
    for (Line& line : lines_) {
        line.start = output.size();
        output.key(keys_[line.entry], indent);
        line.keySize = output.size() - line.start;
        putOpening(output, line.kind, indent);
        line.openingSize = output.size() - line.start;
    }
    text_ = output.take();
}

} // namespace platform::plist
