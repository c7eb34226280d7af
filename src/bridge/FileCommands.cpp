#include "bridge/Candidates.h"
#include "bridge/Commands.h"
#include "bridge/LocalDays.h"
#include "bridge/Update.h"

#include <QCryptographicHash>
#include <QDir>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>

namespace bridge {

namespace {

using Json = nlohmann::ordered_json;
using Files = std::vector<ConnectedFile>;

Files::const_iterator find(const Files& files, const std::string& path) {
    return std::find_if(files.begin(), files.end(),
                        [&](const ConnectedFile& file) { return file.path == path; });
}

// Digits that stand for a path, so that a file that is connected again has its plans' keys again; more of
// them where another file has the same.
std::string idOf(const std::string& path, const Files& files) {
    const std::string digits =
        QCryptographicHash::hash(QByteArray::fromStdString(path), QCryptographicHash::Sha256)
            .toHex()
            .toStdString();
    for (std::size_t length = 8; length < digits.size(); ++length) {
        const std::string id = digits.substr(0, length);
        if (std::none_of(files.begin(), files.end(),
                         [&](const ConnectedFile& file) { return file.id == id; }))
            return id;
    }
    return digits;
}

std::string absolutePath(const std::string& path) {
    return canonicalPath(QDir().absoluteFilePath(QString::fromStdString(path)).toStdString());
}

std::string titles(Programs programs) {
    std::string text;
    for (const Program& program : programs)
        text.append(text.empty() ? "" : ", ").append(program.title);
    return text;
}

} // namespace

int listSources(Surroundings& surroundings) {
    const auto file = readConfiguration();
    if (const auto* fault = std::get_if<std::string>(&file))
        return failed(surroundings, *fault);
    const Files& connected = std::get<ConfigurationFile>(file).configuration.files;
    const std::vector<Candidate> found = candidates(surroundings.programs);
    Json list = Json::array();
    for (const Candidate& candidate : found) {
        const bool isConnected = find(connected, candidate.path) != connected.end();
        if (surroundings.json)
            list.push_back({{"program", candidate.program->name},
                            {"title", candidate.program->title},
                            {"path", candidate.path},
                            {"connected", isConnected}});
        else
            print(surroundings, std::string(candidate.program->title) + "  " + candidate.path +
                                    (isConnected ? "  (connected)" : ""));
    }
    if (surroundings.json)
        printJson(surroundings, list);
    else if (found.empty())
        print(surroundings, "No file of " + titles(surroundings.programs) + " was found.");
    return Done;
}

int connectFile(Surroundings& surroundings) {
    const std::string path = absolutePath(surroundings.operands[0]);
    OpenedState state;
    if (!openStateInTurn(surroundings, state))
        return Failed;
    const Program* program = programOfFile(surroundings.programs, path);
    if (!program)
        return failed(surroundings, path + " is no readable file of " + titles(surroundings.programs));
    const Day now = today();
    const Reading reading = program->read(
        path, {now, now + std::chrono::days(state.configuration().daysAhead)}, state.configuration());
    if (!reading.isSound())
        return failed(surroundings, path + " " + reading.fault);
    Files files = state.configuration().files;
    if (find(files, path) == files.end()) {
        files.push_back({idOf(path, files), path, std::string(program->name)});
        if (const std::string fault = writeConfiguration(textWithFiles(state.file.text, files));
            !fault.empty())
            return failed(surroundings, fault);
    }
    const ConnectedFile& file = *find(files, path);
    if (surroundings.json)
        printJson(surroundings, Json{{"id", file.id},
                                     {"path", path},
                                     {"program", file.program},
                                     {"plans", reading.plans.size()}});
    else
        print(surroundings, path + ": connected, a file of " + std::string(program->title) +
                                ", plans: " + std::to_string(reading.plans.size()));
    return Done;
}

int disconnectFile(Surroundings& surroundings) {
    const std::string path = absolutePath(surroundings.operands[0]);
    OpenedState state;
    if (!openStateInTurn(surroundings, state))
        return Failed;
    Files files = state.configuration().files;
    const auto found = find(files, path);
    if (found == files.end())
        return failed(surroundings, path + " is not connected");
    const std::string id = found->id;
    files.erase(found);
    if (const std::string fault = writeConfiguration(textWithFiles(state.file.text, files)); !fault.empty())
        return failed(surroundings, fault);
    state.database.begin();
    state.database.dropReading(id);
    const std::string fault = state.database.commit();
    return fault.empty() ? Done : failed(surroundings, fault);
}

} // namespace bridge
