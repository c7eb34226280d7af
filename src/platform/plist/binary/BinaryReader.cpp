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

// The address of a string or of data, which is one for all values that share it.
const void* contentOf(const Value& value) {
    return value.data() ? static_cast<const void*>(value.data()) : value.sharedString().get();
}

bool isContainer(const Value& value) {
    return value.array() || value.dictionary() || value.set() || value.foreignDictionary();
}

// A dictionary, or what stands for one that has a key which is no string. Of equal keys the first counts.
Value dictionaryOf(std::vector<std::pair<Value, Value>> entries) {
    const bool hasStringKeys =
        std::all_of(entries.begin(), entries.end(), [](const auto& entry) { return entry.first.string(); });
    if (!hasStringKeys) {
        std::set<std::string> seen;
        std::set<const void*> seenContents; // of long keys, which are not to be copied each time
        std::erase_if(entries, [&](const auto& entry) {
            const void* const content = contentOf(entry.first);
            return (content && !seenContents.insert(content).second) ||
                   !seen.insert(identityOf(entry.first)).second;
        });
        return Value(ForeignDictionary{std::move(entries)});
    }
    std::vector<Dictionary::Entry> named;
    named.reserve(entries.size());
    for (auto& [key, value] : entries)
        named.push_back({key.sharedString(), std::move(value)});
    return Value(Dictionary(std::move(named), Dictionary::Duplicates::KeepFirst));
}

} // namespace

BinaryReader::BinaryReader(const BinaryLayout& layout)
    : layout_(layout)
    , slots_(layout.objects().size(), unread) {
    constexpr std::size_t allowedOverlap = 4096;
    budget_ = layout.objects().size() + allowedOverlap;
}

bool BinaryReader::fail(std::size_t offset, const char* message) {
    faultOffset_ = offset;
    fault_ = message;
    return false;
}

// An object that nothing is wrong with, its bytes taken from the budget.
std::optional<BinaryObject> BinaryReader::open(std::size_t offset) {
    const std::optional<BinaryObject> object = binaryObjectAt(layout_, offset);
    const char* fault = object ? faultOf(*object) : "An object reaches beyond the list";
    if (!fault && !object->isFixed()) {
        if (object->content.size() > budget_)
            fault = "Objects overlap";
        else
            budget_ -= object->content.size();
    }
    if (fault) {
        fail(offset, fault);
        return std::nullopt;
    }
    return object;
}

std::optional<BinaryObject> BinaryReader::openRootArray() {
    const std::optional<std::size_t> offset = layout_.offsetOf(layout_.topObject());
    if (!offset)
        return std::nullopt;
    const std::optional<BinaryObject> object = open(*offset);
    if (!object || object->marker != BinaryMarker::Array)
        return std::nullopt;
    slots_[*offset] = beingRead;
    return object;
}

bool BinaryReader::read(std::uint64_t objectNumber, unsigned depth, Value& value, unsigned& height) {
    constexpr unsigned deepestValue = 512;
    const std::optional<std::size_t> offset = layout_.offsetOf(objectNumber);
    if (!offset)
        return fail(layout_.objects().size(), "A reference names no object");
    const std::uint32_t slot = slots_[*offset];
    if (slot == beingRead)
        return fail(*offset, "An object contains itself");
    const Known* const known = slot >= firstKnown ? &known_[slot - firstKnown] : nullptr;
    // What is known was read elsewhere, where it may not have stood so deep.
    if (depth + (known ? known->height : 0) > deepestValue)
        return fail(*offset, "Too many containers are nested");
    if (known) {
        value = known->value;
        height = known->height;
        return true;
    }
    const std::optional<BinaryObject> object = open(*offset);
    if (!object)
        return false;
    height = 0;
    if (object->isFixed()) {
        value = leafOf(*object);
        return true;
    }
    slots_[*offset] = beingRead;
    if (!object->isContainer())
        value = leafOf(*object);
    else if (!readContainer(*object, *offset, depth, value, height))
        return false;
    slots_[*offset] = static_cast<std::uint32_t>(known_.size()) + firstKnown;
    known_.push_back({value, height});
    return true;
}

// The object at one of a container's references. Raises the container's height where that is needed.
bool BinaryReader::readElement(const BinaryObject& container, std::size_t place, unsigned depth, Value& value,
                               unsigned& height) {
    unsigned inner = 0;
    if (!read(layout_.referenceAt(container.content, place), depth + 1, value, inner))
        return false;
    height = std::max(height, inner + 1);
    return true;
}

bool BinaryReader::readContainer(const BinaryObject& object, std::size_t offset, unsigned depth, Value& value,
                                 unsigned& height) {
    if (object.marker == BinaryMarker::Dictionary)
        return readDictionary(object, offset, depth, value, height);
    Array elements(object.count);
    for (std::size_t i = 0; i < object.count; ++i)
        if (!readElement(object, i, depth, elements[i], height))
            return false;
    value = object.marker == BinaryMarker::Array
                ? Value(std::move(elements))
                : Value(Set{std::make_shared<const Array>(std::move(elements))});
    return true;
}

bool BinaryReader::readDictionary(const BinaryObject& object, std::size_t offset, unsigned depth,
                                  Value& value, unsigned& height) {
    std::vector<std::pair<Value, Value>> entries(object.count);
    for (std::size_t i = 0; i < object.count; ++i) {
        auto& [key, content] = entries[i];
        if (!readElement(object, i, depth, key, height) ||
            !readElement(object, object.count + i, depth, content, height))
            return false;
        if (isContainer(key))
            return fail(offset, "A dictionary's key is a container");
    }
    value = dictionaryOf(std::move(entries));
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
