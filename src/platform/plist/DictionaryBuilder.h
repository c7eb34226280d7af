#pragma once

#include "platform/plist/Value.h"

#include <array>
#include <memory>
#include <vector>

namespace platform::plist {

// The keys of the dictionaries read last, by their depth: the next one there often has the same.
class RecentKeys final {
public:
    [[nodiscard]] std::shared_ptr<const Dictionary::Keys> at(unsigned depth) const {
        return depth < keys_.size() ? keys_[depth] : nullptr;
    }
    void remember(unsigned depth, const Dictionary& dictionary) {
        if (depth < keys_.size() && keys_[depth] != dictionary.keys())
            keys_[depth] = dictionary.keys();
    }

private:
    std::array<std::shared_ptr<const Dictionary::Keys>, 4> keys_;
};

// A dictionary as its entries are read. Its keys are compared with expected ones, and shared with them where
// they turn out to be the same.
class DictionaryBuilder final {
public:
    explicit DictionaryBuilder(std::shared_ptr<const Dictionary::Keys> expected);

    // The value to fill, valid until the next entry is added.
    Value& add(std::string_view key) {
        const std::size_t place = values_.size();
        if (!isExpected_ || place >= expected_->size() || (*expected_)[place] != key)
            addUnexpected(key);
        return values_.emplace_back();
    }
    [[nodiscard]] Dictionary take(Dictionary::Duplicates duplicates);

private:
    void addUnexpected(std::string_view key);

    std::shared_ptr<const Dictionary::Keys> expected_;
    bool isExpected_; // all keys so far
    Dictionary::Keys keys_;
    std::vector<Value> values_;
};

} // namespace platform::plist
