#include "ctl/StatusCommand.h"

#include "ctl/Confinement.h"
#include "ctl/Host.h"
#include "ctl/StatusFollower.h"
#include "ctl/StatusText.h"

#include <ostream>

namespace ctl {

int status(const Options& options, Streams& streams) {
    const StatusText text(options.json);
    if (options.follow)
        return followStatus(text, streams);
    if (!confine(streams, {{containerPath()}, {}}))
        return Failed;
    const CountsReading reading = readCounts();
    streams.out << text.line(reading.counts) << '\n' << text.lastLine();
    return reading.fault ? failed(streams, reading.fault->file, reading.fault->sentence) : Done;
}

} // namespace ctl
