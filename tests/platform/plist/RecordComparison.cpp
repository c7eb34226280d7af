#include "platform/plist/RecordComparison.h"

#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"

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

// One of every kind of edit, chosen by what the record says of itself.
RecordEdit editOf(bool isDictionary, std::optional<double> date) {
    if (!isDictionary || !date)
        return RecordEdit::keep();
    return *date < 0   ? RecordEdit::drop()
           : *date > 0 ? RecordEdit::replace(0, *date / 3)
                       : RecordEdit::keep();
}

using Rewriting = std::function<RecordsRewriting(const Sink&)>;

Rewritten collected(const Rewriting& rewriting) {
    std::string pieces;
    const RecordsRewriting result = rewriting([&](std::string_view piece) {
        pieces += piece;
        return true;
    });
    return {result.outcome, result.isWritten ? std::optional(pieces) : std::nullopt};
}

} // namespace

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

Visits visitAsStream(std::string_view bytes, std::size_t stopAt) {
    Visits visits;
    visits.outcome = visitRecords(bytes, keys, [&](const Record& record) {
        visits.records.push_back(describe(record));
        return visits.records.size() <= stopAt;
    });
    if (visits.outcome == RecordsOutcome::NoArray)
        visits.records.clear();
    return visits;
}

Visits visitAsTree(std::string_view bytes, std::size_t stopAt) {
    const ReadResult result = read(bytes);
    const Value* const root = std::get_if<Value>(&result);
    if (!root || !root->array())
        return {};
    Visits visits{RecordsOutcome::Complete, {}};
    for (const Value& element : *root->array()) {
        visits.records.push_back(describe(element));
        if (visits.records.size() > stopAt) {
            visits.outcome = RecordsOutcome::Stopped;
            break;
        }
    }
    return visits;
}

std::optional<std::string> rewriteAsTree(std::string_view bytes) {
    const ReadResult result = read(bytes);
    const Value* const root = std::get_if<Value>(&result);
    if (!root || !root->array())
        return std::nullopt;
    Array kept;
    for (const Value& element : *root->array()) {
        const Dictionary* const dictionary = element.dictionary();
        const Value* const date = dictionary ? dictionary->find(keys[0]) : nullptr;
        const RecordEdit edit = editOf(dictionary != nullptr, date ? numberOf(*date) : std::nullopt);
        if (edit.action == RecordEdit::Action::Drop)
            continue;
        Value value = element;
        if (edit.action == RecordEdit::Action::Replace) {
            Dictionary changed = *dictionary;
            changed.set("date", Value(edit.number));
            value = Value(changed);
        }
        kept.push_back(value);
    }
    return writeXml(Value(kept));
}

Rewritten rewrite(std::string_view bytes, const Edit& edit) {
    return collected([&](const Sink& sink) { return rewriteRecords(bytes, keys, edit, sink); });
}

Rewritten append(std::string_view bytes, const Value& record) {
    return collected([&](const Sink& sink) { return appendRecord(bytes, record, sink); });
}

Rewritten rewriteAsStream(std::string_view bytes) {
    return rewrite(bytes, [](const Record& record) {
        return editOf(record.isDictionary(), record.isDictionary() ? record.number(0) : std::nullopt);
    });
}
