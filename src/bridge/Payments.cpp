#include "bridge/Payments.h"

#include "bridge/Folders.h"
#include "bridge/LocalDays.h"
#include "bridge/PaidJournal.h"
#include "platform/storage/Files.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

namespace bridge {

namespace {

const Program* journalProgram(const Surroundings& surroundings, const ConnectedFile& file) {
    const Program* program = programOf(surroundings.programs, file.program);
    return program && program->filesOf && program->check ? program : nullptr;
}

bool isIncluded(const Program& program, const ConnectedFile& file) {
    const std::vector<std::string> files = program.filesOf(file.path);
    const std::string journal = paidJournalFile(file.id);
    return std::any_of(files.begin(), files.end(), [&](const std::string& name) {
        std::error_code error;
        return std::filesystem::equivalent(name, journal, error);
    });
}

const ConnectedFile* fileOf(const Configuration& configuration, const Action& action) {
    const auto found =
        std::find_if(configuration.files.begin(), configuration.files.end(), [&](const ConnectedFile& file) {
            return action.record.plan.starts_with(keyPrefix(file));
        });
    return found == configuration.files.end() ? nullptr : &*found;
}

// The text of the journal of an action's file, without that action's payment. Absent if the journal has no
// such payment.
std::optional<std::string> textWithout(const ConnectedFile& file, const Action& action) {
    const auto text = platform::readFile(paidJournalFile(file.id));
    return text ? withoutPayment(*text, std::string_view(action.record.plan).substr(keyPrefix(file).size()),
                                 action.nominal)
                : std::nullopt;
}

// What the program has against the file, as a sentence that names it; empty where it accepts it.
std::string faultOf(const Program& program, const ConnectedFile& file) {
    const std::string fault = program.check(file.path);
    return fault.empty() ? "" : file.path + " " + fault;
}

// Enters one payment. A sentence where that failed, otherwise an empty text.
std::string enter(const Program& program, const ConnectedFile& file, const PendingOccurrence& pending,
                  bool& isRefused) {
    const std::string journal = paidJournalFile(file.id);
    const Action& action = *pending.action;
    std::error_code error;
    const auto text = platform::readFile(journal, &error);
    if (!text)
        return journal + ": " + error.message();
    return changePaidJournal(
        journal, *text + textOfPayment(*pending.details->entry, action.nominal, action.done), [&] {
            std::string fault = faultOf(program, file);
            isRefused = !fault.empty();
            return fault;
        });
}

void listNoLonger(std::vector<FilePlans>& files, const PendingOccurrence& pending) {
    for (FilePlans& file : files)
        for (Plan& plan : file.plans)
            if (&plan == pending.details)
                std::erase_if(plan.occurrences, [&](const Occurrence& occurrence) {
                    return occurrence.nominal == pending.action->nominal;
                });
}

} // namespace

bool prepareJournals(Surroundings& surroundings, const Configuration& configuration) {
    bool isSound = true;
    for (const ConnectedFile& file : configuration.files)
        if (journalProgram(surroundings, file))
            if (const std::string fault = preparePaidJournal(paidJournalFile(file.id)); !fault.empty()) {
                say(surroundings, fault);
                isSound = false;
            }
    return isSound;
}

bool enterPayments(Surroundings& surroundings, OpenedState& state, std::vector<FilePlans>& files,
                   const std::vector<Action>& open) {
    bool isDone = true;
    for (const PendingOccurrence& pending : pendingOccurrences(files, open)) {
        const Action& action = *pending.action;
        const ConnectedFile* file = fileOf(state.configuration(), action);
        const Program* program = file ? journalProgram(surroundings, *file) : nullptr;
        // What is in the journal, and listed all the same, is entered no second time.
        if (!program || !pending.file->isFresh || !pending.details->entry ||
            action.state != ActionState::Open || !isIncluded(*program, *file) || textWithout(*file, action))
            continue;
        bool isRefused = false;
        const std::string fault = enter(*program, *file, pending, isRefused);
        if (!fault.empty()) {
            isDone = false;
            say(surroundings, "the payment of “" + pending.details->name + "” of " +
                                  textOfDay(action.nominal) + " is not entered: " + fault);
            if (!isRefused)
                continue;
        } else {
            listNoLonger(files, pending);
        }
        state.database.begin();
        state.database.setState(action.number, isRefused ? ActionState::Refused : ActionState::Entered);
        if (!isRefused)
            state.database.keepReading(file->id, today(), pending.file->last, pending.file->plans);
        if (!state.database.commit().empty())
            break;
    }
    return isDone && state.database.error().empty();
}

bool isInJournal(const Surroundings& surroundings, const Configuration& configuration, const Action& action) {
    const ConnectedFile* file = fileOf(configuration, action);
    return file && journalProgram(surroundings, *file) && textWithout(*file, action);
}

std::string removeFromJournal(const Surroundings& surroundings, const Configuration& configuration,
                              const Action& action) {
    const ConnectedFile* file = fileOf(configuration, action);
    const Program* program = file ? journalProgram(surroundings, *file) : nullptr;
    const auto text = program ? textWithout(*file, action) : std::nullopt;
    return text
               ? changePaidJournal(paidJournalFile(file->id), *text, [&] { return faultOf(*program, *file); })
               : "";
}

std::string journalToInclude(const Surroundings& surroundings, const ConnectedFile& file) {
    const Program* program = journalProgram(surroundings, file);
    const std::string journal = paidJournalFile(file.id);
    return program && platform::fileExists(journal) && !isIncluded(*program, file) ? journal : "";
}

} // namespace bridge
