#include "ctl/Json.h"

#include "ctl/TypedJson.h"
#include "exchange/Text.h"

#include <charconv>
#include <cmath>

namespace ctl {

namespace plist = platform::plist;

namespace {

QString escaped(QChar unit) {
    return QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QChar(u'0'));
}

bool isSurrogatePairAt(const QString& text, qsizetype at) {
    return text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
}

QString quoted(const QString& text) {
    QString json(u'"');
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar unit = text[at];
        if (isSurrogatePairAt(text, at)) {
            json += unit;
            json += text[++at];
        } else if (unit.isSurrogate() || unit < u' ' || unit == u'\x7F') {
            json += escaped(unit);
        } else {
            if (unit == u'"' || unit == u'\\')
                json += u'\\';
            json += unit;
        }
    }
    return json + u'"';
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
        json += jsonString(exchange::textFromUtf8(key)) + ": " + jsonValue(value);
    }
    return json + "}";
}

} // namespace

std::string jsonString(const QString& text) {
    return quoted(text).toStdString();
}

std::string asciiJsonString(const QString& text) {
    QString json;
    for (const QChar unit : quoted(text)) {
        if (unit < u'\x80')
            json += unit;
        else
            json += escaped(unit);
    }
    return json.toStdString();
}

std::string jsonInteger(plist::Integer integer) {
    return integer.isLarge ? std::to_string(integer.bits)
                           : std::to_string(static_cast<std::int64_t>(integer.bits));
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
        return jsonString(exchange::textFromUtf8(*value.string()));
    case plist::Kind::Array:
        return jsonArray(*value.array());
    case plist::Kind::Dictionary:
        return jsonObject(*value.dictionary());
    default:
        return typedJson(value).value_or("null");
    }
}

} // namespace ctl
