#pragma once

#include "platform/plist/xml/Numbers.h"
#include "platform/plist/xml/TextCare.h"
#include "platform/plist/Value.h"
#include "platform/plist/Writer.h"

#include <cstring>
#include <string>
#include <string_view>

// The XML form's pieces, appended one by one: what the writers of values and of records have in common.
namespace platform::plist {

constexpr std::string_view xmlHeader = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                       "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                       "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                       "<plist version=\"1.0\">\n";
constexpr std::string_view xmlFooter = "</plist>\n";

class XmlOutput final {
public:
    // Keeps all that is written.
    XmlOutput() = default;
    // Hands it on in pieces: whenever its room is full, or only when it is asked to.
    enum class HandsOn { WhenFull, WhenAsked };
    explicit XmlOutput(const Sink& sink, HandsOn handsOn = HandsOn::WhenFull)
        : sink_(&sink)
        , handsOnWhenFull_(handsOn == HandsOn::WhenFull) {}

    // How much of the whole is written when that is next asked for: room is made in proportion.
    struct Progress {
        std::size_t done = 0;
        std::size_t of = 0;
    };
    void expect(Progress progress) { progress_ = progress; }

    // Each writes whole lines after `indent` tabs.
    void key(std::string_view text, std::size_t indent) {
        tag("<key>", indent);
        closeText({}, text, "</key>\n");
    }
    void string(std::string_view text, std::size_t indent) {
        tag("<string>", indent);
        closeString({}, text);
    }
    void boolean(bool value, std::size_t indent) {
        tag("", indent);
        closeBoolean({}, value);
    }
    void integer(Integer value, std::size_t indent) {
        tag("<integer>", indent);
        closeInteger({}, value);
    }
    void real(double value, std::size_t indent) {
        tag("<real>", indent);
        closeReal({}, value);
    }
    // False, and nothing written, for a date outside the calendar.
    [[nodiscard]] bool date(Date value, std::size_t indent);
    void data(std::string_view bytes, std::size_t indent);
    template <std::size_t N>
    void tag(const char (&text)[N], std::size_t indent) {
        used(put(putTabs(room(indent + N), indent), text));
    }
    // What is written up to a value's content, as it stands, then the content and the end of its line.
    void closeString(std::string_view before, std::string_view text) {
        closeText(before, text, "</string>\n");
    }
    void closeBoolean(std::string_view before, bool value) {
        char* const out = putText(room(before.size() + sizeof "<false/>\n"), before);
        used(value ? put(out, "<true/>\n") : put(out, "<false/>\n"));
    }
    void closeInteger(std::string_view before, Integer value) {
        char* const out = putText(room(before.size() + numberRoom + sizeof "</integer>\n"), before);
        used(put(formatInteger(out, value), "</integer>\n"));
    }
    void closeReal(std::string_view before, double value) {
        char* const out = putText(room(before.size() + numberRoom + sizeof "</real>\n"), before);
        used(put(formatReal(out, value), "</real>\n"));
    }
    // A value's content alone.
    void text(std::string_view text) { closeText({}, text, ""); }
    void number(Integer value) { used(formatInteger(room(numberRoom), value)); }
    void number(double value) { used(formatReal(room(numberRoom), value)); }
    // As it stands.
    void raw(std::string_view text) { used(putText(room(text.size()), text)); }

    // Of all that was written.
    [[nodiscard]] std::size_t size() const { return handedOn_ + size_; }
    // What was written since it was of this size, which must not be handed on.
    [[nodiscard]] std::string_view since(std::size_t size) const {
        return std::string_view(text_).substr(size - handedOn_, handedOn_ + size_ - size);
    }
    // Forgets what was written since it was of this size, which must not be handed on.
    void cutTo(std::size_t size) { size_ = size - handedOn_; }
    // Hands on all that is written where that is enough for a piece.
    void handOnIfMuch() {
        if (size_ >= pieceSize / 4 * 3)
            handOn();
    }
    // All of it, without a sink.
    [[nodiscard]] std::string take();
    // Hands on what is left; false where the sink did not take all.
    [[nodiscard]] bool finish();

private:
    // Small enough to stay in a processor's cache on its way.
    static constexpr std::size_t pieceSize = std::size_t{1} << 16U;
    // The longest that one byte becomes: "&amp;".
    static constexpr std::size_t escapedRoom = 5;
    // Room for what is stored beyond its end, to be overwritten by what comes next.
    static constexpr std::size_t slack = 32;

    char* room(std::size_t size) {
        if (text_.size() - size_ < size + slack) [[unlikely]]
            makeRoom(size + slack);
        return text_.data() + size_;
    }
    void makeRoom(std::size_t size);
    void grow(std::size_t size);
    void handOn();
    void used(const char* end) { size_ = static_cast<std::size_t>(end - text_.data()); }

    static char* putTabs(char* out, std::size_t count) {
        std::memset(out, '\t', 8);
        if (count > 8) [[unlikely]]
            putManyTabs(out, count);
        return out + count;
    }
    static void putManyTabs(char* out, std::size_t count);
    template <std::size_t N>
    static char* put(char* out, const char (&text)[N]) {
        std::memcpy(out, text, N - 1);
        return out + N - 1;
    }
    // A text as it stands. Short ones in steps of which the last two overlap.
    static char* putText(char* out, std::string_view text);
    // A text with its care taken, in a room that fits it.
    static char* putEscaped(char* out, std::string_view text);

    template <std::size_t N>
    void closeText(std::string_view before, std::string_view text, const char (&close)[N]) {
        char* const start = putText(room(before.size() + escapedRoom * text.size() + N), before);
        char* end = putText(start, text);
        if (mayNeedCare(start, text.size())) [[unlikely]]
            end = putEscaped(start, text);
        used(put(end, close));
    }

    std::string text_; // as long as the room that there is
    std::size_t size_ = 0;
    Progress progress_;
    const Sink* sink_ = nullptr;
    bool handsOnWhenFull_ = false;
    std::size_t handedOn_ = 0;
    bool isRefused_ = false;
};

inline char* XmlOutput::putText(char* out, std::string_view text) {
    const char* const from = text.data();
    const std::size_t size = text.size();
    if (size > 64) {
        std::memcpy(out, from, size);
    } else if (size > 32) {
        std::memcpy(out, from, 32);
        std::memcpy(out + size - 32, from + size - 32, 32);
    } else if (size >= 16) {
        std::memcpy(out, from, 16);
        std::memcpy(out + size - 16, from + size - 16, 16);
    } else if (size >= 8) {
        std::memcpy(out, from, 8);
        std::memcpy(out + size - 8, from + size - 8, 8);
    } else if (size >= 4) {
        std::memcpy(out, from, 4);
        std::memcpy(out + size - 4, from + size - 4, 4);
    } else if (size > 0) {
        out[0] = from[0];
        out[size / 2] = from[size / 2];
        out[size - 1] = from[size - 1];
    }
    return out + size;
}

} // namespace platform::plist
