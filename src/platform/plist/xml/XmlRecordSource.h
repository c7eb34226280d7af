#pragma once

#include "platform/plist/RecordReader.h"
#include "platform/plist/xml/XmlScanner.h"
#include "platform/plist/xml/XmlValueReader.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform::plist {

// From one offset in a text to another.
struct Extent {
    std::size_t start = 0;
    std::size_t end = 0;
};

// The records of an XML list, and where they stand in its text.
class XmlRecordSource final : public RecordSource {
public:
    XmlRecordSource(std::string_view text, std::span<const std::string_view> keys);

    const Record* next() override;
    [[nodiscard]] bool isSound() const override { return state_ == State::Sound; }

    // The extent of the element that next() gave, with the <plist> tags around it.
    [[nodiscard]] Extent element() const { return element_; }
    // The extent of the number under a key of that record, without the <plist> tags around it.
    [[nodiscard]] Extent number(std::size_t key) const { return numbers_[key]; }

    // Of a list that proved sound: of the array, of what stands between its tags (empty for `<array/>`), and
    // of the root element.
    [[nodiscard]] Extent array() const { return array_; }
    [[nodiscard]] Extent content() const { return content_; }
    [[nodiscard]] Extent root() const { return root_; }

private:
    enum class State { Start, Records, Sound, Broken };
    [[nodiscard]] bool begin();
    [[nodiscard]] bool finish();
    [[nodiscard]] bool readElement(XmlElement element, unsigned depth);
    [[nodiscard]] bool readRecord(unsigned depth);
    [[nodiscard]] XmlScanner::Found findKey(std::size_t& key);
    [[nodiscard]] bool takePlainKey(std::size_t& key);
    [[nodiscard]] bool readField(XmlElement element, unsigned depth, std::size_t key);

    XmlScanner scanner_;
    XmlValueReader reader_{scanner_};
    State state_ = State::Start;
    unsigned depth_ = 0;  // how many containers are around an element of the array
    unsigned plists_ = 0; // how many <plist> tags are around the array
    bool isArrayTagEmpty_ = false;

    std::vector<std::string_view>
        names_; // of the wanted keys, and of the one that makes a UID of a dictionary
    Record record_;
    std::size_t uid_; // that key's place
    // A name with its close tag, told by its first eight bytes.
    struct Spelling {
        std::uint64_t start = 0;
        std::string text;
    };
    std::vector<Spelling> spellings_;
    std::string decodedKey_;
    std::vector<std::string> decoded_; // what the strings of the record's fields view where they were decoded

    Extent element_;
    std::vector<Extent> numbers_;
    Extent array_;
    Extent content_;
    Extent root_;
};

} // namespace platform::plist
