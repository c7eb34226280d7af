#pragma once

#include "platform/plist/Reader.h"
#include "platform/plist/binary/BinaryObject.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace platform::plist {

// The binary form (`bplist00`). What the list shares, the value shares. Its own depth limit: a value may
// stand up to 512 containers deep, and a container that nothing is in one deeper.
[[nodiscard]] ReadResult readBinary(std::string_view bytes);

// Reads the objects of one list to values, each once.
class BinaryReader final {
public:
    // The layout must outlive the reader.
    explicit BinaryReader(const BinaryLayout& layout);

    // The array at the list's root, for elements that are read one at a time (at depth 1); none for another
    // root.
    [[nodiscard]] std::optional<BinaryObject> openRootArray();
    // Reads an object by its number; `depth` is the number of containers around it. False after a fault.
    [[nodiscard]] bool read(std::uint64_t object, unsigned depth, Value& value) {
        unsigned height = 0;
        return read(object, depth, value, height);
    }
    [[nodiscard]] Error error() const { return {faultOffset_, 0, fault_}; }

private:
    bool fail(std::size_t offset, const char* message);
    // The height of an object is how many containers are nested below it.
    [[nodiscard]] bool read(std::uint64_t object, unsigned depth, Value& value, unsigned& height);
    [[nodiscard]] std::optional<BinaryObject> open(std::size_t offset);
    bool readContainer(const BinaryObject& object, std::size_t offset, unsigned depth, Value& value,
                       unsigned& height);
    bool readElement(const BinaryObject& container, std::size_t place, unsigned depth, Value& value,
                     unsigned& height);
    bool readDictionary(const BinaryObject& object, std::size_t offset, unsigned depth, Value& value,
                        unsigned& height);

    // What is known of an object that others may refer to, by its offset: nothing, that it is being read, or
    // from firstKnown its place among the values.
    static constexpr std::uint32_t unread = 0;
    static constexpr std::uint32_t beingRead = 1;
    static constexpr std::uint32_t firstKnown = 2;

    struct Known {
        Value value;
        unsigned height = 0;
    };

    const BinaryLayout& layout_;
    std::vector<std::uint32_t> slots_;
    std::vector<Known> known_;
    // Objects that overlap would let a small list fill any memory: what is left of the bytes that the
    // distinct objects may hold.
    std::size_t budget_;
    std::size_t faultOffset_ = 0;
    const char* fault_ = "The list is not valid";
};

} // namespace platform::plist
