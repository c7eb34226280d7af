#include "platform/plist/Value.h"

namespace platform::plist {

const Value* Dictionary::find(std::string_view key) const {
    for (const Entry& entry : entries_)
        if (entry.first == key)
            return &entry.second;
    return nullptr;
}

} // namespace platform::plist
