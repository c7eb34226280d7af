#include "program/Options.h"

#include "model/GroupIdentifiers.h"
#include "platform/system/CommandLine.h"
#include "platform/system/CommandLineJson.h"
#include "platform/system/NumberText.h"

namespace program {

namespace {

constexpr double smallestScale = 0.5;
constexpr double largestScale = 8;
constexpr int narrowest = 200;
constexpr int widest = 4000;

constexpr platform::CommandLineOption knownOptions[] = {
    {"--containers", "DIR",
     "the folder of the group containers (otherwise $KORVEL_GROUP_CONTAINERS,\n"
     "otherwise group-containers in $XDG_DATA_HOME)"},
    {"--background", "", "start without showing the panel; for the start of a session"},
    {"--show", "", "show the panel (what is done without an option)"},
    {"--toggle", "", "show the panel, or hide it if it is shown; for a key"},
    {"--hide", "", "hide the panel"},
    {"--quit", "", "end the program once nothing is pending"},
    {"--snapshot", "FILE.png", "draw the widget into a file and end; needs no display"},
    {"--scale", "N", "pixels to a point, 0.5 to 8 (1)"},
    {"--locale", "NAME", "language, direction, calendar and dates, as LC_ALL names them"},
    {"--width", "PX", "width of the content in points (320)"},
    {"--version", "", "the version and the group whose container is read"},
    {"--help", "", "this text", "-h"},
    {"--json", "", "with --help: the options as JSON, for programs"},
};

constexpr std::pair<const char*, std::string_view> commandOptions[] = {
    {"--background", center::backgroundCommand},
    {"--show", center::showCommand},
    {"--toggle", center::toggleCommand},
    {"--hide", center::hideCommand},
    {"--quit", center::quitCommand},
};

// About an option that the line has. What is told of it takes the place of "%1" in the message.
UsageError error(const platform::CommandLine& line, std::string_view option, const char* message,
                 const std::string& what) {
    return {QString::fromLatin1(message).arg(QString::fromStdString(what)),
            line.optionPlaces.find(option)->second};
}

std::optional<UsageError> readSnapshot(const platform::CommandLine& line, panel::Snapshot& snapshot) {
    snapshot.file = QString::fromStdString(line.value("--snapshot").value_or(""));
    snapshot.locale = line.value("--locale").value_or("");
    if (const auto text = line.value("--scale")) {
        const auto scale = platform::numberFromText<double>(*text);
        if (!scale || !(*scale >= smallestScale && *scale <= largestScale))
            return error(line, "--scale", "--scale takes a number from 0.5 to 8, not %1", *text);
        snapshot.scale = *scale;
    }
    if (const auto text = line.value("--width")) {
        const auto width = platform::numberFromText<int>(*text);
        if (!width || *width < narrowest || *width > widest)
            return error(line, "--width", "--width takes a whole number from 200 to 4000, not %1", *text);
        snapshot.width = *width;
    }
    return std::nullopt;
}

} // namespace

std::variant<Options, UsageError> parseOptions(const std::vector<std::string>& arguments) {
    const auto parsed = platform::parseCommandLine(knownOptions, platform::Operands::None, arguments);
    if (const auto* fault = std::get_if<platform::CommandLineError>(&parsed))
        return UsageError{QString::fromStdString(fault->message), fault->place};
    const auto& line = std::get<platform::CommandLine>(parsed);
    Options options;
    options.showsHelp = line.has("--help");
    options.isJson = line.has("--json");
    if (options.isJson && !options.showsHelp)
        return error(line, "--json", "%1 goes with --help", "--json");
    options.showsVersion = line.has("--version");
    options.containers = line.value("--containers").value_or("");
    const char* asked = nullptr;
    for (const auto& [option, command] : commandOptions) {
        if (!line.has(option))
            continue;
        if (asked)
            return error(line, option, "%1 do not go together", std::string(asked) + " and " + option);
        asked = option;
        options.command = command;
    }
    if (line.has("--snapshot")) {
        if (asked)
            return error(line, asked, "%1 does not go with --snapshot", asked);
        panel::Snapshot snapshot;
        if (const auto fault = readSnapshot(line, snapshot))
            return *fault;
        options.snapshot = snapshot;
        return options;
    }
    for (const char* name : {"--scale", "--locale", "--width"})
        if (line.has(name))
            return error(line, name, "%1 goes with --snapshot", name);
    return options;
}

QString helpText() {
    return QStringLiteral(
               R"(Shows planned transactions in a panel at the edge of the screen. Escape hides it; the program stays ready.
A start beside one that runs passes on what it is asked for and ends.

Usage: korvel-today [--containers DIR] [--background | --show | --toggle | --hide | --quit]
       korvel-today [--containers DIR] --snapshot FILE.png [--scale N] [--locale NAME] [--width PX]
       korvel-today --version | --help [--json]

%1
Exit status: 0 done, 1 the snapshot could not be written, there is no display, or the program that runs already does
not answer, 2 wrong usage.
)")
        .arg(QString::fromStdString(platform::helpInColumns(platform::helpLines(knownOptions))));
}

QString helpJson() {
    return QString::fromStdString(platform::helpAsJson("korvel-today", knownOptions));
}

QString versionText() {
    return QStringLiteral("korvel-today " KORVEL_VERSION " (%1)\n")
        .arg(QString::fromUtf8(fullEditionGroupIdentifier.data(), fullEditionGroupIdentifier.size()));
}

} // namespace program
