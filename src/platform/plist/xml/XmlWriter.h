#pragma once

#include "platform/plist/Value.h"

#include <cstddef>
#include <string>
#include <string_view>

// Values in the XML form.
namespace platform::plist {

constexpr std::string_view xmlHeader = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                       "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                       "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                       "<plist version=\"1.0\">\n";
constexpr std::string_view xmlFooter = "</plist>\n";

class XmlWriter final {
public:
    // Appends to a text.
    explicit XmlWriter(std::string& out)
        : out_(out) {}

    // Writes a value in whole lines, each after `indent` tabs or more. False at the first value that the form
    // cannot hold, and for a value that expands too far; what was written by then stays.
    [[nodiscard]] bool write(const Value& value, std::size_t indent);
    // A <real> element alone, without tabs and a line feed.
    void writeReal(double value);

private:
    [[nodiscard]] bool writeElement(const Value& value, std::size_t indent);
    [[nodiscard]] bool writeArray(const Array& array, std::size_t indent);
    [[nodiscard]] bool writeDictionary(const Dictionary& dictionary, std::size_t indent);
    [[nodiscard]] bool writeDate(Date date);
    void writeInteger(Integer integer);
    void writeData(std::string_view bytes, std::size_t indent);
    void writeText(std::string_view text);
    void writeTabs(std::size_t count) { out_.append(count, '\t'); }

    std::string& out_;
};

} // namespace platform::plist
