#include "bridge/Commands.h"
#include "bridge/LocalDays.h"
#include "bridge/Payments.h"
#include "bridge/Publication.h"
#include "bridge/Update.h"
#include "exchange/FeedReader.h"
#include "exchange/SharedSettings.h"
#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/Files.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <variant>

namespace bridge {

namespace {

using Json = nlohmann::ordered_json;

struct FileStatus {
    const ConnectedFile* file = nullptr;
    std::string title;                // of the program
    std::optional<std::string> saved; // when; absent where there is no such file
    bool isOpen = false;              // a lock of the program is there
    KeptReading reading;
    std::vector<std::string> includes;
    std::string toInclude; // the journal of payments, where the file does not include it
};

struct FeedStatus {
    std::string refusal; // why nothing is published there
    std::size_t records = 0;
    std::optional<Day> last; // that the panel shows today
    std::size_t hidden = 0;  // of the wanted days, beyond that
    std::size_t pending = 0;
    std::size_t reminders = 0; // of these, paid long enough ago
};

FileStatus statusOf(const Surroundings& surroundings, const ConnectedFile& file, Database& database) {
    FileStatus result{&file,
                      file.program,
                      std::nullopt,
                      false,
                      database.reading(file.id),
                      database.includes(file.id),
                      journalToInclude(surroundings, file)};
    struct stat status {};
    if (platform::FileSystemCalls::current().status(file.path.c_str(), &status) == 0)
        result.saved = textOfMoment(static_cast<double>(status.st_mtim.tv_sec));
    if (const Program* program = programOf(surroundings.programs, file.program)) {
        result.title = program->title;
        result.isOpen = !program->lockEnding.empty() &&
                        platform::fileExists(file.path + std::string(program->lockEnding));
    }
    return result;
}

FeedStatus feedStatus(OpenedState& state) {
    FeedStatus result;
    result.refusal = whyForeign(containerPath());
    const std::vector<PublishedRecord> records = state.database.publishedNow();
    result.records = records.size();
    const auto limit = exchange::limitForDayCount(exchange::notificationDayCount());
    if (const double* last = std::get_if<double>(&limit)) {
        result.last = dayOfMoment(*last);
        const double wanted = endOfDay(today() + std::chrono::days(state.configuration().daysAhead));
        for (const PublishedRecord& record : records)
            result.hidden += record.date > *last && record.date <= wanted ? 1 : 0;
    }
    const std::vector<Action> open = state.database.openActions();
    const std::vector<FilePlans> files = keptPlans(state);
    for (const PendingOccurrence& pending : pendingOccurrences(files, open)) {
        ++result.pending;
        result.reminders += isReminded(*pending.action, state.configuration()) ? 1 : 0;
    }
    return result;
}

Json jsonOf(const FileStatus& file) {
    Json json{{"program", file.file->program},
              {"path", file.file->path},
              {"saved", file.saved ? Json(*file.saved) : Json()},
              {"open", file.isOpen},
              {"read", file.reading.isThere ? Json(textOfDay(file.reading.today)) : Json()},
              {"plans", file.reading.plans.size()},
              {"includes", file.includes},
              {"fault", file.reading.fault}};
    if (!file.toInclude.empty())
        json["to_include"] = file.toInclude;
    return json;
}

void printFile(Surroundings& surroundings, const FileStatus& file) {
    print(surroundings, file.title + "  " + file.file->path);
    print(surroundings, file.saved ? "    saved " + *file.saved : "    there is no such file now");
    if (file.isOpen)
        print(surroundings, "    " + file.title + " seems to have it open; what is not saved is not shown");
    if (!file.reading.isThere)
        print(surroundings, "    not read yet");
    else
        print(surroundings, "    read " + textOfDay(file.reading.today) +
                                ", plans: " + std::to_string(file.reading.plans.size()));
    if (!file.reading.fault.empty())
        print(surroundings, "    the file " + file.reading.fault +
                                (file.reading.isThere ? "; what was read before stays shown" : ""));
    if (!file.toInclude.empty())
        print(surroundings,
              "    what is paid in the panel is entered once this line is at its end: include " +
                  file.toInclude);
}

void printFeed(Surroundings& surroundings, const FeedStatus& feed) {
    if (!feed.refusal.empty())
        print(surroundings, "Nothing is published: " + feed.refusal);
    std::string line = "Published occurrences: " + std::to_string(feed.records);
    if (feed.last)
        line += "; the panel shows today what is due up to " + textOfDay(*feed.last);
    print(surroundings, line);
    if (feed.hidden > 0)
        print(surroundings, "Due later, and hidden because the panel counts days within the month: " +
                                std::to_string(feed.hidden));
    print(surroundings, "Paid and not yet entered, as pending lists them: " + std::to_string(feed.pending));
    if (feed.reminders > 0)
        print(surroundings, "Paid days ago and still not entered: " + std::to_string(feed.reminders));
}

} // namespace

int showStatus(Surroundings& surroundings) {
    OpenedState state;
    if (!openState(surroundings, state))
        return Failed;
    std::vector<FileStatus> files;
    for (const ConnectedFile& file : state.configuration().files)
        files.push_back(statusOf(surroundings, file, state.database));
    const FeedStatus feed = feedStatus(state);
    if (const std::string fault = state.database.error(); !fault.empty())
        return failed(surroundings, fault);
    if (!surroundings.json) {
        for (const FileStatus& file : files)
            printFile(surroundings, file);
        if (files.empty())
            print(surroundings, "No file is connected.");
        printFeed(surroundings, feed);
        return Done;
    }
    Json list = Json::array();
    for (const FileStatus& file : files)
        list.push_back(jsonOf(file));
    printJson(surroundings, Json{{"files", list},
                                 {"container", containerPath()},
                                 {"refusal", feed.refusal},
                                 {"published", feed.records},
                                 {"shown_until", feed.last ? Json(textOfDay(*feed.last)) : Json()},
                                 {"hidden", feed.hidden},
                                 {"pending", feed.pending},
                                 {"reminders", feed.reminders}});
    return Done;
}

} // namespace bridge
