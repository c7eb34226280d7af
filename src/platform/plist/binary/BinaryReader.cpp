#include "platform/plist/binary/BinaryReader.h"

#include <algorithm>
#include <bit>
#include <set>

namespace platform::plist {

namespace {

// One key of any kind as bytes, so that equal keys give equal bytes. Numbers are equal whatever their kind.
std::string identityOf(const Value& value) {
    if (const std::optional<std::string_view> string = value.string())
        return std::string("s").append(*string);
    if (const Data* data = value.data())
        return std::string("d").append(data->bytes);
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
            return std::string(1, integer->isLarge ? 'I' : 'i').append(std::to_string(integer->bits));
    } else {
        number = value.real() ? *value.real() : 0;
    }
    const auto bits = std::bit_cast<std::uint64_t>(number + 0.0); // one zero only
    return std::string(1, kind).append(std::to_string(bits));
}

bool isContainer(const Value& value) {
    return value.array() || value.dictionary() || value.set() || value.foreignDictionary();
}

} // namespace

bool BinaryReader::read(std::uint64_t objectNumber, unsigned depth, Value& value) {
    const std::optional<std::size_t> offset = layout_.offsetOf(objectNumber);
    if (!offset)
        return fail(layout_.objects().size(), "A reference names no object");
    if (depth > deepestBinaryValue)
        return fail(*offset, "Too many containers are nested");
    std::uint32_t& slot = slots_[*offset];
    if (slot >= firstKnown) {
        value = known_[slot - firstKnown];
        return true;
    }
    if (slot == beingRead)
        return fail(*offset, "An object contains itself");
    BinaryObject object;
    if (!takeBinaryObject(layout_, *offset, object))
        return fail(*offset, "An object reaches beyond the list");
    if (const char* const fault = faultOf(object))
        return fail(*offset, fault);
    if (object.isFixed()) {
        value = leafOf(object);
        return true;
    }
    if (object.content.size() > budget_)
        return fail(*offset, "Objects overlap");
    budget_ -= object.content.size();
    slot = beingRead;
    if (!readShared(object, *offset, depth, value))
        return false;
    slot = static_cast<std::uint32_t>(known_.size()) + firstKnown;
    known_.push_back(value);
    return true;
}

// An object that refers to no other.
Value BinaryReader::leafOf(const BinaryObject& object) {
    switch (object.marker) {
    case BinaryMarker::Integer:
        return Value(integerOf(object));
    case BinaryMarker::Real:
        return Value(realOf(object));
    case BinaryMarker::Date:
        return Value(Date{realOf(object)});
    case BinaryMarker::Uid:
        return Value(Uid{bigEndianAt(object.content.data(), object.content.size())});
    case BinaryMarker::Data:
        return Value(Data{std::string(object.content)});
    case BinaryMarker::Ascii:
    case BinaryMarker::Utf16:
        return Value(textOf(object));
    default: {
        const std::optional<bool> boolean = booleanOf(object);
        return boolean ? Value(*boolean) : Value();
    }
    }
}

bool BinaryReader::readShared(const BinaryObject& object, std::size_t offset, unsigned depth, Value& value) {
    if (object.marker == BinaryMarker::Dictionary)
        return readDictionary(object, offset, depth, value);
    if (!object.isContainer()) {
        value = leafOf(object);
        return true;
    }
    Array elements;
    if (!readElements(object.content, object.count, depth, elements))
        return false;
    value = object.marker == BinaryMarker::Array
                ? Value(std::move(elements))
                : Value(Set{std::make_shared<const Array>(std::move(elements))});
    return true;
}

bool BinaryReader::readElements(std::string_view content, std::size_t count, unsigned depth,
                                Array& elements) {
    elements.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint64_t object = layout_.referenceAt(content.data() + i * layout_.referenceSize());
        if (!read(object, depth + 1, elements[i]))
            return false;
    }
    return true;
}

bool BinaryReader::readDictionary(const BinaryObject& object, std::size_t offset, unsigned depth,
                                  Value& value) {
    const std::size_t size = layout_.referenceSize();
    const std::size_t half = object.content.size() / 2;
    ForeignDictionary entries;
    entries.entries.resize(object.count);
    bool hasTextKeys = true;
    for (std::size_t i = 0; i < object.count; ++i) {
        auto& [key, content] = entries.entries[i];
        const char* const reference = object.content.data() + i * size;
        if (!read(layout_.referenceAt(reference), depth + 1, key) ||
            !read(layout_.referenceAt(reference + half), depth + 1, content))
            return false;
        if (isContainer(key))
            return fail(offset, "A dictionary's key is a container");
        hasTextKeys = hasTextKeys && key.string();
    }
    if (!hasTextKeys) {
        std::set<std::string> seen;
        std::erase_if(entries.entries,
                      [&](const auto& entry) { return !seen.insert(identityOf(entry.first)).second; });
        value = Value(std::move(entries));
        return true;
    }
    DictionaryBuilder dictionary(recentKeys_.at(depth));
    for (auto& [key, content] : entries.entries)
        dictionary.add(*key.string()) = std::move(content);
    Dictionary made = dictionary.take(Dictionary::Duplicates::KeepFirst);
    recentKeys_.remember(depth, made);
    value = Value(std::move(made));
    return true;
}

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
