#include "platform/plist/xml/XmlRecordEditor.h"

#include "platform/plist/xml/XmlWriter.h"

#include <utility>

namespace platform::plist {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

bool isLineBreak(char c) {
    return c == '\n' || c == '\r';
}

} // namespace

void XmlRecordEditor::drop() {
    edits_.push_back({withItsLines(records_.element()), {}});
}

void XmlRecordEditor::setNumber(std::size_t key, double number) {
    if (!record_->number(key))
        return;
    Edit& edit = edits_.emplace_back();
    edit.extent = records_.number(key);
    XmlWriter(edit.replacement).writeReal(number);
}

void XmlRecordEditor::append(const Value& element) {
    isWritable_ = isWritable_ && XmlWriter(appended_).write(element, 1);
}

std::optional<std::string> XmlRecordEditor::finish() {
    if (!isWritable_)
        return std::nullopt;
    if (!appended_.empty())
        edits_.push_back(insertion());
    const auto [start, end] = records_.array();
    const Extent content = records_.content();
    std::string out;
    out.reserve(text_.size() + appended_.size() + 64);
    out.append(text_, 0, content.start);
    appendContent(out);
    if (out.find_first_not_of(" \t\r\n", content.start) == std::string::npos)
        out.replace(start, std::string::npos, "<array/>");
    else if (content.end == end) // the array was an empty tag
        out.replace(start, end - start, "<array>\n").append("</array>");
    else
        out.append(text_, content.end, end - content.end);
    out.append(text_, end, records_.root().end - end);
    return out += '\n';
}

// The element's lines where nothing else stands on them, otherwise the element alone.
Extent XmlRecordEditor::withItsLines(Extent element) const {
    Extent lines = element;
    while (lines.start > 0 && isBlank(text_[lines.start - 1]))
        --lines.start;
    while (lines.end < text_.size() && isBlank(text_[lines.end]))
        ++lines.end;
    const bool isFirst = lines.start > 0 && isLineBreak(text_[lines.start - 1]);
    const bool isLast = lines.end < text_.size() && isLineBreak(text_[lines.end]);
    if (!isFirst || !isLast)
        return element;
    lines.end += text_.substr(lines.end).starts_with("\r\n") ? 2 : 1;
    return lines;
}

// What is appended, before the array's close tag and on lines of its own.
XmlRecordEditor::Edit XmlRecordEditor::insertion() const {
    const Extent content = records_.content();
    std::size_t line = content.end; // where the close tag's line starts
    while (line > content.start && isBlank(text_[line - 1]))
        --line;
    if (line > content.start && isLineBreak(text_[line - 1]))
        return {{line, line}, appended_};
    const bool isEmptyTag = content.end == records_.array().end;
    return {{content.end, content.end}, isEmptyTag ? appended_ : '\n' + appended_};
}

// What stands between the array's tags, with the edits.
void XmlRecordEditor::appendContent(std::string& out) const {
    std::size_t at = records_.content().start;
    for (const Edit& edit : edits_) {
        out.append(text_, at, edit.extent.start - at).append(edit.replacement);
        at = edit.extent.end;
    }
    out.append(text_, at, records_.content().end - at);
}

} // namespace platform::plist
