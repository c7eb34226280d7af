#include "ctl/PlistCommand.h"

#include "ctl/Confinement.h"
#include "ctl/Input.h"
#include "ctl/PrintBudget.h"
#include "ctl/Terminal.h"
#include "ctl/TypedJson.h"
#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"

#include <optional>
#include <ostream>
#include <system_error>

namespace ctl {

namespace {

using platform::plist::Error;
using platform::plist::Value;

std::string placeOf(const std::string& path, const Error& error) {
    if (error.line > 0)
        return path + ':' + std::to_string(error.line);
    return path + ", offset " + std::to_string(error.offset);
}

} // namespace

int showPlist(const std::string& path, PlistFormat format, Streams& streams) {
    std::error_code unreadable;
    const std::optional<std::string> bytes = readInput(path, streams.in, unreadable);
    if (!bytes)
        return failed(streams, path, unreadable.message());
    const platform::plist::ReadResult result = platform::plist::read(*bytes);
    if (const Error* error = std::get_if<Error>(&result))
        return failed(streams, placeOf(path, *error), error->message);
    const Value& value = std::get<Value>(result);
    if (!isPrintable(value))
        return failed(streams, path, "The list is too large when written out");
    if (format == PlistFormat::Json) {
        writeTypedJson(streams.out, value);
        streams.out << '\n';
    } else if (const std::optional<std::string> xml = platform::plist::writeXml(value)) {
        streams.out << (streams.isTerminal ? terminalXml(*xml) : *xml);
    } else {
        return failed(streams, path, "The list has no XML form");
    }
    return Done;
}

int plistFile(const Options& options, Streams& streams) {
    const std::string& file = options.line.operands[1];
    if (!confine(streams, file == "-" ? platform::AllowedFiles() : platform::AllowedFiles{{file}, {}}))
        return Failed;
    return showPlist(file, options.to == "xml" ? PlistFormat::Xml : PlistFormat::Json, streams);
}

} // namespace ctl
