"""HomeBank's list of scheduled transactions: of each plan the next date and how many are late, "+10" where these are
ten or more. It shows a transfer twice, once for each account."""

import datetime
import itertools

import bridge
from screen import Screen as screen  # noqa: F401

FILES = ("tests/data/bridge/homebank/plans.xhb", "tests/hosts/plans/calendar.xhb")
NAME = "HomeBank"
SHOWS = "each plan: name, next day, how many are late, amount, direction"


def version():
    return bridge.package_version("homebank")


def _late(count):
    return "+10" if count >= 10 else str(count or "")


def shown(on, file, moment):
    """What it says is due, and what is due in the days that the feed has."""
    with on.opened(["homebank", file], moment, file.parent / "its"):
        *rows, total = on.table("Late", "Next date", "Memo").rows()
    if total["Memo"] != "Total":
        raise RuntimeError(f"the list's last row is no total: {total}")
    last = moment.date() + datetime.timedelta(bridge.DAYS_AHEAD)
    while rows:
        row = rows.pop(0)
        day = datetime.datetime.strptime(row["Next date"], "%m/%d/%y").date()
        other = next((each for each in rows if row["Expense"] and each["Income"] and each["Memo"] == row["Memo"]), None)
        if other:
            rows.remove(other)
        kind = "transfer" if other else "income" if row["Income"] else "expense"
        if day <= last:
            name = row["Memo"] or row["Payee"] or row["Account"]
            yield name, day, row["Late"], bridge.money(row["Expense"] or row["Income"]), kind


def published(records, _file, today):
    """The same of the feed."""
    for _, plan in itertools.groupby(sorted(records, key=lambda each: (each.plan, each.day)), lambda each: each.plan):
        occurrences = list(plan)
        first = occurrences[0]
        late = sum(each.day <= today for each in occurrences)
        yield first.name, first.day, _late(late), first.amount, first.kind
