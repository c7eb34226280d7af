#include "ctl/TypedJson.h"

#include "ctl/Json.h"
#include "exchange/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ctl {

namespace plist = platform::plist;

namespace {

// An object with one entry, whose value is a string.
void writeTagged(std::ostream& out, std::string_view kind, std::string_view ascii) {
    out << "{\"" << kind << "\":\"" << ascii << "\"}";
}

// The same, whose value is a number.
void writeTagged(std::ostream& out, std::string_view kind, std::uint64_t number) {
    out << "{\"" << kind << "\":" << std::to_string(number) << '}';
}

// As "%.17g" in the C locale, with the sign of a zero.
std::string digitsOf(double number) {
    if (std::isnan(number))
        return "nan";
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, number, std::chars_format::general, 17);
    return {text, result.ptr};
}

void writeData(std::ostream& out, std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    out << "{\"data\":\"";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        out << digits[byte >> 4U] << digits[byte & 0xFU];
    }
    out << "\"}";
}

void writeArray(std::ostream& out, const plist::Array& array) {
    out << '[';
    const char* separator = "";
    for (const plist::Value& element : array) {
        out << separator;
        writeTypedJson(out, element);
        separator = ",";
    }
    out << ']';
}

void writeDictionary(std::ostream& out, const plist::Dictionary& dictionary) {
    std::vector<std::pair<QString, const plist::Value*>> entries;
    for (const auto& [key, value] : dictionary)
        entries.emplace_back(exchange::textFromUtf8(key), &value);
    std::sort(entries.begin(), entries.end());
    out << "{\"dict\":{";
    const char* separator = "";
    for (const auto& [key, value] : entries) {
        out << separator << asciiJsonString(key) << ':';
        writeTypedJson(out, *value);
        separator = ",";
    }
    out << "}}";
}

} // namespace

void writeTypedJson(std::ostream& out, const plist::Value& value) {
    switch (value.kind()) {
    case plist::Kind::Null:
        return writeTagged(out, "null", 0);
    case plist::Kind::Boolean:
        out << (*value.boolean() ? "true" : "false");
        return;
    case plist::Kind::Integer:
        return writeTagged(out, "int", jsonInteger(*value.integer()));
    case plist::Kind::Real:
        return writeTagged(out, "real", digitsOf(*value.real()));
    case plist::Kind::Date:
        return writeTagged(out, "date", digitsOf(value.date()->seconds));
    case plist::Kind::Data:
        return writeData(out, value.data()->bytes);
    case plist::Kind::String:
        out << asciiJsonString(exchange::textFromUtf8(*value.string()));
        return;
    case plist::Kind::Array:
        return writeArray(out, *value.array());
    case plist::Kind::Dictionary:
        return writeDictionary(out, *value.dictionary());
    case plist::Kind::Set:
        return writeTagged(out, "set", value.set()->members->size());
    case plist::Kind::Uid:
        return writeTagged(out, "uid", value.uid()->number);
    case plist::Kind::ForeignDictionary:
        return writeTagged(out, "dict_nonstring_keys", value.foreignDictionary()->entries.size());
    }
}

} // namespace ctl
