#include "ctl/Json.h"

#include "ctl/Characters.h"
#include "ctl/TypedJson.h"
#include "exchange/Text.h"

#include <charconv>
#include <cmath>
#include <ostream>
#include <sstream>

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
        } else if (isUnsafe(unit.unicode())) {
            json += escaped(unit);
        } else {
            if (unit == u'"' || unit == u'\\')
                json += u'\\';
            json += unit;
        }
    }
    return json + u'"';
}

void writeArray(std::ostream& out, const plist::Array& array) {
    out << '[';
    const char* separator = "";
    for (const plist::Value& element : array) {
        out << separator;
        writeJson(out, element);
        separator = ", ";
    }
    out << ']';
}

void writeObject(std::ostream& out, const plist::Dictionary& dictionary) {
    out << '{';
    const char* separator = "";
    for (const auto& [key, value] : dictionary) {
        out << separator << jsonString(exchange::textFromUtf8(key)) << ": ";
        writeJson(out, value);
        separator = ", ";
    }
    out << '}';
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

void writeJson(std::ostream& out, const plist::Value& value) {
    switch (value.kind()) {
    case plist::Kind::Boolean:
        out << (*value.boolean() ? "true" : "false");
        return;
    case plist::Kind::Integer:
        out << jsonInteger(*value.integer());
        return;
    case plist::Kind::Real:
        out << jsonNumber(*value.real());
        return;
    case plist::Kind::String:
        out << jsonString(exchange::textFromUtf8(*value.string()));
        return;
    case plist::Kind::Array:
        return writeArray(out, *value.array());
    case plist::Kind::Dictionary:
        return writeObject(out, *value.dictionary());
    default:
        return writeTypedJson(out, value);
    }
}

std::string jsonValue(const plist::Value& value) {
    std::ostringstream json;
    writeJson(json, value);
    return json.str();
}

} // namespace ctl
