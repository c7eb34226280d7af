#include "ctl/check/BinaryList.h"

#include <bit>

namespace ctl {

std::string BinaryList::bigEndian(std::uint64_t number, unsigned width) {
    std::string bytes;
    for (unsigned byte = width; byte > 0; --byte)
        bytes += static_cast<char>(number >> (byte - 1) * 8U & 0xFFU);
    return bytes;
}

BinaryList::Object BinaryList::add(std::string bytes) {
    objects_.push_back(std::move(bytes));
    return objects_.size() - 1;
}

BinaryList::Object BinaryList::real(double value) {
    return add("\x23" + bigEndian(std::bit_cast<std::uint64_t>(value), 8));
}

BinaryList::Object BinaryList::date(double seconds) {
    return add("\x33" + bigEndian(std::bit_cast<std::uint64_t>(seconds), 8));
}

// The length always follows as an integer of one byte.
BinaryList::Object BinaryList::string(std::string_view ascii) {
    return add("\x5F\x10" + bigEndian(ascii.size(), 1) + std::string(ascii));
}

BinaryList::Object BinaryList::utf16(std::u16string_view text) {
    std::string bytes = "\x6F\x10" + bigEndian(text.size(), 1);
    for (const char16_t unit : text)
        bytes += bigEndian(unit, 2);
    return add(bytes);
}

BinaryList::Object BinaryList::container(unsigned marker, std::size_t count,
                                         const std::vector<Object>& references) {
    std::string bytes = bigEndian(marker | 0xFU, 1) + "\x10" + bigEndian(count, 1);
    for (const Object reference : references)
        bytes += bigEndian(reference, 1);
    return add(bytes);
}

BinaryList::Object BinaryList::array(const std::vector<Object>& elements) {
    return container(0xA0, elements.size(), elements);
}

BinaryList::Object BinaryList::set(const std::vector<Object>& members) {
    return container(0xC0, members.size(), members);
}

BinaryList::Object BinaryList::dictionary(const std::vector<std::pair<Object, Object>>& entries) {
    std::vector<Object> references;
    for (const auto& entry : entries)
        references.push_back(entry.first);
    for (const auto& entry : entries)
        references.push_back(entry.second);
    return container(0xD0, entries.size(), references);
}

BinaryList::Object BinaryList::record(double date, Object extraKey, Object extraValue) {
    return dictionary({{string("date"), real(date)},
                       {string("name"), string("Rent")},
                       {string("image"), string("house")},
                       {string("amount"), string("$ 900")},
                       {string("income"), boolean(false)},
                       {string("expense"), boolean(true)},
                       {string("planpk"), string("p")},
                       {string("single"), boolean(false)},
                       {extraKey, extraValue}});
}

BinaryList::Object BinaryList::bomb() {
    Object inner = string("a text that is named again and again");
    for (int depth = 0; depth < 8; ++depth)
        inner = array(std::vector<Object>(10, inner));
    return inner;
}

std::string BinaryList::bytes(Object root) const {
    std::string list = "bplist00";
    std::string offsets;
    for (const std::string& object : objects_) {
        offsets += bigEndian(list.size(), 4);
        list += object;
    }
    const std::size_t table = list.size();
    return list + offsets + std::string(6, '\0') + "\x04\x01" + bigEndian(objects_.size(), 8) +
           bigEndian(root, 8) + bigEndian(table, 8);
}

} // namespace ctl
