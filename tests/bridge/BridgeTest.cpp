#include "bridge/BridgeTest.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace bridge {

BridgeTest::BridgeTest()
    : home_("HOME", scratch + "/home")
    , config_("XDG_CONFIG_HOME", nullptr)
    , state_("XDG_STATE_HOME", nullptr)
    , data_("XDG_DATA_HOME", nullptr) {
    std::filesystem::create_directories(scratch + "/home");
}

std::string BridgeTest::writeHome(const std::string& name, std::string_view bytes) const {
    std::string path = homePath(name);
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

std::string BridgeTest::readHome(const std::string& name) const {
    std::ifstream file(homePath(name), std::ios::binary);
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "no file";
}

Day dayOf(std::string_view text) {
    return dayOfText(text).value();
}

Plan planOf(std::string key, const std::vector<std::string>& days) {
    Plan plan;
    plan.name = "Plan " + key;
    plan.key = std::move(key);
    plan.amount = Amount{{-87000, 2}, "EUR"};
    for (const std::string& day : days)
        plan.occurrences.push_back({dayOf(day), dayOf(day)});
    return plan;
}

} // namespace bridge
