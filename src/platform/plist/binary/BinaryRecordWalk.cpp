#include "platform/plist/binary/BinaryRecordWalk.h"

namespace platform::plist {

namespace {

constexpr unsigned depthOfElements = 1;
constexpr unsigned depthOfEntries = 2;

} // namespace

BinaryRecordWalk::BinaryRecordWalk(const BinaryLayout& layout, const WantedKeys& keys,
                                   std::span<const std::string_view> wanted)
    : layout_(layout)
    , keys_(keys)
    , wanted_(wanted)
    , known_(layout.objects().size())
    , open_(layout.objects().size())
    , budget_(layout.objects().size() + freeOverlap)
    , slots_(keys.size()) {}

RecordsOutcome BinaryRecordWalk::run(const Visit& visit) {
    visit_ = &visit;
    const std::optional<std::size_t> offset = layout_.offsetOf(layout_.topObject());
    BinaryObject root;
    if (!offset || !takeBinaryObject(layout_, *offset, root) || root.marker != BinaryMarker::Array ||
        !spend(root))
        return RecordsOutcome::NoArray;
    open_.insert(*offset);
    for (std::size_t at = 0; at < root.content.size(); at += layout_.referenceSize()) {
        const std::uint64_t number = layout_.referenceAt(root.content.data() + at);
        if (!(hasStopped_ ? check(number, depthOfElements) : visitElement(number)))
            return RecordsOutcome::NoArray;
    }
    return hasStopped_ ? RecordsOutcome::Stopped : RecordsOutcome::Complete;
}

bool BinaryRecordWalk::visitElement(std::uint64_t number) {
    const std::optional<std::size_t> offset = layout_.offsetOf(number);
    if (!offset)
        return false;
    if (known_.has(*offset))
        return visitAgain(number);
    BinaryObject object;
    if (!takeBinaryObject(layout_, *offset, object))
        return false;
    if (object.marker == BinaryMarker::Dictionary)
        return visitRecord(*offset, object);
    if (!check(*offset, object, depthOfElements))
        return false;
    visit(false, nullptr);
    return true;
}

// An object of which the list names many is read only once more, whatever its size.
bool BinaryRecordWalk::visitAgain(std::uint64_t number) {
    if (!tree_)
        tree_.emplace(layout_);
    Value value;
    if (!tree_->read(number, depthOfElements, value))
        return false;
    visit(value.dictionary() != nullptr, &value);
    return true;
}

bool BinaryRecordWalk::visitRecord(std::size_t offset, const BinaryObject& object) {
    if (open_.has(offset) || !spend(object))
        return false;
    open_.insert(offset);
    const std::string_view keys = object.content.substr(0, object.content.size() / 2);
    if (keys != recordKeys_.references && !readKeys(keys))
        return false;
    bufferUsed_ = 0;
    for (Record::Slot& slot : slots_)
        slot.state = Record::State::Absent;
    const char* value = keys.data() + keys.size();
    const std::size_t wanted = slots_.size();
    for (const std::size_t key : recordKeys_.places) {
        const std::uint64_t number = layout_.referenceAt(value);
        value += layout_.referenceSize();
        // Of one key's values the first counts.
        const bool isWanted = key < wanted && slots_[key].state == Record::State::Absent;
        if (!(isWanted ? readSlot(number, slots_[key]) : check(number, depthOfEntries)))
            return false;
    }
    open_.remove(offset);
    known_.insert(offset);
    visit(recordKeys_.areTexts, nullptr);
    return true;
}

bool BinaryRecordWalk::readKeys(std::string_view references) {
    recordKeys_ = {{}, std::move(recordKeys_.places), true};
    recordKeys_.places.clear();
    for (std::size_t at = 0; at < references.size(); at += layout_.referenceSize()) {
        const std::uint64_t number = layout_.referenceAt(references.data() + at);
        const std::optional<std::size_t> offset = layout_.offsetOf(number);
        if (!offset)
            return false;
        KnownKey& recent = recentKeys_[*offset % recentKeys_.size()];
        if (recent.offset != *offset)
            recent = {*offset, keyAt(number)};
        if (recent.place == refused)
            return false;
        recordKeys_.places.push_back(recent.place);
        recordKeys_.areTexts = recordKeys_.areTexts && recent.place != noText;
    }
    recordKeys_.references = references;
    return true;
}

std::size_t BinaryRecordWalk::keyAt(std::uint64_t number) {
    if (!checkKey(number, depthOfEntries))
        return refused;
    BinaryObject object;
    if (!takeBinaryObject(layout_, *layout_.offsetOf(number), object) || !object.isText())
        return noText;
    return keys_.find(textOf(object));
}

bool BinaryRecordWalk::readSlot(std::uint64_t number, Record::Slot& slot) {
    const std::optional<std::size_t> offset = layout_.offsetOf(number);
    BinaryObject object;
    if (!offset)
        return false;
    if (isBooleanAt(layout_, *offset)) {
        slot.state = Record::State::Boolean;
        slot.number = layout_.objects()[*offset] & 1;
        return true;
    }
    if (!takeBinaryObject(layout_, *offset, object))
        return false;
    if (object.isText()) {
        readText(*offset, object, slot);
        return spendOnce(*offset, object);
    }
    readNumber(object, slot);
    return object.isFixed() ? !faultOf(object) : check(*offset, object, depthOfEntries);
}

void BinaryRecordWalk::readNumber(const BinaryObject& object, Record::Slot& slot) {
    slot.state = Record::State::Number;
    if (object.marker == BinaryMarker::Integer) {
        slot.number = doubleOf(integerOf(object));
    } else if (object.marker == BinaryMarker::Real) {
        slot.number = realOf(object);
    } else {
        slot.state = Record::State::Other;
    }
}

void BinaryRecordWalk::readText(std::size_t offset, const BinaryObject& object, Record::Slot& slot) {
    slot.state = Record::State::Text;
    if (object.content.size() >= longText) {
        slot.text = {longTextAt(offset, object), 0, 0, false};
        return;
    }
    if (isPlainText(object)) {
        slot.text = {object.content, 0, 0, false};
        return;
    }
    const std::size_t room = object.count * longestCharacter;
    if (buffer_.size() - bufferUsed_ < room)
        buffer_.resize(2 * buffer_.size() + room);
    char* const start = buffer_.data() + bufferUsed_;
    const auto length = static_cast<std::size_t>(putText(start, object) - start);
    slot.text = {{}, bufferUsed_, length, true};
    bufferUsed_ += length;
}

std::string_view BinaryRecordWalk::longTextAt(std::size_t offset, const BinaryObject& object) {
    const auto [place, isNew] = longTexts_.try_emplace(offset);
    if (isNew)
        place->second = textOf(object);
    return place->second;
}

// Whether an object and all that it refers to is sound.
bool BinaryRecordWalk::check(std::uint64_t number, unsigned depth) {
    const std::optional<std::size_t> offset = layout_.offsetOf(number);
    if (!offset || depth > deepestBinaryValue)
        return false;
    if (known_.has(*offset))
        return true;
    BinaryObject object;
    return takeBinaryObject(layout_, *offset, object) && check(*offset, object, depth);
}

bool BinaryRecordWalk::check(std::size_t offset, const BinaryObject& object, unsigned depth) {
    if (object.isFixed() || known_.has(offset))
        return !faultOf(object);
    if (faultOf(object))
        return false;
    if (!object.isContainer())
        return spendOnce(offset, object);
    if (open_.has(offset) || !spend(object))
        return false;
    open_.insert(offset);
    if (!checkContent(object, depth + 1))
        return false;
    open_.remove(offset);
    known_.insert(offset);
    return true;
}

bool BinaryRecordWalk::checkContent(const BinaryObject& object, unsigned depth) {
    const std::size_t size = layout_.referenceSize();
    const char* const references = object.content.data();
    const bool isDictionary = object.marker == BinaryMarker::Dictionary;
    const std::size_t end = isDictionary ? object.content.size() / 2 : object.content.size();
    for (std::size_t at = 0; at < end; at += size) {
        if (isDictionary && !checkKey(layout_.referenceAt(references + at), depth))
            return false;
        if (!check(layout_.referenceAt(references + at + (isDictionary ? end : 0)), depth))
            return false;
    }
    return true;
}

// A key may be anything but a container.
bool BinaryRecordWalk::checkKey(std::uint64_t number, unsigned depth) {
    BinaryObject object;
    return check(number, depth) && takeBinaryObject(layout_, *layout_.offsetOf(number), object) &&
           !object.isContainer();
}

bool BinaryRecordWalk::spendOnce(std::size_t offset, const BinaryObject& leaf) {
    if (known_.has(offset))
        return true;
    known_.insert(offset);
    return spend(leaf);
}

bool BinaryRecordWalk::spend(const BinaryObject& object) {
    if (object.content.size() > budget_)
        return false;
    budget_ -= object.content.size();
    return true;
}

void BinaryRecordWalk::visit(bool isDictionary, const Value* value) {
    Record record;
    record.isDictionary_ = isDictionary;
    record.slots_ = slots_;
    record.buffer_ = &buffer_;
    record.dictionary_ = value ? value->dictionary() : nullptr;
    record.keys_ = wanted_;
    hasStopped_ = !(*visit_)(record, value);
}

} // namespace platform::plist
