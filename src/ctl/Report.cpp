#include "ctl/Report.h"

#include "ctl/Terminal.h"

#include <ostream>
#include <string>

namespace ctl {

namespace {

void say(Streams& streams, const std::string& sentence) {
    streams.err << "korvel-todayctl: " << terminalText(sentence) << '\n';
}

} // namespace

int failed(Streams& streams, std::string_view place, std::string_view sentence) {
    std::string line(place);
    if (!place.empty())
        line += ": ";
    say(streams, line.append(sentence));
    return Failed;
}

int misused(Streams& streams, std::size_t place, std::string_view sentence) {
    say(streams,
        "argument " + std::to_string(place) + ": " + std::string(sentence) + "; see korvel-todayctl --help");
    return Misused;
}

} // namespace ctl
