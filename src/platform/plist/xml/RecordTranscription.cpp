#include "platform/plist/xml/RecordWalk.h"

#include "platform/plist/xml/Numbers.h"
#include "platform/plist/text/Unicode.h"
#include "platform/plist/xml/TextCare.h"

#include <array>
#include <optional>

// Records written as they are read.
namespace platform::plist {

namespace {

using Found = XmlScanner::Found;

constexpr std::size_t recordIndent = 1;
constexpr std::string_view lineEnd = "\n";

// Of a text that is an integer.
bool isSpelledAsWrittenInteger(std::string_view text) {
    const char first = text.starts_with('-') ? text[1] : text[0];
    return (first >= '1' && first <= '9') || text == "0";
}

} // namespace

bool RecordWalk::rewriteRecord(XmlElement element, unsigned depth) {
    recordStart_ = scanner_;
    recordDepth_ = depth;
    const std::size_t start = transcript_->size();
    if (former_.isUsable()) {
        if (transcribeAsFormer()) {
            former_.matched();
            visitRecord(true);
            return true;
        }
        former_.missed();
        transcript_->cutTo(start);
        scanner_ = recordStart_;
    }
    switch (transcribeRecord(depth + 1)) {
    case Transcribed::Fault:
        return false;
    case Transcribed::Whole:
        visitRecord(true);
        return true;
    case Transcribed::Unusual:
        break;
    }
    transcript_->cutTo(start);
    scanner_ = recordStart_;
    return visitAsValue(element, depth);
}

Value RecordWalk::readAgain() const {
    XmlScanner scanner = recordStart_;
    Value value;
    const bool isRead = XmlValueReader(scanner).read({XmlTag::Dictionary, false}, recordDepth_, &value);
    return isRead ? value : Value();
}

RecordWalk::Transcribed RecordWalk::transcribeRecord(unsigned depth) {
    if (!reader_.checkDepth(depth))
        return Transcribed::Fault;
    clearSlots();
    const bool isNoted = former_.begin();
    transcript_->tag("<dict>\n", recordIndent);
    const std::size_t start = transcript_->size() - lineEnd.size();
    const Transcribed entries = transcribeEntries(isNoted ? std::optional(start) : std::nullopt);
    if (entries != Transcribed::Whole)
        return entries;
    transcript_->tag("</dict>\n", recordIndent);
    if (isNoted) {
        const std::string_view record = transcript_->since(start);
        former_.finish(record.substr(0, record.size() - lineEnd.size()));
    }
    return scanner_.takeCloseTag(XmlTag::Dictionary) ? Transcribed::Whole : Transcribed::Fault;
}

// As long as the record is spelled as it is to be written, it goes there in long pieces.
bool RecordWalk::transcribeAsFormer() {
    clearSlots();
    transcript_->tag("<dict>", recordIndent);
    const char* same = scanner_.position(); // from here on nothing is written yet
    const auto writeSame = [&](const char* end) {
        transcript_->raw({same, static_cast<std::size_t>(end - same)});
    };
    Record::Slot ignored;
    for (const FormerRecord::Content& content : former_.contents()) {
        Record::Slot& slot = content.key == WantedKeys::none ? ignored : slots_[content.key];
        if (!scanner_.takeSame(former_.before(content)))
            return false;
        const char* const start = scanner_.position();
        if (!takeContent(content.tag, slot))
            return false;
        if (isSpelledAsWritten(content.tag, slot, start))
            continue;
        writeSame(start);
        writeContent(content.tag, slot, start);
        same = scanner_.position();
    }
    if (!scanner_.takeSame(former_.closing()))
        return false;
    writeSame(scanner_.position());
    transcript_->raw(lineEnd);
    return true;
}

// Nothing is lost where this is wrongly denied.
bool RecordWalk::isSpelledAsWritten(XmlTag tag, const Record::Slot& slot, const char* start) const {
    const std::string_view source(start, static_cast<std::size_t>(scanner_.position() - start));
    std::array<char, numberRoom> number{};
    switch (tag) {
    case XmlTag::String:
        return !slot.text.isDecoded && slot.text.source.size() == source.size() &&
               scanner_.left() >= careSlack && !mayNeedCare(source.data(), source.size());
    case XmlTag::Real:
        return source ==
               std::string_view(number.data(), formatReal(number.data(), slot.number) - number.data());
    case XmlTag::Integer:
        return isSpelledAsWrittenInteger(source);
    default:
        return true;
    }
}

void RecordWalk::writeContent(XmlTag tag, const Record::Slot& slot, const char* start) {
    switch (tag) {
    case XmlTag::String:
        transcript_->text(slot.text.in(buffer_));
        break;
    case XmlTag::Real:
        transcript_->number(slot.number);
        break;
    default:
        transcript_->number(
            parseInteger({start, static_cast<std::size_t>(scanner_.position() - start)}).value);
        break;
    }
}

// Keys that are decoded, those that would be read as others once they are written (a byte order mark at the
// start is dropped each time), and that of an archive's reference are left to the reader of values; so are
// equal ones and those that would have to be sorted.
RecordWalk::Transcribed RecordWalk::transcribeEntries(std::optional<std::size_t> notedFrom) {
    std::string_view last;
    for (bool isFirst = true;; isFirst = false) {
        std::size_t key = WantedKeys::none;
        XmlText text;
        XmlElement element;
        const Found found = findKey(key, &text);
        if (found == Found::CloseTag)
            return isFirst ? Transcribed::Unusual : Transcribed::Whole;
        if (found == Found::Fault || scanner_.findElement(element) != Found::Element)
            return Transcribed::Fault;
        const bool isPlain = !text.isDecoded && key != uidKey_ && withoutMark(text.source) == text.source;
        if (!isPlain || !(isFirst || precedesInUtf16(last, text.source)))
            return Transcribed::Unusual;
        last = text.source;
        transcript_->key(last, recordIndent + 1);
        const std::size_t keyEnd = transcript_->size();
        const Transcribed value = transcribeValue(element, key == WantedKeys::none ? nullptr : &slots_[key]);
        if (value != Transcribed::Whole)
            return value;
        if (notedFrom)
            noteWritten(key, element.tag, keyEnd, *notedFrom);
    }
}

// The value that was written last, after its key's line.
void RecordWalk::noteWritten(std::size_t key, XmlTag tag, std::size_t keyEnd, std::size_t recordStart) {
    const std::size_t startTagEnd = keyEnd + transcript_->since(keyEnd).find('>') + 1;
    const std::size_t end = transcript_->size() - lineEnd.size();
    former_.note(key, tag == XmlTag::Key ? XmlTag::String : tag, startTagEnd - recordStart,
                 end - recordStart);
}

RecordWalk::Transcribed RecordWalk::transcribeValue(XmlElement element, Record::Slot* slot) {
    Record::Slot ignored;
    Record::Slot& read = slot ? *slot : ignored;
    Integer integer;
    switch (element.tag) {
    case XmlTag::Key:
    case XmlTag::String:
    case XmlTag::True:
    case XmlTag::False:
    case XmlTag::Real:
        if (!readSlot(element, recordDepth_, read))
            return Transcribed::Fault;
        break;
    case XmlTag::Integer:
        if (element.isEmpty || !reader_.readInteger(integer))
            return Transcribed::Fault;
        read.state = Record::State::Number;
        read.number = doubleOf(integer);
        transcript_->integer(integer, recordIndent + 1);
        return Transcribed::Whole;
    default:
        return Transcribed::Unusual;
    }
    if (read.state == Record::State::Text)
        transcript_->string(read.text.in(buffer_), recordIndent + 1);
    else if (read.state == Record::State::Boolean)
        transcript_->boolean(read.number != 0, recordIndent + 1);
    else
        transcript_->real(read.number, recordIndent + 1);
    return Transcribed::Whole;
}

} // namespace platform::plist
