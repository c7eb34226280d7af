#include "exchange/ExchangeTest.h"

#include "model/GroupIdentifiers.h"
#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"
#include "platform/storage/GroupContainers.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace exchange {
namespace {

constexpr const char* scratchVariable = "KORVEL_TEST_SCRATCH";

std::string settingsFile() {
    const std::string group(fullEditionGroupIdentifier);
    return "Library/Preferences/" + group + ".plist";
}

// The folder of the test that started this process as its death test, or a new one.
std::string makeScratch() {
    if (const char* inherited = std::getenv(scratchVariable))
        return inherited;
    std::string pattern = testing::TempDir() + "exchange-XXXXXX";
    if (!mkdtemp(pattern.data()))
        throw std::system_error(errno, std::generic_category(), pattern);
    setenv(scratchVariable, pattern.c_str(), 1);
    return pattern;
}

} // namespace

ExchangeTest::ExchangeTest()
    : scratch(makeScratch())
    , container(scratch + "/" + std::string(fullEditionGroupIdentifier))
    , clock(tenthOfMarch + 15 * hour) {
    region.emplace(platform::Region{"en_US", "UTC"});
    std::filesystem::create_directories(container);
    platform::GroupContainers::setFolder(scratch);
}

ExchangeTest::~ExchangeTest() {
    platform::GroupContainers::setFolder({});
    unsetenv(scratchVariable);
    std::filesystem::remove_all(scratch);
}

std::string ExchangeTest::path(const std::string& relative) const {
    return container + "/" + relative;
}

void ExchangeTest::write(const std::string& relative, const std::string& bytes) const {
    std::filesystem::create_directories(std::filesystem::path(path(relative)).parent_path());
    std::ofstream file(path(relative), std::ios::binary);
    file << bytes;
}

void ExchangeTest::makeFolder(const std::string& relative) const {
    std::filesystem::create_directories(path(relative));
}

void ExchangeTest::remove(const std::string& relative) const {
    std::filesystem::remove_all(path(relative));
}

std::optional<std::string> ExchangeTest::read(const std::string& relative) const {
    std::ifstream file(path(relative), std::ios::binary);
    if (!file)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void ExchangeTest::removeContainer() const {
    std::filesystem::remove_all(container);
}

void ExchangeTest::writeFeed(const std::vector<plist::Value>& records) const {
    write("notifications.xml", plist::writeXml(plist::Value(plist::Array(records))).value());
}

void ExchangeTest::setSettings(std::vector<std::pair<std::string, plist::Value>> settings) const {
    plist::Dictionary dictionary;
    for (auto& [key, value] : settings)
        dictionary.set(key, std::move(value));
    write(settingsFile(), plist::writeXml(plist::Value(std::move(dictionary))).value());
}

void ExchangeTest::breakSettings() const {
    write(settingsFile(), "<plist><array/></plist>");
}

plist::Dictionary ExchangeTest::settings() const {
    const plist::ReadResult result = plist::read(read(settingsFile()).value_or("{}"));
    return *std::get<plist::Value>(result).dictionary();
}

double utc(int year, unsigned month, unsigned day, int hour, int minute, int second) {
    const std::chrono::sys_days date =
        std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day);
    const auto moment =
        date + std::chrono::hours(hour) + std::chrono::minutes(minute) + std::chrono::seconds(second);
    return static_cast<double>(moment.time_since_epoch().count());
}

plist::Dictionary recordOf(const std::string& planKey, double date) {
    plist::Dictionary record;
    record.set("date", plist::Value(date));
    record.set("name", plist::Value("Rent"));
    record.set("image", plist::Value("house"));
    record.set("amount", plist::Value("$ 900"));
    record.set("income", plist::Value(false));
    record.set("expense", plist::Value(true));
    record.set("planpk", plist::Value(planKey));
    record.set("single", plist::Value(false));
    return record;
}

plist::Value with(plist::Dictionary record, const std::string& key, plist::Value value) {
    record.set(key, std::move(value));
    return plist::Value(std::move(record));
}

plist::Value without(plist::Dictionary record, const std::string& key) {
    record.remove(key);
    return plist::Value(std::move(record));
}

TodayTransaction transactionOf(const std::string& planKey, double date) {
    return TodayTransaction(TodayTransaction::Values{QStringLiteral("Rent"), date, QStringLiteral("house"),
                                                     QStringLiteral("$ 900"), false, true,
                                                     QString::fromStdString(planKey), false});
}

std::string arrayFile(const std::string& elements) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n" +
           (elements.empty() ? "<array/>\n" : "<array>\n" + elements + "</array>\n") + "</plist>\n";
}

} // namespace exchange
