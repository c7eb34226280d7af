#pragma once

#include "bridge/plans/Day.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace bridge {

// A file whose plans are shown.
struct ConnectedFile {
    std::string id; // made when it is connected; part of its plans' keys, so that it stays
    std::string path;
    std::string program; // the name of one of the programs (Programs.h)

    bool operator==(const ConnectedFile&) const = default;
};

// What the user can set: bridge.json, an object, which people may edit. docs/bridge.md describes it.
struct Configuration {
    std::vector<ConnectedFile> files;
    int daysAhead = 31;        // whose occurrences are wanted
    int daysUntilReminder = 3; // after which a paid occurrence is told as not yet entered
    std::optional<Day>
        hledgerFirstDay; // from which a journal's rules are due; absent for 90 days before today
};

// The configuration of a text, or a sentence on what is wrong with it. An empty text has the defaults.
[[nodiscard]] std::variant<Configuration, std::string> configurationOfText(std::string_view text);

// The text, which is sound, with other connected files; everything else in it stays.
[[nodiscard]] std::string textWithFiles(std::string_view text, const std::vector<ConnectedFile>& files);

// The text of bridge.json, empty where there is no file, and its configuration.
struct ConfigurationFile {
    std::string text;
    Configuration configuration;
};

// The file as it stands, or a sentence that names it.
[[nodiscard]] std::variant<ConfigurationFile, std::string> readConfiguration();

// Replaces the file. Returns a sentence where that failed, otherwise an empty text.
[[nodiscard]] std::string writeConfiguration(std::string_view text);

} // namespace bridge
