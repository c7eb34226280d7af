#include "ctl/Terminal.h"

#include <QString>

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

bool isBreak(char32_t character) {
    return (character >= '\t' && character <= '\r') || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

bool isUnsafe(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x061C ||
           (character >= 0x200E && character <= 0x200F) || (character >= 0x202A && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069) || character == 0xFEFF;
}

std::size_t cellsMissing(const std::string& text, std::size_t width) {
    const std::size_t own = displayWidth(text);
    return width > own ? width - own : 0;
}

} // namespace

std::string terminalText(std::string_view text) {
    std::u32string safe =
        QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toStdU32String();
    for (char32_t& character : safe) {
        if (isBreak(character))
            character = ' ';
        else if (isUnsafe(character))
            character = 0xFFFD;
    }
    return QString::fromStdU32String(safe).toStdString();
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
