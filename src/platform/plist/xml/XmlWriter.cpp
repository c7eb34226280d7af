#include "platform/plist/xml/XmlWriter.h"

#include "platform/plist/Sharing.h"
#include "platform/plist/Writer.h"
#include "platform/plist/xml/XmlReader.h"

namespace platform::plist {

namespace {

bool writeList(XmlOutput& output, const Value& value) {
    output.raw(xmlHeader);
    if (!XmlWriter(output, value).write(value, 0))
        return false;
    output.raw(xmlFooter);
    return true;
}

} // namespace

std::optional<std::string> writeXml(const Value& value) {
    XmlOutput output;
    return writeList(output, value) ? std::optional(output.take()) : std::nullopt;
}

bool writeXml(const Value& value, const Sink& sink) {
    XmlOutput output(sink);
    return writeList(output, value) && output.finish();
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
        return mayWrite(value) && writeArray(*value.array(), indent);
    case Kind::Dictionary:
        return mayWrite(value) && writeDictionary(*value.dictionary(), indent);
    case Kind::Uid:
        return writeUid(*value.uid(), indent);
    case Kind::Null:
    case Kind::Set:
    case Kind::ForeignDictionary:
        return false;
    }
    return false;
}

bool XmlWriter::mayWrite(const Value& container) {
    if (!unmeasured_ || !container.isShared())
        return true;
    if (isBeyondMeasure(writtenSize(*unmeasured_)))
        return false;
    unmeasured_ = nullptr;
    return true;
}

bool XmlWriter::writeArray(const Array& array, std::size_t indent) {
    if (array.empty()) {
        output_.tag("<array/>\n", indent);
        return true;
    }
    if (indent >= deepestNesting)
        return false;
    output_.tag("<array>\n", indent);
    for (std::size_t i = 0; i < array.size(); ++i) {
        if (indent == 0)
            output_.expect({i, array.size()});
        if (!write(array[i], indent + 1))
            return false;
    }
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
    if (indent < keyLines_.size())
        return writeEntries(dictionary, indent, keyLines_[indent]);
    KeyLines keys;
    return writeEntries(dictionary, indent, keys);
}

bool XmlWriter::writeEntries(const Dictionary& dictionary, std::size_t indent, KeyLines& keys) {
    if (!keys.serves(dictionary))
        keys.make(dictionary, indent + 1);
    output_.tag("<dict>\n", indent);
    for (const KeyLines::Line& line : keys.lines())
        if (!writeEntry(keys, line, dictionary.valueAt(line.entry), indent + 1))
            return false;
    output_.tag("</dict>\n", indent);
    return true;
}

bool XmlWriter::writeEntry(const KeyLines& keys, const KeyLines::Line& line, const Value& value,
                           std::size_t indent) {
    if (value.kind() == line.kind) {
        switch (line.kind) {
        case Kind::String:
            output_.closeString(keys.opening(line), *value.string());
            return true;
        case Kind::Boolean:
            output_.closeBoolean(keys.opening(line), *value.boolean());
            return true;
        case Kind::Real:
            output_.closeReal(keys.opening(line), *value.real());
            return true;
        case Kind::Integer:
            output_.closeInteger(keys.opening(line), *value.integer());
            return true;
        default:
            break;
        }
    }
    output_.raw(keys.key(line));
    return write(value, indent);
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
