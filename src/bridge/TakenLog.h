#pragma once

#include "bridge/Database.h"

#include <string>
#include <vector>

namespace bridge {

// What became of taking the action log.
struct LogTaking {
    std::string fault;                // a sentence that names the file; empty where all is taken
    std::vector<std::string> notices; // sentences on what was set aside
    std::size_t taken = 0;            // actions that were new
};

// Takes what the account's action log holds into the database. The log is renamed, its actions are kept in
// one transaction, and only then the renamed log is replaced by an empty one. So a process that ends in
// between leaves the log or its actions, and a later run takes in again what counts once. The container is
// locked only while the log is renamed and replaced.
//
// A log that is no array, or has a record that is no action, is kept beside the new one; the other records
// count.
[[nodiscard]] LogTaking takeLog(const std::string& container, Database& database);

// Whether there is anything to take.
[[nodiscard]] bool hasLog(const std::string& container);

} // namespace bridge
