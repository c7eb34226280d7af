#pragma once

#include "platform/plist/ExpandedSize.h"
#include "platform/plist/RecordReader.h"
#include "platform/plist/binary/BinaryReader.h"

#include <optional>

namespace platform::plist {

// The records of a binary list, each read as a value. All together must not expand too far (ExpandedSize.h)
// for the list's length.
class BinaryRecordSource final : public RecordSource {
public:
    BinaryRecordSource(std::string_view bytes, std::span<const std::string_view> keys);

    const Record* next() override;
    [[nodiscard]] bool isSound() const override { return isSound_; }

private:
    std::size_t length_;
    std::optional<BinaryLayout> layout_;
    std::optional<BinaryReader> reader_;
    std::optional<BinaryObject> array_;
    std::size_t place_ = 0;
    ExpandedSize size_;
    Value element_;
    Record record_;
    bool isSound_ = false;
};

} // namespace platform::plist
