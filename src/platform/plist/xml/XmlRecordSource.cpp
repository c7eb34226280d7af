#include "platform/plist/xml/XmlRecordSource.h"

#include "platform/plist/text/Unicode.h"

#include <algorithm>
#include <cstring>

namespace platform::plist {

namespace {

using Found = XmlScanner::Found;
using FieldKind = Record::Field::Kind;

std::vector<std::string_view> withUidKey(std::span<const std::string_view> keys) {
    std::vector<std::string_view> names(keys.begin(), keys.end());
    if (std::find(names.begin(), names.end(), uidKey) == names.end())
        names.push_back(uidKey);
    return names;
}

// The first eight bytes of a text that has as many.
std::uint64_t firstWord(std::string_view text) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data(), sizeof word);
    return word;
}

} // namespace

XmlRecordSource::XmlRecordSource(std::string_view text, std::span<const std::string_view> keys)
    : scanner_(text)
    , names_(withUidKey(keys))
    , record_(names_)
    , uid_(record_.placeOf(uidKey))
    , decoded_(names_.size())
    , numbers_(names_.size()) {
    for (const std::string_view name : names_) {
        // A name that would have to be escaped, or is too short, is never compared here but by its text.
        const bool isPlain = isAscii(name) && name.find_first_of("<&") == std::string_view::npos;
        const std::string spelling = std::string(name) + "</key>";
        const bool isLong = spelling.size() >= sizeof(std::uint64_t);
        spellings_.push_back({isPlain && isLong ? firstWord(spelling) : 0, spelling});
    }
}

const Record* XmlRecordSource::next() {
    if (state_ == State::Start)
        state_ = begin() ? State::Records : State::Broken;
    if (state_ != State::Records)
        return nullptr;
    XmlElement element;
    if (isArrayTagEmpty_) {
        state_ = finish() ? State::Sound : State::Broken;
        return nullptr;
    }
    switch (scanner_.findElement(element)) {
    case Found::Element:
        if (readElement(element, depth_)) {
            element_ = {element.start, scanner_.offset()};
            return &record_;
        }
        state_ = State::Broken;
        break;
    case Found::CloseTag:
        content_.end = scanner_.offset();
        state_ = scanner_.takeCloseTag(XmlTag::Array) && finish() ? State::Sound : State::Broken;
        break;
    case Found::Fault:
        state_ = State::Broken;
        break;
    }
    return nullptr;
}

// Reads up to the array's start tag. False for a fault, and also if the root is no array.
bool XmlRecordSource::begin() {
    XmlElement element;
    if (scanner_.findRoot(element) != Found::Element)
        return false;
    root_.start = element.start;
    for (; element.tag == XmlTag::Plist; ++plists_)
        if (element.isEmpty || !reader_.enterPlist(element, depth_))
            return false;
    if (element.tag != XmlTag::Array)
        return false;
    array_.start = element.start;
    content_ = {scanner_.offset(), scanner_.offset()};
    isArrayTagEmpty_ = element.isEmpty;
    return reader_.checkDepth(element.isEmpty ? depth_ : ++depth_);
}

// From the array's end to the root's.
bool XmlRecordSource::finish() {
    array_.end = scanner_.offset();
    for (unsigned plist = plists_; plist > 0; --plist)
        if (!reader_.leavePlist())
            return false;
    root_.end = scanner_.offset();
    return true;
}

// What next() gives: a record, or an element that is no dictionary.
bool XmlRecordSource::readElement(XmlElement element, unsigned depth) {
    if (element.tag == XmlTag::Plist && !element.isEmpty)
        return reader_.enterPlist(element, depth) && readElement(element, depth) && reader_.leavePlist();
    record_.clear(element.tag == XmlTag::Dictionary);
    if (element.tag == XmlTag::Dictionary && !element.isEmpty)
        return readRecord(depth + 1);
    return reader_.read(element, depth, nullptr);
}

bool XmlRecordSource::readRecord(unsigned depth) {
    if (!reader_.checkDepth(depth))
        return false;
    bool hasOtherKeys = false;
    for (;;) {
        std::size_t key = 0;
        XmlElement element;
        const Found found = findKey(key);
        if (found == Found::CloseTag)
            break;
        if (found == Found::Fault || !reader_.findValue(element))
            return false;
        hasOtherKeys = hasOtherKeys || key != uid_;
        const bool isWanted = key < names_.size();
        if (isWanted ? !readField(element, depth, key) : !reader_.read(element, depth, nullptr))
            return false;
    }
    if (!scanner_.takeCloseTag(XmlTag::Dictionary))
        return false;
    if (!hasOtherKeys && record_.field(uid_).kind == FieldKind::Number)
        record_.clear(false);
    return true;
}

// Passes a key and gives its place among the names, or their number.
XmlScanner::Found XmlRecordSource::findKey(std::size_t& key) {
    if (takePlainKey(key))
        return Found::Element;
    XmlElement element;
    const Found found = scanner_.findElement(element);
    if (found != Found::Element)
        return found;
    std::string_view text;
    if (!reader_.readKey(element, decodedKey_, text))
        return Found::Fault;
    key = record_.placeOf(text);
    return Found::Element;
}

// Passes a key that is one of the names in its plain spelling, and tells whether there was one.
bool XmlRecordSource::takePlainKey(std::size_t& key) {
    const std::string_view next = scanner_.afterKeyTag();
    if (next.size() < sizeof(std::uint64_t))
        return false;
    const std::uint64_t start = firstWord(next);
    const auto isNext = [&](const Spelling& spelling) {
        return spelling.start == start && next.starts_with(spelling.text);
    };
    const auto found = std::find_if(spellings_.begin(), spellings_.end(), isNext);
    if (found == spellings_.end())
        return false;
    key = static_cast<std::size_t>(found - spellings_.begin());
    scanner_.passKey(found->text.size());
    return true;
}

// A later value of the same key replaces the former.
bool XmlRecordSource::readField(XmlElement element, unsigned depth, std::size_t key) {
    Record::Field& field = record_.field(key);
    field.kind = FieldKind::Number;
    numbers_[key].start = element.start;
    bool isRead = false;
    switch (element.tag) {
    case XmlTag::Key:
    case XmlTag::String:
        field.kind = FieldKind::String;
        isRead = reader_.readString(element, decoded_[key], field.string);
        break;
    case XmlTag::Real:
        isRead = reader_.readReal(element, field.number);
        break;
    case XmlTag::Integer: {
        Integer integer;
        isRead = reader_.readInteger(element, integer);
        field.number = doubleOf(integer);
        break;
    }
    case XmlTag::True:
    case XmlTag::False: {
        bool boolean = false;
        field.kind = FieldKind::Boolean;
        isRead = reader_.readBoolean(element, boolean);
        field.number = boolean ? 1 : 0;
        break;
    }
    case XmlTag::Plist:
        if (!element.isEmpty)
            return reader_.enterPlist(element, depth) && readField(element, depth, key) &&
                   reader_.leavePlist();
        [[fallthrough]];
    default:
        field.kind = FieldKind::Other;
        isRead = reader_.read(element, depth, nullptr);
    }
    numbers_[key].end = scanner_.offset();
    return isRead;
}

} // namespace platform::plist
