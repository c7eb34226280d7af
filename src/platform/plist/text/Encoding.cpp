#include "platform/plist/text/Encoding.h"

#include "platform/plist/text/Unicode.h"

#include <algorithm>
#include <array>

namespace platform::plist {

namespace {

enum class Charset {
    Utf8,
    Utf16Big,
    Utf16Little,
    Utf32Big,
    Utf32Little,
    Ascii,
    Latin1,
    Windows1252,
    Unknown
};

struct Guess {
    Charset charset = Charset::Utf8;
    std::size_t skip = 0; // bytes of a mark
    const char* fault = nullptr;
};

struct Mark {
    std::string_view bytes;
    Charset charset;
};

using namespace std::string_view_literals;

// In the order in which they are looked for: the mark of UTF-32 LE begins as that of UTF-16 LE.
constexpr std::array<Mark, 5> marks = {{{"\x00\x00\xFE\xFF"sv, Charset::Utf32Big},
                                        {"\xFF\xFE\x00\x00"sv, Charset::Utf32Little},
                                        {"\xEF\xBB\xBF"sv, Charset::Utf8},
                                        {"\xFF\xFE"sv, Charset::Utf16Little},
                                        {"\xFE\xFF"sv, Charset::Utf16Big}}};

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// ASCII is read as Latin 1: the platform does not mind a byte above 127 in it.
Charset charsetNamed(std::string_view name) {
    struct Name {
        std::string_view name;
        Charset charset;
    };
    static constexpr Name names[] = {{"utf-8", Charset::Utf8},
                                     {"utf8", Charset::Utf8},
                                     {"us-ascii", Charset::Latin1},
                                     {"ascii", Charset::Latin1},
                                     {"iso-8859-1", Charset::Latin1},
                                     {"latin1", Charset::Latin1},
                                     {"windows-1252", Charset::Windows1252},
                                     {"utf-16", Charset::Utf16Little},
                                     {"utf-16be", Charset::Utf16Big},
                                     {"utf-16le", Charset::Utf16Little},
                                     {"utf-32", Charset::Utf32Little},
                                     {"utf-32be", Charset::Utf32Big},
                                     {"utf-32le", Charset::Utf32Little}};
    std::string lowered(name);
    std::transform(lowered.begin(), lowered.end(), lowered.begin(), lower);
    for (const Name& entry : names)
        if (entry.name == lowered)
            return entry.charset;
    return Charset::Unknown;
}

// The encoding that a leading `<?xml … encoding="…"` states.
Guess declaredCharset(std::string_view bytes) {
    constexpr std::string_view opening = "<?xml";
    constexpr std::string_view attribute = "encoding=";
    if (!bytes.starts_with(opening))
        return {};
    std::size_t at = opening.size();
    for (;; ++at) {
        if (at >= bytes.size() || bytes[at] == '?' || bytes[at] == '>')
            return {};
        if (at + attribute.size() >= bytes.size())
            return {Charset::Unknown, 0, "The XML declaration is not closed"};
        if (bytes.substr(at, attribute.size()) == attribute)
            break;
    }
    at += attribute.size();
    const char quote = bytes[at];
    if (quote != '"' && quote != '\'')
        return {};
    const std::size_t end = bytes.find(quote, at + 1);
    if (end == std::string_view::npos)
        return {};
    const Charset charset = charsetNamed(bytes.substr(at + 1, end - at - 1));
    return {charset, 0,
            charset == Charset::Unknown ? "The XML declaration names an unknown encoding" : nullptr};
}

Guess guessCharset(std::string_view bytes) {
    for (const Mark& mark : marks)
        if (bytes.size() > mark.bytes.size() && bytes.starts_with(mark.bytes))
            return {mark.charset, mark.bytes.size()};
    // Without a mark, a NUL among the first two bytes means UTF-16, whose first unit is then skipped as if it
    // were one. So the platform reads it, on purpose: such a list is nearly always refused.
    if (bytes.size() > 2 && (bytes[0] == '\0' || bytes[1] == '\0'))
        return {Charset::Utf16Little, 2};
    return declaredCharset(bytes);
}

std::uint32_t unitOf(std::string_view bytes, std::size_t at, std::size_t width, bool isBig) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[at + (isBig ? i : width - 1 - i)]);
        value = (value << 8U) | byte;
    }
    return value;
}

// An odd byte at the end is no unit and is ignored.
void convertUtf16(std::string_view bytes, bool isBig, std::string& text) {
    text.reserve(bytes.size() / 2 + 16);
    for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2)
        appendUtf16Unit(text, static_cast<char16_t>(unitOf(bytes, at, 2, isBig)));
}

bool convertUtf32(std::string_view bytes, bool isBig, std::string& text) {
    text.reserve(bytes.size() / 4 + 16);
    for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) {
        const std::uint32_t value = unitOf(bytes, at, 4, isBig);
        if (value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
            return false;
        appendCodePoint(text, value);
    }
    return true;
}

bool convertBytes(std::string_view bytes, Charset charset, std::string& text) {
    // 0x80 to 0x9F of Windows 1252; zero where it has no character.
    static constexpr char16_t middle[] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                          0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                          0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                          0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        char32_t value = byte;
        if (byte >= 0x80 && byte < 0xA0 && charset == Charset::Windows1252)
            value = middle[byte - 0x80];
        if (value == 0 && byte != 0)
            return false;
        appendCodePoint(text, value);
    }
    return true;
}

bool convert(std::string_view bytes, Charset charset, std::string& text) {
    switch (charset) {
    case Charset::Utf16Big:
    case Charset::Utf16Little:
        convertUtf16(bytes, charset == Charset::Utf16Big, text);
        return true;
    case Charset::Utf32Big:
    case Charset::Utf32Little:
        return convertUtf32(bytes, charset == Charset::Utf32Big, text);
    default:
        return convertBytes(bytes, charset, text);
    }
}

} // namespace

std::optional<Error> decodeText(std::string_view bytes, DecodedText& result) {
    const Guess guess = guessCharset(bytes);
    if (guess.fault)
        return Error{0, 1, guess.fault};
    if (guess.charset == Charset::Utf8) {
        result.xml = bytes.substr(guess.skip);
        result.old = withoutMark(bytes);
        return std::nullopt;
    }
    if (!convert(bytes.substr(guess.skip), guess.charset, result.buffer))
        return Error{0, 1, "The text is not of its declared encoding"};
    result.xml = std::string_view(result.buffer).substr(0, findSurrogate(result.buffer));
    if (result.xml.empty())
        return Error{0, 1, "The list is empty"};
    result.old = result.buffer;
    return std::nullopt;
}

} // namespace platform::plist
