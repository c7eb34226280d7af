#pragma once

#include "bridge/plans/Day.h"

#include <QXmlStreamReader>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace bridge {

// One pass over an XML file of a finance program, by Qt's reader. Every fault, whether of XML or of what a
// source makes of it, ends the pass; nothing declared in the file is ever expanded.
class Xml final {
public:
    // The bytes must outlive this. The program's name is for the sentences.
    Xml(std::string_view bytes, const char* program);

    // Enters the root element. False where it is another, or where a document type declares anything.
    [[nodiscard]] bool enterRoot(const char* name);
    // Enters the next element below the one that is entered, or leaves that one.
    [[nodiscard]] bool enterNext() { return m_reader.readNextStartElement(); }
    void skip() { m_reader.skipCurrentElement(); }
    [[nodiscard]] bool is(const char* name) const { return m_reader.name() == QLatin1String(name); }

    // Attributes of the element that was entered. Empty, or the other value, where it has none of that name
    // or an empty one; what is written there and is no number or no day is a fault.
    [[nodiscard]] std::string text(const char* name) const;
    [[nodiscard]] std::int64_t integer(const char* name, std::int64_t other = 0);
    [[nodiscard]] std::optional<Day> day(const char* name);

    // Ends the pass. A sentence's end as in "a plan has no key".
    void fail(const std::string& reason);
    // Reads what follows the root; a sentence on the fault, or empty.
    [[nodiscard]] std::string finish();

private:
    void failAs(const std::string& sentence);

    QByteArray m_bytes;
    QXmlStreamReader m_reader;
    std::string m_program;
    std::string m_fault; // the first one, where it is not the reader's own
};

} // namespace bridge
