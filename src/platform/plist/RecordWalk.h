#pragma once

#include "platform/plist/RecordReader.h"
#include "platform/plist/XmlReader.h"

#include <array>

// The walk over a list's records that reading and rewriting share.
namespace platform::plist {

// Finds a wanted key.
class WantedKeys final {
public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

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

class RecordWalk final {
public:
    // A rewriter needs each record as a value besides.
    enum class Purpose { Read, Rewrite };
    // Is given a record, and for a rewriter its value.
    using Visit = std::function<bool(const Record&, const Value*)>;

    RecordWalk(std::span<const std::string_view> keys, Purpose purpose);
    [[nodiscard]] RecordsOutcome run(std::string_view bytes, const Visit& visit);

private:
    RecordsOutcome runTree(std::string_view bytes);
    bool walkRoot(XmlElement element, unsigned depth);
    bool walkPlist(unsigned depth);
    bool walkArray(unsigned depth);
    bool walkElement(XmlElement element, unsigned depth);
    bool walkRecord(unsigned depth);
    XmlScanner::Found findKey(std::size_t& key) {
        const std::string_view following = scanner_.afterKeyTag();
        const WantedKeys::Match match = keys_.match(following);
        if (match.key == WantedKeys::none)
            return findOtherKey(!following.empty(), key);
        key = match.key;
        scanner_.passKey(match.length);
        return XmlScanner::Found::Element;
    }
    XmlScanner::Found findOtherKey(bool isUsualTag, std::size_t& key);
    bool readSlot(XmlElement element, unsigned depth, Record::Slot& slot);
    void visitRecord(bool isDictionary);
    void visitValue(const Value& value);

    std::span<const std::string_view> wanted_;
    WantedKeys keys_; // and the one that makes a UID of a dictionary, which is the last if it is not wanted
    Purpose purpose_;
    std::size_t uidKey_;
    const Visit* visit_ = nullptr;
    bool hasStopped_ = false;
    XmlScanner scanner_{{}};
    XmlValueReader reader_{scanner_};
    std::vector<Record::Slot> slots_;
    std::string buffer_; // decoded texts of the record at hand
};

} // namespace platform::plist
