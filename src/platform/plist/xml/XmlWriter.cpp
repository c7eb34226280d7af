#include "platform/plist/xml/XmlWriter.h"

#include "platform/plist/ExpandedSize.h"
#include "platform/plist/text/Unicode.h"
#include "platform/plist/xml/Base64.h"
#include "platform/plist/xml/Dates.h"
#include "platform/plist/xml/Numbers.h"
#include "platform/plist/xml/XmlValueReader.h"

#include <algorithm>
#include <array>
#include <vector>

namespace platform::plist {

namespace {

// The characters that a text cannot hold as they are, and the first byte of a lone surrogate.
constexpr std::array<bool, 256> specialBytes = [] {
    std::array<bool, 256> special{};
    for (const unsigned char c : {'<', '>', '&', '\xED'})
        special[c] = true;
    return special;
}();

bool isSpecial(char c) {
    return specialBytes[static_cast<unsigned char>(c)];
}

struct Entry {
    std::string_view key;
    const Value* value;
};

bool precedes(const Entry& a, const Entry& b) {
    return precedesInUtf16(a.key, b.key);
}

std::vector<Entry> sortedEntries(const Dictionary& dictionary) {
    std::vector<Entry> entries;
    entries.reserve(dictionary.size());
    for (const auto& [key, value] : dictionary)
        entries.push_back({key, &value});
    if (!std::is_sorted(entries.begin(), entries.end(), precedes))
        std::sort(entries.begin(), entries.end(), precedes);
    return entries;
}

} // namespace

bool XmlWriter::write(const Value& value, std::size_t indent) {
    ExpandedSize size;
    size.add(value);
    if (isTooLarge(size.expanded(), size.distinct()))
        return false;
    out_.reserve(out_.size() + size.expanded());
    return writeElement(value, indent);
}

bool XmlWriter::writeElement(const Value& value, std::size_t indent) {
    writeTabs(indent);
    switch (value.kind()) {
    case Kind::Boolean:
        out_.append(*value.boolean() ? "<true/>" : "<false/>");
        break;
    case Kind::Integer:
        writeInteger(*value.integer());
        break;
    case Kind::Real:
        writeReal(*value.real());
        break;
    case Kind::Date:
        if (!writeDate(*value.date()))
            return false;
        break;
    case Kind::Uid: {
        Dictionary reference;
        reference.set(uidKey, Value(Integer{value.uid()->number, false}));
        if (!writeDictionary(reference, indent))
            return false;
        break;
    }
    case Kind::String:
        out_.append("<string>");
        writeText(*value.string());
        out_.append("</string>");
        break;
    case Kind::Data:
        writeData(value.data()->bytes, indent);
        break;
    case Kind::Array:
        if (!writeArray(*value.array(), indent))
            return false;
        break;
    case Kind::Dictionary:
        if (!writeDictionary(*value.dictionary(), indent))
            return false;
        break;
    case Kind::Null:
    case Kind::Set:
    case Kind::ForeignDictionary:
        return false;
    }
    out_ += '\n';
    return true;
}

bool XmlWriter::writeArray(const Array& array, std::size_t indent) {
    if (array.empty()) {
        out_.append("<array/>");
        return true;
    }
    if (indent >= deepestNesting)
        return false;
    out_.append("<array>\n");
    for (const Value& element : array)
        if (!writeElement(element, indent + 1))
            return false;
    writeTabs(indent);
    out_.append("</array>");
    return true;
}

bool XmlWriter::writeDictionary(const Dictionary& dictionary, std::size_t indent) {
    if (dictionary.size() == 0) {
        out_.append("<dict/>");
        return true;
    }
    if (indent >= deepestNesting)
        return false;
    out_.append("<dict>\n");
    for (const Entry& entry : sortedEntries(dictionary)) {
        writeTabs(indent + 1);
        out_.append("<key>");
        writeText(entry.key);
        out_.append("</key>\n");
        if (!writeElement(*entry.value, indent + 1))
            return false;
    }
    writeTabs(indent);
    out_.append("</dict>");
    return true;
}

bool XmlWriter::writeDate(Date date) {
    out_.append("<date>");
    if (!appendDate(out_, date.seconds))
        return false;
    out_.append("</date>");
    return true;
}

void XmlWriter::writeReal(double value) {
    out_.append("<real>");
    appendReal(out_, value);
    out_.append("</real>");
}

void XmlWriter::writeInteger(Integer integer) {
    out_.append("<integer>");
    appendInteger(out_, integer);
    out_.append("</integer>");
}

void XmlWriter::writeData(std::string_view bytes, std::size_t indent) {
    out_.append("<data>\n");
    appendBase64(out_, bytes, indent);
    writeTabs(indent);
    out_.append("</data>");
}

// Lone surrogates are left out.
void XmlWriter::writeText(std::string_view text) {
    constexpr std::size_t surrogateLength = 3;
    for (;;) {
        const auto special = std::find_if(text.begin(), text.end(), isSpecial);
        const auto plain = static_cast<std::size_t>(special - text.begin());
        out_.append(text.substr(0, plain));
        if (plain == text.size())
            return;
        text.remove_prefix(plain);
        std::size_t length = 1;
        if (text[0] == '<')
            out_.append("&lt;");
        else if (text[0] == '>')
            out_.append("&gt;");
        else if (text[0] == '&')
            out_.append("&amp;");
        else if (startsWithSurrogate(text))
            length = surrogateLength;
        else
            out_ += text[0];
        text.remove_prefix(length);
    }
}

} // namespace platform::plist
