#include "bridge/Candidates.h"
#include "bridge/Commands.h"
#include "bridge/Ofx.h"
#include "bridge/Update.h"

#include <QDir>

#include <algorithm>
#include <ostream>

namespace bridge {

namespace {

std::string idOf(const PendingOccurrence& pending) {
    std::string day = textOfDay(pending.action->nominal);
    std::erase(day, '-');
    return pending.details->key + '-' + day;
}

} // namespace

int exportPayments(Surroundings& surroundings) {
    const QString operand = QString::fromStdString(surroundings.operands[0]);
    const std::string path = canonicalPath(QDir().absoluteFilePath(operand).toStdString());
    OpenedState state;
    if (!openState(surroundings, state))
        return Failed;
    const std::vector<ConnectedFile>& connected = state.configuration().files;
    if (std::none_of(connected.begin(), connected.end(), [&](const ConnectedFile& file) {
            return file.path == path && file.program == "kmymoney";
        }))
        return failed(surroundings, path + " is no connected file of KMyMoney");
    const std::vector<Action> open = state.database.openActions();
    const std::vector<FilePlans> files = keptPlans(state);
    if (const std::string fault = state.database.error(); !fault.empty())
        return failed(surroundings, fault);
    std::vector<OfxPayment> payments;
    for (const PendingOccurrence& pending : pendingOccurrences(files, open)) {
        if (pending.file->path != path)
            continue;
        const Plan& plan = *pending.details;
        if (plan.amount && plan.direction != Direction::Transfer)
            payments.push_back({idOf(pending), plan.account, plan.payee, *plan.amount, pending.action->done});
        else
            say(surroundings, "“" + plan.name + "” of " + textOfDay(pending.action->nominal) +
                                  (plan.amount ? " is a transfer" : " has no amount") +
                                  ": it is to be entered in KMyMoney");
    }
    if (payments.empty())
        return failed(surroundings, path + " has nothing to export");
    surroundings.out << ofxOf(payments);
    return Done;
}

} // namespace bridge
