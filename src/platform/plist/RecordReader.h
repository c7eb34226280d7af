#pragma once

#include "platform/plist/Value.h"
#include "platform/plist/Writer.h"
#include "platform/plist/xml/XmlScanner.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Lists of records, an array of dictionaries of which a few keys are wanted, read without a tree of values.
// Whatever is asked of a record gives the same answer as the tree would.
namespace platform::plist {

// One element of the array, valid only while it is visited. Keys are named by their place among the wanted
// ones.
class Record final {
public:
    // Nothing else may be asked of an element that is no dictionary.
    [[nodiscard]] bool isDictionary() const { return isDictionary_; }
    [[nodiscard]] bool has(std::size_t key) const {
        return dictionary_ ? value(key) != nullptr : slots_[key].state != State::Absent;
    }
    // As numberOf() and truthOf(): none where the key is absent or its value of another kind.
    [[nodiscard]] std::optional<double> number(std::size_t key) const {
        if (dictionary_)
            return value(key) ? numberOf(*value(key)) : std::nullopt;
        const Slot& slot = slots_[key];
        const bool isNumber = slot.state == State::Number || slot.state == State::Boolean;
        return isNumber ? std::optional(slot.number) : std::nullopt;
    }
    [[nodiscard]] std::optional<bool> truth(std::size_t key) const {
        const std::optional<double> value = number(key);
        return value ? std::optional(*value != 0.0) : std::nullopt;
    }
    // A view into the list, or into a buffer of the reader's.
    [[nodiscard]] std::optional<std::string_view> string(std::size_t key) const {
        if (dictionary_) {
            const Value* const content = value(key);
            return content && content->string() ? std::optional<std::string_view>(*content->string())
                                                : std::nullopt;
        }
        const Slot& slot = slots_[key];
        return slot.state == State::Text ? std::optional(slot.text.in(*buffer_)) : std::nullopt;
    }

private:
    friend class RecordWalk;
    friend class BinaryRecordWalk;
    enum class State : std::uint8_t { Absent, Text, Number, Boolean, Other };
    struct Slot {
        State state = State::Absent;
        double number = 0; // of a boolean too
        XmlText text;
    };

    [[nodiscard]] const Value* value(std::size_t key) const { return dictionary_->find(keys_[key]); }

    bool isDictionary_ = false;
    std::span<const Slot> slots_;
    const std::string* buffer_ = nullptr;
    // The record as a value, where it had to be read as one; the slots are unused then.
    const Dictionary* dictionary_ = nullptr;
    std::span<const std::string_view> keys_;
};

enum class RecordsOutcome {
    NoArray,  // no list, or one of another root: whatever was visited is to be forgotten
    Complete, // every record was visited
    Stopped   // the list is sound, and its visitor stopped at a record
};

// Visits the records in file order until the visitor gives false; the rest is checked all the same, because a
// fault anywhere makes it no list at all. At most 64 keys. Beyond the input and what the visitor keeps, an
// XML list takes memory for one record only, a binary one a quarter of its length (and a tree of the records
// that stand in it twice), an old one a tree of values.
[[nodiscard]] RecordsOutcome visitRecords(std::string_view bytes, std::span<const std::string_view> keys,
                                          const std::function<bool(const Record&)>& visit);

// What becomes of a record when its list is rewritten.
struct RecordEdit {
    enum class Action { Keep, Drop, Replace, Stop };
    Action action = Action::Keep;
    std::size_t key = 0; // whose value is replaced
    double number = 0;   // the real that it becomes

    static RecordEdit keep() { return {}; }
    static RecordEdit drop() { return {Action::Drop}; }
    static RecordEdit replace(std::size_t key, double number) { return {Action::Replace, key, number}; }
    static RecordEdit stop() { return {Action::Stop}; }
};

struct RecordsRewriting {
    RecordsOutcome outcome = RecordsOutcome::NoArray;
    // Whether the sink has the XML form of the edited list, exactly as writeXml() gives it. Otherwise what it
    // was given is to be forgotten: the outcome is not Complete, a kept record holds what the form cannot, or
    // the sink took less than all.
    bool isWritten = false;
};

// A list with one element more at its end. What stands there already keeps its kinds and values, whatever it
// is.
[[nodiscard]] RecordsRewriting appendRecord(std::string_view bytes, const Value& record, const Sink& sink);

// Rewrites a list record by record, in pieces as it is read. What is not replaced, keys that are not wanted
// included, keeps its kind and value. Elements that are no dictionaries can be kept as well.
[[nodiscard]] RecordsRewriting rewriteRecords(std::string_view bytes, std::span<const std::string_view> keys,
                                              const std::function<RecordEdit(const Record&)>& edit,
                                              const Sink& sink);

} // namespace platform::plist
