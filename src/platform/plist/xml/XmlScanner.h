#pragma once

#include "platform/plist/Reader.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

// The XML form's syntax: tags and texts, pulled one after the other in a single pass over UTF-8 bytes. It is
// the platform's syntax, not XML's: attributes are ignored, there are no entities but the five named ones and
// the numeric ones, and what follows the root element is not looked at.
namespace platform::plist {

enum class XmlTag : std::uint8_t {
    Key,
    String,
    Real,
    Integer,
    True,
    False,
    Dictionary,
    Array,
    Data,
    Date,
    Plist
};

// A start tag.
struct XmlElement {
    XmlTag tag = XmlTag::Plist;
    bool isEmpty = false;  // written as `<tag/>`
    std::size_t start = 0; // the offset of its '<'
};

// Whether a text's first character other than white space is a '<'.
[[nodiscard]] bool beginsAsXml(std::string_view text);

class XmlScanner final {
public:
    explicit XmlScanner(std::string_view text)
        : begin_(text.data())
        , at_(text.data())
        , end_(text.data() + text.size()) {}

    enum class Found { Element, CloseTag, Fault };

    // Passes the prolog (declaration, comments, DOCTYPE) and the root's start tag.
    [[nodiscard]] Found findRoot(XmlElement& element);
    // Passes white space, comments, processing instructions and the next start tag. Stays before a close tag.
    [[nodiscard]] Found findElement(XmlElement& element) {
        skipSpace();
        return takePlainStartTag(element) ? Found::Element : findAnyElement(element);
    }
    // What follows the start tag of a key, if one comes next as programs write it; otherwise nothing. Passes
    // white space only.
    [[nodiscard]] std::string_view afterKeyTag() {
        skipSpace();
        return startsWith(keyTag) ? rest().substr(keyTag.size()) : std::string_view();
    }
    // Passes that start tag and so much of what follows it.
    void passKey(std::size_t length) { at_ += keyTag.size() + length; }
    // Passes a tag that closes an element.
    [[nodiscard]] bool takeCloseTag(XmlTag tag) { return takePlainCloseTag(tag) || takeAnyCloseTag(tag); }
    // Passes characters, references and CDATA sections up to the next tag, checked to be UTF-8. A byte order
    // mark at the start is dropped, as the platform's strings do. The text is a view of the source, or of
    // `decoded` where something had to be decoded.
    [[nodiscard]] bool takeText(std::string& decoded, std::string_view& text) {
        const char* at = at_;
        unsigned char seen = 0; // the bits of all characters
        for (; at < end_ && *at != '<' && *at != '&'; ++at)
            seen |= static_cast<unsigned char>(*at);
        text = {at_, static_cast<std::size_t>(at - at_)};
        at_ = at;
        const bool isAscii = seen < 0x80;
        return (isAscii && startsWith("</")) || takeAnyText(isAscii, decoded, text);
    }
    // Passes bytes up to the next '<', unchecked.
    [[nodiscard]] std::string_view takeRaw();

    // The offset of the next byte that the scanner reads.
    [[nodiscard]] std::size_t offset() const { return static_cast<std::size_t>(at_ - begin_); }
    // Notes a fault, of which the first counts; gives false.
    bool fail(std::size_t offset, const char* message);
    bool failHere(const char* message) { return fail(offset(), message); }
    [[nodiscard]] Error error() const;

private:
    static constexpr std::string_view keyTag = "<key>";

    [[nodiscard]] static bool isSpace(char c) { return c == '\t' || c == '\n' || c == ' ' || c == '\r'; }
    [[nodiscard]] std::size_t left() const { return static_cast<std::size_t>(end_ - at_); }
    [[nodiscard]] std::string_view rest() const { return {at_, left()}; }
    [[nodiscard]] bool startsWith(std::string_view expected) const {
        return left() >= expected.size() && std::memcmp(at_, expected.data(), expected.size()) == 0;
    }
    // Passes the expected bytes if they come next, and tells whether they did.
    bool take(std::string_view expected) {
        const bool isNext = startsWith(expected);
        at_ += isNext ? expected.size() : 0;
        return isNext;
    }
    void skipSpace() {
        const char* at = at_;
        while (at < end_ && isSpace(*at))
            ++at;
        at_ = at;
    }
    // The tags of the commonest elements as programs write them.
    bool takePlainStartTag(XmlElement& element);
    bool takePlainCloseTag(XmlTag tag);
    bool takeStartTag(std::string_view expected, XmlTag tag, bool isEmpty, XmlElement& element) {
        element = {tag, isEmpty, offset()};
        return take(expected);
    }
    // Tags and texts of any spelling.
    Found findAnyElement(XmlElement& element);
    Found takeAnyStartTag(XmlElement& element);
    bool takeAnyCloseTag(XmlTag tag);
    bool takeAnyText(bool isAscii, std::string& decoded, std::string_view& text);
    bool takeDecodedText(std::string& decoded, std::string_view& text);
    bool skipPast(std::string_view end, const char* fault);
    bool skipComment();
    bool skipDoctype();
    bool takeReference(std::string& out);
    bool takeNumericReference(std::string& out);
    bool takeSection(std::string& out);
    Found faultAt(std::size_t offset, const char* message) {
        fail(offset, message);
        return Found::Fault;
    }
    Found faultHere(const char* message) { return faultAt(offset(), message); }

    const char* begin_;
    const char* at_;
    const char* end_;
    std::size_t faultAt_ = 0;
    const char* fault_ = nullptr;
};

inline bool XmlScanner::takePlainStartTag(XmlElement& element) {
    if (left() < 2)
        return false;
    switch (at_[1]) {
    case 'k':
        return takeStartTag("<key>", XmlTag::Key, false, element);
    case 's':
        return takeStartTag("<string>", XmlTag::String, false, element);
    case 'r':
        return takeStartTag("<real>", XmlTag::Real, false, element);
    case 'i':
        return takeStartTag("<integer>", XmlTag::Integer, false, element);
    case 't':
        return takeStartTag("<true/>", XmlTag::True, true, element);
    case 'f':
        return takeStartTag("<false/>", XmlTag::False, true, element);
    case 'd':
        return takeStartTag("<dict>", XmlTag::Dictionary, false, element);
    default:
        return false;
    }
}

inline bool XmlScanner::takePlainCloseTag(XmlTag tag) {
    switch (tag) {
    case XmlTag::Key:
        return take("</key>");
    case XmlTag::String:
        return take("</string>");
    case XmlTag::Real:
        return take("</real>");
    case XmlTag::Integer:
        return take("</integer>");
    case XmlTag::Dictionary:
        return take("</dict>");
    default:
        return false;
    }
}

} // namespace platform::plist
