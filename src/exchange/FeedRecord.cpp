#include "exchange/FeedRecord.h"

#include "exchange/Text.h"

namespace exchange {

namespace plist = platform::plist;
using What = FeedFault::What;

namespace {

std::string_view whatIsWrong(What what) {
    switch (what) {
    case What::NotADictionary:
        return " is not a dictionary";
    case What::Missing:
        return " is missing";
    case What::NotANumber:
        return " is not a number";
    case What::NotAString:
        return " is not a string";
    case What::NotATruthValue:
        return " is neither a boolean nor a number";
    case What::DayCountOverflow:
        return "the setting \"notification_days_count\" is too large";
    case What::NoDate:
        return "the calendar yields no date";
    case What::Unreadable:
        return "no array of records can be read";
    }
    return {};
}

} // namespace

std::string describe(const FeedFault& fault) {
    const std::string_view words = whatIsWrong(fault.what);
    if (!words.starts_with(' '))
        return std::string(words);
    std::string sentence = "record " + std::to_string(fault.record + 1);
    if (fault.what != What::NotADictionary)
        sentence.append(": \"").append(fault.key).append("\"");
    return sentence.append(words);
}

FeedRecord::FeedRecord(const plist::Value& element, std::size_t index)
    : dictionary_(element.dictionary())
    , index_(index) {
    if (!dictionary_)
        fail(What::NotADictionary, {});
}

double FeedRecord::number(std::string_view key) {
    const plist::Value* value = find(key);
    if (!value)
        return 0;
    const std::optional<double> number = plist::numberOf(*value);
    if (!number)
        fail(What::NotANumber, key);
    return number.value_or(0);
}

std::string_view FeedRecord::string(std::string_view key) {
    const plist::Value* value = find(key);
    if (!value)
        return {};
    const std::string* string = value->string();
    if (!string) {
        fail(What::NotAString, key);
        return {};
    }
    return *string;
}

QString FeedRecord::text(std::string_view key) {
    return textFromUtf8(string(key));
}

bool FeedRecord::truth(std::string_view key) {
    const plist::Value* value = find(key);
    if (!value)
        return false;
    const std::optional<bool> truth = plist::truthOf(*value);
    if (!truth)
        fail(What::NotATruthValue, key);
    return truth.value_or(false);
}

const plist::Value* FeedRecord::find(std::string_view key) {
    if (!dictionary_)
        return nullptr;
    const plist::Value* value = dictionary_->find(key);
    if (!value)
        fail(What::Missing, key);
    return value;
}

void FeedRecord::fail(What what, std::string_view key) {
    if (!fault_)
        fault_ = FeedFault{what, index_, key};
}

} // namespace exchange
