#include "bridge/Configuration.h"

#include "bridge/Folders.h"
#include "platform/storage/Files.h"
#include "platform/storage/StorageError.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>

namespace bridge {

namespace {

using Json = nlohmann::ordered_json;

// Takes values out of the configuration's object and remembers the first that is wrong.
class ObjectReader final {
public:
    explicit ObjectReader(const Json& object)
        : object_(object) {}

    void number(const char* key, int most, int& result) {
        const auto found = object_.find(key);
        if (found == object_.end())
            return;
        if (found->is_number_integer() && *found >= 0 && *found <= most)
            result = found->get<int>();
        else
            fail(key, "is no number from 0 to " + std::to_string(most));
    }

    void day(const char* key, std::optional<Day>& result) {
        const auto found = object_.find(key);
        if (found == object_.end())
            return;
        result = found->is_string() ? dayOfText(found->get_ref<const std::string&>()) : std::nullopt;
        if (!result)
            fail(key, "is no day like \"2026-01-31\"");
    }

    void text(const char* key, std::string& result) {
        const auto found = object_.find(key);
        if (found != object_.end() && found->is_string() && !found->get_ref<const std::string&>().empty())
            result = found->get<std::string>();
        else
            fail(key, "is no text");
    }

    void fail(const std::string& key, const std::string& what) {
        if (fault.empty())
            fault = "\"" + key + "\" " + what;
    }

    std::string fault;

private:
    const Json& object_;
};

std::string readFiles(const Json& files, std::vector<ConnectedFile>& result) {
    if (!files.is_array())
        return "\"files\" is no array";
    for (std::size_t index = 0; index < files.size(); ++index) {
        const std::string place = "file " + std::to_string(index + 1);
        if (!files[index].is_object())
            return place + " is no object";
        ConnectedFile file;
        ObjectReader reader(files[index]);
        reader.text("id", file.id);
        reader.text("path", file.path);
        reader.text("program", file.program);
        // The parts of a plan's key are separated by colons.
        if (file.id.find(':') != file.id.npos || file.program.find(':') != file.program.npos)
            reader.fail("id", "or \"program\" holds a colon");
        if (!reader.fault.empty())
            return place + ": " + reader.fault;
        const auto isSame = [&](const ConnectedFile& other) { return other.id == file.id; };
        if (std::any_of(result.begin(), result.end(), isSame))
            return place + ": \"id\" is that of another file";
        result.push_back(std::move(file));
    }
    return {};
}

Json parse(std::string_view text) {
    return text.empty() ? Json::object() : Json::parse(text, nullptr, false);
}

} // namespace

std::variant<Configuration, std::string> configurationOfText(std::string_view text) {
    const Json root = parse(text);
    if (!root.is_object())
        return "it is no JSON object";
    Configuration configuration;
    ObjectReader reader(root);
    reader.number("days_ahead", 366, configuration.daysAhead);
    reader.number("days_until_reminder", 366, configuration.daysUntilReminder);
    reader.day("hledger_first_day", configuration.hledgerFirstDay);
    std::string fault = reader.fault;
    if (fault.empty() && root.contains("files"))
        fault = readFiles(root["files"], configuration.files);
    if (!fault.empty())
        return fault;
    return configuration;
}

std::string textWithFiles(std::string_view text, const std::vector<ConnectedFile>& files) {
    Json root = parse(text);
    Json list = Json::array();
    for (const ConnectedFile& file : files)
        list.push_back({{"id", file.id}, {"path", file.path}, {"program", file.program}});
    root["files"] = std::move(list);
    return root.dump(4, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::variant<ConfigurationFile, std::string> readConfiguration() {
    const std::string path = configurationFile();
    std::error_code error;
    ConfigurationFile file;
    if (auto bytes = platform::readFile(path, &error))
        file.text = std::move(*bytes);
    else if (error != std::errc::no_such_file_or_directory)
        return path + ": " + error.message();
    auto configuration = configurationOfText(file.text);
    if (const auto* fault = std::get_if<std::string>(&configuration))
        return path + ": " + *fault;
    file.configuration = std::move(std::get<Configuration>(configuration));
    return file;
}

std::string writeConfiguration(std::string_view text) {
    const std::string path = configurationFile();
    std::error_code error = platform::makeFolders(std::filesystem::path(path).parent_path().string());
    if (platform::isMade(error))
        error = platform::worseOf(platform::replaceFile(path, text), error);
    return platform::isMade(error) ? "" : path + ": " + error.message();
}

} // namespace bridge
