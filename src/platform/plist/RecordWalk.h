#pragma once

#include "platform/plist/RecordReader.h"
#include "platform/plist/XmlReader.h"

#include <array>

// The walk over a list's records that reading and rewriting share.
namespace platform::plist {

// Finds a wanted key by its text.
class WantedKeys final {
public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    explicit WantedKeys(std::span<const std::string_view> keys);
    [[nodiscard]] std::size_t find(std::string_view text) const;
    [[nodiscard]] std::span<const std::string_view> keys() const { return keys_; }

private:
    std::span<const std::string_view> keys_;
    std::array<std::uint64_t, 64> byLength_{}; // a bit for each key of a length; the last for all longer ones
};

class RecordWalk final {
public:
    // A rewriter needs each record as a value besides.
    enum class Purpose { Read, Rewrite };
    // Is given a record, and for a rewriter its value.
    using Visit = std::function<bool(const Record&, const Value*)>;

    RecordWalk(std::span<const std::string_view> keys, Purpose purpose);
    [[nodiscard]] RecordsOutcome run(std::string_view bytes, const Visit& visit);

private:
    RecordsOutcome runTree(std::string_view bytes);
    bool walkRoot(XmlElement element, unsigned depth);
    bool walkPlist(unsigned depth);
    bool walkArray(unsigned depth);
    bool walkElement(XmlElement element, unsigned depth);
    bool walkRecord(unsigned depth);
    bool readSlot(XmlElement element, unsigned depth, Record::Slot& slot);
    void visitRecord(bool isDictionary);
    void visitValue(const Value& value);

    WantedKeys keys_;
    Purpose purpose_;
    const Visit* visit_ = nullptr;
    bool hasStopped_ = false;
    XmlScanner scanner_{{}};
    XmlValueReader reader_{scanner_};
    std::vector<Record::Slot> slots_;
    std::string buffer_; // decoded texts of the record at hand
};

} // namespace platform::plist
