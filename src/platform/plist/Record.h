#pragma once

#include "platform/plist/Value.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace platform::plist {

// One element of a list of records: a dictionary of which a few keys are wanted, named by their places among
// them. Whatever is asked of it gives the same answer as the element's value would.
class Record final {
public:
    // What the element holds under a wanted key.
    struct Field {
        enum class Kind { Absent, String, Number, Boolean, Other };
        Kind kind = Kind::Absent;
        double number = 0; // of a boolean 1 or 0
        std::string_view string;
    };

    explicit Record(std::span<const std::string_view> keys)
        : keys_(keys)
        , fields_(keys.size()) {}

    // Nothing else may be asked of an element that is no dictionary.
    [[nodiscard]] bool isDictionary() const { return isDictionary_; }
    [[nodiscard]] bool has(std::size_t key) const { return fields_[key].kind != Field::Kind::Absent; }
    // As numberOf() and truthOf() give them; nothing if the key is absent or its value is of another kind.
    [[nodiscard]] std::optional<double> number(std::size_t key) const;
    [[nodiscard]] std::optional<bool> truth(std::size_t key) const;
    [[nodiscard]] std::optional<std::string_view> string(std::size_t key) const;

    // For those who read records: the fields are filled one by one, or all from a value, which must outlive
    // their use.
    void clear(bool isDictionary);
    [[nodiscard]] Field& field(std::size_t key) { return fields_[key]; }
    static void fill(Field& field, const Value& value);
    void fill(const Value& element);
    // The place of a key among the wanted ones, or their number where it is none of them.
    [[nodiscard]] std::size_t placeOf(std::string_view key) const;

private:
    std::span<const std::string_view> keys_;
    std::vector<Field> fields_;
    bool isDictionary_ = false;
};

} // namespace platform::plist
