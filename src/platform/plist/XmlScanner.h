#pragma once

#include "platform/plist/Reader.h"

#include <cstdint>
#include <string>
#include <string_view>

// The XML form's syntax: tags and texts, one after the other, in a single pass over UTF-8 bytes. It is the
// platform's, not XML's: attributes are ignored, there are no entities but the five named ones and the
// numeric ones, and what follows the root element is not looked at.
namespace platform::plist {

enum class XmlTag : std::uint8_t {
    Plist,
    Array,
    Dictionary,
    Key,
    String,
    Data,
    Date,
    True,
    False,
    Real,
    Integer
};

struct XmlElement {
    XmlTag tag = XmlTag::Plist;
    bool isEmpty = false; // written as `<tag/>`
};

// A text: as it stands in the input, or decoded, at the end of the buffer that was given for it.
struct XmlText {
    std::string_view source; // without references and sections; empty if isDecoded
    std::size_t offset = 0;  // in the buffer
    std::size_t length = 0;  // in the buffer
    bool isDecoded = false;

    // Valid until the buffer is appended to.
    [[nodiscard]] std::string_view in(const std::string& buffer) const {
        return isDecoded ? std::string_view(buffer).substr(offset, length) : source;
    }
};

class XmlScanner final {
public:
    explicit XmlScanner(std::string_view text)
        : begin_(text.data())
        , at_(text.data())
        , end_(text.data() + text.size()) {}

    enum class Found { Element, CloseTag, Fault };

    // Passes the prolog: declaration, comments, DOCTYPE.
    [[nodiscard]] Found findRoot(XmlElement& element);
    // Passes white space, comments and processing instructions, and the next start tag. Stays before a close
    // tag.
    [[nodiscard]] Found findElement(XmlElement& element);
    [[nodiscard]] bool takeCloseTag(XmlTag tag);
    // Characters, references and CDATA sections up to the next tag, checked to be UTF-8. A byte order mark at
    // the start is dropped, as the platform's texts do.
    [[nodiscard]] bool takeText(std::string& buffer, XmlText& text);
    // Bytes up to the next '<', unchecked.
    [[nodiscard]] std::string_view takeRaw();

    // Notes the first fault; gives false.
    bool fail(const char* at, const char* message);
    bool failHere(const char* message) { return fail(at_, message); }
    [[nodiscard]] Error error() const;
    [[nodiscard]] const char* position() const { return at_; }

private:
    [[nodiscard]] bool startsWith(std::string_view text) const {
        return static_cast<std::size_t>(end_ - at_) >= text.size() &&
               std::string_view(at_, text.size()) == text;
    }
    void skipSpace();
    bool skipComment();
    bool skipInstruction();
    bool skipDoctype();
    Found takeStartTag(XmlElement& element);
    Found takeUnusualStartTag(XmlElement& element);
    bool takeReference(std::string& out);
    bool takeNumericReference(std::string& out);
    bool takeSection(std::string& out);
    bool takeDecodedText(const char* start, std::string& buffer, XmlText& text);
    Found faultHere(const char* message) {
        failHere(message);
        return Found::Fault;
    }

    const char* begin_;
    const char* at_;
    const char* end_;
    const char* faultAt_ = nullptr;
    const char* fault_ = nullptr;
};

} // namespace platform::plist
