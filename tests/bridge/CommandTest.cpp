#include "bridge/CommandTest.h"

#include "bridge/Database.h"
#include "bridge/LocalDays.h"
#include "bridge/PlansText.h"
#include "bridge/Run.h"
#include "exchange/ActionLog.h"
#include "exchange/SharedFiles.h"

#include <fcntl.h>
#include <filesystem>
#include <sstream>
#include <sys/stat.h>

namespace bridge {

namespace plist = platform::plist;

namespace {

Reading readPlans(std::string_view bytes, const Period& /*period*/) {
    Reading reading;
    if (auto plans = plansOfText(bytes))
        reading.plans = std::move(*plans);
    else
        reading.fault = "is damaged";
    return reading;
}

constexpr Program programs[] = {
    {"made-up", "Made-up", "made-up-program", ".plans", ".LCK",
     [](std::string_view path, std::string_view start) {
         return path.ends_with(".plans") && start.starts_with('[');
     },
     readOneFile<readPlans>},
};

} // namespace

Programs madeUpPrograms() {
    return programs;
}

int CommandTest::run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--containers", scratch});
    std::ostringstream outStream;
    std::ostringstream errStream;
    const Icons icons{[](const Plan&) { return std::string_view("planned"); },
                      [](std::string_view) { return std::string_view("PNG of planned"); }};
    const int status = bridge::run(arguments, outStream, errStream, used, icons);
    out = outStream.str();
    err = errStream.str();
    return status;
}

void CommandTest::writePlans(const std::string& name, const std::vector<Plan>& plans) const {
    writeHome(name, textOfPlans(plans));
}

void CommandTest::connect(const std::string& name, const std::vector<Plan>& plans) {
    writePlans(name, plans);
    ASSERT_EQ(run({"connect", homePath(name)}), 0) << err;
}

std::vector<plist::Dictionary> CommandTest::readRecords() const {
    std::vector<plist::Dictionary> records;
    const plist::Array array = exchange::arrayOf(feed()).value();
    for (const plist::Value& value : array)
        records.push_back(*value.dictionary());
    return records;
}

std::vector<std::string> CommandTest::shown() const {
    std::vector<std::string> lines;
    for (const plist::Dictionary& record : readRecords()) {
        const std::string plan(*record.find("planpk")->string());
        lines.push_back(plan.substr(plan.rfind(':') + 1) + " " +
                        textOfDay(dayOfMoment(*record.find("date")->real())));
    }
    return lines;
}

void CommandTest::act(const plist::Dictionary& record, std::int64_t type, std::int64_t parameter) const {
    const std::string log = path("bridge/actions.xml");
    const TodayTransaction item =
        exchange::transactionOf(std::string(*record.find("planpk")->string()), *record.find("date")->real());
    ASSERT_FALSE(exchange::appendToActionLog(log, static_cast<exchange::ActionType>(type), item, parameter,
                                             exchange::UnreadableLog::Stays));
    const auto now = static_cast<time_t>(clock.now());
    const timespec times[] = {{now, 0}, {now, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, log.c_str(), times, 0), 0);
}

std::size_t CommandTest::countOpen() {
    Database database;
    EXPECT_EQ(database.open(), "");
    return database.openActions().size();
}

} // namespace bridge
