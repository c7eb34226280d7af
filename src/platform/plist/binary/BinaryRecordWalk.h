#pragma once

#include "platform/plist/binary/BinaryReader.h"
#include "platform/plist/RecordReader.h"
#include "platform/plist/xml/WantedKeys.h"

#include <array>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace platform::plist {

// Offsets within a list, a bit for each.
class OffsetSet final {
public:
    explicit OffsetSet(std::size_t size)
        : words_(size / bitsPerWord + 1) {}
    [[nodiscard]] bool has(std::size_t offset) const {
        return (words_[offset / bitsPerWord] >> (offset % bitsPerWord) & 1U) != 0;
    }
    void insert(std::size_t offset) { words_[offset / bitsPerWord] |= bit(offset); }
    void remove(std::size_t offset) { words_[offset / bitsPerWord] &= ~bit(offset); }

private:
    static constexpr std::size_t bitsPerWord = 64;
    static std::uint64_t bit(std::size_t offset) { return std::uint64_t{1} << (offset % bitsPerWord); }

    std::vector<std::uint64_t> words_;
};

// Visits the records of a binary list without a value for what is not asked for. It refuses what the reader
// of values refuses.
class BinaryRecordWalk final {
public:
    // Is given a record, and its value where it was read as one.
    using Visit = std::function<bool(const Record&, const Value*)>;

    BinaryRecordWalk(const BinaryLayout& layout, const WantedKeys& keys,
                     std::span<const std::string_view> wanted);
    [[nodiscard]] RecordsOutcome run(const Visit& visit);

private:
    // What a dictionary's key is, beside the place of a wanted one.
    static constexpr std::size_t otherText = WantedKeys::none;
    static constexpr std::size_t noText = WantedKeys::none - 1;
    static constexpr std::size_t refused = WantedKeys::none - 2;

    [[nodiscard]] bool visitElement(std::uint64_t number);
    [[nodiscard]] bool visitAgain(std::uint64_t number);
    [[nodiscard]] bool visitRecord(std::size_t offset, const BinaryObject& object);
    [[nodiscard]] bool readKeys(std::string_view references);
    [[nodiscard]] std::size_t keyAt(std::uint64_t number);
    [[nodiscard]] bool readSlot(std::uint64_t number, Record::Slot& slot);
    static void readNumber(const BinaryObject& object, Record::Slot& slot);
    void readText(std::size_t offset, const BinaryObject& object, Record::Slot& slot);
    [[nodiscard]] std::string_view longTextAt(std::size_t offset, const BinaryObject& object);
    [[nodiscard]] bool check(std::uint64_t number, unsigned depth);
    [[nodiscard]] bool check(std::size_t offset, const BinaryObject& object, unsigned depth);
    [[nodiscard]] bool checkContent(const BinaryObject& object, unsigned depth);
    [[nodiscard]] bool checkKey(std::uint64_t number, unsigned depth);
    [[nodiscard]] bool spendOnce(std::size_t offset, const BinaryObject& leaf);
    [[nodiscard]] bool spend(const BinaryObject& object);
    void visit(bool isDictionary, const Value* value);

    const BinaryLayout& layout_;
    const WantedKeys& keys_;
    std::span<const std::string_view> wanted_;
    const Visit* visit_ = nullptr;
    bool hasStopped_ = false;

    OffsetSet known_; // objects of a stated size that were checked
    OffsetSet open_;  // containers whose content is being checked
    std::size_t budget_;

    // The last record's keys. Most often the next one names the same objects for its own.
    struct Keys {
        std::string_view references;
        std::vector<std::size_t> places; // among the wanted ones, or otherText or noText
        bool areTexts = true;
    };
    Keys recordKeys_;

    // The key objects met last, for records whose keys stand in an order of their own.
    struct KnownKey {
        std::size_t offset = 0; // no object stands there
        std::size_t place = refused;
    };
    std::array<KnownKey, 64> recentKeys_;

    std::vector<Record::Slot> slots_;
    std::string buffer_; // decoded texts of the record at hand, and room for more
    std::size_t bufferUsed_ = 0;
    // Texts of this many bytes are read once, however many records they stand in.
    static constexpr std::size_t longText = 1024;
    std::unordered_map<std::size_t, std::string> longTexts_;
    std::optional<BinaryReader> tree_; // of records that stand in the list twice
};

} // namespace platform::plist
