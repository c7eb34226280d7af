#include "platform/plist/RecordEditor.h"

#include "platform/plist/ExpandedSize.h"
#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"
#include "platform/plist/text/Encoding.h"
#include "platform/plist/text/Unicode.h"
#include "platform/plist/xml/XmlRecordEditor.h"

#include <algorithm>
#include <utility>

namespace platform::plist {

namespace {

bool hasSurrogateInAKey(const Value& value) {
    if (const Array* const array = value.array())
        return std::any_of(array->begin(), array->end(), hasSurrogateInAKey);
    const Dictionary* const dictionary = value.dictionary();
    return dictionary && std::any_of(dictionary->begin(), dictionary->end(), [](const auto& entry) {
               return findSurrogate(entry.first) < entry.first.size() || hasSurrogateInAKey(entry.second);
           });
}

// A list that is read and written as a whole.
class ValueRecordEditor final : public RecordEdits {
public:
    ValueRecordEditor(std::string_view bytes, std::span<const std::string_view> keys)
        : keys_(keys)
        , list_(read(bytes))
        , record_(keys) {
        const Value* const root = std::get_if<Value>(&list_);
        array_ = root ? root->array() : nullptr;
        ExpandedSize size;
        if (array_)
            size.add(*root);
        isWritable_ = !isTooLarge(size.expanded(), bytes.size());
    }

    const Record* next() override {
        if (!array_ || !isWritable_ || place_ == array_->size())
            return nullptr;
        kept_.push_back((*array_)[place_++]);
        record_.fill(kept_.back());
        return &record_;
    }
    [[nodiscard]] bool isSound() const override { return array_ != nullptr; }

    void drop() override { kept_.pop_back(); }
    void setNumber(std::size_t key, double number) override {
        if (!record_.number(key))
            return;
        Dictionary changed = *kept_.back().dictionary();
        changed.set(keys_[key], Value(number));
        kept_.back() = Value(std::move(changed));
    }
    void append(const Value& element) override { appended_.push_back(element); }

    std::optional<std::string> finish() override {
        if (!isWritable_)
            return std::nullopt;
        kept_.insert(kept_.end(), appended_.begin(), appended_.end());
        const Value list(std::move(kept_));
        std::optional<std::string> xml = writeXml(list);
        return xml && !hasSurrogateInAKey(list) ? std::move(xml) : std::nullopt;
    }

private:
    std::span<const std::string_view> keys_;
    ReadResult list_;
    const Array* array_ = nullptr;
    bool isWritable_ = true; // false for a list that expands too far, whose records are not given either
    std::size_t place_ = 0;
    Array kept_;
    Array appended_;
    Record record_;
};

// Whether a list can be edited in its source.
bool isEditableSource(std::string_view bytes) {
    DecodedText text;
    if (decodeText(bytes, text) || !text.buffer.empty() || text.xml.size() != bytes.size())
        return false;
    XmlElement root;
    return XmlScanner(bytes).findRoot(root) == XmlScanner::Found::Element && root.tag == XmlTag::Plist;
}

std::unique_ptr<RecordEdits> editsOf(std::string_view bytes, std::span<const std::string_view> keys) {
    if (isEditableSource(bytes))
        return std::make_unique<XmlRecordEditor>(bytes, keys);
    return std::make_unique<ValueRecordEditor>(bytes, keys);
}

} // namespace

RecordEditor::RecordEditor(std::string_view bytes, std::span<const std::string_view> keys)
    : edits_(editsOf(bytes, keys)) {}

} // namespace platform::plist
