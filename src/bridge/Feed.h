#pragma once

#include "bridge/Overlay.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace bridge {

// The glyphs of plans: what a plan's glyph is called, and its PNG file.
struct Icons {
    std::string_view (*nameFor)(const Plan& plan) = nullptr;
    std::string_view (*file)(std::string_view name) = nullptr;
};

// The account of the shared settings, whose folder holds the icons and the action log.
inline constexpr const char* accountName = "bridge";

// What each record of ours has besides the keys of the feed, and what it says there. Rewriting keeps it.
inline constexpr const char* sourceKey = "source";
inline constexpr const char* sourceName = "korvel-today-bridge";

struct Feed {
    std::string bytes;
    std::vector<PublishedRecord> records;
    std::set<std::string> icons; // the names that the records have
};

// The feed of these occurrences, by date. Each is due at the end of its day; several of one plan on one day
// are seconds apart, as a record is known by its plan and its date.
[[nodiscard]] Feed feedOf(const std::vector<ShownOccurrence>& occurrences, const Icons& icons,
                          const std::string& locale);

// A plan's name as a list shows it: its payee or else its account where it has none, without characters that
// property lists of other programs cannot hold.
[[nodiscard]] std::string shownName(const Plan& plan);

// A plan's key in a form that every property list holds: control characters, the percent sign, and in a text
// that is no UTF-8 all bytes that are no ASCII are %XX.
[[nodiscard]] std::string portableKey(std::string_view key);

// A sentence on why the container's feed is another program's or may be so, which names the file; empty where
// there is none or it is ours. An empty feed belongs to the account of the settings.
[[nodiscard]] std::string whyForeign(const std::string& container);

} // namespace bridge
