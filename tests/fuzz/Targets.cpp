#include "fuzz/Targets.h"

#include "platform/plist/ascii/AsciiReader.h"
#include "platform/plist/binary/BinaryReader.h"
#include "platform/plist/text/Encoding.h"
#include "platform/plist/Reader.h"
#include "platform/plist/RecordReader.h"
#include "platform/plist/text/Unicode.h"
#include "platform/plist/TypedJson.h"
#include "platform/plist/Writer.h"
#include "platform/plist/xml/XmlReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace fuzz {

namespace {

using namespace platform::plist;

void require(bool condition) {
    if (!condition)
        std::abort();
}

void requirePlace(const Error& error, std::size_t size) {
    require(error.offset <= size && !error.message.empty() && error.message.back() != '.');
}

constexpr std::array<std::string_view, 3> keys = {"date", "name", "CF$UID"};

// The two ways to one end: through the tree, and record by record.
void requireSameRecords(std::string_view bytes, const ReadResult& tree) {
    const Value* const value = std::get_if<Value>(&tree);
    const Array* const array = value ? value->array() : nullptr;
    std::size_t count = 0;
    const RecordsOutcome outcome = visitRecords(bytes, keys, [&](const Record& record) {
        // Whatever was visited of a list that turns out to be broken is to be forgotten.
        if (!array)
            return true;
        const Dictionary* const dictionary = (*array)[count].dictionary();
        require(record.isDictionary() == (dictionary != nullptr));
        for (std::size_t key = 0; dictionary && key < keys.size(); ++key) {
            const Value* const content = dictionary->find(keys[key]);
            require(record.has(key) == (content != nullptr));
            const auto number = content ? numberOf(*content) : std::nullopt;
            require(record.number(key).has_value() == number.has_value());
            require(!number || Value(*record.number(key)) == Value(*number));
            require(record.string(key).has_value() == (content && content->string()));
            require(!record.string(key) || *record.string(key) == *content->string());
        }
        ++count;
        return true;
    });
    require(outcome == (array ? RecordsOutcome::Complete : RecordsOutcome::NoArray));
    require(!array || count == array->size());
    std::string rewritten;
    const RecordsRewriting rewriting = rewriteRecords(
        bytes, keys, [](const Record&) { return RecordEdit::keep(); },
        [&](std::string_view piece) {
            rewritten += piece;
            return true;
        });
    require(rewriting.outcome == outcome);
    const std::optional<std::string> written = array ? writeXml(*value) : std::nullopt;
    require(rewriting.isWritten == written.has_value());
    require(!written || rewritten == *written);
}

// A text as it comes back: without lone surrogates, and without the byte order mark that a reader drops.
std::string writtenText(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const CodePoint point = codePointAt(text, at);
        if (point.value < 0xD800 || point.value > 0xDFFF)
            result += text.substr(at, point.length);
        at += point.length;
    }
    return std::string(withoutMark(result));
}

Value writtenValue(const Value& value);

Value writtenDictionary(const Dictionary& dictionary) {
    std::vector<std::pair<std::string, Value>> entries(dictionary.begin(), dictionary.end());
    std::sort(entries.begin(), entries.end(),
              [](const auto& a, const auto& b) { return precedesInUtf16(a.first, b.first); });
    Dictionary::Keys keys;
    std::vector<Value> values;
    for (const auto& [key, value] : entries) {
        keys.push_back(writtenText(key));
        values.push_back(writtenValue(value));
    }
    Dictionary written =
        Dictionary::fromKeysAndValues(std::move(keys), std::move(values), Dictionary::Duplicates::KeepLast);
    const std::optional<Uid> uid = uidOf(written);
    return uid ? Value(*uid) : Value(std::move(written));
}

Value writtenValue(const Value& value) {
    if (const double* real = value.real())
        return Value(*real == 0 ? 0.0 : std::isnan(*real) ? std::numeric_limits<double>::quiet_NaN() : *real);
    if (const Date* date = value.date())
        return Value(Date{std::floor(date->seconds) + 0.0});
    if (const std::optional<std::string_view> text = value.string())
        return Value(writtenText(*text));
    if (const Dictionary* dictionary = value.dictionary())
        return writtenDictionary(*dictionary);
    if (const Array* array = value.array()) {
        Array elements;
        for (const Value& element : *array)
            elements.push_back(writtenValue(element));
        return Value(std::move(elements));
    }
    return value;
}

} // namespace

void readXml(std::string_view bytes) {
    const ReadResult result = platform::plist::readXml(bytes);
    if (const Error* error = std::get_if<Error>(&result))
        requirePlace(*error, bytes.size());
    requireSameRecords(bytes, read(bytes));
}

void readBinary(std::string_view bytes) {
    const ReadResult result = platform::plist::readBinary(bytes);
    if (const Error* error = std::get_if<Error>(&result))
        requirePlace(*error, bytes.size());
    else
        static_cast<void>(typedJson(std::get<Value>(result)));
    requireSameRecords(bytes, read(bytes));
}

void readAscii(std::string_view bytes) {
    if (!isUtf8(bytes))
        return;
    const ReadResult result = platform::plist::readAscii(bytes);
    if (const Error* error = std::get_if<Error>(&result))
        requirePlace(*error, bytes.size());
}

void writeAfterRead(std::string_view bytes) {
    const ReadResult result = read(bytes);
    const Value* const value = std::get_if<Value>(&result);
    const std::optional<std::string> xml = value ? writeXml(*value) : std::nullopt;
    if (!xml)
        return;
    const ReadResult again = read(*xml);
    require(std::holds_alternative<Value>(again));
    require(std::get<Value>(again) == writtenValue(*value));
}

} // namespace fuzz
