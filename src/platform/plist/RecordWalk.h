#pragma once

#include "platform/plist/RecordReader.h"
#include "platform/plist/WantedKeys.h"
#include "platform/plist/XmlReader.h"

// The walk over a list's records that reading and rewriting share.
namespace platform::plist {

class RecordWalk final {
public:
    // A rewriter needs each record as a value besides.
    enum class Purpose { Read, Rewrite };
    // Is given a record, and for a rewriter its value.
    using Visit = std::function<bool(const Record&, const Value*)>;

    RecordWalk(std::span<const std::string_view> keys, Purpose purpose);
    [[nodiscard]] RecordsOutcome run(std::string_view bytes, const Visit& visit);

private:
    RecordsOutcome runBinary(std::string_view bytes);
    RecordsOutcome runTree(std::string_view bytes);
    bool walkRoot(XmlElement element, unsigned depth);
    bool walkPlist(unsigned depth);
    bool walkArray(unsigned depth);
    bool walkElement(XmlElement element, unsigned depth);
    bool walkRecord(unsigned depth);
    XmlScanner::Found findKey(std::size_t& key) {
        const std::string_view following = scanner_.afterKeyTag();
        const WantedKeys::Match match = keys_.match(following);
        if (match.key == WantedKeys::none)
            return findOtherKey(!following.empty(), key);
        key = match.key;
        scanner_.passKey(match.length);
        return XmlScanner::Found::Element;
    }
    XmlScanner::Found findOtherKey(bool isUsualTag, std::size_t& key);
    bool readSlot(XmlElement element, unsigned depth, Record::Slot& slot);
    void visitRecord(bool isDictionary);
    void visitValue(const Value& value);

    std::span<const std::string_view> wanted_;
    WantedKeys keys_; // and the one that makes a UID of a dictionary, which is the last if it is not wanted
    Purpose purpose_;
    std::size_t uidKey_;
    const Visit* visit_ = nullptr;
    bool hasStopped_ = false;
    XmlScanner scanner_{{}};
    XmlValueReader reader_{scanner_};
    std::vector<Record::Slot> slots_;
    std::string buffer_; // decoded texts of the record at hand
};

} // namespace platform::plist
