#include "platform/plist/binary/BinaryLayout.h"
#include "platform/plist/xml/RecordWalk.h"
#include "platform/plist/Writer.h"
#include "platform/plist/xml/XmlWriter.h"

namespace platform::plist {

namespace {

class Rewriter final {
public:
    Rewriter(std::string_view bytes, std::span<const std::string_view> keys,
             const std::function<RecordEdit(const Record&)>& edit, const Sink& sink)
        : keys_(keys)
        , edit_(edit)
        , sink_(sink)
        , output_(sink, XmlOutput::HandsOn::WhenAsked)
        , mayShare_(hasBinaryMagic(bytes))
        , walk_(keys, output_) {
        output_.raw(xmlHeader);
        output_.raw("<array>\n");
        end_ = output_.size();
    }

    RecordsOutcome run(std::string_view bytes) {
        return walk_.run(bytes,
                         [this](const Record& record, const Value* value) { return visit(record, value); });
    }

    void append(const Value& record) {
        write(record);
        end_ = output_.size();
    }

    bool finish() {
        if (mayShare_)
            return writeXml(Value(std::move(kept_)), sink_);
        if (output_.size() == xmlHeader.size() + std::string_view("<array>\n").size()) {
            output_.cutTo(xmlHeader.size());
            output_.raw("<array/>\n");
        } else {
            output_.raw("</array>\n");
        }
        output_.raw(xmlFooter);
        return isWritable_ && output_.finish();
    }

private:
    // Without a value the record is written already.
    bool visit(const Record& record, const Value* value) {
        const RecordEdit edit = edit_(record);
        switch (edit.action) {
        case RecordEdit::Action::Stop:
            return false;
        case RecordEdit::Action::Drop:
            output_.cutTo(end_);
            break;
        case RecordEdit::Action::Keep:
            if (value)
                write(*value);
            break;
        case RecordEdit::Action::Replace:
            output_.cutTo(end_);
            write(replaced(value ? *value : walk_.readAgain(), edit));
            break;
        }
        end_ = output_.size();
        output_.handOnIfMuch(); // this record and those before it stay as they are
        return true;
    }

    [[nodiscard]] Value replaced(const Value& value, const RecordEdit& edit) const {
        Dictionary changed = *value.dictionary();
        changed.set(keys_[edit.key], Value(edit.number));
        return Value(std::move(changed));
    }

    void write(const Value& value) {
        if (mayShare_)
            kept_.push_back(value);
        else if (isWritable_)
            isWritable_ = writer_.write(value, 1);
    }

    std::span<const std::string_view> keys_;
    const std::function<RecordEdit(const Record&)>& edit_;
    const Sink& sink_;
    XmlOutput output_;
    XmlWriter writer_{output_};
    std::size_t end_ = 0; // of the records that are kept
    bool isWritable_ = true;
    // Only the binary form can name one container twice. What that grows to is told by all records together.
    bool mayShare_;
    Array kept_;
    RecordWalk walk_;
};

} // namespace

RecordsRewriting rewriteRecords(std::string_view bytes, std::span<const std::string_view> keys,
                                const std::function<RecordEdit(const Record&)>& edit, const Sink& sink) {
    Rewriter rewriter(bytes, keys, edit, sink);
    const RecordsOutcome outcome = rewriter.run(bytes);
    if (outcome != RecordsOutcome::Complete)
        return {outcome, false};
    return {outcome, rewriter.finish()};
}

RecordsRewriting appendRecord(std::string_view bytes, const Value& record, const Sink& sink) {
    const std::function<RecordEdit(const Record&)> keep = [](const Record&) { return RecordEdit::keep(); };
    Rewriter rewriter(bytes, {}, keep, sink);
    const RecordsOutcome outcome = rewriter.run(bytes);
    if (outcome != RecordsOutcome::Complete)
        return {outcome, false};
    rewriter.append(record);
    return {outcome, rewriter.finish()};
}

} // namespace platform::plist
