#pragma once

#include "platform/plist/Value.h"
#include "platform/plist/XmlOutput.h"

#include <cstddef>
#include <vector>

// Values in the XML form.
namespace platform::plist {

class XmlWriter final {
public:
    explicit XmlWriter(XmlOutput& output)
        : output_(output) {}

    // False at the first value that the form cannot hold; what was written by then stays.
    [[nodiscard]] bool write(const Value& value, std::size_t indent);

private:
    bool writeArray(const Array& array, std::size_t indent);
    bool writeDictionary(const Dictionary& dictionary, std::size_t indent);
    void writeUid(Uid uid, std::size_t indent);

    XmlOutput& output_;
};

// An estimate, within a small factor, of the size that a value takes when it is written; that of a shared
// container counted each time it stands somewhere, and only once. Neither hangs, whatever is shared.
struct WrittenSize {
    std::size_t expanded = 0; // not above half of what a size can hold
    std::size_t distinct = 0;
};
[[nodiscard]] WrittenSize writtenSize(const Value& value);

} // namespace platform::plist
