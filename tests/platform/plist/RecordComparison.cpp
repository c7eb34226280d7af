#include "platform/plist/RecordComparison.h"

#include "platform/plist/Reader.h"

#include <bit>
#include <type_traits>

using namespace platform::plist;

namespace {

template <typename T>
std::string textOf(const std::optional<T>& value) {
    if (!value)
        return "none ";
    if constexpr (std::is_same_v<T, double>)
        return std::to_string(std::bit_cast<std::uint64_t>(*value)) + ' ';
    else if constexpr (std::is_same_v<T, bool>)
        return *value ? "true " : "false ";
    else
        return '"' + std::string(*value) + "\" ";
}

std::string describe(const Record& record) {
    if (!record.isDictionary())
        return "no dictionary";
    std::string text;
    for (std::size_t key = 0; key < keys.size(); ++key)
        text += std::string(keys[key]) + (record.has(key) ? ": " : "? ") + textOf(record.number(key)) +
                textOf(record.truth(key)) + textOf(record.string(key));
    return text;
}

// What a value of the tree gives where it stands for a record.
std::string describe(const Value& element) {
    const Dictionary* const dictionary = element.dictionary();
    if (!dictionary)
        return "no dictionary";
    std::string text;
    for (const std::string_view key : keys) {
        const Value* const value = dictionary->find(key);
        std::optional<std::string_view> string;
        if (value && value->string())
            string = *value->string();
        text += std::string(key) + (value ? ": " : "? ") + textOf(value ? numberOf(*value) : std::nullopt) +
                textOf(value ? truthOf(*value) : std::nullopt) + textOf(string);
    }
    return text;
}

} // namespace

Records recordsOf(std::string_view bytes) {
    std::vector<std::string> records;
    RecordReader reader(bytes, keys);
    while (const Record* const record = reader.next())
        records.push_back(describe(*record));
    return reader.isSound() ? Records(records) : std::nullopt;
}

std::optional<Array> arrayOf(std::string_view bytes) {
    const ReadResult result = read(bytes);
    const Value* const root = std::get_if<Value>(&result);
    return root && root->array() ? std::optional(*root->array()) : std::nullopt;
}

Records recordsOfTree(std::string_view bytes) {
    const std::optional<Array> array = arrayOf(bytes);
    if (!array)
        return std::nullopt;
    std::vector<std::string> records;
    for (const Value& element : *array)
        records.push_back(describe(element));
    return records;
}

std::optional<std::string> edited(std::string_view bytes, const Edit& edit) {
    RecordEditor editor(bytes, keys);
    while (const Record* const record = editor.next())
        edit(editor, *record);
    return editor.isSound() ? editor.finish() : std::nullopt;
}

std::optional<std::string> appended(std::string_view bytes, const Value& record) {
    RecordEditor editor(bytes, {});
    while (editor.next()) {
    }
    if (!editor.isSound())
        return std::nullopt;
    editor.append(record);
    return editor.finish();
}

std::optional<std::string> editedByDate(std::string_view bytes) {
    return edited(bytes, [](RecordEditor& editor, const Record& record) {
        const std::optional<double> date = record.isDictionary() ? record.number(0) : std::nullopt;
        if (date && *date < 0)
            editor.drop();
        else if (date && *date > 0)
            editor.setNumber(0, *date / 3);
    });
}

std::optional<Value> editedTree(std::string_view bytes) {
    const std::optional<Array> array = arrayOf(bytes);
    if (!array)
        return std::nullopt;
    Array kept;
    for (const Value& element : *array) {
        const Dictionary* const dictionary = element.dictionary();
        const Value* const value = dictionary ? dictionary->find("date") : nullptr;
        const std::optional<double> date = value ? numberOf(*value) : std::nullopt;
        if (date && *date < 0)
            continue;
        kept.push_back(element);
        if (date && *date > 0) {
            Dictionary changed = *dictionary;
            changed.set("date", Value(*date / 3));
            kept.back() = Value(changed);
        }
    }
    return Value(kept);
}
