#include "platform/plist/RecordReader.h"

#include "platform/plist/RecordWalk.h"

namespace platform::plist {

bool Record::has(std::size_t key) const {
    return dictionary_ ? dictionary_->find(keys_[key]) != nullptr : slots_[key].state != State::Absent;
}

std::optional<double> Record::number(std::size_t key) const {
    if (dictionary_) {
        const Value* const value = dictionary_->find(keys_[key]);
        return value ? numberOf(*value) : std::nullopt;
    }
    const Slot& slot = slots_[key];
    const bool isNumber = slot.state == State::Number || slot.state == State::Boolean;
    return isNumber ? std::optional(slot.number) : std::nullopt;
}

std::optional<bool> Record::truth(std::size_t key) const {
    const std::optional<double> value = number(key);
    return value ? std::optional(*value != 0.0) : std::nullopt;
}

std::optional<std::string_view> Record::string(std::size_t key) const {
    if (dictionary_) {
        const Value* const value = dictionary_->find(keys_[key]);
        return value && value->string() ? std::optional<std::string_view>(*value->string()) : std::nullopt;
    }
    const Slot& slot = slots_[key];
    return slot.state == State::Text ? std::optional(slot.text.in(*buffer_)) : std::nullopt;
}

RecordsOutcome visitRecords(std::string_view bytes, std::span<const std::string_view> keys,
                            const std::function<bool(const Record&)>& visit) {
    RecordWalk walk(keys, RecordWalk::Purpose::Read);
    return walk.run(bytes, [&](const Record& record, const Value*) { return visit(record); });
}

} // namespace platform::plist
