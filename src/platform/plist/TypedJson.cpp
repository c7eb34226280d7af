#include "platform/plist/TypedJson.h"

#include "platform/plist/xml/Numbers.h"
#include "platform/plist/Sharing.h"
#include "platform/plist/text/Unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numeric>

namespace platform::plist {

namespace {

constexpr std::string_view hexadecimal = "0123456789abcdef";

class JsonWriter final {
public:
    void write(const Value& value);
    [[nodiscard]] std::string take() { return std::move(out_); }

private:
    void unit(char32_t value) {
        out_ += "\\u";
        for (int shift = 12; shift >= 0; shift -= 4)
            out_ += hexadecimal[(value >> static_cast<unsigned>(shift)) & 0xFU];
    }

    void text(std::string_view text) {
        out_ += '"';
        for (std::size_t at = 0; at < text.size();) {
            const CodePoint point = codePointAt(text, at);
            at += point.length;
            if (point.value == '"' || point.value == '\\') {
                out_ += {'\\', static_cast<char>(point.value)};
            } else if (point.value >= 0x20 && point.value < 0x7F) {
                out_ += static_cast<char>(point.value);
            } else if (point.value < 0x10000) {
                unit(point.value);
            } else {
                unit(0xD800 + ((point.value - 0x10000) >> 10U));
                unit(0xDC00 + ((point.value - 0x10000) & 0x3FFU));
            }
        }
        out_ += '"';
    }

    void tagged(std::string_view kind, std::string_view text) {
        (((((out_ += "{\"") += kind) += "\":\"") += text) += "\"}");
    }

    void counted(std::string_view kind, std::uint64_t number) {
        (((((out_ += "{\"") += kind) += "\":") += std::to_string(number)) += "}");
    }

    // As "%.17g", zero's sign included.
    void real(std::string_view kind, double value) {
        std::array<char, numberRoom> text{};
        if (std::isnan(value))
            return tagged(kind, "nan");
        const char* const end =
            std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 17).ptr;
        tagged(kind, {text.data(), static_cast<std::size_t>(end - text.data())});
    }

    void integer(Integer value) {
        std::array<char, numberRoom> text{};
        const char* const end = formatInteger(text.data(), value);
        tagged("int", {text.data(), static_cast<std::size_t>(end - text.data())});
    }

    void data(std::string_view bytes) {
        out_ += "{\"data\":\"";
        for (const char c : bytes) {
            const auto byte = static_cast<unsigned char>(c);
            out_ += {hexadecimal[byte >> 4U], hexadecimal[byte & 0xFU]};
        }
        out_ += "\"}";
    }

    void array(const Array& array) {
        out_ += '[';
        for (const Value& element : array) {
            if (&element != &array.front())
                out_ += ',';
            write(element);
        }
        out_ += ']';
    }

    void dictionary(const Dictionary& dictionary) {
        std::vector<std::size_t> sorted(dictionary.size());
        std::iota(sorted.begin(), sorted.end(), std::size_t{0});
        std::sort(sorted.begin(), sorted.end(), [&](std::size_t a, std::size_t b) {
            return precedesInUtf16(dictionary.keyAt(a), dictionary.keyAt(b));
        });
        out_ += "{\"dict\":{";
        for (const std::size_t place : sorted) {
            if (place != sorted.front())
                out_ += ',';
            text(dictionary.keyAt(place));
            out_ += ':';
            write(dictionary.valueAt(place));
        }
        out_ += "}}";
    }

    std::string out_;
};

void JsonWriter::write(const Value& value) {
    switch (value.kind()) {
    case Kind::Null:
        return counted("null", 0);
    case Kind::Boolean:
        out_ += *value.boolean() ? "true" : "false";
        return;
    case Kind::Integer:
        return integer(*value.integer());
    case Kind::Real:
        return real("real", *value.real());
    case Kind::Date:
        return real("date", value.date()->seconds);
    case Kind::Data:
        return data(value.data()->bytes);
    case Kind::String:
        return text(*value.string());
    case Kind::Array:
        return array(*value.array());
    case Kind::Dictionary:
        return dictionary(*value.dictionary());
    case Kind::Set:
        return counted("set", value.set()->members->size());
    case Kind::Uid:
        return counted("uid", value.uid()->number);
    case Kind::ForeignDictionary:
        return counted("dict_nonstring_keys", value.foreignDictionary()->entries.size());
    }
}

} // namespace

std::optional<std::string> typedJson(const Value& value) {
    if (isBeyondMeasure(writtenSize(value)))
        return std::nullopt;
    JsonWriter writer;
    writer.write(value);
    return writer.take();
}

} // namespace platform::plist
