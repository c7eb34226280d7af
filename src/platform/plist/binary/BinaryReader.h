#pragma once

#include "platform/plist/binary/BinaryObject.h"
#include "platform/plist/DictionaryBuilder.h"
#include "platform/plist/Reader.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace platform::plist {

// The binary form (`bplist00`). What the list shares, the value shares. Its own depth limit: a value may
// stand up to 512 containers deep, and a container that nothing is in one deeper.
[[nodiscard]] ReadResult readBinary(std::string_view bytes);

// Rules of the binary form that hold however it is read.
constexpr unsigned deepestBinaryValue = 512;
// Objects that overlap would let a small list fill any memory. What the distinct objects hold may take no
// more bytes than the list's objects, and these.
constexpr std::size_t freeOverlap = 4096;

// Reads objects to values, each once.
class BinaryReader final {
public:
    explicit BinaryReader(const BinaryLayout& layout)
        : layout_(layout)
        , slots_(layout.objects().size(), unread)
        , budget_(layout.objects().size() + freeOverlap) {}

    // An object by its number, so many containers deep.
    [[nodiscard]] bool read(std::uint64_t object, unsigned depth, Value& value);
    [[nodiscard]] Error error() const { return {faultOffset_, 0, fault_}; }

private:
    bool fail(std::size_t offset, const char* message) {
        if (faultOffset_ == 0) {
            faultOffset_ = offset;
            fault_ = message;
        }
        return false;
    }
    static Value leafOf(const BinaryObject& object);
    bool readShared(const BinaryObject& object, std::size_t offset, unsigned depth, Value& value);
    bool readElements(std::string_view content, std::size_t count, unsigned depth, Array& elements);
    bool readDictionary(const BinaryObject& object, std::size_t offset, unsigned depth, Value& value);

    // What is known of an object that others may refer to, by its offset: nothing, that it is being read, or
    // from firstKnown its place among the values.
    static constexpr std::uint32_t unread = 0;
    static constexpr std::uint32_t beingRead = 1;
    static constexpr std::uint32_t firstKnown = 2;

    const BinaryLayout& layout_;
    std::vector<std::uint32_t> slots_;
    std::vector<Value> known_;
    RecentKeys recentKeys_;
    std::size_t budget_;
    std::size_t faultOffset_ = 0;
    const char* fault_ = "The list is not valid";
};

} // namespace platform::plist
