#pragma once

#include "platform/plist/RecordEditor.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Lists read and edited record by record, and the same through a tree of values, for comparison.

constexpr std::array<std::string_view, 5> keys = {"date", "name", "planpk", "income", "expense"};

// What all that can be asked of the records gave, as text; absent if the list is not sound.
using Records = std::optional<std::vector<std::string>>;
Records recordsOf(std::string_view bytes);
Records recordsOfTree(std::string_view bytes);

// The root of a list, if it is an array.
std::optional<platform::plist::Array> arrayOf(std::string_view bytes);

// What is done to each record of a list while it is the editor's.
using Edit = std::function<void(platform::plist::RecordEditor&, const platform::plist::Record&)>;
// The edited list; absent if it is not sound or cannot be written.
std::optional<std::string> edited(std::string_view bytes, const Edit& edit);
std::optional<std::string> appended(std::string_view bytes, const platform::plist::Value& record);

// With one of every kind of edit, chosen by what the record says of itself: a record with a date below zero
// is dropped, one with a date above gets a third of it.
std::optional<std::string> editedByDate(std::string_view bytes);
std::optional<platform::plist::Value> editedTree(std::string_view bytes);
