#include "platform/plist/xml/Base64.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace platform::plist {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t notInAlphabet = 0xFF;

constexpr std::array<std::uint8_t, 128> makeDigits() {
    std::array<std::uint8_t, 128> digits{};
    digits.fill(notInAlphabet);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        digits[static_cast<std::size_t>(alphabet[i])] = static_cast<std::uint8_t>(i);
    digits['='] = 0;
    return digits;
}

constexpr std::array<std::uint8_t, 128> digits = makeDigits();

bool isSpace(unsigned char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::size_t tabs(std::size_t indent) {
    return std::min<std::size_t>(indent, 8);
}

// Characters on a line, always whole groups of four.
std::size_t lineWidth(std::size_t indent) {
    return 76 - 8 * tabs(indent);
}

} // namespace

std::optional<std::string> decodeBase64(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    int inGroup = 0;
    int padding = 0; // of the '=' just before, whatever white space stands between them
    for (const char character : text) {
        const auto c = static_cast<unsigned char>(character);
        if (c >= digits.size())
            return std::nullopt;
        if (c == '=')
            ++padding;
        else if (!isSpace(c))
            padding = 0;
        if (digits[c] == notInAlphabet)
            continue;
        group = (group << 6U) | digits[c];
        if (++inGroup < 4)
            continue;
        bytes += static_cast<char>(group >> 16U);
        if (padding < 2)
            bytes += static_cast<char>(group >> 8U);
        if (padding < 1)
            bytes += static_cast<char>(group);
        inGroup = 0;
    }
    return bytes;
}

void appendBase64(std::string& out, std::string_view bytes, std::size_t indent) {
    const std::size_t perLine = lineWidth(indent) / 4 * 3;
    while (!bytes.empty()) {
        out.append(tabs(indent), '\t');
        const std::string_view line = bytes.substr(0, perLine);
        bytes.remove_prefix(line.size());
        for (std::size_t i = 0; i < line.size(); i += 3) {
            const auto byte = [&](std::size_t index) {
                return index < line.size()
                           ? static_cast<std::uint32_t>(static_cast<unsigned char>(line[index]))
                           : 0U;
            };
            const std::uint32_t group = (byte(i) << 16U) | (byte(i + 1) << 8U) | byte(i + 2);
            out += alphabet[group >> 18U];
            out += alphabet[(group >> 12U) & 0x3FU];
            out += i + 1 < line.size() ? alphabet[(group >> 6U) & 0x3FU] : '=';
            out += i + 2 < line.size() ? alphabet[group & 0x3FU] : '=';
        }
        out += '\n';
    }
}

} // namespace platform::plist
