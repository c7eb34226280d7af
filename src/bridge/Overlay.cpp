#include "bridge/Overlay.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <string_view>

namespace bridge {

namespace {

using exchange::ActionType;

bool isOnAllLater(const Action& action) {
    return action.record.type == ActionType::Delete && action.record.parameter == 1;
}

// The day that lies a number of days after another, within the years that days have.
Day dayAfter(Day day, std::int64_t days) {
    constexpr std::int64_t most = 100 * 366;
    const Day moved = day + std::chrono::days(std::clamp(days, -most, most));
    constexpr Day first(std::chrono::year(1) / 1 / 1);
    constexpr Day last(std::chrono::year(9999) / 12 / 31);
    return std::clamp(moved, first, last);
}

const FilePlans* fileOf(const std::vector<FilePlans>& files, const Action& action) {
    const auto found = std::find_if(files.begin(), files.end(), [&](const FilePlans& file) {
        return action.record.plan.starts_with(file.prefix);
    });
    return found == files.end() ? nullptr : &*found;
}

// The action's plan if it still has the action's occurrence.
const Plan* listedPlan(const FilePlans& file, const Action& action) {
    const std::string_view key = std::string_view(action.record.plan).substr(file.prefix.size());
    const auto plan =
        std::find_if(file.plans.begin(), file.plans.end(), [&](const Plan& each) { return each.key == key; });
    const auto isIt = [&](const Occurrence& occurrence) { return occurrence.nominal == action.nominal; };
    return plan != file.plans.end() && std::any_of(plan->occurrences.begin(), plan->occurrences.end(), isIt)
               ? &*plan
               : nullptr;
}

using ActionsOfPlans = std::multimap<std::string_view, const Action*>; // equal keys in the order of actions

// The day on which an occurrence is shown, if it is.
std::optional<Day> shownDay(const ActionsOfPlans& actions, std::string_view plan,
                            const Occurrence& occurrence) {
    Day shown = occurrence.day;
    const auto [begin, end] = actions.equal_range(plan);
    for (auto entry = begin; entry != end; ++entry) {
        const Action& action = *entry->second;
        const bool isItsOwn = action.nominal == occurrence.nominal;
        if (isOnAllLater(action) ? action.nominal <= occurrence.nominal
                                 : isItsOwn && action.record.type != ActionType::Later)
            return std::nullopt;
        if (isItsOwn)
            shown = dayAfter(action.done, action.record.parameter);
    }
    return shown;
}

} // namespace

std::vector<std::int64_t> endedActions(const std::vector<FilePlans>& files, const std::vector<Action>& open) {
    std::vector<std::int64_t> ended;
    for (const Action& action : open) {
        const FilePlans* file = fileOf(files, action);
        // An occurrence beyond the days that were read is not listed either.
        if (file && file->isFresh && action.day <= file->last && !isOnAllLater(action) &&
            !listedPlan(*file, action))
            ended.push_back(action.number);
    }
    return ended;
}

std::vector<ShownOccurrence> shownOccurrences(const std::vector<FilePlans>& files,
                                              const std::vector<Action>& open) {
    ActionsOfPlans actions;
    for (const Action& action : open)
        actions.emplace(action.record.plan, &action);
    std::vector<ShownOccurrence> shown;
    for (const FilePlans& file : files)
        for (const Plan& plan : file.plans) {
            const std::string key = file.prefix + plan.key;
            for (const Occurrence& occurrence : plan.occurrences)
                if (const std::optional<Day> day = shownDay(actions, key, occurrence))
                    shown.push_back({key, &plan, occurrence, *day});
        }
    return shown;
}

std::vector<PendingOccurrence> pendingOccurrences(const std::vector<FilePlans>& files,
                                                  const std::vector<Action>& open) {
    std::vector<PendingOccurrence> pending;
    for (const Action& action : open) {
        const FilePlans* file = action.record.type == ActionType::Paid ? fileOf(files, action) : nullptr;
        if (const Plan* plan = file ? listedPlan(*file, action) : nullptr)
            pending.push_back({&action, file, plan});
    }
    return pending;
}

} // namespace bridge
