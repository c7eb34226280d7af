#pragma once

#include "ctl/Report.h"
#include "exchange/FeedReader.h"

#include <string>
#include <system_error>
#include <variant>
#include <vector>

// The container of the host application, as several commands need it.
namespace ctl {

// The path of the full edition's container, whether or not the container exists.
[[nodiscard]] std::string containerPath();
[[nodiscard]] bool hasContainer();

// Says that there is no container, or why it cannot be looked at, and returns Failed.
[[nodiscard]] int failedWithoutContainer(Streams& streams);

// The transactions that the widget reads, or the fault at which it would end. Without a container the list is
// empty.
[[nodiscard]] exchange::FeedReading readWidgetsList();

// Why the panel's list cannot be told.
struct ListFault {
    std::string file;
    std::string sentence;
};

// The same list. Also faults are settings and a feed that are there and cannot be read, and a feed that is no
// array of records: the widget takes them for absent ones and shows nothing.
[[nodiscard]] std::variant<std::vector<TodayTransactionPtr>, ListFault> readSoundList();

// Why the shared settings cannot be read as they stand, so that the account's key is not known: an error of
// reading the file, or that its root is no dictionary. An absent file is no error.
[[nodiscard]] std::error_code settingsError();
[[nodiscard]] std::string settingsFile();

// Says what became of writing a file, and returns the exit status: Done also where the file is written but
// may be lost in a crash, which the user is told.
[[nodiscard]] int reportWrite(Streams& streams, const std::string& file, const std::error_code& result);

} // namespace ctl
