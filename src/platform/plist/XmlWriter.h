#pragma once

#include "platform/plist/Value.h"
#include "platform/plist/XmlOutput.h"

#include <cstddef>

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
    bool writeUid(Uid uid, std::size_t indent);

    XmlOutput& output_;
};

} // namespace platform::plist
