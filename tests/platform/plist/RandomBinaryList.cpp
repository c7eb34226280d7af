#include "platform/plist/RandomBinaryList.h"

#include <string_view>

using namespace std::string_literals;

std::string RandomBinaryList::number(std::uint64_t value, std::size_t width) const {
    std::string bytes;
    for (std::size_t i = width; i > 0; --i)
        bytes += i > 8 ? '\0' : static_cast<char>(value >> (8 * (i - 1)));
    return bytes;
}

std::string RandomBinaryList::head(unsigned marker, std::size_t count) const {
    if (count < 15)
        return {static_cast<char>((marker << 4U) | count)};
    return std::string(1, static_cast<char>((marker << 4U) | 0x0FU)) + '\x10' + number(count, 1);
}

std::string RandomBinaryList::text() {
    switch (below(7)) {
    case 0:
        return head(0x5, 4) + "date";
    case 1:
        return head(0x5, 4) + "name";
    case 2:
        return head(0x6, 4) + "\0d\0a\0t\0e"s; // a wanted key in the other spelling
    case 3:
        return head(0x5, 2) + "a\xE9";
    case 4: { // units of any kind, surrogates included
        const std::size_t count = below(20);
        std::string units;
        for (std::size_t i = 0; i < count; ++i)
            units += oneIn(3) ? number(0xD700 + below(0x900), 2) : number(below(0x100), 2);
        return head(0x6, count) + units;
    }
    case 5:
        return head(0x5, 17) + "income and outgo.";
    default:
        return head(0x5, 6) + "planpk";
    }
}

std::string RandomBinaryList::leaf() {
    switch (below(12)) {
    case 0:
        return "\x09";
    case 1:
        return "\x08";
    case 2:
        return "\0"s;
    case 3:
        return "\x23" + number(random_() * 0x100000001U, 8);
    case 4:
        return "\x22" + number(random_(), 4);
    case 5:
        return "\x33" + number(random_(), 8);
    case 6:
        return std::string(1, static_cast<char>(0x10 + below(5))) + number(random_(), 16);
    case 7:
        return "\x80" + number(below(256), 1);
    case 8:
        return head(0x4, 3) + "\1\2\3";
    default:
        return text();
    }
}

// Mostly an object further on, so that few lists have a cycle.
std::string RandomBinaryList::reference(std::size_t first) {
    const std::size_t from = oneIn(60) ? 0 : first;
    return number(from + below(objects_ - from), referenceSize_);
}

std::string RandomBinaryList::container(unsigned marker, std::size_t first) {
    const std::size_t count = oneIn(20) ? 15 + below(5) : below(6);
    std::string bytes = head(marker, count);
    for (std::size_t i = 0; i < count * (marker == 0xD ? 2 : 1); ++i)
        bytes += reference(first);
    return bytes;
}

// The root, then records, then other containers, then leaves: the first ones are texts.
std::string RandomBinaryList::list() {
    const std::size_t records = 1 + below(5);
    const std::size_t containers = below(4);
    const std::size_t leaves = 2 + below(20);
    objects_ = 1 + records + containers + leaves;
    referenceSize_ = oneIn(4) ? 2 + below(9) : 1;
    const std::size_t offsetSize = oneIn(3) ? 3 + below(8) : 2;
    const std::size_t firstLeaf = objects_ - leaves;
    std::string bytes = "bplist00";
    std::vector<std::size_t> offsets;
    const auto add = [&](const std::string& object) {
        offsets.push_back(bytes.size());
        bytes += object;
    };
    std::string root = head(0xA, records + below(3));
    while (root.size() < 1 + (static_cast<unsigned char>(root[0]) & 0x0FU) * referenceSize_)
        root += oneIn(6) ? reference(1) : number(1 + below(records), referenceSize_);
    add(root);
    for (std::size_t i = 0; i < records; ++i)
        add(oneIn(10) ? leaf() : container(0xD, oneIn(3) ? 1 + records : firstLeaf));
    for (std::size_t i = 0; i < containers; ++i)
        add(container(oneIn(3) ? 0xC : oneIn(2) ? 0xA : 0xD, 2 + records + i));
    for (std::size_t i = 0; i < leaves; ++i)
        add(i < leaves / 2 ? text() : leaf());
    const std::size_t table = bytes.size();
    for (const std::size_t offset : offsets)
        bytes += number(oneIn(400) ? offset + 1 : offset, offsetSize);
    return bytes + std::string(6, '\0') + static_cast<char>(offsetSize) + static_cast<char>(referenceSize_) +
           number(objects_, 8) + number(0, 8) + number(table, 8);
}
