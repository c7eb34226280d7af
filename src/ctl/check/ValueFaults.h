#pragma once

#include "ctl/Portability.h"
#include "platform/plist/Value.h"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

// What a value of a property list holds that the XML form cannot, so that a list cannot be written back.
namespace ctl {

// Looks through values. It takes time in proportion to the distinct contents of all of them, which must
// outlive it: what is shared is looked at once, where it stands first.
class ValueInspection final {
public:
    // The path that leads to the fault from the value, and a sentence about the fault.
    using Found = std::function<void(const ValuePath& path, std::string_view wrong)>;

    explicit ValueInspection(Found found)
        : found_(std::move(found)) {}

    void inspect(const platform::plist::Value& value);

private:
    void inspectArray(const platform::plist::Array& array);
    void inspectDictionary(const platform::plist::Dictionary& dictionary);
    [[nodiscard]] bool isNew(const void* content) { return known_.insert(content).second; }

    Found found_;
    std::unordered_set<const void*> known_;
    ValuePath path_;
};

// A path as the key of a finding: keys joined by dots, elements counted from 1 in brackets, as in
// "extra.note[2]"; empty for the value itself. Long keys are shortened.
[[nodiscard]] std::string keyOfPath(const ValuePath& path);

} // namespace ctl
