#pragma once

#include "ctl/check/Finding.h"
#include "platform/plist/Value.h"

#include <optional>
#include <string>

// What feed, settings and log have in common: one property list in one file.
namespace ctl {

// The faults that one of the files can have.
struct ListFaults {
    Fault unreadable;
    Fault noList;
    Fault expands;
    Fault noXmlForm;
};

struct ListFile {
    std::string path;
    std::string bytes;
    platform::plist::Value root;
};

// Reads a file's list. Adds a finding, and gives nothing, where the file cannot be read or holds no list.
// A file that does not exist is no fault here.
[[nodiscard]] std::optional<ListFile> readListFile(const std::string& path, const ListFaults& faults,
                                                   Findings& findings);

// The kind of a value in words: "a dictionary".
[[nodiscard]] std::string_view nameOfKind(const platform::plist::Value& value);

// Adds the findings about values that have no XML form, which count only where the list cannot be written
// back, and about those that other programs could not read. The elements of an array are its records.
enum class Writable { Yes, No };
void checkValues(const ListFile& file, Writable writable, const ListFaults& faults, Findings& findings);

} // namespace ctl
