#include "platform/plist/XmlWriter.h"

#include "platform/plist/Sharing.h"
#include "platform/plist/Text.h"
#include "platform/plist/Writer.h"
#include "platform/plist/XmlReader.h"

#include <algorithm>
#include <vector>

namespace platform::plist {

std::optional<std::string> writeXml(const Value& value) {
    const WrittenSize size = writtenSize(value);
    if (isBeyondMeasure(size))
        return std::nullopt;
    XmlOutput output(xmlHeader.size() + size.expanded + xmlFooter.size());
    output.raw(xmlHeader);
    if (!XmlWriter(output).write(value, 0))
        return std::nullopt;
    output.raw(xmlFooter);
    return output.take();
}

bool XmlWriter::write(const Value& value, std::size_t indent) {
    switch (value.kind()) {
    case Kind::Boolean:
        output_.boolean(*value.boolean(), indent);
        return true;
    case Kind::Integer:
        output_.integer(*value.integer(), indent);
        return true;
    case Kind::Real:
        output_.real(*value.real(), indent);
        return true;
    case Kind::Date:
        return output_.date(*value.date(), indent);
    case Kind::Data:
        output_.data(value.data()->bytes, indent);
        return true;
    case Kind::String:
        output_.string(*value.string(), indent);
        return true;
    case Kind::Array:
        return writeArray(*value.array(), indent);
    case Kind::Dictionary:
        return writeDictionary(*value.dictionary(), indent);
    case Kind::Uid:
        return writeUid(*value.uid(), indent);
    case Kind::Null:
    case Kind::Set:
    case Kind::ForeignDictionary:
        return false;
    }
    return false;
}

bool XmlWriter::writeArray(const Array& array, std::size_t indent) {
    if (array.empty()) {
        output_.tag("<array/>\n", indent);
        return true;
    }
    if (indent >= deepestNesting)
        return false;
    output_.tag("<array>\n", indent);
    for (const Value& element : array)
        if (!write(element, indent + 1))
            return false;
    output_.tag("</array>\n", indent);
    return true;
}

bool XmlWriter::writeDictionary(const Dictionary& dictionary, std::size_t indent) {
    if (dictionary.size() == 0) {
        output_.tag("<dict/>\n", indent);
        return true;
    }
    if (indent >= deepestNesting)
        return false;
    std::vector<const Dictionary::Entry*> sorted;
    sorted.reserve(dictionary.size());
    for (const Dictionary::Entry& entry : dictionary.entries())
        sorted.push_back(&entry);
    const auto precedes = [](const Dictionary::Entry* a, const Dictionary::Entry* b) {
        return precedesInUtf16(a->first, b->first);
    };
    if (!std::is_sorted(sorted.begin(), sorted.end(), precedes))
        std::sort(sorted.begin(), sorted.end(), precedes);
    output_.tag("<dict>\n", indent);
    for (const Dictionary::Entry* entry : sorted) {
        output_.key(entry->first, indent + 1);
        if (!write(entry->second, indent + 1))
            return false;
    }
    output_.tag("</dict>\n", indent);
    return true;
}

bool XmlWriter::writeUid(Uid uid, std::size_t indent) {
    if (indent >= deepestNesting)
        return false;
    output_.tag("<dict>\n", indent);
    output_.key("CF$UID", indent + 1);
    output_.integer({uid.number, false}, indent + 1);
    output_.tag("</dict>\n", indent);
    return true;
}

} // namespace platform::plist
