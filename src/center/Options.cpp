#include "center/Options.h"

#include "exchange/GroupIdentifiers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <map>

namespace center {

namespace {

constexpr double smallestScale = 0.5;
constexpr double largestScale = 8;
constexpr int narrowest = 200;
constexpr int widest = 4000;

using Values = std::map<std::string, std::string>;

bool takesValue(const std::string& name) {
    return name == "--containers" || name == "--snapshot" || name == "--scale" || name == "--locale" ||
           name == "--width";
}

UsageError error(const char* message, const std::string& what) {
    return {QString::fromLatin1(message).arg(QString::fromStdString(what))};
}

// One number and nothing else.
template <class Number>
std::optional<Number> number(const std::string& text) {
    Number value{};
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::variant<Values, UsageError> split(const std::vector<std::string>& arguments) {
    Values values;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const bool isFlag = name == "--version" || name == "--help";
        if (!isFlag && !takesValue(name))
            return error("unknown option %1", argument);
        if (isFlag && equals != std::string::npos)
            return error("%1 takes no value", name);
        if (!isFlag && equals == std::string::npos && i + 1 == arguments.size())
            return error("%1 needs a value", name);
        if (values.contains(name))
            return error("%1 is given twice", name);
        values[name] = isFlag                        ? std::string()
                       : equals == std::string::npos ? arguments[++i]
                                                     : argument.substr(equals + 1);
        if (!isFlag && values[name].empty())
            return error("%1 needs a value", name);
    }
    return values;
}

std::optional<UsageError> readSnapshot(const Values& values, Options::Snapshot& snapshot) {
    snapshot.file = QString::fromStdString(values.at("--snapshot"));
    if (const auto locale = values.find("--locale"); locale != values.end())
        snapshot.locale = locale->second;
    if (const auto text = values.find("--scale"); text != values.end()) {
        const auto scale = number<double>(text->second);
        if (!scale || !(*scale >= smallestScale && *scale <= largestScale))
            return error("--scale takes a number from 0.5 to 8, not %1", text->second);
        snapshot.scale = *scale;
    }
    if (const auto text = values.find("--width"); text != values.end()) {
        const auto width = number<int>(text->second);
        if (!width || *width < narrowest || *width > widest)
            return error("--width takes a whole number from 200 to 4000, not %1", text->second);
        snapshot.width = *width;
    }
    return std::nullopt;
}

} // namespace

std::variant<Options, UsageError> parseOptions(const std::vector<std::string>& arguments) {
    const auto parts = split(arguments);
    if (const auto* fault = std::get_if<UsageError>(&parts))
        return *fault;
    const auto& values = std::get<Values>(parts);
    Options options;
    options.showsHelp = values.contains("--help");
    options.showsVersion = values.contains("--version");
    if (const auto containers = values.find("--containers"); containers != values.end())
        options.containers = containers->second;
    if (values.contains("--snapshot")) {
        if (const auto fault = readSnapshot(values, options.snapshot.emplace()))
            return *fault;
        return options;
    }
    for (const char* name : {"--scale", "--locale", "--width"})
        if (values.contains(name))
            return error("%1 goes with --snapshot", name);
    return options;
}

QString helpText() {
    return QStringLiteral(
        R"(Shows planned transactions in a panel at the edge of the screen. Escape closes it.

Usage: korvel-today [--containers DIR] [--snapshot FILE.png [--scale N] [--locale NAME] [--width PX]]
       korvel-today --version | --help

  --containers DIR      the folder of the group containers (otherwise $KORVEL_GROUP_CONTAINERS,
                        otherwise group-containers in $XDG_DATA_HOME)
  --snapshot FILE.png   draw the widget into a file and end; needs no display
  --scale N             pixels to a point, 0.5 to 8 (1)
  --locale NAME         language, direction, calendar and dates, as LC_ALL names them
  --width PX            width of the content in points (320)
  --version             the version and the group whose container is read

Exit status: 0 done, 1 the snapshot could not be written, 2 wrong usage.
)");
}

QString versionText() {
    return QStringLiteral("korvel-today " KORVEL_VERSION " (%1)\n")
        .arg(QString::fromUtf8(fullEditionGroupIdentifier.data(), fullEditionGroupIdentifier.size()));
}

} // namespace center
