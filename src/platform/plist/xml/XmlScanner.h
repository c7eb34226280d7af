#pragma once

#include "platform/plist/Reader.h"
#include "platform/plist/text/Swar.h"
#include "platform/plist/xml/TextRun.h"

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
    [[nodiscard]] Found findElement(XmlElement& element) {
        skipSpace();
        if (end_ - at_ >= longestUsualTag && *at_ == '<' && takeUsualStartTag(element))
            return Found::Element;
        return findUnusualElement(element);
    }
    // What follows the start tag of a key, if one comes next and is spelled as usual; otherwise nothing. Only
    // white space is passed. With a length, the tag and so much of what follows it is passed.
    [[nodiscard]] std::string_view afterKeyTag() {
        skipSpace();
        if (end_ - at_ < longestUsualTag || std::memcmp(at_, keyTag.data(), keyTag.size()) != 0)
            return {};
        return {at_ + keyTag.size(), static_cast<std::size_t>(end_ - at_) - keyTag.size()};
    }
    void passKey(std::size_t length) { at_ += keyTag.size() + length; }
    [[nodiscard]] bool takeCloseTag(XmlTag tag) {
        switch (tag) { // spelled as usual
        case XmlTag::Dictionary:
            return take("</dict>") || takeUnusualCloseTag(tag);
        case XmlTag::Key:
            return take("</key>") || takeUnusualCloseTag(tag);
        case XmlTag::String:
            return take("</string>") || takeUnusualCloseTag(tag);
        case XmlTag::Real:
            return take("</real>") || takeUnusualCloseTag(tag);
        case XmlTag::Integer:
            return take("</integer>") || takeUnusualCloseTag(tag);
        default:
            return takeUnusualCloseTag(tag);
        }
    }
    // Characters, references and CDATA sections up to the next tag, checked to be UTF-8. A byte order mark at
    // the start is dropped, as the platform's texts do.
    [[nodiscard]] bool takeText(std::string& buffer, XmlText& text) {
        const char* const start = at_;
        const TextRun run = textRun(start, end_);
        at_ = run.end;
        if (run.isAscii && end_ - at_ > 1 && *at_ == '<' && at_[1] == '/') {
            text.source = {start, static_cast<std::size_t>(at_ - start)};
            text.isDecoded = false;
            return true;
        }
        return takeUnusualText(start, run.isAscii, buffer, text);
    }
    // These very bytes, if they come next.
    [[nodiscard]] bool takeSame(std::string_view bytes) {
        const bool isSame = static_cast<std::size_t>(end_ - at_) >= bytes.size() &&
                            std::memcmp(at_, bytes.data(), bytes.size()) == 0;
        at_ += isSame ? bytes.size() : 0;
        return isSame;
    }
    [[nodiscard]] std::size_t left() const { return static_cast<std::size_t>(end_ - at_); }
    // Bytes up to the next '<', unchecked.
    [[nodiscard]] std::string_view takeRaw();

    // Notes the first fault; gives false.
    bool fail(const char* at, const char* message);
    bool failHere(const char* message) { return fail(at_, message); }
    [[nodiscard]] Error error() const;
    [[nodiscard]] const char* position() const { return at_; }

private:
    static constexpr std::ptrdiff_t longestUsualTag = 16;
    static constexpr std::string_view keyTag = "<key>";

    [[nodiscard]] bool startsWith(std::string_view text) const {
        return static_cast<std::size_t>(end_ - at_) >= text.size() &&
               std::string_view(at_, text.size()) == text;
    }
    template <std::size_t N>
    bool take(const char (&text)[N]) {
        constexpr std::size_t size = N - 1;
        if (end_ - at_ < static_cast<std::ptrdiff_t>(size) || std::memcmp(at_, text, size) != 0)
            return false;
        at_ += size;
        return true;
    }
    template <std::size_t N>
    bool takeTag(const char (&text)[N], XmlTag tag, bool isEmpty, XmlElement& element) {
        constexpr std::size_t size = N - 1;
        if (std::memcmp(at_, text, size) != 0)
            return false;
        at_ += size;
        element = {tag, isEmpty};
        return true;
    }
    void skipSpace() {
        if (indent_.startsAt(at_, end_))
            at_ += indent_.size;
        else
            skipOtherSpace();
    }
    void skipOtherSpace();
    bool takeUsualStartTag(XmlElement& element);
    Found findUnusualElement(XmlElement& element);
    bool takeUnusualCloseTag(XmlTag tag);
    bool takeUnusualText(const char* start, bool isAscii, std::string& buffer, XmlText& text);
    bool skipComment();
    bool skipInstruction();
    bool skipDoctype();
    Found takeStartTag(XmlElement& element);
    bool takeReference(std::string& out);
    bool takeNumericReference(std::string& out);
    bool takeSection(std::string& out);
    bool takeDecodedText(const char* start, std::string& buffer, XmlText& text);
    Found faultHere(const char* message) {
        failHere(message);
        return Found::Fault;
    }

    // White space before a tag, and that tag's '<'.
    struct Indent {
        static constexpr std::ptrdiff_t width = sizeof(std::uint64_t);
        std::uint64_t bytes = ~std::uint64_t{0};
        std::uint64_t mask = ~std::uint64_t{0};
        std::size_t size = 0;

        [[nodiscard]] bool startsAt(const char* at, const char* end) const {
            return end - at >= width && (loadWord(at) & mask) == bytes;
        }
    };
    Indent indent_; // the last one; most often the next is the same
    Indent otherIndent_;

    const char* begin_;
    const char* at_;
    const char* end_;
    const char* faultAt_ = nullptr;
    const char* fault_ = nullptr;
};

// The tags of a list that a program wrote, told by their letters alone. At a '<' that enough bytes follow.
inline bool XmlScanner::takeUsualStartTag(XmlElement& element) {
    switch (at_[1]) {
    case 'k':
        return takeTag("<key>", XmlTag::Key, false, element);
    case 's':
        return takeTag("<string>", XmlTag::String, false, element);
    case 't':
        return takeTag("<true/>", XmlTag::True, true, element);
    case 'f':
        return takeTag("<false/>", XmlTag::False, true, element);
    case 'r':
        return takeTag("<real>", XmlTag::Real, false, element);
    case 'i':
        return takeTag("<integer>", XmlTag::Integer, false, element);
    case 'd':
        return takeTag("<dict>", XmlTag::Dictionary, false, element) ||
               takeTag("<date>", XmlTag::Date, false, element) ||
               takeTag("<data>", XmlTag::Data, false, element);
    case 'a':
        return takeTag("<array>", XmlTag::Array, false, element);
    default:
        return false;
    }
}

} // namespace platform::plist
