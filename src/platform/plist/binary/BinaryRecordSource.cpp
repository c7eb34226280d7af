#include "platform/plist/binary/BinaryRecordSource.h"

namespace platform::plist {

BinaryRecordSource::BinaryRecordSource(std::string_view bytes, std::span<const std::string_view> keys)
    : length_(bytes.size())
    , layout_(BinaryLayout::of(bytes))
    , record_(keys) {
    if (layout_)
        array_ = reader_.emplace(*layout_).openRootArray();
}

const Record* BinaryRecordSource::next() {
    if (!array_)
        return nullptr;
    if (place_ == array_->count) {
        isSound_ = true;
        return nullptr;
    }
    const bool isRead = reader_->read(layout_->referenceAt(array_->content, place_++), 1, element_);
    size_.add(element_);
    if (!isRead || isTooLarge(size_.expanded(), length_)) {
        array_.reset();
        return nullptr;
    }
    record_.fill(element_);
    return &record_;
}

} // namespace platform::plist
