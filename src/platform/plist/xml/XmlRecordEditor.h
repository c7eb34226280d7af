#pragma once

#include "platform/plist/RecordEditor.h"
#include "platform/plist/xml/XmlRecordSource.h"

#include <string>
#include <vector>

namespace platform::plist {

// Edits the source of an XML list.
class XmlRecordEditor final : public RecordEdits {
public:
    XmlRecordEditor(std::string_view text, std::span<const std::string_view> keys)
        : text_(text)
        , records_(text, keys) {}

    const Record* next() override {
        record_ = records_.next();
        return record_;
    }
    [[nodiscard]] bool isSound() const override { return records_.isSound(); }

    void drop() override;
    void setNumber(std::size_t key, double number) override;
    void append(const Value& element) override;
    std::optional<std::string> finish() override;

private:
    // A part of the text, and the text that replaces it.
    struct Edit {
        Extent extent;
        std::string replacement;
    };

    [[nodiscard]] Extent withItsLines(Extent element) const;
    [[nodiscard]] Edit insertion() const;
    void appendContent(std::string& out) const;

    std::string_view text_;
    XmlRecordSource records_;
    const Record* record_ = nullptr;
    std::vector<Edit> edits_; // in the order of the text, none within another
    std::string appended_;    // whole lines
    bool isWritable_ = true;  // false once an appended element has no XML form
};

} // namespace platform::plist
