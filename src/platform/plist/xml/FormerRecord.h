#pragma once

#include "platform/plist/xml/XmlScanner.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace platform::plist {

// A record as a pattern for the next one: in a list that a program wrote, everything but the values is mostly
// the same from record to record, and is passed in one comparison.
class FormerRecord final {
public:
    struct Content {
        std::size_t key = 0;         // its place among the wanted ones
        XmlTag tag = XmlTag::String; // a boolean's tag, either one, is its content
        // All that stands before it, from the end of the content before or of the record's start tag.
        std::size_t start = 0;
        std::size_t size = 0;
    };

    [[nodiscard]] bool isUsable() const { return isUsable_; }
    [[nodiscard]] const std::vector<Content>& contents() const { return contents_; }
    [[nodiscard]] std::string_view before(const Content& content) const {
        return {text_.data() + content.start, content.size};
    }
    // From the last content's end to that of the record.
    [[nodiscard]] std::string_view closing() const { return std::string_view(text_).substr(end_); }

    // Whether the record at hand is to be noted. Where records differ all the time, few are.
    [[nodiscard]] bool begin();
    // A value, by where its start tag and the whole of it end, counted from the end of the record's start
    // tag.
    void note(std::size_t key, XmlTag tag, std::size_t startTagEnd, std::size_t end);
    // All from the record's start tag to the end of its close tag.
    void finish(std::string_view record);

    // The next record was like this one, or was not.
    void matched() { misses_ = 0; }
    void missed();

private:
    [[nodiscard]] bool isSound() const;

    std::vector<Content> contents_;
    std::string text_;
    std::size_t end_ = 0;
    bool isUsable_ = false;
    unsigned misses_ = 0;
    unsigned pause_ = 0; // records
};

} // namespace platform::plist
