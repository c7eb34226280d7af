#include "platform/plist/BinaryReader.h"

#include "platform/plist/BinaryLayout.h"
#include "platform/plist/Text.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <set>

namespace platform::plist {

namespace {

constexpr unsigned deepestValue = 512;

// One key of any kind as bytes, so that equal keys give equal bytes. Numbers are equal whatever their kind.
std::string identityOf(const Value& value) {
    if (const std::string* string = value.string())
        return 's' + *string;
    if (const Data* data = value.data())
        return 'd' + data->bytes;
    double number = 0;
    char kind = 'n';
    if (const Date* date = value.date()) {
        number = date->seconds;
        kind = 't';
    } else if (const Uid* uid = value.uid()) {
        number = static_cast<double>(uid->number);
        kind = 'u';
    } else if (value.kind() == Kind::Boolean || value.kind() == Kind::Null) {
        return value.kind() == Kind::Null ? "0" : *value.boolean() ? "b1" : "b0";
    } else if (const Integer* integer = value.integer()) {
        number = numberOf(value).value_or(0);
        if (number > 0x1p53 || number < -0x1p53) // a real has no more of them
            return (integer->isLarge ? "I" : "i") + std::to_string(integer->bits);
    } else {
        number = value.real() ? *value.real() : 0;
    }
    const auto bits = std::bit_cast<std::uint64_t>(number + 0.0); // one zero only
    return kind + std::to_string(bits);
}

bool isContainer(const Value& value) {
    return value.array() || value.dictionary() || value.set() || value.foreignDictionary();
}

class BinaryReader final {
public:
    explicit BinaryReader(const BinaryLayout& layout)
        : layout_(layout)
        , slots_(layout.objects().size(), unread)
        , budget_(layout.objects().size() + freeBytes) {}

    bool read(std::uint64_t object, unsigned depth, Value& value);
    [[nodiscard]] Error error() const { return {faultOffset_, 0, fault_}; }

private:
    bool fail(std::size_t offset, const char* message) {
        if (faultOffset_ == 0) {
            faultOffset_ = offset;
            fault_ = message;
        }
        return false;
    }
    bool readSimple(unsigned low, std::size_t offset, Value& value);
    bool readInteger(std::string_view content, std::size_t offset, Value& value);
    bool readReal(std::string_view content, std::size_t offset, Value& value);
    bool readDate(std::string_view content, std::size_t offset, Value& value);
    bool readUid(std::string_view content, std::size_t offset, Value& value);
    bool readShared(const BinaryObject& object, std::size_t offset, unsigned depth, Value& value);
    static Value readAscii(std::string_view content);
    static Value readUtf16(std::string_view content);
    bool readElements(std::string_view content, std::size_t count, unsigned depth, Array& elements);
    bool readDictionary(const BinaryObject& object, std::size_t offset, unsigned depth, Value& value);

    // What is known of an object that others may refer to, by its offset: nothing, that it is being read, or
    // from firstKnown its place among the values.
    static constexpr std::uint32_t unread = 0;
    static constexpr std::uint32_t beingRead = 1;
    static constexpr std::uint32_t firstKnown = 2;
    // Objects that overlap would let a small list fill any memory. Such lists are refused but for very short
    // ones.
    static constexpr std::size_t freeBytes = 4096;

    const BinaryLayout& layout_;
    std::vector<std::uint32_t> slots_;
    std::vector<Value> known_;
    std::size_t budget_;
    std::size_t faultOffset_ = 0;
    const char* fault_ = "The list is not valid";
};

bool BinaryReader::read(std::uint64_t objectNumber, unsigned depth, Value& value) {
    const std::optional<std::size_t> offset = layout_.offsetOf(objectNumber);
    if (!offset)
        return fail(layout_.objects().size(), "A reference names no object");
    if (depth > deepestValue)
        return fail(*offset, "Too many containers are nested");
    std::uint32_t& slot = slots_[*offset];
    if (slot >= firstKnown) {
        value = known_[slot - firstKnown];
        return true;
    }
    if (slot == beingRead)
        return fail(*offset, "An object contains itself");
    const std::optional<BinaryObject> object = binaryObjectAt(layout_, *offset);
    if (!object)
        return fail(*offset, "An object reaches beyond the list");
    switch (object->marker) {
    case BinaryMarker::Simple:
        return readSimple(object->low, *offset, value);
    case BinaryMarker::Integer:
        return readInteger(object->content, *offset, value);
    case BinaryMarker::Real:
        return readReal(object->content, *offset, value);
    case BinaryMarker::Date:
        return readDate(object->content, *offset, value);
    case BinaryMarker::Uid:
        return readUid(object->content, *offset, value);
    default:
        break;
    }
    if (object->content.size() > budget_)
        return fail(*offset, "Objects overlap");
    budget_ -= object->content.size();
    slot = beingRead;
    if (!readShared(*object, *offset, depth, value))
        return false;
    slot = static_cast<std::uint32_t>(known_.size()) + firstKnown;
    known_.push_back(value);
    return true;
}

bool BinaryReader::readShared(const BinaryObject& object, std::size_t offset, unsigned depth, Value& value) {
    switch (object.marker) {
    case BinaryMarker::Data:
        value = Value(Data{std::string(object.content)});
        return true;
    case BinaryMarker::Ascii:
        value = readAscii(object.content);
        return true;
    case BinaryMarker::Utf16:
        value = readUtf16(object.content);
        return true;
    case BinaryMarker::Array:
    case BinaryMarker::Set: {
        Array elements;
        if (!readElements(object.content, object.count, depth, elements))
            return false;
        value = object.marker == BinaryMarker::Array
                    ? Value(std::move(elements))
                    : Value(Set{std::make_shared<const Array>(std::move(elements))});
        return true;
    }
    case BinaryMarker::Dictionary:
        return readDictionary(object, offset, depth, value);
    default:
        return fail(offset, "An object is of an unknown kind");
    }
}

bool BinaryReader::readSimple(unsigned low, std::size_t offset, Value& value) {
    switch (low) {
    case 0x0:
        value = Value();
        return true;
    case 0x8:
    case 0x9:
        value = Value(low == 0x9);
        return true;
    default:
        return fail(offset, "An object is of an unknown kind");
    }
}

// Up to four bytes are unsigned, eight are signed; of sixteen the last eight count, unsigned.
bool BinaryReader::readInteger(std::string_view content, std::size_t offset, Value& value) {
    if (content.size() > 16)
        return fail(offset, "An integer is too wide");
    const std::uint64_t bits = bigEndian(content);
    value = Value(Integer{bits, content.size() > 8 && (bits >> 63U) != 0});
    return true;
}

bool BinaryReader::readReal(std::string_view content, std::size_t offset, Value& value) {
    if (content.size() == sizeof(float))
        value =
            Value(static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bigEndian(content)))));
    else if (content.size() == sizeof(double))
        value = Value(std::bit_cast<double>(bigEndian(content)));
    else
        return fail(offset, "A real is neither of four bytes nor of eight");
    return true;
}

bool BinaryReader::readDate(std::string_view content, std::size_t offset, Value& value) {
    if (content.size() != sizeof(double))
        return fail(offset, "A date is not of eight bytes");
    value = Value(Date{std::bit_cast<double>(bigEndian(content))});
    return true;
}

bool BinaryReader::readUid(std::string_view content, std::size_t offset, Value& value) {
    const std::uint64_t number = bigEndian(content);
    if (number > std::numeric_limits<std::uint32_t>::max())
        return fail(offset, "A UID is above 2^32-1");
    value = Value(Uid{number});
    return true;
}

// A byte above 127 is the character of Latin 1.
Value BinaryReader::readAscii(std::string_view content) {
    if (std::all_of(content.begin(), content.end(),
                    [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        return Value(std::string(content));
    std::string text;
    for (const char c : content)
        appendCodePoint(text, static_cast<unsigned char>(c));
    return Value(std::move(text));
}

Value BinaryReader::readUtf16(std::string_view content) {
    std::string text;
    text.reserve(content.size());
    for (std::size_t at = 0; at < content.size(); at += 2)
        appendUtf16Unit(text, static_cast<char16_t>(bigEndian(content.substr(at, 2))));
    return Value(std::move(text));
}

bool BinaryReader::readElements(std::string_view content, std::size_t count, unsigned depth,
                                Array& elements) {
    elements.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint64_t object =
            bigEndian(content.substr(i * layout_.referenceSize(), layout_.referenceSize()));
        if (!read(object, depth + 1, elements[i]))
            return false;
    }
    return true;
}

bool BinaryReader::readDictionary(const BinaryObject& object, std::size_t offset, unsigned depth,
                                  Value& value) {
    const std::size_t size = layout_.referenceSize();
    const std::size_t half = object.content.size() / 2;
    std::vector<Dictionary::Entry> entries;
    entries.reserve(object.count);
    ForeignDictionary foreign; // all entries from the first on whose key is no text
    for (std::size_t at = 0; at < half; at += size) {
        Value key;
        Value content;
        if (!read(bigEndian(object.content.substr(at, size)), depth + 1, key) ||
            !read(bigEndian(object.content.substr(half + at, size)), depth + 1, content))
            return false;
        if (isContainer(key))
            return fail(offset, "A dictionary's key is a container");
        if (foreign.entries.empty() && key.string())
            entries.emplace_back(*key.string(), std::move(content));
        else
            foreign.entries.emplace_back(std::move(key), std::move(content));
    }
    if (foreign.entries.empty()) {
        value = Value(Dictionary::fromEntries(std::move(entries), Dictionary::Duplicates::KeepFirst));
        return true;
    }
    for (Dictionary::Entry& entry : entries)
        foreign.entries.emplace_back(Value(std::move(entry.first)), std::move(entry.second));
    std::rotate(foreign.entries.begin(), foreign.entries.end() - static_cast<std::ptrdiff_t>(entries.size()),
                foreign.entries.end());
    std::set<std::string> seen;
    std::erase_if(foreign.entries,
                  [&](const auto& entry) { return !seen.insert(identityOf(entry.first)).second; });
    value = Value(std::move(foreign));
    return true;
}

} // namespace

ReadResult readBinary(std::string_view bytes) {
    const std::optional<BinaryLayout> layout = BinaryLayout::of(bytes);
    if (!layout)
        return Error{bytes.size(), 0, "The trailer does not fit the list"};
    BinaryReader reader(*layout);
    Value value;
    if (!reader.read(layout->topObject(), 0, value))
        return reader.error();
    return value;
}

} // namespace platform::plist
