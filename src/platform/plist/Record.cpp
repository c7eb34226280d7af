#include "platform/plist/Record.h"

#include <algorithm>

namespace platform::plist {

std::optional<double> Record::number(std::size_t key) const {
    const Field& field = fields_[key];
    const bool isNumber = field.kind == Field::Kind::Number || field.kind == Field::Kind::Boolean;
    return isNumber ? std::optional(field.number) : std::nullopt;
}

std::optional<bool> Record::truth(std::size_t key) const {
    const std::optional<double> value = number(key);
    return value ? std::optional(*value != 0.0) : std::nullopt;
}

std::optional<std::string_view> Record::string(std::size_t key) const {
    const Field& field = fields_[key];
    return field.kind == Field::Kind::String ? std::optional(field.string) : std::nullopt;
}

void Record::clear(bool isDictionary) {
    isDictionary_ = isDictionary;
    std::fill(fields_.begin(), fields_.end(), Field());
}

void Record::fill(Field& field, const Value& value) {
    field = {Field::Kind::Other, 0, {}};
    if (const std::optional<double> number = numberOf(value)) {
        field.kind = value.boolean() ? Field::Kind::Boolean : Field::Kind::Number;
        field.number = *number;
    } else if (const std::optional<std::string_view> string = value.string()) {
        field.kind = Field::Kind::String;
        field.string = *string;
    }
}

void Record::fill(const Value& element) {
    const Dictionary* const dictionary = element.dictionary();
    clear(dictionary != nullptr);
    for (std::size_t key = 0; dictionary && key < keys_.size(); ++key)
        if (const Value* const value = dictionary->find(keys_[key]))
            fill(fields_[key], *value);
}

std::size_t Record::placeOf(std::string_view key) const {
    return static_cast<std::size_t>(std::find(keys_.begin(), keys_.end(), key) - keys_.begin());
}

} // namespace platform::plist
