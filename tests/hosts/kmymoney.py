"""KMyMoney, read in two places. Its home page tells what is overdue, how often, what is due today and what is due
within a month; it is a web page that tells assistive programs nothing, so that its text is selected with the mouse. Its
view of schedules tells the next day of each one, its amount and of which kind it is."""

import datetime
import decimal
import itertools
import re
import subprocess

import bridge
import kmymoney_import
import screen as screens
from screen import harness

FILES = ("tests/data/bridge/kmymoney/plans.kmy", "tests/hosts/plans/calendar.kmy")
NAME = "KMyMoney"
SHOWS = "each occurrence within a month: name, day, amount; each overdue plan: name, day, count, sum; each schedule: " \
        "name, next day, amount, direction"

# No tip of the day, the payments at the top of the home page, and nothing that asks banks.
SETTINGS = "[TipOfDay]\nRunOnStart=false\n[Homepage Options]\nItemList=1\n[Plugins]\nkbankingEnabled=false\n"
SIZE = 1390, 9900
LINK = (41, 128, 185)  # the colour of a link
DATES = slice(165, 260)  # the pixels of the column of dates, in which only "Show more" is a link
KINDS = {"Bills": "expense", "Deposits": "income", "Transfers": "transfer", "Loans": "expense"}


def screen(stack):
    return screens.Screen(stack, 1400, 10000)


def version():
    return bridge.package_version("kmymoney")


def _selected(desktop):
    """What is selected with the mouse now."""
    done = subprocess.run(["xclip", "-o", "-selection", "primary"], env=desktop.env, capture_output=True, text=True,
                          timeout=bridge.STEP)
    return done.stdout


def _select_page(window):
    width, height = SIZE
    window.hold(160, 160)
    for y in (400, height // 2, height - 100):
        window.move_pointer(width - 60, y)
    window.let_go(width - 60, height - 90)
    return _selected(window.desktop)


def _show_more(window):
    """Presses the link that lengthens the list of future payments: the first link in the column of dates."""
    window.click(160, 160)  # takes the selection and its colour away
    def place():
        picture = window.picture()
        return next(((x, y) for y in range(200, picture.height) for x in range(DATES.start, DATES.stop)
                     if picture[x, y] == LINK), None)
    window.click(*harness.wait_for(place, "the link that shows more"))


def _home_page(window):
    def shown():
        text = _select_page(window)
        return "Future payments" in text and text
    text = harness.wait_for(shown, "the home page", screens.UNTIL_SHOWN)
    if "Show more schedules" not in text:
        return text
    _show_more(window)
    def all_shown():
        text = _select_page(window)
        return "Show fewer schedules" in text and text
    return harness.wait_for(all_shown, "the whole home page", screens.UNTIL_SHOWN)


def _home_lines(text):
    """The payments of the home page: of an overdue plan how many there are and their sum, else 0 and the amount."""
    part = None
    for line in text.splitlines():
        cells = [cell.strip() for cell in line.split("\t")]
        if cells[0].endswith(" payments"):
            part = cells[0]
        elif part and len(cells) == 5 and cells[0] != "Date":
            name, count = re.fullmatch(r"(.*?)(?: \((\d+) payments\))?", cells[1]).groups()
            count = int(count or 1) if part == "Overdue payments" else 0
            yield "home", name, _day(cells[0]), count, bridge.money(cells[3])
        elif cells != [""]:
            part = part if cells[0] == "Date" else None  # of another part of the page


def _day(text):
    return datetime.datetime.strptime(text, "%d %b %Y").date()


def _schedules(table, last):
    kind = None
    for row in table.rows():
        name, date = row["Type/Name"], row["Next Due Date"]
        if not date:
            kind = KINDS[name]
        elif date != "Finished" and _day(date) <= last:
            yield "schedules", name, _day(date), bridge.money(row["Amount"]), kind


def _opened(on, file, moment):
    home = file.parent / "its"
    (home / "config/kmymoney").mkdir(parents=True)
    (home / "config/kmymoney/kmymoneyrc").write_text(SETTINGS)
    return on.opened(["kmymoney", file], moment, home)


def shown(on, file, moment):
    """What it says is due."""
    with _opened(on, file, moment) as program:
        view = on.wait_for_node("list item", "Scheduled\u2028transactions")
        window = program.window()
        on.desktop.xdotool("windowsize", "--sync", window.ident, *SIZE, "windowmove", window.ident, 0, 30)
        text = _home_page(window)
        on.desktop.accessible("act", view["role"], view["name"], "Toggle")
        table = on.table("Type/Name", "Next Due Date")
    yield from _home_lines(text)
    yield from _schedules(table, moment.date() + datetime.timedelta(bridge.DAYS_AHEAD))


def _month_later(day):
    month = (day.replace(day=1) + datetime.timedelta(31)).replace(day=1)
    end = (month + datetime.timedelta(31)).replace(day=1) - datetime.timedelta(1)
    return month.replace(day=min(day.day, end.day))


def _times(amount, count):
    number, sign = amount.split(" ", 1)
    return f"{decimal.Decimal(number) * count} {sign}"


def published(records, _file, today):
    """The same of the feed."""
    for _, plan in itertools.groupby(sorted(records, key=lambda each: (each.plan, each.day)), lambda each: each.plan):
        plan = list(plan)
        first = plan[0]
        yield "schedules", first.name, first.day, first.amount, first.kind
        if overdue := [each for each in plan if each.day < today]:
            yield "home", first.name, first.day, len(overdue), _times(first.amount, len(overdue))
        for each in plan[len(overdue):]:
            if each.day <= _month_later(today):
                yield "home", each.name, each.day, 0, each.amount


def carries_back(on, root, folder):
    """What the import of an export has shown."""
    count = kmymoney_import.run(on, root, folder, _opened)
    return f"{count} exported payments imported: as many occurrences entered, and none by a second import"
