#include "bridge/sources/Xml.h"

#include <charconv>

namespace bridge {

namespace {

bool isPgp(std::string_view bytes) {
    return bytes.starts_with("-----BEGIN") || bytes.starts_with("\x85\x01") || bytes.starts_with("\x85\x02");
}

// Why bytes cannot be XML, or nothing.
std::optional<std::string> foreignKind(std::string_view bytes, const std::string& program) {
    if (bytes.empty())
        return "is empty";
    if (bytes.starts_with("SQLite format 3"))
        return "is a database of another kind (SQLite)";
    if (isPgp(bytes))
        return "is encrypted";
    const auto start = bytes.find_first_not_of("\xEF\xBB\xBF \t\r\n");
    if (start == bytes.npos || bytes[start] != '<')
        return "is no file of " + program;
    return std::nullopt;
}

} // namespace

Xml::Xml(std::string_view bytes, const char* program)
    : m_bytes(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())))
    , m_reader(m_bytes)
    , m_program(program) {
    if (const auto kind = foreignKind(bytes, m_program))
        failAs(*kind);
}

bool Xml::enterRoot(const char* name) {
    while (!m_reader.atEnd() && !m_reader.isStartElement()) {
        m_reader.readNext();
        if (m_reader.isDTD() && m_reader.text().contains(QLatin1Char('[')))
            fail("its document type declares entities or elements");
    }
    if (m_reader.isStartElement() && !is(name))
        failAs("is no file of " + m_program + ": it begins with <" +
               m_reader.name().toString().toStdString() + ">");
    return !m_reader.hasError();
}

std::string Xml::text(const char* name) const {
    return m_reader.attributes().value(QLatin1String(name)).toString().toStdString();
}

std::int64_t Xml::integer(const char* name, std::int64_t other) {
    const std::string digits = text(name);
    if (digits.empty())
        return other;
    std::int64_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [last, error] = std::from_chars(digits.data(), end, number);
    if (error == std::errc() && last == end)
        return number;
    fail(std::string("\"") + name + "\" is no whole number");
    return other;
}

std::optional<Day> Xml::day(const char* name) {
    const std::string written = text(name);
    const auto day = dayOfText(written);
    if (!written.empty() && !day)
        fail(std::string("\"") + name + "\" is no day");
    return day;
}

void Xml::fail(const std::string& reason) {
    failAs("is damaged at line " + std::to_string(m_reader.lineNumber()) + ": " + reason);
}

void Xml::failAs(const std::string& sentence) {
    if (m_reader.hasError())
        return;
    m_fault = sentence;
    m_reader.raiseError();
}

std::string Xml::finish() {
    while (!m_reader.atEnd())
        m_reader.readNext();
    if (!m_reader.hasError() || !m_fault.empty())
        return m_fault;
    const std::string line = std::to_string(m_reader.lineNumber());
    const bool isCut = m_reader.error() == QXmlStreamReader::PrematureEndOfDocumentError;
    return isCut ? "is cut off at line " + line : "is damaged at line " + line + ": it is no well-formed XML";
}

} // namespace bridge
