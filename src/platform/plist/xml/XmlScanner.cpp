#include "platform/plist/xml/XmlScanner.h"

#include "platform/plist/text/Unicode.h"

#include <algorithm>
#include <array>

namespace platform::plist {

namespace {

constexpr std::size_t nowhere = std::string_view::npos;

// In the order of XmlTag.
constexpr std::array<std::string_view, 11> tagNames = {"key",  "string", "real", "integer", "true", "false",
                                                       "dict", "array",  "data", "date",    "plist"};

struct Named {
    std::string_view reference;
    char character;
};
constexpr Named namedReferences[] = {
    {"lt;", '<'}, {"gt;", '>'}, {"amp;", '&'}, {"apos;", '\''}, {"quot;", '"'}};

// The value of a digit in base 16; 16 for another character.
unsigned digitValue(char c) {
    if (c >= '0' && c <= '9')
        return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f')
        return static_cast<unsigned>(c - 'a') + 10;
    if (c >= 'A' && c <= 'F')
        return static_cast<unsigned>(c - 'A') + 10;
    return 16;
}

} // namespace

bool beginsAsXml(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first != nowhere && text[first] == '<';
}

bool XmlScanner::fail(std::size_t offset, const char* message) {
    if (!fault_) {
        faultAt_ = offset;
        fault_ = message;
    }
    return false;
}

Error XmlScanner::error() const {
    const std::string_view text(begin_, static_cast<std::size_t>(end_ - begin_));
    const std::size_t at = fault_ ? faultAt_ : offset();
    return {at, lineAt(text, at), fault_ ? fault_ : "The text ends too early"};
}

bool XmlScanner::skipPast(std::string_view end, const char* fault) {
    const std::size_t found = rest().find(end);
    if (found == nowhere)
        return failHere(fault);
    at_ += found + end.size();
    return true;
}

bool XmlScanner::skipComment() {
    at_ = std::min(at_, end_);
    return skipPast("-->", "A comment is not closed");
}

// At the character after "<!". There is no internal subset, and so no entity of a list's own.
bool XmlScanner::skipDoctype() {
    if (!startsWith("DOCTYPE"))
        return failHere("A declaration is neither a comment nor a DOCTYPE");
    const std::size_t closing = rest().find_first_of(">[");
    if (closing == nowhere)
        return failHere("The DOCTYPE is not closed");
    if (at_[closing] == '[')
        return fail(offset() + closing, "The DOCTYPE has an internal subset, which is not allowed");
    at_ += closing + 1;
    return true;
}

XmlScanner::Found XmlScanner::findRoot(XmlElement& element) {
    for (;;) {
        skipSpace();
        if (left() < 2)
            return faultHere("The list is empty");
        if (*at_ != '<')
            return faultHere("Text stands where a tag is expected");
        if (take("<!--")) {
            // One character more than the opening, on purpose: the platform's reader loses it, so that a
            // comment without any text ends at the next one.
            ++at_;
            if (!skipComment())
                return Found::Fault;
        } else if (take("<!")) {
            if (!skipDoctype())
                return Found::Fault;
        } else if (take("<?")) {
            if (!skipPast("?>", "A processing instruction is not closed"))
                return Found::Fault;
        } else {
            return takeAnyStartTag(element);
        }
    }
}

XmlScanner::Found XmlScanner::findAnyElement(XmlElement& element) {
    for (;; skipSpace()) {
        if (at_ == end_)
            return faultHere("The text ends inside an element");
        if (*at_ != '<')
            return faultHere("Text stands where a tag is expected");
        if (left() < 2)
            return faultAt(offset() + 1, "The text ends inside a tag");
        switch (at_[1]) {
        case '/':
            return Found::CloseTag;
        case '?':
            ++at_; // so that "<?>" is a whole instruction
            if (!skipPast("?>", "A processing instruction is not closed"))
                return Found::Fault;
            break;
        case '!':
            if (!take("<!--"))
                return faultAt(offset() + 1, "A declaration stands inside an element");
            if (!skipComment())
                return Found::Fault;
            break;
        default:
            return takeAnyStartTag(element);
        }
    }
}

// At the '<'. The name ends at white space or at the tag's end; everything between them is passed over.
XmlScanner::Found XmlScanner::takeAnyStartTag(XmlElement& element) {
    element.start = offset();
    ++at_;
    const std::size_t closing = rest().find('>');
    if (closing == nowhere)
        return faultHere("The text ends inside a tag");
    element.isEmpty = at_[static_cast<std::ptrdiff_t>(closing) - 1] == '/';
    const char* const nameEnd = std::find_if(at_, at_ + closing, &XmlScanner::isSpace);
    std::string_view name(at_, static_cast<std::size_t>(nameEnd - at_));
    if (element.isEmpty && name.size() == closing)
        name.remove_suffix(1);
    const auto found = std::find(tagNames.begin(), tagNames.end(), name);
    if (found == tagNames.end())
        return faultHere("A tag is unknown");
    element.tag = static_cast<XmlTag>(found - tagNames.begin());
    at_ += closing + 1;
    return Found::Element;
}

bool XmlScanner::takeAnyCloseTag(XmlTag tag) {
    const std::string_view name = tagNames[static_cast<std::size_t>(tag)];
    if (left() < name.size() + 3)
        return failHere("The text ends before a close tag");
    if (!startsWith("</") || rest().substr(2, name.size()) != name)
        return failHere("An element is not closed by its own tag");
    const char* const closing = std::find_if_not(at_ + 2 + name.size(), end_, &XmlScanner::isSpace);
    if (closing == end_ || *closing != '>')
        return fail(static_cast<std::size_t>(closing - begin_), "A close tag is not closed");
    at_ = closing + 1;
    return true;
}

std::string_view XmlScanner::takeRaw() {
    const std::string_view raw = rest().substr(0, rest().find('<'));
    at_ += raw.size();
    return raw;
}

// The scanner is after a run of plain characters, and `text` is that run.
bool XmlScanner::takeAnyText(bool isAscii, std::string& decoded, std::string_view& text) {
    if (startsWith("&") || startsWith("<!"))
        return takeDecodedText(decoded, text);
    if (isAscii)
        return true;
    if (!isUtf8(text))
        return fail(offset() - text.size(), "A text is not valid UTF-8");
    text = withoutMark(text);
    return true;
}

bool XmlScanner::takeDecodedText(std::string& decoded, std::string_view& text) {
    const std::size_t start = offset() - text.size();
    decoded = text;
    while (at_ < end_) {
        if (*at_ == '&') {
            if (!takeReference(decoded))
                return false;
        } else if (*at_ == '<') {
            if (!startsWith("<!"))
                break;
            if (!takeSection(decoded))
                return false;
        } else {
            const std::string_view plain = rest().substr(0, rest().find_first_of("<&"));
            decoded.append(plain);
            at_ += plain.size();
        }
    }
    if (!isUtf8(decoded))
        return fail(start, "A text is not valid UTF-8");
    text = withoutMark(decoded);
    return true;
}

// At the '&'.
bool XmlScanner::takeReference(std::string& out) {
    ++at_;
    if (take("#"))
        return takeNumericReference(out);
    for (const Named& named : namedReferences)
        if (take(named.reference)) {
            out += named.character;
            return true;
        }
    return failHere("An entity is unknown");
}

// After the '#'. Up to eight digits, or none at all, which is U+0000.
bool XmlScanner::takeNumericReference(std::string& out) {
    constexpr std::size_t shortest = 3; // with what must follow it
    constexpr int mostDigits = 8;
    if (left() < shortest)
        return fail(offset() - 1, "The text ends inside a character reference");
    const unsigned base = take("x") ? 16 : 10;
    std::uint32_t value = 0;
    for (int digits = 0; at_ < end_; ++digits, ++at_) {
        if (*at_ == ';') {
            ++at_;
            if (value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
                return failHere("A character reference names no character");
            appendCodePoint(out, value);
            return true;
        }
        if (digits == mostDigits)
            return failHere("A character reference is too long");
        const unsigned digit = digitValue(*at_);
        if (digit >= base)
            return failHere("A character reference holds a character that is no digit");
        value = value * base + digit;
    }
    return failHere("The text ends inside a character reference");
}

// At the '<' of "<!".
bool XmlScanner::takeSection(std::string& out) {
    if (!startsWith("<![CDATA["))
        return failHere("A declaration stands inside a text");
    const std::size_t start = std::string_view("<![CDATA[").size();
    const std::size_t end = rest().find("]]>", start);
    if (end == nowhere)
        return failHere("A CDATA section is not closed");
    out.append(at_ + start, end - start);
    at_ += end + 3;
    return true;
}

} // namespace platform::plist
