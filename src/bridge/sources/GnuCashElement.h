#pragma once

#include "bridge/plans/Day.h"

#include <QXmlStreamReader>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bridge {

// An element of a GnuCash file with all that is in it. What is asked for and damaged is a fault of the
// reader, which ends its pass.
struct GnuCashElement {
    std::string name; // with its prefix, "sx:id"
    std::string type; // the attribute of that name
    std::string text;
    std::vector<GnuCashElement> children;

    [[nodiscard]] const GnuCashElement* find(std::string_view child) const;
    // Empty where there is no such child.
    [[nodiscard]] std::string textOf(std::string_view child) const;
    // A child that must be there and have a text.
    [[nodiscard]] std::string neededText(std::string_view child, QXmlStreamReader& reader) const;
    // Absent where there is no such child.
    [[nodiscard]] std::optional<Day> dayOf(std::string_view child, QXmlStreamReader& reader) const;
    [[nodiscard]] std::optional<std::int64_t> integerOf(std::string_view child,
                                                        QXmlStreamReader& reader) const;
};

// Reads the element that the reader has just entered, and leaves it.
[[nodiscard]] GnuCashElement readElement(QXmlStreamReader& reader);

// Ends the pass with a reason as in "a plan has no key".
void fail(QXmlStreamReader& reader, const std::string& reason);

} // namespace bridge
