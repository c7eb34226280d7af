#include "platform/plist/XmlWriter.h"

#include "platform/plist/Text.h"
#include "platform/plist/Writer.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace platform::plist {

namespace {

constexpr std::size_t largestSize = std::numeric_limits<std::size_t>::max() / 2;
constexpr std::size_t sizeOfTags = 24; // of a value and its key, with tabs
constexpr std::size_t sizeOfNumber = 24;

class SizeEstimate final {
public:
    // The expanded size; the distinct one is added up on the way.
    std::size_t of(const Value& value) {
        if (const Array* array = value.array())
            return shared(array, [&] { return ofElements(*array); });
        if (const Dictionary* dictionary = value.dictionary())
            return shared(dictionary, [&] { return ofEntries(*dictionary); });
        const std::size_t size = sizeOfTags + contentOf(value);
        distinct_ += size;
        return size;
    }
    [[nodiscard]] std::size_t distinct() const { return distinct_; }

private:
    static std::size_t contentOf(const Value& value) {
        if (const std::string* string = value.string())
            return string->size();
        if (const Data* data = value.data())
            return data->bytes.size() * 2;
        return value.kind() == Kind::Boolean ? 0 : sizeOfNumber;
    }

    static std::size_t add(std::size_t a, std::size_t b) { return std::min(a + b, largestSize); }

    std::size_t ofElements(const Array& array) {
        std::size_t size = sizeOfTags;
        for (const Value& element : array)
            size = add(size, of(element));
        return size;
    }

    std::size_t ofEntries(const Dictionary& dictionary) {
        std::size_t size = sizeOfTags;
        for (const auto& [key, value] : dictionary.entries()) {
            const std::size_t keySize = sizeOfTags + key.size();
            distinct_ += keySize;
            size = add(size, add(keySize, of(value)));
        }
        return size;
    }

    template <typename Measure>
    std::size_t shared(const void* container, Measure measure) {
        const auto known = known_.find(container);
        if (known != known_.end())
            return known->second;
        distinct_ += sizeOfTags;
        const std::size_t size = measure();
        known_.emplace(container, size);
        return size;
    }

    std::size_t distinct_ = 0;
    std::unordered_map<const void*, std::size_t> known_;
};

} // namespace

WrittenSize writtenSize(const Value& value) {
    SizeEstimate estimate;
    const std::size_t expanded = estimate.of(value);
    return {expanded, estimate.distinct()};
}

std::optional<std::string> writeXml(const Value& value) {
    // A list of a few bytes can name one container so often that it fills any memory. So many times its own
    // size, and this much in any case, is allowed.
    constexpr std::size_t alwaysAllowed = std::size_t{64} << 20U;
    constexpr std::size_t allowedGrowth = 16;
    const WrittenSize size = writtenSize(value);
    if (size.expanded > alwaysAllowed && size.expanded / allowedGrowth > size.distinct)
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
        writeUid(*value.uid(), indent);
        return true;
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

void XmlWriter::writeUid(Uid uid, std::size_t indent) {
    output_.tag("<dict>\n", indent);
    output_.key("CF$UID", indent + 1);
    output_.integer({uid.number, false}, indent + 1);
    output_.tag("</dict>\n", indent);
}

} // namespace platform::plist
