#include "platform/plist/xml/XmlScanner.h"

#include "platform/plist/text/Unicode.h"

#include <algorithm>
#include <utility>

namespace platform::plist {

namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

struct TagName {
    std::string_view name;
    XmlTag tag;
};

// In the order of XmlTag.
constexpr TagName tagNames[] = {
    {"plist", XmlTag::Plist}, {"array", XmlTag::Array},    {"dict", XmlTag::Dictionary},
    {"key", XmlTag::Key},     {"string", XmlTag::String},  {"data", XmlTag::Data},
    {"date", XmlTag::Date},   {"true", XmlTag::True},      {"false", XmlTag::False},
    {"real", XmlTag::Real},   {"integer", XmlTag::Integer}};

struct Named {
    std::string_view reference;
    char character;
};
constexpr Named namedReferences[] = {
    {"lt;", '<'}, {"gt;", '>'}, {"amp;", '&'}, {"apos;", '\''}, {"quot;", '"'}};

} // namespace

bool XmlScanner::fail(const char* at, const char* message) {
    if (!fault_) {
        faultAt_ = at;
        fault_ = message;
    }
    return false;
}

Error XmlScanner::error() const {
    const std::string_view text(begin_, static_cast<std::size_t>(end_ - begin_));
    const auto offset = static_cast<std::size_t>((fault_ ? faultAt_ : at_) - begin_);
    return {offset, lineAt(text, offset), fault_ ? fault_ : "The text ends too early"};
}

void XmlScanner::skipOtherSpace() {
    const char* const start = at_;
    if (at_ < end_ && *at_ == '<')
        return;
    std::swap(indent_, otherIndent_);
    if (indent_.startsAt(at_, end_)) {
        at_ += indent_.size;
        return;
    }
    while (at_ < end_ && isSpace(*at_))
        ++at_;
    const auto size = static_cast<std::size_t>(at_ - start);
    if (size == 0 || size >= Indent::width || end_ - start < Indent::width || *at_ != '<')
        return;
    indent_.size = size;
    indent_.mask = bytesBefore(~std::uint64_t{0}, static_cast<unsigned>(size + 1));
    indent_.bytes = loadWord(start) & indent_.mask;
}

// At the character after "<!--".
bool XmlScanner::skipComment() {
    const char* const start = std::min(at_, end_);
    const std::string_view rest(start, static_cast<std::size_t>(end_ - start));
    const std::size_t found = rest.find("-->");
    if (found == std::string_view::npos)
        return fail(start, "A comment is not closed");
    at_ = start + found + 3;
    return true;
}

// Where "?>" is looked for.
bool XmlScanner::skipInstruction() {
    const std::string_view rest(at_, static_cast<std::size_t>(end_ - at_));
    const std::size_t found = rest.find("?>");
    if (found == std::string_view::npos)
        return failHere("A processing instruction is not closed");
    at_ += found + 2;
    return true;
}

// At the character after "<!". There is no internal subset, and so no entity of a list's own.
bool XmlScanner::skipDoctype() {
    if (!startsWith("DOCTYPE"))
        return failHere("A declaration is neither a comment nor a DOCTYPE");
    const char* const closing = std::find_if(at_, end_, [](char c) { return c == '>' || c == '['; });
    if (closing == end_)
        return failHere("The DOCTYPE is not closed");
    if (*closing == '[')
        return fail(closing, "The DOCTYPE has an internal subset, which is not allowed");
    at_ = closing + 1;
    return true;
}

XmlScanner::Found XmlScanner::findRoot(XmlElement& element) {
    for (;;) {
        skipSpace();
        if (end_ - at_ < 2)
            return faultHere("The list is empty");
        if (*at_ != '<')
            return faultHere("Text stands where a tag is expected");
        ++at_;
        if (*at_ == '!') {
            ++at_;
            if (startsWith("--")) {
                // One character more than the opening, on purpose: the platform's reader loses it, so that a
                // comment without any text ends at the next one.
                at_ += 3;
                if (!skipComment())
                    return Found::Fault;
            } else if (!skipDoctype()) {
                return Found::Fault;
            }
        } else if (*at_ == '?') {
            ++at_;
            if (!skipInstruction())
                return Found::Fault;
        } else {
            return takeStartTag(element);
        }
    }
}

XmlScanner::Found XmlScanner::findUnusualElement(XmlElement& element) {
    for (;;) {
        skipSpace();
        if (at_ == end_)
            return faultHere("The text ends inside an element");
        if (*at_ != '<')
            return faultHere("Text stands where a tag is expected");
        ++at_;
        if (at_ == end_)
            return faultHere("The text ends inside a tag");
        switch (*at_) {
        case '/':
            --at_;
            return Found::CloseTag;
        case '?': // "<?>" is a whole instruction here
            if (!skipInstruction())
                return Found::Fault;
            break;
        case '!':
            if (!startsWith("!--"))
                return faultHere("A declaration stands inside an element");
            at_ += 3;
            if (!skipComment())
                return Found::Fault;
            break;
        default:
            return takeStartTag(element);
        }
    }
}

// After the '<'. The name ends at white space or at the tag's end; everything between them is passed over.
XmlScanner::Found XmlScanner::takeStartTag(XmlElement& element) {
    const char* const start = at_;
    const char* const closing = std::find(start, end_, '>');
    if (closing == end_)
        return faultHere("The text ends inside a tag");
    element.isEmpty = closing[-1] == '/';
    const char* nameEnd = std::find_if(start, closing, isSpace);
    if (nameEnd == closing && element.isEmpty)
        --nameEnd;
    const std::string_view name(start, static_cast<std::size_t>(std::max(nameEnd, start) - start));
    const auto* const found = std::find_if(std::begin(tagNames), std::end(tagNames),
                                           [&](const TagName& candidate) { return candidate.name == name; });
    if (found == std::end(tagNames))
        return faultHere("A tag is unknown");
    element.tag = found->tag;
    at_ = closing + 1;
    return Found::Element;
}

bool XmlScanner::takeUnusualCloseTag(XmlTag tag) {
    const std::string_view name = tagNames[static_cast<std::size_t>(tag)].name;
    const auto left = static_cast<std::size_t>(end_ - at_);
    if (left < name.size() + 3)
        return failHere("The text ends before a close tag");
    if (at_[0] != '<' || at_[1] != '/' || std::string_view(at_ + 2, name.size()) != name)
        return failHere("An element is not closed by its own tag");
    const char* closing = at_ + 2 + name.size();
    while (closing < end_ && isSpace(*closing))
        ++closing;
    if (closing == end_ || *closing != '>')
        return fail(closing, "A close tag is not closed");
    at_ = closing + 1;
    return true;
}

std::string_view XmlScanner::takeRaw() {
    const char* const start = at_;
    const void* const found = std::memchr(at_, '<', static_cast<std::size_t>(end_ - at_));
    at_ = found ? static_cast<const char*>(found) : end_;
    return {start, static_cast<std::size_t>(at_ - start)};
}

bool XmlScanner::takeUnusualText(const char* start, bool isAscii, std::string& buffer, XmlText& text) {
    const bool isWhole = at_ == end_ || (*at_ == '<' && !(end_ - at_ > 1 && at_[1] == '!'));
    if (!isWhole)
        return takeDecodedText(start, buffer, text);
    text.source = {start, static_cast<std::size_t>(at_ - start)};
    text.isDecoded = false;
    if (isAscii)
        return true;
    if (!isUtf8(text.source))
        return fail(start, "A text is not valid UTF-8");
    text.source = withoutMark(text.source);
    return true;
}

bool XmlScanner::takeDecodedText(const char* start, std::string& buffer, XmlText& text) {
    const std::size_t offset = buffer.size();
    buffer.append(start, at_);
    while (at_ < end_) {
        if (*at_ == '&') {
            if (!takeReference(buffer))
                return false;
        } else if (*at_ == '<') {
            if (end_ - at_ < 2 || at_[1] != '!')
                break;
            if (!takeSection(buffer))
                return false;
        } else {
            const char* const runStart = at_;
            at_ = textRun(at_, end_).end;
            buffer.append(runStart, at_);
        }
    }
    const std::string_view decoded = std::string_view(buffer).substr(offset);
    if (!isUtf8(decoded))
        return fail(start, "A text is not valid UTF-8");
    const std::size_t length = withoutMark(decoded).size();
    text = {{}, buffer.size() - length, length, true};
    return true;
}

// At the '&'.
bool XmlScanner::takeReference(std::string& out) {
    ++at_;
    if (startsWith("#"))
        return takeNumericReference(out);
    for (const Named& named : namedReferences)
        if (startsWith(named.reference)) {
            at_ += named.reference.size();
            out += named.character;
            return true;
        }
    return failHere("An entity is unknown");
}

// At the '#'. Up to eight digits, or none at all, which is U+0000.
bool XmlScanner::takeNumericReference(std::string& out) {
    constexpr std::ptrdiff_t shortest = 4; // with what must follow it
    constexpr int mostDigits = 8;
    if (end_ - at_ < shortest)
        return failHere("The text ends inside a character reference");
    ++at_;
    const bool isHexadecimal = *at_ == 'x';
    if (isHexadecimal)
        ++at_;
    std::uint32_t value = 0;
    for (int digits = 0; at_ < end_; ++digits, ++at_) {
        const char c = *at_;
        if (c == ';') {
            ++at_;
            if (value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
                return failHere("A character reference names no character");
            appendCodePoint(out, value);
            return true;
        }
        if (digits == mostDigits)
            return failHere("A character reference is too long");
        if (c >= '0' && c <= '9')
            value = value * (isHexadecimal ? 16 : 10) + static_cast<std::uint32_t>(c - '0');
        else if (isHexadecimal && c >= 'a' && c <= 'f')
            value = value * 16 + static_cast<std::uint32_t>(c - 'a' + 10);
        else if (isHexadecimal && c >= 'A' && c <= 'F')
            value = value * 16 + static_cast<std::uint32_t>(c - 'A' + 10);
        else
            return failHere("A character reference holds a character that is no digit");
    }
    return failHere("The text ends inside a character reference");
}

// At the '<' of "<!".
bool XmlScanner::takeSection(std::string& out) {
    constexpr std::string_view opening = "<![CDATA[";
    if (!startsWith(opening))
        return failHere("A declaration stands inside a text");
    const char* const start = at_ + opening.size();
    const std::string_view rest(start, static_cast<std::size_t>(end_ - start));
    const std::size_t length = rest.find("]]>");
    if (length == std::string_view::npos)
        return failHere("A CDATA section is not closed");
    out.append(start, length);
    at_ = start + length + 3;
    return true;
}

} // namespace platform::plist
