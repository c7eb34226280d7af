#include "platform/plist/xml/RecordWalk.h"

#include "platform/plist/binary/BinaryRecordWalk.h"
#include "platform/plist/text/Encoding.h"
#include "platform/plist/Reader.h"
#include "platform/plist/text/Unicode.h"

#include <algorithm>

namespace platform::plist {

namespace {

using Found = XmlScanner::Found;

constexpr std::string_view uidKey = "CF$UID";

std::vector<std::string_view> withUidKey(std::span<const std::string_view> keys) {
    std::vector<std::string_view> all(keys.begin(), keys.end());
    if (std::find(all.begin(), all.end(), uidKey) == all.end())
        all.push_back(uidKey);
    return all;
}

bool beginsAsXml(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && text[first] == '<';
}

} // namespace

RecordWalk::RecordWalk(std::span<const std::string_view> keys)
    : wanted_(keys)
    , keys_(withUidKey(keys))
    , uidKey_(keys_.find(uidKey))
    , slots_(keys_.size()) {}

RecordWalk::RecordWalk(std::span<const std::string_view> keys, XmlOutput& transcript)
    : RecordWalk(keys) {
    transcript_ = &transcript;
}

RecordsOutcome RecordWalk::run(std::string_view bytes, const Visit& visit) {
    visit_ = &visit;
    hasStopped_ = false;
    former_ = {};
    if (hasBinaryMagic(bytes) && !transcript_)
        return runBinary(bytes);
    DecodedText text;
    const bool isText = !hasBinaryMagic(bytes) && !bytes.empty();
    if (isText && decodeText(bytes, text))
        return RecordsOutcome::NoArray;
    // No list of the old form with an array for its root begins as an XML one does.
    if (!isText || !beginsAsXml(text.xml))
        return runTree(bytes);
    scanner_ = XmlScanner(text.xml);
    XmlElement root;
    if (scanner_.findRoot(root) != Found::Element || !walkRoot(root, 0))
        return RecordsOutcome::NoArray;
    return hasStopped_ ? RecordsOutcome::Stopped : RecordsOutcome::Complete;
}

// A text that begins with the binary form's magic is no array, so nothing else need be tried.
RecordsOutcome RecordWalk::runBinary(std::string_view bytes) {
    const std::optional<BinaryLayout> layout = BinaryLayout::of(bytes);
    if (!layout)
        return RecordsOutcome::NoArray;
    return BinaryRecordWalk(*layout, keys_, wanted_).run(*visit_);
}

RecordsOutcome RecordWalk::runTree(std::string_view bytes) {
    const ReadResult result = read(bytes);
    const Value* const root = std::get_if<Value>(&result);
    if (!root || !root->array())
        return RecordsOutcome::NoArray;
    for (const Value& element : *root->array())
        visitValue(element);
    return hasStopped_ ? RecordsOutcome::Stopped : RecordsOutcome::Complete;
}

// False for a fault and for another root alike.
bool RecordWalk::walkRoot(XmlElement element, unsigned depth) {
    if (element.tag == XmlTag::Plist)
        return !element.isEmpty && walkPlist(depth);
    return element.tag == XmlTag::Array && (element.isEmpty || walkArray(depth + 1));
}

bool RecordWalk::walkPlist(unsigned depth) {
    XmlElement element;
    if (scanner_.findElement(element) != Found::Element)
        return false;
    const unsigned inner = XmlValueReader::depthInPlist(element, depth);
    return reader_.checkDepth(inner) && walkRoot(element, inner) && reader_.finishPlist();
}

bool RecordWalk::walkArray(unsigned depth) {
    if (!reader_.checkDepth(depth))
        return false;
    for (;;) {
        XmlElement element;
        switch (scanner_.findElement(element)) {
        case Found::Fault:
            return false;
        case Found::CloseTag:
            return scanner_.takeCloseTag(XmlTag::Array);
        case Found::Element:
            if (!walkElement(element, depth))
                return false;
        }
    }
}

bool RecordWalk::walkElement(XmlElement element, unsigned depth) {
    if (hasStopped_)
        return reader_.read(element, depth, nullptr);
    const bool isRecord = element.tag == XmlTag::Dictionary && !element.isEmpty;
    if (isRecord)
        return transcript_ ? rewriteRecord(element, depth) : walkNextRecord(depth + 1);
    return visitAsValue(element, depth);
}

bool RecordWalk::visitAsValue(XmlElement element, unsigned depth) {
    Value value;
    if (!reader_.read(element, depth, &value))
        return false;
    visitValue(value);
    return true;
}

bool RecordWalk::walkNextRecord(unsigned depth) {
    if (former_.isUsable()) {
        const XmlScanner start = scanner_;
        if (walkAsFormer()) {
            former_.matched();
            visitRecord(true);
            return true;
        }
        former_.missed();
        scanner_ = start;
    }
    if (!former_.begin())
        return walkRecord(depth);
    const XmlScanner start = scanner_;
    if (!walkRecord(depth))
        return false;
    scanner_ = start;
    noteRecord(depth);
    return true;
}

bool RecordWalk::walkAsFormer() {
    clearSlots();
    Record::Slot ignored;
    for (const FormerRecord::Content& content : former_.contents()) {
        Record::Slot& slot = content.key == WantedKeys::none ? ignored : slots_[content.key];
        if (!scanner_.takeSame(former_.before(content)) || !takeContent(content.tag, slot))
            return false;
    }
    return scanner_.takeSame(former_.closing());
}

bool RecordWalk::takeContent(XmlTag tag, Record::Slot& slot) {
    Integer integer;
    switch (tag) {
    case XmlTag::String:
        slot.state = Record::State::Text;
        return scanner_.takeText(buffer_, slot.text);
    case XmlTag::Real:
        slot.state = Record::State::Number;
        return reader_.takeReal(slot.number);
    case XmlTag::Integer:
        slot.state = Record::State::Number;
        if (!reader_.takeInteger(integer))
            return false;
        slot.number = doubleOf(integer);
        return true;
    default:
        slot.state = Record::State::Boolean;
        slot.number = scanner_.takeSame("<true/>") ? 1 : 0;
        return slot.number != 0 || scanner_.takeSame("<false/>");
    }
}

bool RecordWalk::walkRecord(unsigned depth) {
    if (!reader_.checkDepth(depth))
        return false;
    clearSlots();
    bool hasOtherKeys = false;
    for (;;) {
        std::size_t key = WantedKeys::none;
        XmlElement element;
        const Found found = findKey(key, nullptr);
        if (found == Found::CloseTag)
            break;
        if (found == Found::Fault || scanner_.findElement(element) != Found::Element)
            return false;
        hasOtherKeys = hasOtherKeys || key != uidKey_;
        const bool isRead = key == WantedKeys::none ? reader_.read(element, depth, nullptr)
                                                    : readSlot(element, depth, slots_[key]);
        if (!isRead)
            return false;
    }
    if (!scanner_.takeCloseTag(XmlTag::Dictionary))
        return false;
    // A dictionary whose one key is `CF$UID`, with a number, is no dictionary but a UID.
    visitRecord(hasOtherKeys || slots_[uidKey_].state != Record::State::Number);
    return true;
}

// A sound record is passed once more. One with the key that makes a UID of it is no pattern.
void RecordWalk::noteRecord(unsigned depth) {
    const char* const start = scanner_.position();
    const auto place = [&] { return static_cast<std::size_t>(scanner_.position() - start); };
    std::size_t key = WantedKeys::none;
    XmlElement element;
    while (findKey(key, nullptr) == Found::Element && scanner_.findElement(element) == Found::Element) {
        const std::size_t startTagEnd = place();
        (void)reader_.read(element, depth, nullptr);
        former_.note(key, key == uidKey_ ? XmlTag::Plist : element.tag, startTagEnd, place());
    }
    (void)scanner_.takeCloseTag(XmlTag::Dictionary);
    former_.finish({start, place()});
}

void RecordWalk::clearSlots() {
    buffer_.clear();
    for (Record::Slot& slot : slots_)
        slot.state = Record::State::Absent;
}

// Any key, most often one that is not wanted.
XmlScanner::Found RecordWalk::findOtherKey(bool isUsualTag, std::size_t& key, XmlText* text) {
    XmlElement element{XmlTag::Key, false};
    if (isUsualTag) {
        scanner_.passKey(0);
    } else {
        const Found found = scanner_.findElement(element);
        if (found != Found::Element)
            return found;
    }
    XmlText own;
    XmlText& read = text ? *text : own;
    if (!reader_.takeKey(element, buffer_, read))
        return Found::Fault;
    key = keys_.find(read.in(buffer_));
    return Found::Element;
}

// A later value of the same key replaces the former.
bool RecordWalk::readSlot(XmlElement element, unsigned depth, Record::Slot& slot) {
    switch (element.tag) {
    case XmlTag::True:
    case XmlTag::False:
        slot.state = Record::State::Boolean;
        slot.number = element.tag == XmlTag::True ? 1.0 : 0.0;
        return reader_.finishBoolean(element);
    case XmlTag::Key:
    case XmlTag::String:
        slot.state = Record::State::Text;
        slot.text = {};
        return element.isEmpty ||
               (scanner_.takeText(buffer_, slot.text) && scanner_.takeCloseTag(element.tag));
    case XmlTag::Real:
    case XmlTag::Integer:
        slot.state = Record::State::Number;
        return reader_.readNumber(element, slot.number);
    case XmlTag::Plist:
        break; // may hold any kind
    default:
        slot.state = Record::State::Other;
        return reader_.read(element, depth, nullptr);
    }
    Value value;
    if (!reader_.read(element, depth, &value))
        return false;
    slot.state = Record::State::Other;
    if (const std::optional<double> number = numberOf(value)) {
        slot.state = value.boolean() ? Record::State::Boolean : Record::State::Number;
        slot.number = *number;
    } else if (const std::optional<std::string_view> string = value.string()) {
        slot.state = Record::State::Text;
        slot.text = {{}, buffer_.size(), string->size(), true};
        buffer_ += *string;
    }
    return true;
}

void RecordWalk::visitRecord(bool isDictionary) {
    Record record;
    record.isDictionary_ = isDictionary;
    record.slots_ = slots_;
    record.buffer_ = &buffer_;
    record.keys_ = wanted_;
    hasStopped_ = !(*visit_)(record, nullptr);
}

void RecordWalk::visitValue(const Value& value) {
    if (hasStopped_)
        return;
    Record record;
    record.dictionary_ = value.dictionary();
    record.isDictionary_ = record.dictionary_ != nullptr;
    record.keys_ = wanted_;
    hasStopped_ = !(*visit_)(record, &value);
}

} // namespace platform::plist
