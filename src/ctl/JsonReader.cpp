#include "ctl/JsonReader.h"

#include "platform/plist/DictionaryBuilder.h"

#include <QString>

#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <utility>

namespace ctl {

namespace plist = platform::plist;

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Reads from the start to the end, stopping at the first fault: every function below gives a value that
// nobody uses once error_ is set.
class Reader final {
public:
    explicit Reader(std::string_view text)
        : text_(text) {}

    std::variant<plist::Value, JsonError> read() {
        plist::Value value = readValue(0);
        skipSpace();
        if (error_.empty() && at_ < text_.size())
            fail("something follows the value");
        if (!error_.empty())
            return errorHere();
        return value;
    }

private:
    static constexpr int deepest = 500;

    plist::Value readValue(int depth) {
        skipSpace();
        if (depth > deepest)
            return fail("the nesting is too deep");
        switch (peek()) {
        case '{':
            return readObject(depth);
        case '[':
            return readArray(depth);
        case '"':
            return plist::Value(readString());
        case 't':
            return readWord("true", plist::Value(true));
        case 'f':
            return readWord("false", plist::Value(false));
        case 'n':
            return readWord("null", plist::Value());
        default:
            return readNumber();
        }
    }

    plist::Value readArray(int depth) {
        plist::Array array;
        ++at_;
        if (!takeAfterSpace(']')) {
            do
                array.push_back(readValue(depth + 1));
            while (error_.empty() && takeAfterSpace(','));
            expect(']', "a comma or ] is missing");
        }
        return plist::Value(std::move(array));
    }

    plist::Value readObject(int depth) {
        plist::DictionaryBuilder dictionary(nullptr);
        std::set<std::string> keys;
        ++at_;
        if (!takeAfterSpace('}')) {
            do
                readEntry(depth, dictionary, keys);
            while (error_.empty() && takeAfterSpace(','));
            expect('}', "a comma or } is missing");
        }
        return plist::Value(dictionary.take(plist::Dictionary::Duplicates::KeepLast));
    }

    void readEntry(int depth, plist::DictionaryBuilder& dictionary, std::set<std::string>& keys) {
        skipSpace();
        if (peek() != '"') {
            fail("a key in quotes is missing");
            return;
        }
        const std::string key = readString();
        if (error_.empty() && !keys.insert(key).second)
            fail("the key stands twice");
        expect(':', "a colon is missing");
        dictionary.add(key) = readValue(depth + 1);
    }

    plist::Value readWord(std::string_view word, plist::Value value) {
        if (!text_.substr(at_).starts_with(word))
            return fail("no value stands here");
        at_ += word.size();
        return value;
    }

    plist::Value readNumber() {
        const std::size_t start = at_;
        take('-');
        if (!take('0') && !takeDigits())
            return fail("no value stands here");
        bool isReal = false;
        if (take('.')) {
            isReal = true;
            if (!takeDigits())
                return fail("a digit is missing");
        }
        if (take('e') || take('E')) {
            isReal = true;
            if (!take('+'))
                take('-');
            if (!takeDigits())
                return fail("a digit is missing");
        }
        return numberOf(text_.substr(start, at_ - start), isReal);
    }

    plist::Value numberOf(std::string_view digits, bool isReal) {
        const char* const end = digits.data() + digits.size();
        double real = 0;
        std::int64_t integer = 0;
        std::uint64_t large = 0;
        if (!isReal && std::from_chars(digits.data(), end, integer).ec == std::errc())
            return plist::Value(integer);
        if (!isReal && digits.front() != '-' && std::from_chars(digits.data(), end, large).ec == std::errc())
            return plist::Value(plist::Integer{large, true});
        if (!isReal || std::from_chars(digits.data(), end, real).ec != std::errc())
            return fail("the number is out of range");
        return plist::Value(real);
    }

    std::string readString() {
        std::string bytes;
        for (++at_; error_.empty();) {
            const std::size_t end = text_.find_first_of("\"\\", at_);
            if (end == std::string_view::npos) {
                fail("the text does not end");
                break;
            }
            appendPlain(bytes, text_.substr(at_, end - at_));
            at_ = end + 1;
            if (text_[end] == '"')
                break;
            appendEscape(bytes);
        }
        return bytes;
    }

    void appendPlain(std::string& bytes, std::string_view plain) {
        for (const char c : plain)
            if (static_cast<unsigned char>(c) < 0x20)
                fail("a control character stands in a text");
        // A mark in front of the piece is kept from QString, which would drop it.
        const std::string guarded = "." + std::string(plain);
        if (QString::fromStdString(guarded).toStdString() != guarded)
            fail("the text is not UTF-8");
        bytes += plain;
    }

    void appendEscape(std::string& bytes) {
        constexpr std::string_view letters = "\"\\/bfnrt";
        constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
        const char letter = peek();
        const std::size_t which = letters.find(letter);
        if (letter != 0 && which != std::string_view::npos) {
            ++at_;
            bytes += meanings[which];
        } else if (letter == 'u') {
            appendCharacter(bytes);
        } else {
            fail("the escape is none of JSON's");
        }
    }

    void appendCharacter(std::string& bytes) {
        const char16_t unit = readUnit();
        QString text{QChar(unit)};
        if (QChar::isHighSurrogate(unit) && peek() == '\\') {
            ++at_;
            text += QChar(readUnit());
        }
        if (!text.isValidUtf16())
            fail("a surrogate stands alone");
        if (error_.empty())
            bytes += unit == 0xFEFF ? std::string("\xEF\xBB\xBF") : text.toStdString();
    }

    char16_t readUnit() {
        constexpr std::size_t length = 5; // u and four digits
        unsigned unit = 0;
        const std::string_view digits = text_.substr(at_, length);
        const char* const end = digits.data() + digits.size();
        if (digits.size() < length || digits[0] != 'u' ||
            std::from_chars(digits.data() + 1, end, unit, 16).ptr != end)
            fail("the escape is none of JSON's");
        else
            at_ += length;
        return static_cast<char16_t>(unit);
    }

    [[nodiscard]] char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }

    bool take(char c) {
        if (peek() != c || at_ == text_.size())
            return false;
        ++at_;
        return true;
    }

    bool takeAfterSpace(char c) {
        skipSpace();
        return take(c);
    }

    bool takeDigits() {
        const std::size_t start = at_;
        while (isDigit(peek()))
            ++at_;
        return at_ > start;
    }

    void expect(char c, const char* message) {
        if (error_.empty() && !takeAfterSpace(c))
            fail(message);
    }

    void skipSpace() { at_ = std::min(text_.find_first_not_of(" \t\r\n", at_), text_.size()); }

    plist::Value fail(const char* message) {
        if (error_.empty()) {
            error_ = message;
            errorAt_ = at_;
        }
        return {};
    }

    [[nodiscard]] JsonError errorHere() const {
        JsonError error{1, 1, error_};
        for (const char c : text_.substr(0, errorAt_)) {
            error.column = c == '\n' ? 1 : error.column + 1;
            error.line += c == '\n';
        }
        return error;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::string error_;
    std::size_t errorAt_ = 0;
};

} // namespace

std::variant<plist::Value, JsonError> readJson(std::string_view text) {
    return Reader(text).read();
}

} // namespace ctl
