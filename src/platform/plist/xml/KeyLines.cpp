#include "platform/plist/xml/KeyLines.h"

#include "platform/plist/text/Unicode.h"
#include "platform/plist/xml/XmlOutput.h"

#include <algorithm>

namespace platform::plist {

namespace {

void putOpening(XmlOutput& output, Kind kind, std::size_t indent) {
    switch (kind) {
    case Kind::String:
        output.tag("<string>", indent);
        break;
    case Kind::Integer:
        output.tag("<integer>", indent);
        break;
    case Kind::Real:
        output.tag("<real>", indent);
        break;
    case Kind::Boolean:
        output.tag("", indent);
        break;
    default:
        break;
    }
}

} // namespace

bool KeyLines::serves(const Dictionary& dictionary) const {
    return keys_ && (keys_ == dictionary.keys() || *keys_ == *dictionary.keys());
}

void KeyLines::make(const Dictionary& dictionary, std::size_t indent) {
    keys_ = dictionary.keys();
    lines_.clear();
    for (std::size_t place = 0; place < dictionary.size(); ++place)
        lines_.push_back({place, dictionary.valueAt(place).kind(), 0, 0, 0});
    const auto precedes = [&](const Line& a, const Line& b) {
        return precedesInUtf16(dictionary.keyAt(a.entry), dictionary.keyAt(b.entry));
    };
    if (!std::is_sorted(lines_.begin(), lines_.end(), precedes))
        std::sort(lines_.begin(), lines_.end(), precedes);
    XmlOutput output;
    for (Line& line : lines_) {
        line.start = output.size();
        output.key(dictionary.keyAt(line.entry), indent);
        line.keySize = output.size() - line.start;
        putOpening(output, line.kind, indent);
        line.openingSize = output.size() - line.start;
    }
    text_ = output.take();
}

} // namespace platform::plist
