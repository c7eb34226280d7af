#pragma once

#include "bridge/Sqlite.h"
#include "bridge/plans/Plan.h"
#include "exchange/ActionLog.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace bridge {

// The last sound reading of a connected file, and what was wrong with the file when it was read last.
struct KeptReading {
    Day today; // the days of its Period
    Day last;
    std::vector<Plan> plans;
    bool isThere = false; // a sound one
    std::string fault;    // a sentence; empty where the last reading was sound
};

// A record of the feed.
struct PublishedRecord {
    std::string plan; // the feed's planpk
    double date = 0;  // the very number of the feed
    Day nominal;      // which occurrence it is
    Day day;          // on which the file has that occurrence
};

// A record of the action log.
struct LoggedRecord {
    exchange::ActionType type = exchange::ActionType::Paid;
    std::string plan;
    double date = 0;
    std::int64_t parameter = 0;
};

// Refused is open as well: a payment that could not be entered into a journal, which is not tried again.
enum class ActionState { Open = 0, Entered = 1, Undone = 2, Refused = 3 };

// What the user did with one occurrence.
struct Action {
    std::int64_t number = 0; // increases
    LoggedRecord record;
    Day nominal; // of the occurrence
    Day day;     // on which the file had it
    Day done;    // when the user did it
    ActionState state = ActionState::Open;
};

// What the bridge remembers: bridge.sqlite. All of it is plain data; what follows from it is decided
// elsewhere.
//
// Changes belong between begin() and commit(), which makes all of them durable or none. After a failure
// nothing more is changed, and what was read counts for nothing; commit() and error() tell.
class Database final {
public:
    // Opens the database of the user, or makes it. A sentence where that is not possible, otherwise an empty
    // text: one that is damaged, another program's or a newer version's is not changed.
    [[nodiscard]] std::string open();

    void begin();
    [[nodiscard]] std::string commit(); // a sentence, or empty
    [[nodiscard]] std::string error() const;

    [[nodiscard]] KeptReading reading(const std::string& file);
    void keepReading(const std::string& file, Day today, Day last, const std::vector<Plan>& plans);
    void keepFault(const std::string& file, const std::string& fault);
    // What else a sound reading has read, sorted.
    [[nodiscard]] std::vector<std::string> includes(const std::string& file);
    void keepIncludes(const std::string& file, const std::vector<std::string>& paths);
    void dropReading(const std::string& file); // and its includes

    // In their order.
    [[nodiscard]] std::vector<Action> openActions();
    [[nodiscard]] std::optional<Action> lastOpenAction();
    [[nodiscard]] std::vector<Action> enteredPayments(); // the last one first
    void setState(std::int64_t action, ActionState state);
    // Keeps an action of the log, unless the same one on the same occurrence is kept already and the log has
    // only handed it out again. It counts again where the feed has shown its record anew since then. Whether
    // it was new.
    bool addAction(const LoggedRecord& record, Day nominal, Day day, Day done);

    // What the feed holds from now on. Earlier records are remembered for a year, for actions on a feed that
    // was open meanwhile.
    void publish(const std::vector<PublishedRecord>& records, Day today);
    [[nodiscard]] std::optional<PublishedRecord> published(const std::string& plan, double date);
    // Those of the feed as it is now, by date.
    [[nodiscard]] std::vector<PublishedRecord> publishedNow();

private:
    [[nodiscard]] std::int64_t publication();

    Sqlite sqlite_;
};

} // namespace bridge
