#include "bridge/sources/GnuCashElement.h"

#include <charconv>

namespace bridge {

namespace {

constexpr int mostNested = 64;

void readContent(QXmlStreamReader& reader, GnuCashElement& element, int depth) {
    element.name = reader.qualifiedName().toString().toStdString();
    element.type = reader.attributes().value(QLatin1String("type")).toString().toStdString();
    if (depth > mostNested)
        fail(reader, "elements are nested too deep");
    QString text;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement())
            break;
        if (reader.isStartElement())
            readContent(reader, element.children.emplace_back(), depth + 1);
        else if (reader.isCharacters())
            text += reader.text();
    }
    if (element.children.empty())
        element.text = text.toStdString();
}

} // namespace

GnuCashElement readElement(QXmlStreamReader& reader) {
    GnuCashElement element;
    readContent(reader, element, 0);
    return element;
}

void fail(QXmlStreamReader& reader, const std::string& reason) {
    if (!reader.hasError())
        reader.raiseError(QString::fromStdString(reason));
}

const GnuCashElement* GnuCashElement::find(std::string_view child) const {
    for (const GnuCashElement& one : children)
        if (one.name == child)
            return &one;
    return nullptr;
}

std::string GnuCashElement::textOf(std::string_view child) const {
    const GnuCashElement* const found = find(child);
    return found ? found->text : std::string();
}

std::string GnuCashElement::neededText(std::string_view child, QXmlStreamReader& reader) const {
    std::string found = textOf(child);
    if (found.empty())
        fail(reader, "a <" + name + "> has no <" + std::string(child) + ">");
    return found;
}

std::optional<Day> GnuCashElement::dayOf(std::string_view child, QXmlStreamReader& reader) const {
    const GnuCashElement* const found = find(child);
    if (!found)
        return std::nullopt;
    const auto day = dayOfText(found->textOf("gdate"));
    if (!day)
        fail(reader, "a <" + found->name + "> has no day");
    return day;
}

std::optional<std::int64_t> GnuCashElement::integerOf(std::string_view child,
                                                      QXmlStreamReader& reader) const {
    const GnuCashElement* const found = find(child);
    if (!found)
        return std::nullopt;
    std::int64_t number = 0;
    const char* const end = found->text.data() + found->text.size();
    const auto [last, error] = std::from_chars(found->text.data(), end, number);
    if (error == std::errc() && last == end && number >= 0)
        return number;
    fail(reader, "a <" + found->name + "> is no count");
    return std::nullopt;
}

} // namespace bridge
