#pragma once

#include "platform/plist/Value.h"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <variant>
#include <vector>

// What a value of a property list holds that the XML form cannot, or that other readers of XML (Python's
// plistlib is one) refuse or read otherwise.
namespace ctl {

enum class ValueFault {
    NoXmlForm,      // a null, a set, a key that is no string, a date beyond the calendar
    KeySurrogate,   // a key with a lone surrogate: the XML form would drop it
    NotPortable,    // refused, or read as another value
    CarriageReturn, // read as a line feed where it is not written as a character reference
};

// Looks through values. It takes time in proportion to the distinct contents of all of them, which must
// outlive it: what is shared is looked at once, where it stands first.
class ValueInspection final {
public:
    // The path of keys and elements (from 1, in brackets) that leads to the fault from the value, as in
    // "extra.note[2]", empty for the value itself; and a sentence about the fault.
    using Found = std::function<void(ValueFault, std::string path, std::string_view wrong)>;

    explicit ValueInspection(Found found)
        : found_(std::move(found)) {}

    void inspect(const platform::plist::Value& value);

private:
    void inspectText(std::string_view text);
    void inspectDate(platform::plist::Date date);
    void inspectArray(const platform::plist::Array& array);
    void inspectDictionary(const platform::plist::Dictionary& dictionary);
    [[nodiscard]] bool isNew(const void* content) { return known_.insert(content).second; }
    void tell(ValueFault fault, std::string_view wrong) const;

    Found found_;
    std::unordered_set<const void*> known_;
    std::vector<std::variant<std::string_view, std::size_t>> path_;
};

} // namespace ctl
