#include "ctl/Json.h"

#include "exchange/Text.h"
#include "platform/plist/TypedJson.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace ctl {

namespace plist = platform::plist;

namespace {

std::string escaped(char16_t unit) {
    char text[8];
    std::snprintf(text, sizeof text, "\\u%04x", unsigned(unit));
    return text;
}

std::string jsonInteger(plist::Integer integer) {
    return integer.isLarge ? std::to_string(integer.bits)
                           : std::to_string(static_cast<std::int64_t>(integer.bits));
}

std::string jsonArray(const plist::Array& array) {
    std::string json = "[";
    for (const plist::Value& element : array) {
        if (json.size() > 1)
            json += ", ";
        json += jsonValue(element);
    }
    return json + "]";
}

std::string jsonObject(const plist::Dictionary& dictionary) {
    std::string json = "{";
    for (const auto& [key, value] : dictionary) {
        if (json.size() > 1)
            json += ", ";
        json += jsonText(exchange::textFromUtf8(key)) + ": " + jsonValue(value);
    }
    return json + "}";
}

} // namespace

std::string jsonText(const QString& text) {
    std::string json = "\"";
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar unit = text[at];
        const bool isPair = unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        if (isPair)
            json += text.mid(at++, 2).toStdString();
        else if (unit.isSurrogate() || unit < u' ' || unit == u'\x7F')
            json += escaped(unit.unicode());
        else if (unit == u'"' || unit == u'\\')
            json.append("\\").append(1, static_cast<char>(unit.unicode()));
        else
            json += exchange::utf8FromText(QString(unit));
    }
    return json + "\"";
}

std::string jsonNumber(double number) {
    if (std::isnan(number))
        return "\"nan\"";
    if (std::isinf(number))
        return number < 0 ? "\"-inf\"" : "\"inf\"";
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, number);
    return {text, result.ptr};
}

std::string jsonValue(const plist::Value& value) {
    switch (value.kind()) {
    case plist::Kind::Boolean:
        return *value.boolean() ? "true" : "false";
    case plist::Kind::Integer:
        return jsonInteger(*value.integer());
    case plist::Kind::Real:
        return jsonNumber(*value.real());
    case plist::Kind::String:
        return jsonText(exchange::textFromUtf8(*value.string()));
    case plist::Kind::Array:
        return jsonArray(*value.array());
    case plist::Kind::Dictionary:
        return jsonObject(*value.dictionary());
    default:
        return plist::typedJson(value).value_or("null");
    }
}

} // namespace ctl
