#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

// The commands of the companion. Each is given the whole command line (words[0] is its name) and gives the
// exit status.
namespace ctl {

// list [--json]: every transaction that the feed's reader yields, whatever the shown count, and that count.
[[nodiscard]] int list(const Options& options, Streams& streams);

// publish FILE.json: an array of objects with the feed's keys becomes the feed; "-" is standard input. The
// container is made where it is missing.
[[nodiscard]] int publish(const Options& options, Streams& streams);

// act PLANPK DATE paid | later DAYS | delete | delete-future | info: what the row and the sheet do, through
// the same code, to a transaction of the widget's own list. A repeating plan's delete is the sheet's second
// choice and delete-future its first.
[[nodiscard]] int act(const Options& options, Streams& streams);

// consume [--json]: takes the account's action log, as the host application does, prints it and then removes
// it. What a run that was ended in between had taken, the next one hands out first.
[[nodiscard]] int consume(const Options& options, Streams& streams);

// settings get KEY [--json], settings set KEY VALUE.
[[nodiscard]] int settings(const Options& options, Streams& streams);

// plist FILE [--to json|xml]: see PlistCommand.h; JSON unless it says otherwise.
[[nodiscard]] int plistFile(const Options& options, Streams& streams);

} // namespace ctl
