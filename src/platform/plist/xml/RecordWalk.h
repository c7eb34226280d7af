#pragma once

#include "platform/plist/xml/FormerRecord.h"
#include "platform/plist/RecordReader.h"
#include "platform/plist/xml/WantedKeys.h"
#include "platform/plist/xml/XmlOutput.h"
#include "platform/plist/xml/XmlReader.h"

// The walk over a list's records that reading and rewriting share.
namespace platform::plist {

class RecordWalk final {
public:
    // Is given a record, and its value where it was read as one. Where it was not and there is a transcript,
    // its lines are the last ones there.
    using Visit = std::function<bool(const Record&, const Value*)>;

    // To read.
    explicit RecordWalk(std::span<const std::string_view> keys);
    // To rewrite: records as programs write them, their keys sorted and no containers among their values, are
    // written to the transcript as they are read. The others are read as values.
    RecordWalk(std::span<const std::string_view> keys, XmlOutput& transcript);
    [[nodiscard]] RecordsOutcome run(std::string_view bytes, const Visit& visit);
    // The record that is being visited, as a value.
    [[nodiscard]] Value readAgain() const;

private:
    enum class Transcribed { Whole, Unusual, Fault };

    RecordsOutcome runBinary(std::string_view bytes);
    RecordsOutcome runTree(std::string_view bytes);
    bool walkRoot(XmlElement element, unsigned depth);
    bool walkPlist(unsigned depth);
    bool walkArray(unsigned depth);
    bool walkElement(XmlElement element, unsigned depth);
    bool walkNextRecord(unsigned depth);
    bool walkRecord(unsigned depth);
    bool walkAsFormer();
    void noteRecord(unsigned depth);
    bool takeContent(XmlTag tag, Record::Slot& slot);
    bool visitAsValue(XmlElement element, unsigned depth);
    bool rewriteRecord(XmlElement element, unsigned depth);
    Transcribed transcribeRecord(unsigned depth);
    Transcribed transcribeEntries(std::optional<std::size_t> notedFrom);
    void noteWritten(std::size_t key, XmlTag tag, std::size_t keyEnd, std::size_t recordStart);
    bool transcribeAsFormer();
    [[nodiscard]] bool isSpelledAsWritten(XmlTag tag, const Record::Slot& slot, const char* start) const;
    void writeContent(XmlTag tag, const Record::Slot& slot, const char* start);
    Transcribed transcribeValue(XmlElement element, Record::Slot* slot);
    void clearSlots();
    // The next key's place among the wanted ones, and its text where that is asked for.
    XmlScanner::Found findKey(std::size_t& key, XmlText* text) {
        const std::string_view following = scanner_.afterKeyTag();
        const WantedKeys::Match match = keys_.match(following);
        if (match.key == WantedKeys::none)
            return findOtherKey(!following.empty(), key, text);
        key = match.key;
        if (text)
            text->source = following.substr(0, match.length - WantedKeys::closeTag.size());
        scanner_.passKey(match.length);
        return XmlScanner::Found::Element;
    }
    XmlScanner::Found findOtherKey(bool isUsualTag, std::size_t& key, XmlText* text);
    bool readSlot(XmlElement element, unsigned depth, Record::Slot& slot);
    void visitRecord(bool isDictionary);
    void visitValue(const Value& value);

    std::span<const std::string_view> wanted_;
    WantedKeys keys_; // and the one that makes a UID of a dictionary, which is the last if it is not wanted
    std::size_t uidKey_;
    const Visit* visit_ = nullptr;
    bool hasStopped_ = false;
    XmlScanner scanner_{{}};
    XmlValueReader reader_{scanner_};
    std::vector<Record::Slot> slots_;
    std::string buffer_; // decoded texts of the record at hand
    FormerRecord former_;

    XmlOutput* transcript_ = nullptr;
    XmlScanner recordStart_{{}}; // after the start tag of the record at hand
    unsigned recordDepth_ = 0;
};

} // namespace platform::plist
