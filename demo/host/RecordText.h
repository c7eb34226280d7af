#pragma once

#include "platform/plist/Value.h"

#include <QString>

#include <initializer_list>
#include <optional>

// Records of the shared files in words.
namespace host {

// What a record of the action log asks for, as the widget writes it (see docs/formats.md).
struct LoggedAction {
    QString meaning;             // "Paid"; says so where the record is none of the widget's
    std::optional<QString> plan; // the plan's key
    std::optional<double> date;  // the occurrence's, in seconds since 1970-01-01 00:00 UTC
};

[[nodiscard]] LoggedAction loggedAction(const platform::plist::Value& record);

// Every key and value of a record, in the file's order: "date 1773165600.5, param 3". What has parts of its
// own is only named ("array").
[[nodiscard]] QString recordText(const platform::plist::Value& record);

// The shortest text that stands for that very number.
[[nodiscard]] QString numberText(double number);

// One line for programs: fields parted by tabs. Control characters within a field become spaces.
[[nodiscard]] QString outputLine(std::initializer_list<QString> fields);

} // namespace host
