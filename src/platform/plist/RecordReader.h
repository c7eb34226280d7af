#pragma once

#include "platform/plist/Record.h"

#include <memory>
#include <span>
#include <string_view>

// Lists of records, an array of dictionaries of which a few keys are wanted, read without a tree of values.
namespace platform::plist {

// The records of one form of list, in file order.
class RecordSource {
public:
    virtual ~RecordSource() = default;
    // Null at the array's end, at a fault, and where the list's root is no array.
    [[nodiscard]] virtual const Record* next() = 0;
    // Once next() gave null: whether the whole list is sound and its root an array.
    [[nodiscard]] virtual bool isSound() const = 0;
};

class RecordReader final {
public:
    // The bytes and the keys must outlive the reader.
    RecordReader(std::string_view bytes, std::span<const std::string_view> keys);

    // The next element of the array; null after the last one, and as soon as the list proves broken. It is
    // valid until the next call. A fault anywhere makes the bytes no list at all: what the records said
    // counts only once the last of them was read and isSound() says so.
    [[nodiscard]] const Record* next() { return source_->next(); }
    [[nodiscard]] bool isSound() const { return source_->isSound(); }

private:
    std::unique_ptr<RecordSource> source_;
};

} // namespace platform::plist
