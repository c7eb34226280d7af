#include "platform/plist/xml/XmlOutput.h"

#include "platform/plist/xml/Base64.h"
#include "platform/plist/xml/Dates.h"

#include <algorithm>

namespace platform::plist {

namespace {

bool isSurrogate(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]) == 0xED && at + 2 < text.size() &&
           static_cast<unsigned char>(text[at + 1]) >= 0xA0;
}

} // namespace

// Lone surrogates are left out.
char* XmlOutput::putEscaped(char* out, std::string_view text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        switch (text[at]) {
        case '<':
            out = put(out, "&lt;");
            break;
        case '>':
            out = put(out, "&gt;");
            break;
        case '&':
            out = put(out, "&amp;");
            break;
        default:
            if (isSurrogate(text, at))
                at += 2;
            else
                *out++ = text[at];
        }
    }
    return out;
}

void XmlOutput::putManyTabs(char* out, std::size_t count) {
    std::memset(out, '\t', count);
}

void XmlOutput::makeRoom(std::size_t size) {
    if (handsOnWhenFull_)
        handOn();
    if (text_.size() - size_ < size)
        grow(size);
}

void XmlOutput::grow(std::size_t size) {
    const std::size_t first = sink_ ? pieceSize : 4096;
    constexpr std::size_t mostGrowth = 16; // whatever is expected, which may be wrong
    std::size_t room = std::max({first, text_.size() * 2, size_ + size});
    if (progress_.done > 0) {
        const std::size_t expected = (size_ / progress_.done + 1) * progress_.of;
        room = std::max(room, std::min(expected + expected / 64 + first, text_.size() * mostGrowth));
    }
    text_.resize(room);
}

void XmlOutput::handOn() {
    if (size_ > 0 && !isRefused_)
        isRefused_ = !(*sink_)({text_.data(), size_});
    handedOn_ += size_;
    size_ = 0;
    text_.resize(std::min(text_.size(), pieceSize)); // a long text may have needed more
}

bool XmlOutput::finish() {
    handOn();
    return !isRefused_;
}

std::string XmlOutput::take() {
    text_.resize(size_);
    return std::move(text_);
}

bool XmlOutput::date(Date value, std::size_t indent) {
    char* const out = put(putTabs(room(indent + dateRoom + 24), indent), "<date>");
    char* const end = formatDate(out, value.seconds);
    if (end)
        used(put(end, "</date>\n"));
    return end != nullptr;
}

void XmlOutput::data(std::string_view bytes, std::size_t indent) {
    tag("<data>\n", indent);
    used(encodeBase64(room(base64Size(bytes.size(), indent)), bytes, indent));
    tag("</data>\n", indent);
}

} // namespace platform::plist
