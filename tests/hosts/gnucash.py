"""GnuCash's window "Since Last Run", which opens by itself: of each plan every day up to today, and later ones as far
ahead as the plan asks to be reminded. The made-up calendar asks for as many days as the feed has; of the other file
those up to today are compared."""

import datetime

import bridge
from screen import Screen as screen  # noqa: F401

CALENDAR = "tests/hosts/plans/calendar.gnucash"
FILES = ("tests/data/bridge/gnucash/plans.gnucash", CALENDAR)
NAME = "GnuCash"
SHOWS = "each occurrence: name and day; it shows no amounts"


def version():
    return bridge.package_version("gnucash")


def _last(file, today):
    return today + datetime.timedelta(bridge.DAYS_AHEAD if CALENDAR.endswith("/" + file.name) else 0)


def shown(on, file, moment):
    """What it says is due."""
    with on.opened(["gnucash", file], moment, file.parent / "its"):
        rows = on.table("Transaction", "Status", "Value").rows()
    for row in rows:
        if row["Status"]:
            day = datetime.datetime.strptime(row["Transaction"], "%m/%d/%y").date()
            if day <= _last(file, moment.date()):
                yield name, day
        elif not row["Value"]:  # which the variable of a formula has
            name = row["Transaction"]


def published(records, file, today):
    """The same of the feed."""
    return ((record.name, record.day) for record in records if record.day <= _last(file, today))
