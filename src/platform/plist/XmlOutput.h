#pragma once

#include "platform/plist/Value.h"

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
    explicit XmlOutput(std::size_t expectedSize);

    // Each writes whole lines after `indent` tabs.
    void key(std::string_view text, std::size_t indent) { line("<key>", text, "</key>\n", indent); }
    void string(std::string_view text, std::size_t indent) { line("<string>", text, "</string>\n", indent); }
    void boolean(bool value, std::size_t indent) {
        if (value)
            tag("<true/>\n", indent);
        else
            tag("<false/>\n", indent);
    }
    void integer(Integer value, std::size_t indent);
    void real(double value, std::size_t indent);
    // False, and nothing written, for a date outside the calendar.
    [[nodiscard]] bool date(Date value, std::size_t indent);
    void data(std::string_view bytes, std::size_t indent);
    template <std::size_t N>
    void tag(const char (&text)[N], std::size_t indent) {
        used(put(putTabs(room(indent + slack + N), indent), text));
    }
    // Lines as they stand.
    void raw(std::string_view text);

    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] std::string take();

private:
    // The longest that one byte becomes: "&amp;".
    static constexpr std::size_t escapedRoom = 5;
    // Room for what is stored beyond its end, to be overwritten by what comes next.
    static constexpr std::size_t slack = 16;

    char* room(std::size_t size) {
        if (capacity_ - size_ < size)
            grow(size);
        return text_.data() + size_;
    }
    void grow(std::size_t size);
    void used(const char* end) { size_ = static_cast<std::size_t>(end - text_.data()); }

    static char* putTabs(char* out, std::size_t count) {
        std::memset(out, '\t', 8);
        if (count > 8)
            std::memset(out, '\t', count);
        return out + count;
    }
    template <std::size_t N>
    static char* put(char* out, const char (&text)[N]) {
        std::memcpy(out, text, N - 1);
        return out + N - 1;
    }
    static char* putText(char* out, std::string_view text);

    template <std::size_t N, std::size_t M>
    void line(const char (&open)[N], std::string_view text, const char (&close)[M], std::size_t indent) {
        char* out = room(indent + N + escapedRoom * text.size() + M + slack);
        out = put(putTabs(out, indent), open);
        used(put(putText(out, text), close));
    }

    std::string text_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace platform::plist
