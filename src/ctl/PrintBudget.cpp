#include "ctl/PrintBudget.h"

namespace ctl {

namespace plist = platform::plist;

bool PrintBudget::grants(const plist::Value& value) {
    const std::size_t size = seen_.add(value);
    if (plist::isTooLarge(granted_ + size, seen_.distinct()))
        return false;
    granted_ += size;
    return true;
}

bool isPrintable(const plist::Value& value) {
    return PrintBudget().grants(value);
}

} // namespace ctl
