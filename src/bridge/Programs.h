#pragma once

#include "bridge/Configuration.h"
#include "bridge/sources/Reading.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bridge {

// A finance program whose files can be connected.
struct Program {
    std::string_view name;       // in settings and in the keys of plans
    std::string_view title;      // for people
    std::string_view executable; // that opens a file; empty where the desktop knows best what does
    std::string_view endings;    // of its files' names, separated by spaces; where files are looked for
    std::string_view
        lockEnding; // what the name of an open file's lock has besides; empty where there is none
    // Whether a file is one of the program's, by its path and its first bytes.
    bool (*recognises)(std::string_view path, std::string_view start);
    // The plans of a file. The fault goes on a sentence that begins with the file: "is encrypted".
    Reading (*read)(const std::string& path, const Period& period, const Configuration& configuration);
    // Where payments are entered into a journal of ours (PaidJournal.h), otherwise null: the files that a
    // file includes, itself among them, and what the program has against it, as such a fault, empty where it
    // accepts it.
    std::vector<std::string> (*filesOf)(const std::string& path) = nullptr;
    std::string (*check)(const std::string& path) = nullptr;
};

using Programs = std::span<const Program>;

// The program of a name, or null.
[[nodiscard]] const Program* programOf(Programs programs, std::string_view name);

// The program whose file this is, or null; a file that cannot be read is nobody's.
[[nodiscard]] const Program* programOfFile(Programs programs, const std::string& path);

// Whether a program's files have names like this one.
[[nodiscard]] bool hasEndingOf(const Program& program, std::string_view path);

// The bytes of a file. False where they cannot be read, with the reading's fault.
[[nodiscard]] bool readBytesOf(const std::string& path, std::string& bytes, Reading& reading);

// A reader of bytes as the `read` of a program that keeps its plans in one file.
template <Reading (*readBytes)(std::string_view, const Period&)>
Reading readOneFile(const std::string& path, const Period& period, const Configuration& /*configuration*/) {
    Reading reading;
    std::string bytes;
    return readBytesOf(path, bytes, reading) ? readBytes(bytes, period) : reading;
}

} // namespace bridge
