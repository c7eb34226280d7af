#include "ctl/TypedJson.h"

#include "ctl/Json.h"
#include "exchange/Text.h"
#include "platform/plist/ExpandedSize.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

namespace ctl {

namespace plist = platform::plist;

namespace {

// An object with one entry.
std::string tagged(std::string_view kind, std::string_view json) {
    std::string object = "{\"";
    object.append(kind).append("\":").append(json).append("}");
    return object;
}

std::string quoted(std::string_view ascii) {
    std::string json = "\"";
    return json.append(ascii).append("\"");
}

// As "%.17g" in the C locale, with the sign of a zero.
std::string digitsOf(double number) {
    if (std::isnan(number))
        return "nan";
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, number, std::chars_format::general, 17);
    return {text, result.ptr};
}

std::string hexadecimal(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += {digits[byte >> 4U], digits[byte & 0xFU]};
    }
    return text;
}

class TypedJsonWriter final {
public:
    void write(const plist::Value& value);
    [[nodiscard]] std::string take() { return std::move(json_); }

private:
    void writeArray(const plist::Array& array) {
        json_ += '[';
        for (const plist::Value& element : array) {
            if (&element != &array.front())
                json_ += ',';
            write(element);
        }
        json_ += ']';
    }

    void writeDictionary(const plist::Dictionary& dictionary) {
        std::vector<std::pair<QString, const plist::Value*>> entries;
        for (const auto& [key, value] : dictionary)
            entries.emplace_back(exchange::textFromUtf8(key), &value);
        std::sort(entries.begin(), entries.end());
        json_ += "{\"dict\":{";
        for (const auto& entry : entries) {
            if (&entry != &entries.front())
                json_ += ',';
            json_ += asciiJsonString(entry.first) + ':';
            write(*entry.second);
        }
        json_ += "}}";
    }

    std::string json_;
};

void TypedJsonWriter::write(const plist::Value& value) {
    switch (value.kind()) {
    case plist::Kind::Null:
        json_ += tagged("null", "0");
        return;
    case plist::Kind::Boolean:
        json_ += *value.boolean() ? "true" : "false";
        return;
    case plist::Kind::Integer:
        json_ += tagged("int", quoted(jsonInteger(*value.integer())));
        return;
    case plist::Kind::Real:
        json_ += tagged("real", quoted(digitsOf(*value.real())));
        return;
    case plist::Kind::Date:
        json_ += tagged("date", quoted(digitsOf(value.date()->seconds)));
        return;
    case plist::Kind::Data:
        json_ += tagged("data", quoted(hexadecimal(value.data()->bytes)));
        return;
    case plist::Kind::String:
        json_ += asciiJsonString(exchange::textFromUtf8(*value.string()));
        return;
    case plist::Kind::Array:
        return writeArray(*value.array());
    case plist::Kind::Dictionary:
        return writeDictionary(*value.dictionary());
    case plist::Kind::Set:
        json_ += tagged("set", std::to_string(value.set()->members->size()));
        return;
    case plist::Kind::Uid:
        json_ += tagged("uid", std::to_string(value.uid()->number));
        return;
    case plist::Kind::ForeignDictionary:
        json_ += tagged("dict_nonstring_keys", std::to_string(value.foreignDictionary()->entries.size()));
        return;
    }
}

} // namespace

std::optional<std::string> typedJson(const plist::Value& value) {
    if (plist::expandsTooFar(value))
        return std::nullopt;
    TypedJsonWriter writer;
    writer.write(value);
    return writer.take();
}

} // namespace ctl
