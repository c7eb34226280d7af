#include "exchange/Text.h"

namespace exchange {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

unsigned char byteAt(std::string_view bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]);
}

// Where the next surrogate in three-byte form starts (ED A0..BF xx), or the end.
std::size_t findSurrogate(std::string_view bytes, std::size_t from) {
    for (std::size_t at = bytes.find('\xED', from); at != bytes.npos; at = bytes.find('\xED', at + 1))
        if (bytes.size() - at >= 3 && byteAt(bytes, at + 1) >= 0xA0)
            return at;
    return bytes.size();
}

QString wellFormedText(std::string_view bytes) {
    QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (bytes.starts_with(byteOrderMark))
        text.prepend(QChar(QChar::ByteOrderMark));
    return text;
}

QChar surrogateAt(std::string_view bytes, std::size_t at) {
    const unsigned unit = 0xD000u | (byteAt(bytes, at + 1) & 0x3Fu) << 6 | (byteAt(bytes, at + 2) & 0x3Fu);
    return QChar(static_cast<char16_t>(unit));
}

void appendSurrogate(std::string& bytes, char16_t unit) {
    bytes += '\xED';
    bytes += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
    bytes += static_cast<char>(0x80 | (unit & 0x3F));
}

// Where the next surrogate stands that is no half of a pair, or the end.
qsizetype findLoneSurrogate(const QString& text, qsizetype from) {
    for (qsizetype at = from; at < text.size(); ++at) {
        if (!text[at].isSurrogate())
            continue;
        if (text[at].isLowSurrogate() || at + 1 == text.size() || !text[at + 1].isLowSurrogate())
            return at;
        ++at;
    }
    return text.size();
}

} // namespace

bool hasLoneSurrogate(std::string_view bytes) {
    return findSurrogate(bytes, 0) < bytes.size();
}

QString textFromUtf8(std::string_view bytes) {
    std::size_t surrogate = findSurrogate(bytes, 0);
    QString text = wellFormedText(bytes.substr(0, surrogate));
    while (surrogate < bytes.size()) {
        text += surrogateAt(bytes, surrogate);
        const std::size_t from = surrogate + 3;
        surrogate = findSurrogate(bytes, from);
        text += wellFormedText(bytes.substr(from, surrogate - from));
    }
    return text;
}

std::string utf8FromText(const QString& text) {
    if (text.isValidUtf16())
        return text.toStdString();
    std::string bytes;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype lone = findLoneSurrogate(text, at);
        bytes += text.mid(at, lone - at).toStdString();
        if (lone < text.size())
            appendSurrogate(bytes, text[lone].unicode());
        at = lone + 1;
    }
    return bytes;
}

} // namespace exchange
