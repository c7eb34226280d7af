"""Imports into KMyMoney what the bridge has exported, as a user does with keyboard and mouse, saves, and looks at the
saved file: each schedule has to have gone on by as many occurrences as were paid, no other one, and a second import of
the same file must change nothing."""

import datetime
import gzip
import json
import plistlib
import xml.etree.ElementTree

import bridge
from screen import harness, texts

SOURCE = "tests/data/bridge/kmymoney/plans.xml"
ACCOUNT = "Checking Ünion"
# Names of schedules, how many of their occurrences are paid, and the next day then. A single one keeps its day and is
# finished by its last payment.
PAID = {"Rent": (1, "2026-11-01"), "Once late": (1, "2026-11-10"), "Cleaning fortnight": (1, "2026-12-04"),
        "Never paid yet late": (2, "2026-11-19"), "Salary": (1, "2026-12-25")}
COUNT = sum(count for count, _ in PAID.values())
MOMENT = datetime.datetime(2026, 11, 21, 10)
DONE = "processed", "added", "matched"
FOUND, RESULTS = "Schedule found", "Statement import statistics"


def _write_file(source, file):
    """Payees that are made in the program are matched by name; those of the source are not. And its foreign accounts
    were opened before they had a price, which would have the program ask a question on saving."""
    text = source.read_text(encoding="utf-8")
    for old, new in (('matchingenabled="0"', 'matchingenabled="1" usingmatchkey="0" matchkey="" matchignorecase="1"'),
                     ('source="User" date="2026-01-01"', 'source="User" date="2020-01-01"')):
        text = text.replace(old, new)
    file.write_text(text, encoding="utf-8")


def _pay(records, log):
    """Leaves in the action log what the panel writes when the first occurrences of each of these are marked as paid.
    Gives the next day of each schedule then, and its last payment."""
    actions, after = [], {}
    for name, (count, following) in PAID.items():
        own = [record for record in records if record["name"] == name][:count]
        actions += [{"type": 1, "pk": record["planpk"], "date": record["date"], "param": 0} for record in own]
        after[name] = following, str(datetime.datetime.fromtimestamp(own[-1]["date"]).date())
    log.write_bytes(plistlib.dumps(actions))
    return after


def _state(file):
    """The next day of each schedule in a file with its last payment, and how many transactions the file has."""
    content = file.read_bytes()
    root = xml.etree.ElementTree.fromstring(gzip.decompress(content) if content[:2] == b"\x1f\x8b" else content)
    schedules = {each.get("name"): (each.find("TRANSACTION").get("postdate"), each.get("lastPayment"))
                 for each in root.iter("SCHEDULED_TX")}
    return schedules, len(root.findall("TRANSACTIONS/TRANSACTION"))


def _results(on):
    """The lines of the results; none until they are there."""
    return [line.strip() for line in texts(on.wait_for_node("dialog", RESULTS))][3:]


def _import(on, statement):
    """Imports a statement, agrees to each match, and gives how many there were and what the results say."""
    on.press("menu item", "OFX...")
    on.wait_for_node("dialog", "OFX import file selection")
    on.desktop.xdotool("type", statement)
    on.desktop.xdotool("key", "Return")
    on.wait_for_node("dialog", "Account selection")
    if not any(node["role"] == "combo box" and node["name"] == ACCOUNT for node in on.nodes()):
        on.click("combo box", "Asset")
        on.click("table cell", ACCOUNT)
        on.wait_for_node("combo box", ACCOUNT)
    on.click("push button", "OK")
    matches, said = 0, None
    while True:
        dialog = on.wait_for_node("dialog", FOUND, RESULTS, unlike=said)
        said = texts(dialog)
        if dialog["name"] == RESULTS:
            results = harness.wait_for(lambda: _results(on), "results in their dialog")
            on.click("push button", "OK")
            return matches, results
        matches += 1
        on.click("push button", "Yes")


def _save(on, file):
    """Saves, where there is something to be saved: the title has an asterisk then."""
    name = file.name + " "
    if on.wait_for_node("frame", name, name + "*")["name"] != name:
        on.desktop.xdotool("key", "ctrl+s")
        on.wait_for_node("frame", name)


def _expect(what, actual, expected):
    if actual != expected:
        raise RuntimeError(f"kmymoney import: {what} is {actual} instead of {expected}")


def run(on, root, folder, start):
    """Raises an error where it goes another way. `start` opens KMyMoney with a file at a moment."""
    file = folder / "import.kmy"
    _write_file(root / SOURCE, file)
    ours = bridge.Bridge(folder / "home", file)
    ours.records(MOMENT)
    [feed] = (folder / "home").glob("containers/*/notifications.xml")
    after = _pay(plistlib.loads(feed.read_bytes()), feed.parent / "bridge/actions.xml")
    ours.run(MOMENT, "update")
    statement = folder / "paid.ofx"
    statement.write_text(ours.run(MOMENT, "export", file), encoding="utf-8")
    schedules, transactions = _state(file)
    expected = schedules | after, transactions + COUNT
    with start(on, file, MOMENT):
        on.wait_for_node("list item", "Scheduled\u2028transactions")
        matches, results = _import(on, statement)
        _expect("what matches", (matches, results[3:6]), (COUNT, [f"{COUNT} {what}" for what in DONE]))
        _save(on, file)
        _expect("the saved file", _state(file), expected)
        matches, results = _import(on, statement)
        _expect("what matches again", (matches, results), (0, ["No new transaction has been imported."]))
        _save(on, file)
        _expect("the file after a second import", _state(file), expected)
    ours.run(MOMENT, "update")
    _expect("what is pending", json.loads(ours.run(MOMENT, "pending", "--json")), [])
    return COUNT
