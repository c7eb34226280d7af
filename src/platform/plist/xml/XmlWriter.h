#pragma once

#include "platform/plist/xml/KeyLines.h"
#include "platform/plist/Value.h"
#include "platform/plist/xml/XmlOutput.h"

#include <array>
#include <cstddef>

// Values in the XML form.
namespace platform::plist {

class XmlWriter final {
public:
    explicit XmlWriter(XmlOutput& output)
        : output_(output) {}
    // Refuses the value that everything belongs to where its shared containers would grow beyond all measure.
    // Few values share, so that it is measured only when the first shared one is met.
    XmlWriter(XmlOutput& output, const Value& whole)
        : output_(output)
        , unmeasured_(&whole) {}

    // False at the first value that the form cannot hold; what was written by then stays.
    [[nodiscard]] bool write(const Value& value, std::size_t indent);

private:
    bool writeArray(const Array& array, std::size_t indent);
    bool writeDictionary(const Dictionary& dictionary, std::size_t indent);
    bool writeEntries(const Dictionary& dictionary, std::size_t indent, KeyLines& keys);
    bool writeEntry(const KeyLines& keys, const KeyLines::Line& line, const Value& value, std::size_t indent);
    bool writeUid(Uid uid, std::size_t indent);
    bool mayWrite(const Value& container);

    XmlOutput& output_;
    const Value* unmeasured_ = nullptr;
    // Of the dictionaries written last, by their depth; deeper ones have their own. While one is in use, no
    // other dictionary of its depth is written.
    std::array<KeyLines, 4> keyLines_;
};

} // namespace platform::plist
