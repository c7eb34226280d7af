#include "ctl/Terminal.h"

#include "ctl/Characters.h"

#include <QString>

#include <algorithm>
#include <clocale>
#include <cwchar>

namespace ctl {

namespace {

// The widths of Unicode characters, whatever locale the process runs in.
class UnicodeWidths final {
public:
    UnicodeWidths()
        : locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr))
        , previous_(locale_ ? uselocale(locale_) : nullptr) {}
    ~UnicodeWidths() {
        if (!locale_)
            return;
        uselocale(previous_);
        freelocale(locale_);
    }
    UnicodeWidths(const UnicodeWidths&) = delete;
    UnicodeWidths& operator=(const UnicodeWidths&) = delete;

    [[nodiscard]] std::size_t of(char32_t character) const {
        const int width = locale_ ? wcwidth(static_cast<wchar_t>(character)) : 1;
        return width < 0 ? 1 : static_cast<std::size_t>(width);
    }

private:
    locale_t locale_;
    locale_t previous_;
};

std::string hexadecimal(char32_t code, std::size_t digits) {
    std::string text(digits, '0');
    for (; digits > 0; code >>= 4)
        text[--digits] = "0123456789abcdef"[code & 0xFU];
    return text;
}

bool isShown(const Character& character) {
    const bool isBreak = character.code == '\n' || character.code == '\t';
    return character.isEncoded && (isBreak || !isUnsafe(character.code));
}

// The text with what `replace` gives for each unsafe character but line feed and tab, and for each byte that
// is no UTF-8.
template <class Replace>
std::string replaceUnsafe(std::string_view text, Replace replace) {
    std::string safe;
    for (std::size_t at = 0; at < text.size();) {
        const Character character = characterAt(text, at);
        if (isShown(character))
            safe += text.substr(at, character.length);
        else
            safe += replace(character);
        at += character.length;
    }
    return safe;
}

std::string escape(const Character& character) {
    return character.isEncoded ? "\\u" + hexadecimal(character.code, 4)
                               : "\\x" + hexadecimal(character.code, 2);
}

std::size_t cellsMissing(const std::string& text, std::size_t width) {
    const std::size_t own = displayWidth(text);
    return width > own ? width - own : 0;
}

} // namespace

std::string terminalText(std::string_view text) {
    std::string line = terminalLines(text);
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::replace(line.begin(), line.end(), '\t', ' ');
    return line;
}

std::string terminalLines(std::string_view text) {
    return replaceUnsafe(text, escape);
}

std::string terminalXml(std::string_view xml) {
    return replaceUnsafe(
        xml, [](const Character& character) { return "&#x" + hexadecimal(character.code, 4) + ";"; });
}

std::size_t displayWidth(std::string_view text) {
    const UnicodeWidths widths;
    std::size_t width = 0;
    for (const char32_t character :
         QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toStdU32String())
        width += widths.of(character);
    return width;
}

std::string padded(const std::string& text, std::size_t width) {
    return text + std::string(cellsMissing(text, width), ' ');
}

std::string rightAligned(const std::string& text, std::size_t width) {
    return std::string(cellsMissing(text, width), ' ') + text;
}

} // namespace ctl
