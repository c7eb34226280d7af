#include "platform/plist/BinaryLayout.h"
#include "platform/plist/RecordWalk.h"
#include "platform/plist/Sharing.h"
#include "platform/plist/XmlWriter.h"

#include <algorithm>

namespace platform::plist {

namespace {

class Rewriter final {
public:
    Rewriter(std::string_view bytes, std::span<const std::string_view> keys,
             const std::function<RecordEdit(const Record&)>& edit)
        : keys_(keys)
        , edit_(edit)
        , mayShare_(hasBinaryMagic(bytes))
        , largest_(largestExpansion(bytes.size())) {
        output_.raw(xmlHeader);
    }

    bool visit(const Record& record, const Value& value) {
        const RecordEdit edit = edit_(record);
        switch (edit.action) {
        case RecordEdit::Action::Stop:
            return false;
        case RecordEdit::Action::Drop:
            return true;
        case RecordEdit::Action::Keep:
            write(value);
            return true;
        case RecordEdit::Action::Replace: {
            Dictionary changed = *value.dictionary();
            changed.set(std::string(keys_[edit.key]), Value(edit.number));
            write(Value(std::move(changed)));
            return true;
        }
        }
        return true;
    }

    std::optional<std::string> finish() {
        output_.raw(hasRecords_ ? "</array>\n" : "<array/>\n");
        output_.raw(xmlFooter);
        return isWritable_ ? std::optional(output_.take()) : std::nullopt;
    }

private:
    void write(const Value& value) {
        if (!hasRecords_)
            output_.raw("<array>\n");
        hasRecords_ = true;
        if (mayShare_ && isWritable_)
            isWritable_ = writtenSize(value).expanded <= largest_ - std::min(output_.size(), largest_);
        if (isWritable_)
            isWritable_ = writer_.write(value, 1);
    }

    std::span<const std::string_view> keys_;
    const std::function<RecordEdit(const Record&)>& edit_;
    XmlOutput output_;
    XmlWriter writer_{output_};
    bool mayShare_; // only the binary form can name one container twice
    std::size_t largest_;
    bool hasRecords_ = false;
    bool isWritable_ = true;
};

} // namespace

RewrittenRecords rewriteRecords(std::string_view bytes, std::span<const std::string_view> keys,
                                const std::function<RecordEdit(const Record&)>& edit) {
    Rewriter rewriter(bytes, keys, edit);
    RecordWalk walk(keys, RecordWalk::Purpose::Rewrite);
    const RecordsOutcome outcome = walk.run(
        bytes, [&](const Record& record, const Value* value) { return rewriter.visit(record, *value); });
    if (outcome != RecordsOutcome::Complete)
        return {outcome, std::nullopt};
    return {outcome, rewriter.finish()};
}

} // namespace platform::plist
