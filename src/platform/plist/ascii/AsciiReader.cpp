#include "platform/plist/ascii/AsciiReader.h"

#include "platform/plist/ascii/NextStep.h"
#include "platform/plist/text/Unicode.h"

#include <algorithm>

namespace platform::plist {

namespace {

constexpr unsigned deepestValue = 512;

constexpr std::string_view lineSeparator = "\xE2\x80\xA8";
constexpr std::string_view paragraphSeparator = "\xE2\x80\xA9";

int hexadecimalDigit(char32_t c) {
    if (c >= '0' && c <= '9')
        return static_cast<int>(c - '0');
    if (c >= 'a' && c <= 'f')
        return static_cast<int>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F')
        return static_cast<int>(c - 'A' + 10);
    return -1;
}

bool isPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("_$/:.-").find(c) != std::string_view::npos;
}

// Reads by recursive descent. An operation that finds nothing leaves its place where it stopped, and its
// caller goes on from there. That is how the platform's reader works and why an array ends soundly after an
// element that could not be read, if only its parenthesis comes next: `(a, <0)` is an array of one text. On
// purpose.
class AsciiReader final {
public:
    explicit AsciiReader(std::string_view text)
        : text_(text) {}

    bool readList(Value& value);
    [[nodiscard]] Error error() const { return {faultOffset_, lineAt(text_, faultOffset_), fault_}; }

private:
    bool fail(const char* message) {
        faultOffset_ = std::min(at_, text_.size());
        fault_ = message;
        return false;
    }
    [[nodiscard]] bool atEnd() const { return at_ >= text_.size(); }
    [[nodiscard]] std::string_view rest() const { return text_.substr(at_); }
    // Whether anything but white space and comments is left, after passing these.
    bool skipSpace();
    bool skipSpaceCharacter();
    bool skipComment();
    bool readValue(unsigned depth, Value& value);
    bool readArray(unsigned depth, Value& value);
    bool readEntries(unsigned depth, Value& value);
    bool readDictionary(unsigned depth, Value& value);
    bool readData(Value& value);
    bool readKey(std::string& key);
    void readPlain(std::string& text);
    bool readQuoted(std::string& text);
    void readEscape(std::string& text);
    char16_t readOctal(unsigned first);
    char16_t readUnit();
    char16_t takeUnit();

    std::string_view text_;
    std::size_t at_ = 0;
    char16_t pendingUnit_ = 0; // the low surrogate of a pair whose high one was taken
    std::size_t faultOffset_ = 0;
    const char* fault_ = "The list is not valid";
};

// Only white space is an empty dictionary. A text that more follows is the first key of a strings file: the
// entries of a dictionary without its braces. Whatever stands after the last entry that can be read is
// ignored, on purpose.
bool AsciiReader::readList(Value& value) {
    if (!skipSpace()) {
        value = Value(Dictionary());
        return true;
    }
    if (!readValue(0, value))
        return false;
    if (!skipSpace())
        return true;
    if (value.kind() != Kind::String)
        return fail("More follows the list");
    at_ = 0;
    return readEntries(0, value);
}

bool AsciiReader::skipSpaceCharacter() {
    const char c = text_[at_];
    if (c == ' ' || (c >= '\t' && c <= '\r')) {
        ++at_;
        return true;
    }
    if (rest().starts_with(lineSeparator) || rest().starts_with(paragraphSeparator)) {
        at_ += lineSeparator.size();
        return true;
    }
    return false;
}

// A comment that is not closed reaches to the end.
bool AsciiReader::skipComment() {
    if (rest().starts_with("//")) {
        at_ += 2;
        while (!atEnd() && text_[at_] != '\n' && text_[at_] != '\r' && !rest().starts_with(lineSeparator) &&
               !rest().starts_with(paragraphSeparator))
            ++at_;
        return true;
    }
    if (rest().starts_with("/*")) {
        const std::size_t end = text_.find("*/", at_ + 2);
        at_ = end == std::string_view::npos ? text_.size() : end + 2;
        return true;
    }
    return false;
}

bool AsciiReader::skipSpace() {
    while (!atEnd())
        if (!skipSpaceCharacter() && !skipComment())
            return true;
    return false;
}

bool AsciiReader::readValue(unsigned depth, Value& value) {
    if (depth > deepestValue)
        return fail("Too many containers are nested");
    if (!skipSpace())
        return fail("The text ends where a value is expected");
    const char c = text_[at_];
    switch (c) {
    case '{':
        ++at_;
        return readDictionary(depth, value);
    case '(':
        ++at_;
        return readArray(depth, value);
    case '<':
        ++at_;
        return readData(value);
    default:
        break;
    }
    std::string text;
    if (c == '"' || c == '\'') {
        if (!readQuoted(text))
            return false;
    } else if (isPlain(c)) {
        readPlain(text);
    } else {
        return fail("No value begins with this character");
    }
    value = Value(std::move(text));
    return true;
}

bool AsciiReader::readArray(unsigned depth, Value& value) {
    Array elements;
    Value element;
    while (readValue(depth + 1, element)) {
        elements.push_back(std::move(element));
        if (!skipSpace())
            return fail("The text ends inside an array");
        if (text_[at_] != ',')
            break;
        ++at_;
    }
    if (!skipSpace() || text_[at_] != ')')
        return fail("An array is not closed");
    ++at_;
    value = Value(std::move(elements));
    return true;
}

bool AsciiReader::readDictionary(unsigned depth, Value& value) {
    if (!readEntries(depth, value))
        return false;
    if (!skipSpace() || text_[at_] != '}')
        return fail("A dictionary is not closed");
    ++at_;
    return true;
}

// Up to where no key stands. A key without a value is its own.
bool AsciiReader::readEntries(unsigned depth, Value& value) {
    std::vector<Dictionary::Entry> entries;
    std::string key;
    while (readKey(key)) {
        if (!skipSpace())
            return fail("The text ends after a key");
        const auto shared = std::make_shared<const std::string>(key);
        Value& content = entries.emplace_back(Dictionary::Entry{shared, Value()}).value;
        if (text_[at_] == '=') {
            ++at_;
            if (!readValue(depth + 1, content))
                return false;
        } else if (text_[at_] == ';') {
            content = Value(shared);
        } else {
            return fail("Neither '=' nor ';' follows a key");
        }
        if (!skipSpace() || text_[at_] != ';')
            return fail("No ';' follows a value");
        ++at_;
    }
    value = Value(Dictionary(std::move(entries), Dictionary::Duplicates::KeepLast));
    return true;
}

bool AsciiReader::readKey(std::string& key) {
    key.clear();
    if (!skipSpace())
        return false;
    if (text_[at_] == '"' || text_[at_] == '\'')
        return readQuoted(key);
    if (!isPlain(text_[at_]))
        return false;
    readPlain(key);
    return true;
}

void AsciiReader::readPlain(std::string& text) {
    const auto* const start = text_.begin() + static_cast<std::ptrdiff_t>(at_);
    const auto* const end = std::find_if_not(start, text_.end(), isPlain);
    text.assign(start, end);
    at_ += text.size();
}

// Where it is not closed, the place is left just after the opening quote.
bool AsciiReader::readQuoted(std::string& text) {
    const char quote = text_[at_];
    const std::size_t start = ++at_;
    while (!atEnd() && text_[at_] != quote) {
        const std::size_t run = at_;
        while (!atEnd() && text_[at_] != quote && text_[at_] != '\\')
            ++at_;
        text.append(text_, run, at_ - run);
        if (atEnd() || text_[at_] == quote)
            break;
        ++at_;
        if (atEnd())
            return fail("The text ends inside an escape");
        readEscape(text);
    }
    if (atEnd()) {
        at_ = start;
        return fail("A quoted text is not closed");
    }
    ++at_;
    return true;
}

// After the backslash. An unknown escape is the character itself.
void AsciiReader::readEscape(std::string& text) {
    const char c = text_[at_];
    if (c >= '0' && c <= '7') {
        ++at_;
        appendUtf16Unit(text, readOctal(static_cast<unsigned>(c - '0')));
        return;
    }
    if (c == 'U') {
        ++at_;
        appendUtf16Unit(text, readUnit());
        return;
    }
    constexpr std::string_view letters = "abfnrtv";
    constexpr std::string_view characters = "\a\b\f\n\r\t\v";
    const std::size_t index = letters.find(c);
    if (index != std::string_view::npos) {
        ++at_;
        text += characters[index];
        return;
    }
    const std::size_t length = codePointAt(text_, at_).length;
    text.append(text_, at_, length);
    at_ += length;
}

// Up to three octal digits in all, a character of the NeXTSTEP set; of a number above 255 the last eight
// bits.
char16_t AsciiReader::readOctal(unsigned first) {
    unsigned code = first;
    for (int i = 0; i < 2 && !atEnd() && text_[at_] >= '0' && text_[at_] <= '7'; ++i, ++at_)
        code = code * 8 + static_cast<unsigned>(text_[at_] - '0');
    return nextStepCharacter(static_cast<unsigned char>(code & 0xFFU));
}

// Up to four hexadecimal digits, or none, which is U+0000.
char16_t AsciiReader::readUnit() {
    unsigned unit = 0;
    for (int i = 0; i < 4 && !atEnd(); ++i, ++at_) {
        const int digit = hexadecimalDigit(static_cast<unsigned char>(text_[at_]));
        if (digit < 0)
            break;
        unit = unit * 16 + static_cast<unsigned>(digit);
    }
    return static_cast<char16_t>(unit);
}

char16_t AsciiReader::takeUnit() {
    if (pendingUnit_ != 0)
        return std::exchange(pendingUnit_, char16_t{0});
    const CodePoint point = codePointAt(text_, at_);
    at_ += point.length;
    if (point.value < 0x10000)
        return static_cast<char16_t>(point.value);
    pendingUnit_ = static_cast<char16_t>(0xDC00 + ((point.value - 0x10000) & 0x3FFU));
    return static_cast<char16_t>(0xD800 + ((point.value - 0x10000) >> 10U));
}

// Pairs of hexadecimal digits, white space between pairs. A digit is told by the low byte of its UTF-16 unit
// alone, so that U+0130 is a 0: the platform's reader looks no further, on purpose.
bool AsciiReader::readData(Value& value) {
    std::string bytes;
    pendingUnit_ = 0;
    for (;;) {
        if (atEnd() && pendingUnit_ == 0)
            return fail("Data is not closed");
        const std::size_t start = at_;
        if (pendingUnit_ == 0 && text_[at_] == '>')
            break;
        const char16_t unit = takeUnit();
        const int high = hexadecimalDigit(unit & 0xFFU);
        if (high < 0) {
            const bool isSpace = unit == ' ' || unit == '\n' || unit == '\t' || unit == '\r' ||
                                 unit == 0x2028 || unit == 0x2029;
            if (isSpace)
                continue;
            at_ = start;
            return fail("Data holds a character that is no hexadecimal digit");
        }
        if (atEnd() && pendingUnit_ == 0)
            return fail("Data has an odd number of digits");
        const std::size_t second = at_;
        const int low = hexadecimalDigit(takeUnit() & 0xFFU);
        if (low < 0) {
            at_ = second;
            return fail("Data has an odd number of digits");
        }
        bytes += static_cast<char>(high * 16 + low);
    }
    ++at_;
    value = Value(Data{std::move(bytes)});
    return true;
}

} // namespace

ReadResult readAscii(std::string_view text) {
    AsciiReader reader(text);
    Value value;
    if (!reader.readList(value))
        return reader.error();
    return value;
}

} // namespace platform::plist
