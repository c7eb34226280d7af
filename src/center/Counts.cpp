#include "center/Counts.h"

#include <QCoreApplication>

namespace center {

// The texts are worded so that no language needs a form for each number.
QString countsText(const Counts& counts) {
    QString overdue = qtTrId("OverdueCountText").arg(counts.overdue);
    QString dueToday = qtTrId("DueTodayCountText").arg(counts.dueToday);
    if (counts.overdue > 0 && counts.dueToday > 0)
        return qtTrId("BothCountsText").arg(overdue, dueToday);
    if (counts.overdue > 0)
        return overdue;
    return counts.dueToday > 0 ? dueToday : qtTrId("NothingIsDueText");
}

} // namespace center
