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

FeedRecord::FeedRecord(const plist::Record& record, std::size_t index)
    : record_(record)
    , index_(index) {
    if (!record_.isDictionary())
        fault_ = FeedFault{What::NotADictionary, index_, {}};
}

double FeedRecord::number(FeedKey key) {
    const auto number = fault_ ? std::nullopt : record_.number(static_cast<std::size_t>(key));
    if (!number)
        fail(What::NotANumber, key);
    return number.value_or(0);
}

std::string_view FeedRecord::string(FeedKey key) {
    const auto string = fault_ ? std::nullopt : record_.string(static_cast<std::size_t>(key));
    if (!string)
        fail(What::NotAString, key);
    return string.value_or(std::string_view());
}

QString FeedRecord::text(FeedKey key) {
    return textFromUtf8(string(key));
}

bool FeedRecord::truth(FeedKey key) {
    const auto truth = fault_ ? std::nullopt : record_.truth(static_cast<std::size_t>(key));
    if (!truth)
        fail(What::NotATruthValue, key);
    return truth.value_or(false);
}

// A key that is absent is told from one whose value is of another kind.
void FeedRecord::fail(What what, FeedKey key) {
    if (fault_)
        return;
    const auto place = static_cast<std::size_t>(key);
    fault_ = FeedFault{record_.has(place) ? what : What::Missing, index_, feedKeys[place]};
}

} // namespace exchange
