#include "platform/plist/xml/XmlReader.h"

#include "platform/plist/xml/Base64.h"
#include "platform/plist/xml/Dates.h"
#include "platform/plist/xml/Numbers.h"

#include <limits>

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

} // namespace

std::optional<Uid> uidOf(const Dictionary& dictionary) {
    if (dictionary.size() != 1 || dictionary.keyAt(0) != "CF$UID")
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
    case XmlTag::False:
        if (!finishBoolean(element))
            return false;
        if (value)
            *value = Value(element.tag == XmlTag::True);
        return true;
    case XmlTag::Key:
    case XmlTag::String:
        return readText(element, value);
    case XmlTag::Array:
        if (!element.isEmpty)
            return readArray(depth + 1, value);
        if (value)
            *value = Value(Array());
        return true;
    case XmlTag::Dictionary:
        if (!element.isEmpty)
            return readDictionary(depth + 1, value);
        if (value)
            *value = Value(Dictionary());
        return true;
    default:
        break;
    }
    if (element.isEmpty)
        return scanner_.failHere("An element is empty");
    switch (element.tag) {
    case XmlTag::Plist:
        return readPlist(depth, value);
    case XmlTag::Data:
        return readData(value);
    case XmlTag::Date:
        return readDate(value);
    case XmlTag::Real: {
        double real = 0;
        if (!readReal(real))
            return false;
        if (value)
            *value = Value(real);
        return true;
    }
    default: {
        Integer integer;
        if (!readInteger(integer))
            return false;
        if (value)
            *value = Value(integer);
        return true;
    }
    }
}

bool XmlValueReader::checkDepth(unsigned depth) {
    return depth <= deepestNesting || scanner_.failHere("Too many containers are nested");
}

bool XmlValueReader::finishBoolean(XmlElement element) {
    return element.isEmpty || scanner_.takeCloseTag(element.tag);
}

bool XmlValueReader::finishPlist() {
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
    switch (scanner_.findElement(element)) {
    case Found::Fault:
        return false;
    case Found::CloseTag:
        return scanner_.failHere("A plist is empty");
    case Found::Element:
        break;
    }
    const unsigned inner = depthInPlist(element, depth);
    return checkDepth(inner) && read(element, inner, value) && finishPlist();
}

bool XmlValueReader::readArray(unsigned depth, Value* value) {
    if (!checkDepth(depth))
        return false;
    Array elements;
    for (;;) {
        XmlElement element;
        const Found found = scanner_.findElement(element);
        if (found == Found::Fault)
            return false;
        if (found == Found::CloseTag)
            break;
        if (!read(element, depth, value ? &elements.emplace_back() : nullptr))
            return false;
    }
    if (value)
        *value = Value(std::move(elements));
    return scanner_.takeCloseTag(XmlTag::Array);
}

bool XmlValueReader::takeKey(XmlElement element, std::string& buffer, XmlText& text) {
    if (element.tag != XmlTag::Key)
        return scanner_.failHere("A dictionary holds a value where a key is expected");
    return element.isEmpty || (scanner_.takeText(buffer, text) && scanner_.takeCloseTag(XmlTag::Key));
}

bool XmlValueReader::readEntry(XmlElement element, unsigned depth, DictionaryBuilder* dictionary) {
    scratch_.clear();
    XmlText text;
    if (!takeKey(element, scratch_, text))
        return false;
    Value* const value = dictionary ? &dictionary->add(text.in(scratch_)) : nullptr;
    switch (scanner_.findElement(element)) {
    case Found::Fault:
        return false;
    case Found::CloseTag:
        return scanner_.failHere("A key has no value");
    case Found::Element:
        break;
    }
    return read(element, depth, value);
}

bool XmlValueReader::readDictionary(unsigned depth, Value* value) {
    if (!checkDepth(depth))
        return false;
    DictionaryBuilder builder(value ? recentKeys_.at(depth) : nullptr);
    for (;;) {
        XmlElement element;
        const Found found = scanner_.findElement(element);
        if (found == Found::Fault)
            return false;
        if (found == Found::CloseTag)
            break;
        if (!readEntry(element, depth, value ? &builder : nullptr))
            return false;
    }
    if (value) {
        Dictionary dictionary = builder.take(Dictionary::Duplicates::KeepLast);
        recentKeys_.remember(depth, dictionary);
        const std::optional<Uid> uid = uidOf(dictionary);
        *value = uid ? Value(*uid) : Value(std::move(dictionary));
    }
    return scanner_.takeCloseTag(XmlTag::Dictionary);
}

bool XmlValueReader::readText(XmlElement element, Value* value) {
    XmlText text;
    scratch_.clear();
    if (!element.isEmpty && !scanner_.takeText(scratch_, text))
        return false;
    if (value)
        *value = Value(text.in(scratch_));
    return element.isEmpty || scanner_.takeCloseTag(element.tag);
}

bool XmlValueReader::readReal(double& value) {
    return takeReal(value) && scanner_.takeCloseTag(XmlTag::Real);
}

bool XmlValueReader::takeReal(double& value) {
    const char* const start = scanner_.position();
    XmlText text;
    scratch_.clear();
    if (!scanner_.takeText(scratch_, text))
        return false;
    const std::optional<double> number = parseReal(text.in(scratch_));
    if (!number)
        return scanner_.fail(start, "A real is not a number");
    value = *number;
    return true;
}

bool XmlValueReader::readInteger(Integer& value) {
    return takeInteger(value) && scanner_.takeCloseTag(XmlTag::Integer);
}

bool XmlValueReader::takeInteger(Integer& value) {
    const char* const start = scanner_.position();
    const IntegerText integer = parseInteger(scanner_.takeRaw());
    if (integer.fault)
        return scanner_.fail(start + integer.faultOffset, integer.fault);
    value = integer.value;
    return true;
}

bool XmlValueReader::readNumber(XmlElement element, double& value) {
    if (element.isEmpty)
        return scanner_.failHere("An element is empty");
    if (element.tag == XmlTag::Real)
        return readReal(value);
    Integer integer;
    if (!readInteger(integer))
        return false;
    value = doubleOf(integer);
    return true;
}

bool XmlValueReader::readData(Value* value) {
    const char* const start = scanner_.position();
    std::optional<std::string> bytes = decodeBase64(scanner_.takeRaw());
    if (!bytes)
        return scanner_.fail(start, "A data element is not base 64");
    if (value)
        *value = Value(Data{std::move(*bytes)});
    return scanner_.takeCloseTag(XmlTag::Data);
}

bool XmlValueReader::readDate(Value* value) {
    const char* const start = scanner_.position();
    const std::optional<double> seconds = parseDate(scanner_.takeRaw());
    if (!seconds)
        return scanner_.fail(start, "A date is not of the form YYYY-MM-DDThh:mm:ssZ");
    if (value)
        *value = Value(Date{*seconds});
    return scanner_.takeCloseTag(XmlTag::Date);
}

} // namespace platform::plist
