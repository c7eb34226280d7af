#pragma once

#include "platform/plist/RecordReader.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Lists read and rewritten record by record, and the same through a tree of values, for comparison.

constexpr std::array<std::string_view, 5> keys = {"date", "name", "planpk", "income", "expense"};

// What all that can be asked of the records gave, as text.
struct Visits {
    platform::plist::RecordsOutcome outcome = platform::plist::RecordsOutcome::NoArray;
    std::vector<std::string> records;
    bool operator==(const Visits&) const = default;
};

// What a value of the tree gives where it stands for a record.
std::string describe(const platform::plist::Value& element);

constexpr std::size_t never = 1000;

// Stops at that record.
Visits visitAsStream(std::string_view bytes, std::size_t stopAt);
Visits visitAsTree(std::string_view bytes, std::size_t stopAt);

// What a rewriting comes to.
struct Rewritten {
    platform::plist::RecordsOutcome outcome = platform::plist::RecordsOutcome::NoArray;
    std::optional<std::string> xml;
};

using Edit = std::function<platform::plist::RecordEdit(const platform::plist::Record&)>;
Rewritten rewrite(std::string_view bytes, const Edit& edit);
Rewritten append(std::string_view bytes, const platform::plist::Value& record);

// With one of every kind of edit, chosen by what the record says of itself.
Rewritten rewriteAsStream(std::string_view bytes);
std::optional<std::string> rewriteAsTree(std::string_view bytes);
