#include "platform/plist/RecordReader.h"

#include "platform/plist/Reader.h"
#include "platform/plist/binary/BinaryRecordSource.h"
#include "platform/plist/text/Encoding.h"
#include "platform/plist/xml/XmlRecordSource.h"

#include <optional>
#include <utility>

namespace platform::plist {

namespace {

// The records of a list that was read as a whole.
class ValueRecordSource final : public RecordSource {
public:
    ValueRecordSource(std::string_view bytes, std::span<const std::string_view> keys)
        : result_(read(bytes))
        , record_(keys) {
        const Value* const root = std::get_if<Value>(&result_);
        array_ = root ? root->array() : nullptr;
    }

    const Record* next() override {
        if (!array_ || place_ == array_->size())
            return nullptr;
        record_.fill((*array_)[place_++]);
        return &record_;
    }
    [[nodiscard]] bool isSound() const override { return array_ != nullptr; }

private:
    ReadResult result_;
    const Array* array_ = nullptr;
    std::size_t place_ = 0;
    Record record_;
};

// A text in the encoding that XML is read in, with its records.
class DecodedRecordSource final : public RecordSource {
public:
    DecodedRecordSource(std::unique_ptr<DecodedText> text, std::span<const std::string_view> keys)
        : text_(std::move(text))
        , records_(text_->xml, keys) {}
    const Record* next() override { return records_.next(); }
    [[nodiscard]] bool isSound() const override { return records_.isSound(); }

private:
    std::unique_ptr<DecodedText> text_;
    XmlRecordSource records_;
};

std::unique_ptr<RecordSource> sourceOf(std::string_view bytes, std::span<const std::string_view> keys) {
    // A text that begins as a binary list does is no array, so that nothing else need be tried.
    if (hasBinaryMagic(bytes))
        return std::make_unique<BinaryRecordSource>(bytes, keys);
    auto text = std::make_unique<DecodedText>();
    // No list of the old form with an array for its root begins as an XML one does.
    if (!decodeText(bytes, *text) && beginsAsXml(text->xml))
        return std::make_unique<DecodedRecordSource>(std::move(text), keys);
    return std::make_unique<ValueRecordSource>(bytes, keys);
}

} // namespace

RecordReader::RecordReader(std::string_view bytes, std::span<const std::string_view> keys)
    : source_(sourceOf(bytes, keys)) {}

} // namespace platform::plist
