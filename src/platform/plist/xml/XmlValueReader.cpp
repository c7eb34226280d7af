#include "platform/plist/xml/XmlValueReader.h"

#include "platform/plist/xml/Base64.h"
#include "platform/plist/xml/Dates.h"
#include "platform/plist/xml/Numbers.h"

#include <limits>
#include <utility>
#include <vector>

namespace platform::plist {

namespace {

using Found = XmlScanner::Found;

// The low 32 bits of an integer; a real is cut to its whole part, within 32 bits.
std::uint64_t uidNumber(const Value& number) {
    if (const Integer* integer = number.integer())
        return integer->bits & 0xFFFFFFFFU;
    const double real = *number.real();
    if (!(real > std::numeric_limits<std::int32_t>::min()))
        return 0x80000000U;
    if (real >= std::numeric_limits<std::int32_t>::max())
        return 0x7FFFFFFFU;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(real));
}

// Puts what was read into a value, if one is wanted.
template <typename T>
bool fill(Value* value, T&& content) {
    if (value)
        *value = Value(std::forward<T>(content));
    return true;
}

} // namespace

std::optional<Uid> uidOf(const Dictionary& dictionary) {
    if (dictionary.size() != 1 || dictionary.keyAt(0) != uidKey)
        return std::nullopt;
    const Value& number = dictionary.valueAt(0);
    if (!number.integer() && !number.real())
        return std::nullopt;
    return Uid{uidNumber(number)};
}

ReadResult readXml(std::string_view text) {
    XmlScanner scanner(text);
    XmlElement root;
    Value value;
    if (scanner.findRoot(root) != Found::Element || !XmlValueReader(scanner).read(root, 0, &value))
        return scanner.error();
    return value;
}

bool XmlValueReader::read(XmlElement element, unsigned depth, Value* value) {
    switch (element.tag) {
    case XmlTag::True:
    case XmlTag::False: {
        bool boolean = false;
        return readBoolean(element, boolean) && fill(value, boolean);
    }
    case XmlTag::Key:
    case XmlTag::String: {
        std::string_view string;
        return readString(element, decoded_, string) && fill(value, string);
    }
    case XmlTag::Real: {
        double real = 0;
        return readReal(element, real) && fill(value, real);
    }
    case XmlTag::Integer: {
        Integer integer;
        return readInteger(element, integer) && fill(value, integer);
    }
    case XmlTag::Array:
        return element.isEmpty ? fill(value, Array()) : readArray(depth + 1, value);
    case XmlTag::Dictionary:
        return element.isEmpty ? fill(value, Dictionary()) : readDictionary(depth + 1, value);
    case XmlTag::Data:
    case XmlTag::Date:
    case XmlTag::Plist:
        break;
    }
    if (element.isEmpty)
        return scanner_.failHere("An element is empty");
    if (element.tag == XmlTag::Plist)
        return readPlist(depth, value);
    return element.tag == XmlTag::Data ? readData(value) : readDate(value);
}

bool XmlValueReader::readReal(XmlElement element, double& value) {
    if (element.isEmpty)
        return scanner_.failHere("An element is empty");
    const std::size_t start = scanner_.offset();
    std::string_view text;
    if (!scanner_.takeText(decoded_, text))
        return false;
    const std::optional<double> number = parseReal(text);
    if (!number)
        return scanner_.fail(start, "A real is not a number");
    value = *number;
    return scanner_.takeCloseTag(XmlTag::Real);
}

bool XmlValueReader::readInteger(XmlElement element, Integer& value) {
    if (element.isEmpty)
        return scanner_.failHere("An element is empty");
    const std::size_t start = scanner_.offset();
    const IntegerText integer = parseInteger(scanner_.takeRaw());
    if (integer.fault)
        return scanner_.fail(start + integer.faultOffset, integer.fault);
    value = integer.value;
    return scanner_.takeCloseTag(XmlTag::Integer);
}

bool XmlValueReader::enterPlist(XmlElement& element, unsigned& depth) {
    switch (scanner_.findElement(element)) {
    case Found::Fault:
        return false;
    case Found::CloseTag:
        return scanner_.failHere("A plist is empty");
    case Found::Element:
        break;
    }
    if (element.tag == XmlTag::Plist || depth > 0)
        ++depth;
    return checkDepth(depth);
}

bool XmlValueReader::leavePlist() {
    XmlElement second;
    switch (scanner_.findElement(second)) {
    case Found::Fault:
        return false;
    case Found::Element:
        return scanner_.failHere("A plist holds more than one value");
    case Found::CloseTag:
        break;
    }
    return scanner_.takeCloseTag(XmlTag::Plist);
}

bool XmlValueReader::readPlist(unsigned depth, Value* value) {
    XmlElement element;
    return enterPlist(element, depth) && read(element, depth, value) && leavePlist();
}

bool XmlValueReader::readArray(unsigned depth, Value* value) {
    if (!checkDepth(depth))
        return false;
    Array elements;
    XmlElement element;
    Found found = scanner_.findElement(element);
    for (; found == Found::Element; found = scanner_.findElement(element))
        if (!read(element, depth, value ? &elements.emplace_back() : nullptr))
            return false;
    return found == Found::CloseTag && scanner_.takeCloseTag(XmlTag::Array) &&
           fill(value, std::move(elements));
}

bool XmlValueReader::readDictionary(unsigned depth, Value* value) {
    if (!checkDepth(depth))
        return false;
    std::vector<Dictionary::Entry> entries;
    XmlElement element;
    Found found = scanner_.findElement(element);
    for (; found == Found::Element; found = scanner_.findElement(element)) {
        std::string_view key;
        if (!readKey(element, decoded_, key))
            return false;
        if (value)
            entries.push_back({std::make_shared<const std::string>(key), Value()});
        if (!findValue(element) || !read(element, depth, value ? &entries.back().value : nullptr))
            return false;
    }
    if (found != Found::CloseTag || !scanner_.takeCloseTag(XmlTag::Dictionary))
        return false;
    if (!value)
        return true;
    Dictionary dictionary(std::move(entries), Dictionary::Duplicates::KeepLast);
    const std::optional<Uid> uid = uidOf(dictionary);
    return uid ? fill(value, *uid) : fill(value, std::move(dictionary));
}

bool XmlValueReader::readData(Value* value) {
    const std::size_t start = scanner_.offset();
    std::optional<std::string> bytes = decodeBase64(scanner_.takeRaw());
    if (!bytes)
        return scanner_.fail(start, "A data element is not base 64");
    return scanner_.takeCloseTag(XmlTag::Data) && fill(value, Data{std::move(*bytes)});
}

bool XmlValueReader::readDate(Value* value) {
    const std::size_t start = scanner_.offset();
    const std::optional<double> seconds = parseDate(scanner_.takeRaw());
    if (!seconds)
        return scanner_.fail(start, "A date is not of the form YYYY-MM-DDThh:mm:ssZ");
    return scanner_.takeCloseTag(XmlTag::Date) && fill(value, Date{*seconds});
}

} // namespace platform::plist
