#pragma once

#include "platform/system/CommandLine.h"

#include <QJsonObject>
#include <QJsonValue>

#include <span>
#include <string>
#include <string_view>

// The options of a program as JSON, from which its packaging makes what completes its command line in a
// shell.
namespace platform {

[[nodiscard]] QJsonValue jsonOf(std::string_view text);

// One object on one line: "program", "options" and what is given beside. Each option has "name", "shortName",
// "value" (an empty text where there is none) and "text", in one line.
[[nodiscard]] std::string helpAsJson(std::string_view program, std::span<const CommandLineOption> options,
                                     QJsonObject others = {});

} // namespace platform
