#pragma once

#include "bridge/Programs.h"

#include <string>
#include <vector>

namespace bridge {

// A file that could be connected.
struct Candidate {
    std::string path; // without symbolic links
    const Program* program = nullptr;
};

// The files of programs that the desktop's and the programs' lists of recent files name, those in the user's
// home and documents, and the journal that $LEDGER_FILE or else its default name leads to. Of a folder only
// its own entries are looked at, never those of folders in it; copies that programs keep when they save are
// left out. Each file once.
[[nodiscard]] std::vector<Candidate> candidates(Programs programs);

// The path of a file without symbolic links and dots; as it stands where there is no such file.
[[nodiscard]] std::string canonicalPath(const std::string& path);

} // namespace bridge
