#pragma once

#include "platform/plist/RecordReader.h"
#include "platform/plist/Value.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// Lists of records, changed record by record.
namespace platform::plist {

// The records of one form of list, and what is changed of them.
class RecordEdits : public RecordSource {
public:
    virtual void drop() = 0;
    virtual void setNumber(std::size_t key, double number) = 0;
    virtual void append(const Value& element) = 0;
    [[nodiscard]] virtual std::optional<std::string> finish() = 0;
};

// An XML list without a byte order mark, its encoding absent or UTF-8 and its root a <plist>, is edited in
// its source: what no edit touches stays as it is spelled, comments too. Of such a list as writeXml() gives
// it the outcome is what reading, changing and writing its value gives, byte for byte. Every other list is
// read to a value and written.
class RecordEditor final {
public:
    // The bytes and the keys must outlive the editor.
    RecordEditor(std::string_view bytes, std::span<const std::string_view> keys);

    // The next element of the array, as RecordReader gives it. It stays as it is, unless drop() or
    // setNumber() is called before the next one is asked for: one call of either.
    [[nodiscard]] const Record* next() { return edits_->next(); }
    // Takes the element out of the list, with its line breaks where nothing else stands on its lines.
    void drop() { edits_->drop(); }
    // Makes the number under a key of the record this real. Does nothing if the record has no number
    // there.
    void setNumber(std::size_t key, double number) { edits_->setNumber(key, number); }
    // Adds an element after all those of the list.
    void append(const Value& element) { edits_->append(element); }

    // Once next() gave null: whether the whole list is sound and its root an array.
    [[nodiscard]] bool isSound() const { return edits_->isSound(); }
    // The edited list in the XML form, or nothing if it holds what this form cannot (see writeXml()), or a
    // key with a lone surrogate: the form drops surrogates, and two keys could become one. Only of a list
    // that is sound.
    [[nodiscard]] std::optional<std::string> finish() { return edits_->finish(); }

private:
    std::unique_ptr<RecordEdits> edits_;
};

} // namespace platform::plist
