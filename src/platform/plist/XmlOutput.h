#pragma once

#include "platform/plist/Value.h"

#include <memory>
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
    void boolean(bool value, std::size_t indent);
    void integer(Integer value, std::size_t indent);
    void real(double value, std::size_t indent);
    // False, and nothing written, for a date outside the calendar.
    [[nodiscard]] bool date(Date value, std::size_t indent);
    void data(std::string_view bytes, std::size_t indent);
    // A tag or several lines as they stand.
    void tag(std::string_view text, std::size_t indent);
    void raw(std::string_view text) { tag(text, 0); }

    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] std::string take();

private:
    char* room(std::size_t size) {
        if (capacity_ - size_ < size)
            grow(size);
        return text_.data() + size_;
    }
    void grow(std::size_t size);
    void used(const char* end) { size_ = static_cast<std::size_t>(end - text_.data()); }
    void line(std::string_view open, std::string_view text, std::string_view close, std::size_t indent);

    std::string text_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace platform::plist
