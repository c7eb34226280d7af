#include "bridge/CommandTest.h"

#include "bridge/LocalDays.h"
#include "exchange/Days.h"
#include "exchange/LoggedAction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fcntl.h>
#include <map>
#include <random>
#include <set>
#include <sys/stat.h>
#include <tuple>

namespace bridge {

namespace {

using exchange::ActionType;
using std::chrono::days;

// What ought to be shown, by the rules as they are told to users and with nothing of the bridge's own.
class Model {
public:
    struct Done {
        int plan;
        Day nominal;
        ActionType type;
        bool isOnAllLater;
        Day until; // postponed to this day
    };
    struct Record { // of the panel's feed
        int plan;
        Day nominal;
        double date;
    };

    [[nodiscard]] bool isListed(int plan, Day nominal, Day now) const {
        const auto found = next.find(plan);
        return found != next.end() && nominal >= found->second && nominal <= now + days(31) &&
               (nominal - found->second).count() % step(plan) == 0;
    }

    [[nodiscard]] std::vector<Day> listed(int plan, Day now) const {
        std::vector<Day> result;
        for (Day day = next.at(plan); day <= now + days(31); day += days(step(plan)))
            result.push_back(day);
        return result;
    }

    // After an update: "PLAN DAY" for each record.
    [[nodiscard]] std::vector<std::string> shown(Day now) const {
        std::vector<std::string> lines;
        for (const auto& [plan, first] : next)
            for (const Day nominal : listed(plan, now)) {
                bool isHidden = false;
                Day day = nominal;
                for (const Done& action : done) {
                    if (action.plan != plan)
                        continue;
                    if (action.isOnAllLater ? nominal >= action.nominal
                                            : nominal == action.nominal && action.type != ActionType::Later)
                        isHidden = true;
                    else if (nominal == action.nominal && action.type == ActionType::Later)
                        day = action.until;
                }
                if (!isHidden)
                    lines.push_back(std::to_string(plan) + " " + textOfDay(day));
            }
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    // The file no longer lists what was done.
    void end(Day now) {
        std::erase_if(done, [&](const Done& action) {
            return !action.isOnAllLater && !isListed(action.plan, action.nominal, now);
        });
    }

    static int step(int plan) { return 3 + 4 * plan; } // days

    std::map<int, Day> next; // by plan: the first occurrence that is not entered
    std::vector<Done> done;  // open
};

class RandomTest : public CommandTest, public testing::WithParamInterface<unsigned> {
protected:
    void writeFile() {
        std::vector<Plan> plans;
        for (const auto& [plan, first] : model.next) {
            std::vector<std::string> texts;
            for (const Day day : model.listed(plan, today()))
                texts.push_back(textOfDay(day));
            plans.push_back(planOf(std::to_string(plan), texts));
        }
        writePlans("A.plans", plans);
    }

    void compare() {
        auto lines = shown();
        std::sort(lines.begin(), lines.end());
        ASSERT_EQ(lines, model.shown(today()));
        ASSERT_EQ(countOpen(), model.done.size());
    }

    // The panel's feed after an update: which occurrence each record is. Equal days of one plan are in their
    // order.
    void readPanel() {
        panel.clear();
        std::multimap<std::pair<int, Day>, Day> nominals;
        for (const auto& [plan, first] : model.next)
            for (const Day nominal : model.listed(plan, today())) {
                Model one;
                one.next = {{plan, nominal}};
                one.done = model.done;
                const auto line = one.shown(nominal - days(31)); // of this occurrence alone
                if (!line.empty())
                    nominals.emplace(std::pair(plan, dayOf(line[0].substr(line[0].find(' ') + 1))), nominal);
            }
        for (const auto& record : readRecords()) {
            const std::string key(*record.find("planpk")->string());
            const double date = *record.find("date")->real();
            const auto found = nominals.find({std::stoi(key.substr(key.rfind(':') + 1)), dayOfMoment(date)});
            ASSERT_NE(found, nominals.end());
            panel.push_back({found->first.first, found->second, date});
            prefix = key.substr(0, key.rfind(':') + 1);
            nominals.erase(found);
        }
        ASSERT_TRUE(nominals.empty());
    }

    // The user acts on a record; the panel logs it and rewrites the feed.
    void actOn(std::size_t index, ActionType type, std::int64_t parameter) {
        const Model::Record record = panel[index];
        // Records that the panel itself cannot tell apart are one to it.
        if (std::count_if(panel.begin(), panel.end(), [&](const Model::Record& other) {
                return other.plan == record.plan && other.date == record.date;
            }) > 1)
            return;
        const auto result = exchange::logAction(
            type, exchange::transactionOf(prefix + std::to_string(record.plan), record.date), parameter,
            exchange::UnreadableLog::Stays);
        ASSERT_FALSE(result.log || result.feed || result.fault);
        const auto now = static_cast<time_t>(clock.now());
        const timespec times[] = {{now, 0}, {now, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, path("bridge/actions.xml").c_str(), times, 0), 0);
        const bool isOnAllLater = type == ActionType::Delete && parameter == 1;
        // Postponed by as many days as before on the same day, a record keeps its date, and the log has the
        // same record again.
        if (logged.emplace(record.plan, record.nominal, record.date, type, parameter).second)
            model.done.push_back(
                {record.plan, record.nominal, type, isOnAllLater, today() + days(parameter)});
        if (type == ActionType::Later) {
            panel[index].date = *exchange::startOfDayFromToday(parameter);
            return;
        }
        std::erase_if(panel, [&](const Model::Record& other) {
            return other.plan == record.plan &&
                   (other.date == record.date || (isOnAllLater && other.date > record.date));
        });
    }

    void update() {
        ASSERT_EQ(run({"update"}), 0) << err;
        logged.clear();
        model.end(today());
        compare();
        readPanel();
    }

    Model model;
    std::vector<Model::Record> panel;
    std::set<std::tuple<int, Day, double, ActionType, std::int64_t>> logged; // since the last update
    std::string prefix;                                                      // of the plans' keys
};

} // namespace

// Ten thousand days and actions in all.
TEST_P(RandomTest, agreesWithTheModel) {
    std::mt19937 random(GetParam());
    constexpr int all = 2000;
    const auto upTo = [&](unsigned most) { return static_cast<unsigned>(random() % (most + 1)); };
    clock.set(exchange::utc(2026, 3, 10, 12)); // of one date in all the zones below
    for (int plan = 0; plan < 4; ++plan)
        model.next[plan] = today() + days(plan);
    writeFile();
    ASSERT_EQ(run({"connect", homePath("A.plans")}), 0) << err;
    update();
    int steps = 0;
    int undone = 0;
    for (; steps < all && !HasFatalFailure(); ++steps) {
        const unsigned what = upTo(99);
        SCOPED_TRACE("step " + std::to_string(steps) + ": " + std::to_string(what));
        const int plan = static_cast<int>(upTo(3));
        if (what < 78 && !panel.empty()) {
            const auto type = static_cast<ActionType>(1 + upTo(2));
            constexpr std::int64_t laterBy[] = {1, 3, 7};
            actOn(upTo(static_cast<unsigned>(panel.size()) - 1), type,
                  type == ActionType::Later    ? laterBy[upTo(2)]
                  : type == ActionType::Delete ? static_cast<std::int64_t>(upTo(9) == 0)
                                               : 0);
        } else if (what < 93) {
            // Entered in the program: the oldest occurrence, or all that are past.
            if (!model.next.contains(plan))
                model.next[plan] = today() - days(upTo(9));
            else if (what < 79 && model.next.size() > 1)
                model.next.erase(plan);
            else
                do
                    model.next[plan] += days(Model::step(plan));
                while (what < 88 && model.next[plan] < today());
            writeFile();
        } else if (what < 95) {
            const bool isAny = !model.done.empty();
            const std::size_t before = model.done.size();
            ASSERT_EQ(run({"undo"}), isAny ? 0 : 1) << err;
            if (isAny)
                model.done.pop_back();
            undone += static_cast<int>(before - model.done.size());
            update();
        } else if (what < 99) {
            update();
            clock.advance(exchange::day * (1 + upTo(2)));
            writeFile();
            update();
        } else {
            update();
            region.emplace(platform::Region{"en_US", upTo(1) == 0 ? "America/New_York" : "Asia/Tokyo"});
            update();
        }
    }
    update();
    EXPECT_EQ(steps, all);
    EXPECT_GT(undone, 10);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomTest, testing::Range(1U, 6U));

} // namespace bridge
