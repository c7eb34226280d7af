#include "ctl/check/ValueFaults.h"

#include "exchange/Text.h"
#include "platform/plist/Writer.h"

#include <variant>

namespace ctl {

namespace plist = platform::plist;

namespace {

// Longer keys are shortened where a path is told.
constexpr std::size_t longestKey = 200;

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
    const plist::Date* const date = value.date();
    if (const plist::Array* array = value.array())
        inspectArray(*array);
    else if (const plist::Dictionary* dictionary = value.dictionary())
        inspectDictionary(*dictionary);
    else if (value.kind() == plist::Kind::Null)
        found_(path_, "a null has no XML form");
    else if (value.set())
        found_(path_, "a set has no XML form");
    else if (value.foreignDictionary())
        found_(path_, "a dictionary with a key that is no string has no XML form");
    else if (date && !plist::writeXml(value))
        found_(path_, "a date beyond the calendar has no XML form");
}

void ValueInspection::inspectArray(const plist::Array& array) {
    if (!isNew(&array))
        return;
    path_.emplace_back(std::size_t{0});
    for (std::size_t place = 0; place < array.size(); ++place) {
        path_.back() = place;
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
        if (isNew(&key) && exchange::hasLoneSurrogate(key))
            found_(path_, "the key holds a lone surrogate, which XML cannot hold");
        inspect(value);
    }
    path_.pop_back();
}

std::string keyOfPath(const ValuePath& path) {
    std::string key;
    for (const auto& step : path) {
        if (const auto* place = std::get_if<std::size_t>(&step))
            key.append("[").append(std::to_string(*place + 1)).append("]");
        else
            key.append(key.empty() ? "" : ".").append(shortened(std::get<std::string_view>(step)));
    }
    return key;
}

} // namespace ctl
