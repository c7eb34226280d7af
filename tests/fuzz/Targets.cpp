#include "fuzz/Targets.h"

#include "channel/Message.h"
#include "platform/plist/ExpandedSize.h"
#include "platform/plist/Reader.h"
#include "platform/plist/RecordEditor.h"
#include "platform/plist/RecordReader.h"
#include "platform/plist/Writer.h"
#include "platform/plist/ascii/AsciiReader.h"
#include "platform/plist/binary/BinaryReader.h"
#include "platform/plist/text/Encoding.h"
#include "platform/plist/text/Unicode.h"
#include "platform/plist/xml/XmlValueReader.h"

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

const Array* arrayIn(const ReadResult& result) {
    const Value* const value = std::get_if<Value>(&result);
    return value ? value->array() : nullptr;
}

void requireSameRecord(const Record& record, const Value& element) {
    const Dictionary* const dictionary = element.dictionary();
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
}

// The two ways to one end: through the tree, and record by record. Only a list of records that expand too far
// is none to the reader of records.
void requireSameRecords(std::string_view bytes, const ReadResult& tree) {
    const Array* const array = arrayIn(tree);
    std::size_t count = 0;
    RecordReader reader(bytes, keys);
    // What was read of a list that turns out to be broken is to be forgotten.
    for (; const Record* const record = reader.next(); ++count)
        if (array)
            requireSameRecord(*record, (*array)[count]);
    if (array && !reader.isSound()) {
        ExpandedSize size;
        for (const Value& element : *array)
            size.add(element);
        require(isTooLarge(size.expanded(), bytes.size()));
        return;
    }
    require(reader.isSound() == (array != nullptr));
    require(!array || count == array->size());
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
    std::vector<Dictionary::Entry> written;
    for (const auto& [key, value] : entries)
        written.push_back({std::make_shared<const std::string>(writtenText(key)), writtenValue(value)});
    const Dictionary result(std::move(written), Dictionary::Duplicates::KeepLast);
    const std::optional<Uid> uid = uidOf(result);
    return uid ? Value(*uid) : Value(result);
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
        static_cast<void>(expandsTooFar(std::get<Value>(result)));
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

// The dates choose what becomes of a record.
enum class Fate { Kept, Dropped, Moved };
Fate fateOf(std::optional<double> date) {
    if (!date || *date == 0)
        return Fate::Kept;
    return *date < 0 ? Fate::Dropped : Fate::Moved;
}

// Reading, then changing.
Value editedValue(const Array& array, const Value& added) {
    Array kept;
    for (const Value& element : array) {
        const Dictionary* const dictionary = element.dictionary();
        const Value* const date = dictionary ? dictionary->find(keys[0]) : nullptr;
        const Fate fate = fateOf(date ? numberOf(*date) : std::nullopt);
        if (fate == Fate::Dropped)
            continue;
        kept.push_back(element);
        if (fate == Fate::Moved) {
            Dictionary moved = *dictionary;
            moved.set(keys[0], Value(0.1));
            kept.back() = Value(moved);
        }
    }
    kept.push_back(added);
    return Value(kept);
}

void editThenRead(std::string_view bytes) {
    const ReadResult tree = read(bytes);
    const Array* const array = arrayIn(tree);
    RecordEditor editor(bytes, keys);
    while (const Record* const record = editor.next()) {
        const Fate fate = fateOf(record->isDictionary() ? record->number(0) : std::nullopt);
        if (fate == Fate::Dropped)
            editor.drop();
        else if (fate == Fate::Moved)
            editor.setNumber(0, 0.1);
    }
    require(editor.isSound() == (array != nullptr));
    if (!array)
        return;
    const Value added(Array{Value("<added>")});
    editor.append(added);
    const std::optional<std::string> edited = editor.finish();
    if (!edited)
        return;
    const ReadResult again = read(*edited);
    require(std::holds_alternative<Value>(again));
    const Value expected = editedValue(*array, added);
    // The source's own spelling loses nothing; the writer loses what it is stated to drop.
    require(std::get<Value>(again) == expected || std::get<Value>(again) == writtenValue(expected));
}

namespace {

template <class Messages>
void readAndWrite(std::string_view bytes) {
    const auto message = channel::messageOf<Messages>(bytes);
    if (!message)
        return;
    const auto packet = channel::packetOf(*message);
    require(packet && packet->size() <= channel::longestPacket);
    require(channel::messageOf<Messages>(*packet) == message);
}

} // namespace

void readMessage(std::string_view bytes) {
    readAndWrite<channel::ToExtension>(bytes);
    readAndWrite<channel::FromExtension>(bytes);
    readAndWrite<channel::ToFurtherStart>(bytes);
    readAndWrite<channel::FromFurtherStart>(bytes);
}

} // namespace fuzz
