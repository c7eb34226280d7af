#include "bridge/Update.h"

#include "bridge/AmountText.h"
#include "bridge/Folders.h"
#include "bridge/LocalDays.h"
#include "bridge/Payments.h"
#include "bridge/PlansText.h"
#include "bridge/Publication.h"
#include "bridge/TakenLog.h"
#include "exchange/SharedFiles.h"
#include "platform/storage/Files.h"
#include "platform/storage/StorageError.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

namespace bridge {

namespace {

Reading read(const Surroundings& surroundings, const ConnectedFile& file, const Period& period,
             const Configuration& configuration) {
    const Program* program = programOf(surroundings.programs, file.program);
    if (program)
        return program->read(file.path, period, configuration);
    Reading reading;
    reading.fault = "is of the program \"" + file.program + "\", which is not known";
    return reading;
}

bool isKept(const KeptReading& kept, const Reading& reading, const Period& period) {
    return kept.isThere && kept.fault.empty() && kept.today == period.today && kept.last == period.last &&
           textOfPlans(kept.plans) == textOfPlans(reading.plans);
}

// What was read besides the file and our own journal, which changes with each payment that is entered.
std::vector<std::string> includesOf(const ConnectedFile& file, std::vector<std::string> paths) {
    std::erase_if(paths, [&](const std::string& path) {
        std::error_code error;
        return std::filesystem::equivalent(path, file.path, error) ||
               std::filesystem::equivalent(path, paidJournalFile(file.id), error);
    });
    std::sort(paths.begin(), paths.end());
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
    return paths;
}

bool takeActions(Surroundings& surroundings, const std::string& container, Database& database) {
    const LogTaking taking = takeLog(container, database);
    for (const std::string& notice : taking.notices)
        say(surroundings, notice);
    if (!taking.fault.empty())
        say(surroundings, taking.fault);
    return taking.fault.empty();
}

// The open actions, without those that the files show as done.
std::vector<Action> endActions(Database& database, const std::vector<FilePlans>& files) {
    std::vector<Action> open = database.openActions();
    const std::vector<std::int64_t> ended = endedActions(files, open);
    if (ended.empty())
        return open;
    database.begin();
    for (const std::int64_t action : ended)
        database.setState(action, ActionState::Entered);
    return database.commit().empty() ? database.openActions() : std::vector<Action>();
}

} // namespace

bool openState(Surroundings& surroundings, OpenedState& state) {
    auto file = readConfiguration();
    if (const auto* fault = std::get_if<std::string>(&file)) {
        say(surroundings, *fault);
        return false;
    }
    state.file = std::move(std::get<ConfigurationFile>(file));
    const std::string fault = state.database.open();
    if (!fault.empty())
        say(surroundings, fault);
    return fault.empty();
}

bool openStateInTurn(Surroundings& surroundings, OpenedState& state) {
    const std::string folder = ownStateFolder();
    std::error_code error = platform::makeFolders(folder);
    if (platform::isMade(error))
        error = state.turn.emplace(folder).error();
    if (!error)
        return openState(surroundings, state);
    say(surroundings, folder + ": " + error.message());
    return false;
}

bool readFiles(Surroundings& surroundings, OpenedState& state, std::vector<FilePlans>& result) {
    const Day now = today();
    const Period period{now, now + std::chrono::days(state.configuration().daysAhead)};
    bool isSound = true;
    std::vector<std::pair<const ConnectedFile*, Reading>> readings;
    for (const ConnectedFile& file : state.configuration().files) {
        readings.emplace_back(&file, read(surroundings, file, period, state.configuration()));
        for (Plan& plan : readings.back().second.plans)
            plan.key = portableKey(plan.key);
    }
    state.database.begin();
    for (auto& [file, reading] : readings) {
        for (const std::string& warning : reading.warnings)
            say(surroundings, file->path + ": " + warning);
        KeptReading kept = state.database.reading(file->id);
        if (reading.isSound()) {
            if (!isKept(kept, reading, period))
                state.database.keepReading(file->id, period.today, period.last, reading.plans);
            const auto includes = includesOf(*file, std::move(reading.files));
            if (state.database.includes(file->id) != includes)
                state.database.keepIncludes(file->id, includes);
            result.push_back({keyPrefix(*file), file->path, true, period.last, std::move(reading.plans)});
            continue;
        }
        isSound = false;
        say(surroundings, file->path + " " + reading.fault);
        if (kept.fault != reading.fault)
            state.database.keepFault(file->id, reading.fault);
        result.push_back({keyPrefix(*file), file->path, false, kept.last, std::move(kept.plans)});
    }
    if (const std::string fault = state.database.commit(); !fault.empty()) {
        say(surroundings, fault);
        return false;
    }
    return isSound;
}

std::string keyPrefix(const ConnectedFile& file) {
    return file.program + ":" + file.id + ":";
}

std::vector<FilePlans> keptPlans(OpenedState& state) {
    std::vector<FilePlans> files;
    for (const ConnectedFile& file : state.configuration().files) {
        KeptReading kept = state.database.reading(file.id);
        files.push_back({keyPrefix(file), file.path, false, kept.last, std::move(kept.plans)});
    }
    return files;
}

bool isReminded(const Action& action, const Configuration& configuration) {
    return action.done + std::chrono::days(configuration.daysUntilReminder) <= today();
}

int takeAndPublish(Surroundings& surroundings, OpenedState& state, std::vector<FilePlans> files) {
    const std::string container = containerPath();
    Database& database = state.database;
    bool isEntered = true;
    // As the user acts, the log may have more each time that the feed is made.
    constexpr int mostRounds = 20;
    for (int round = 0; round < mostRounds; ++round) {
        if (!takeActions(surroundings, container, database))
            return Failed;
        std::vector<Action> open = endActions(database, files);
        isEntered = enterPayments(surroundings, state, files, open) && isEntered;
        open = database.openActions();
        if (!database.error().empty())
            return failed(surroundings, database.error());
        const Feed feed = feedOf(shownOccurrences(files, open), surroundings.icons, amountLocale());
        const Publication publication = publish(container, feed, surroundings.icons,
                                                uncutDayCount(state.configuration().daysAhead), database);
        if (publication.outcome == Published::Done)
            return isEntered ? Done : Failed;
        if (publication.outcome == Published::Failed)
            return failed(surroundings, publication.fault);
    }
    return failed(surroundings, container + ": the action log changes all the time");
}

int update(Surroundings& surroundings) {
    OpenedState state;
    if (!openStateInTurn(surroundings, state))
        return Failed;
    const std::string container = containerPath();
    if (const std::string why = whyForeign(container); !why.empty())
        return failed(surroundings, why);
    if (state.configuration().files.empty() && !platform::fileExists(exchange::feedFile(container)))
        return failed(surroundings, "no file is connected; see korvel-today-bridge sources");
    const std::error_code made = platform::makeFolders(container);
    if (!platform::isMade(made))
        return failed(surroundings, container + ": " + made.message());
    bool isSound = prepareJournals(surroundings, state.configuration());
    std::vector<FilePlans> files;
    isSound = readFiles(surroundings, state, files) && isSound;
    if (!state.database.error().empty())
        return Failed;
    const int status = takeAndPublish(surroundings, state, std::move(files));
    return isSound ? status : Failed;
}

} // namespace bridge
