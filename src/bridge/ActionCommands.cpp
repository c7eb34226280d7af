#include "bridge/AmountText.h"
#include "bridge/Commands.h"
#include "bridge/LocalDays.h"
#include "bridge/Payments.h"
#include "bridge/Publication.h"
#include "bridge/TakenLog.h"
#include "bridge/Update.h"
#include "platform/storage/Files.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>

namespace bridge {

namespace {

using Json = nlohmann::ordered_json;
using exchange::ActionType;

std::string wordsOf(const LoggedRecord& record) {
    switch (record.type) {
    case ActionType::Paid:
        return "paid";
    case ActionType::Later:
        return "later " + std::to_string(record.parameter);
    case ActionType::Delete:
        break;
    }
    return record.parameter == 1 ? "delete-future" : "delete";
}

// The plan of an action, as it was read last.
const Plan* planOf(const Action& action, const std::vector<FilePlans>& files) {
    for (const FilePlans& file : files)
        for (const Plan& plan : file.plans)
            if (action.record.plan == file.prefix + plan.key)
                return &plan;
    return nullptr;
}

// The last action that is not entered, or that is entered by us alone.
std::optional<Action> lastToUndo(const Surroundings& surroundings, OpenedState& state) {
    std::optional<Action> last = state.database.lastOpenAction();
    for (const Action& payment : state.database.enteredPayments()) {
        if (last && last->number > payment.number)
            break;
        if (isInJournal(surroundings, state.configuration(), payment))
            return payment;
    }
    return last;
}

// Takes the action back, also out of a journal of ours. A sentence where that failed, or an empty text.
std::string takeBack(const Surroundings& surroundings, OpenedState& state, const Action& action) {
    // The journal first: a process that ends in between leaves an occurrence that is listed again, never one
    // that counts as paid though it was taken back.
    if (std::string fault = removeFromJournal(surroundings, state.configuration(), action); !fault.empty())
        return fault;
    state.database.begin();
    state.database.setState(action.number, ActionState::Undone);
    return state.database.commit();
}

} // namespace

int showPending(Surroundings& surroundings) {
    OpenedState state;
    if (!openState(surroundings, state))
        return Failed;
    const std::vector<Action> open = state.database.openActions();
    const std::vector<FilePlans> files = keptPlans(state);
    if (const std::string fault = state.database.error(); !fault.empty())
        return failed(surroundings, fault);
    Json list = Json::array();
    for (const PendingOccurrence& pending : pendingOccurrences(files, open)) {
        const Action& action = *pending.action;
        const bool isLate = isReminded(action, state.configuration());
        const std::string amount = amountText(*pending.details, amountLocale());
        if (surroundings.json)
            list.push_back({{"plan", action.record.plan},
                            {"name", shownName(*pending.details)},
                            {"due", textOfDay(action.nominal)},
                            {"amount", amount},
                            {"account", pending.details->account},
                            {"path", pending.file->path},
                            {"paid", textOfDay(action.done)},
                            {"reminder", isLate}});
        else
            print(surroundings, textOfDay(action.nominal) + "  " + shownName(*pending.details) + "  " +
                                    amount + "  paid " + textOfDay(action.done) +
                                    (isLate ? ", not yet entered" : "") + "  " + pending.file->path);
    }
    if (surroundings.json)
        printJson(surroundings, list);
    return Done;
}

int undo(Surroundings& surroundings) {
    OpenedState state;
    if (!openStateInTurn(surroundings, state))
        return Failed;
    const std::string container = containerPath();
    if (const std::string why = whyForeign(container); !why.empty())
        return failed(surroundings, why);
    // What was done last may still be in the log.
    const LogTaking taking = takeLog(container, state.database);
    if (!taking.fault.empty())
        return failed(surroundings, taking.fault);
    if (!prepareJournals(surroundings, state.configuration()))
        return Failed;
    const std::optional<Action> last = lastToUndo(surroundings, state);
    if (!last && state.database.error().empty())
        return failed(surroundings, "there is nothing to take back");
    if (!state.database.error().empty())
        return failed(surroundings, state.database.error());
    const bool isListedAgain = isInJournal(surroundings, state.configuration(), *last);
    if (const std::string fault = takeBack(surroundings, state, *last); !fault.empty())
        return failed(surroundings, fault);
    std::vector<FilePlans> files;
    if (!isListedAgain)
        files = keptPlans(state);
    else if (!readFiles(surroundings, state, files) && !state.database.error().empty())
        return Failed;
    const Plan* plan = planOf(*last, files);
    const std::string name = plan ? shownName(*plan) : last->record.plan;
    if (surroundings.json)
        printJson(surroundings, Json{{"plan", last->record.plan},
                                     {"name", name},
                                     {"due", textOfDay(last->nominal)},
                                     {"action", wordsOf(last->record)}});
    else
        print(surroundings,
              "taken back: " + wordsOf(last->record) + "  " + textOfDay(last->nominal) + "  " + name);
    return platform::isFolder(container) ? takeAndPublish(surroundings, state, std::move(files)) : Done;
}

} // namespace bridge
