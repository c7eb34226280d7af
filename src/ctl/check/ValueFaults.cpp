#include "ctl/check/ValueFaults.h"

#include "exchange/Text.h"
#include "platform/plist/Writer.h"

#include <utility>

namespace ctl {

namespace plist = platform::plist;

namespace {

// The first second of the years 1 to 9999 and the first after them, in seconds since 2001-01-01 00:00 UTC.
constexpr double firstPortableDate = -63113904000;
constexpr double pastPortableDates = 252423993600;

// Longer keys are shortened where a path is told.
constexpr std::size_t longestKey = 200;

// U+FFFE or U+FFFF in UTF-8.
bool hasNoncharacter(std::string_view text) {
    for (std::size_t at = text.find("\xEF\xBF"); at != text.npos; at = text.find("\xEF\xBF", at + 1))
        if (const std::string_view last = text.substr(at + 2, 1); last == "\xBE" || last == "\xBF")
            return true;
    return false;
}

bool hasForbiddenControl(std::string_view text) {
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x20 && code != '\t' && code != '\n' && code != '\r')
            return true;
    }
    return false;
}

std::string shortened(std::string_view key) {
    if (key.size() <= longestKey)
        return std::string(key);
    std::size_t end = longestKey;
    while (end > 0 && (static_cast<unsigned char>(key[end]) & 0xC0U) == 0x80) // within a character
        --end;
    return std::string(key.substr(0, end)) + "…";
}

} // namespace

void ValueInspection::inspect(const plist::Value& value) {
    if (const plist::SharedString string = value.sharedString()) {
        if (!value.isShared() || isNew(string.get()))
            inspectText(*string);
    } else if (const plist::Date* date = value.date()) {
        inspectDate(*date);
    } else if (const plist::Array* array = value.array()) {
        inspectArray(*array);
    } else if (const plist::Dictionary* dictionary = value.dictionary()) {
        inspectDictionary(*dictionary);
    } else if (value.kind() == plist::Kind::Null) {
        tell(ValueFault::NoXmlForm, "a null has no XML form");
    } else if (value.set()) {
        tell(ValueFault::NoXmlForm, "a set has no XML form");
    } else if (value.foreignDictionary()) {
        tell(ValueFault::NoXmlForm, "a dictionary with a key that is no string has no XML form");
    }
}

void ValueInspection::inspectText(std::string_view text) {
    if (hasForbiddenControl(text))
        tell(ValueFault::NotPortable, "the text holds a control character that XML 1.0 forbids");
    if (hasNoncharacter(text))
        tell(ValueFault::NotPortable, "the text holds U+FFFE or U+FFFF, which XML 1.0 forbids");
    if (exchange::hasLoneSurrogate(text))
        tell(ValueFault::NotPortable, "the text holds a lone surrogate, which XML cannot hold");
    if (text.find('\r') != text.npos)
        tell(ValueFault::CarriageReturn,
             "the text holds a carriage return, which XML readers take for a line feed");
}

void ValueInspection::inspectDate(plist::Date date) {
    if (!plist::writeXml(plist::Value(date)))
        tell(ValueFault::NoXmlForm, "a date beyond the calendar has no XML form");
    else if (!(date.seconds >= firstPortableDate && date.seconds < pastPortableDates))
        tell(ValueFault::NotPortable, "the date is outside the years 1 to 9999");
}

void ValueInspection::inspectArray(const plist::Array& array) {
    if (!isNew(&array))
        return;
    path_.emplace_back(std::size_t{0});
    for (std::size_t place = 0; place < array.size(); ++place) {
        path_.back() = place + 1;
        inspect(array[place]);
    }
    path_.pop_back();
}

void ValueInspection::inspectDictionary(const plist::Dictionary& dictionary) {
    if (!isNew(&dictionary))
        return;
    path_.emplace_back(std::string_view());
    for (const auto& [key, value] : dictionary) {
        path_.back() = std::string_view(key);
        if (isNew(&key)) {
            if (exchange::hasLoneSurrogate(key))
                tell(ValueFault::KeySurrogate, "the key holds a lone surrogate, which XML cannot hold");
            else
                inspectText(key);
        }
        inspect(value);
    }
    path_.pop_back();
}

void ValueInspection::tell(ValueFault fault, std::string_view wrong) const {
    std::string path;
    for (const auto& step : path_) {
        if (const auto* place = std::get_if<std::size_t>(&step))
            path.append("[").append(std::to_string(*place)).append("]");
        else
            path.append(path.empty() ? "" : ".").append(shortened(std::get<std::string_view>(step)));
    }
    found_(fault, std::move(path), wrong);
}

} // namespace ctl
