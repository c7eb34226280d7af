#include "platform/plist/DictionaryBuilder.h"

namespace platform::plist {

DictionaryBuilder::DictionaryBuilder(std::shared_ptr<const Dictionary::Keys> expected)
    : expected_(std::move(expected))
    , isExpected_(expected_ != nullptr) {
    if (isExpected_)
        values_.reserve(expected_->size());
}

// The first key that differs, and all that follow it.
void DictionaryBuilder::addUnexpected(std::string_view key) {
    if (isExpected_) {
        const auto count = static_cast<std::ptrdiff_t>(values_.size());
        keys_.assign(expected_->begin(), expected_->begin() + count);
        isExpected_ = false;
    }
    keys_.emplace_back(key);
}

Dictionary DictionaryBuilder::take(Dictionary::Duplicates duplicates) {
    if (values_.empty())
        return {};
    if (isExpected_ && values_.size() == expected_->size())
        return {std::move(expected_), std::move(values_)};
    if (isExpected_) // and more keys were
        keys_.assign(expected_->begin(), expected_->begin() + static_cast<std::ptrdiff_t>(values_.size()));
    return Dictionary::fromKeysAndValues(std::move(keys_), std::move(values_), duplicates);
}

} // namespace platform::plist
