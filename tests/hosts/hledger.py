"""hledger, asked by its own command: a transaction that a rule generates is due on its day, from ninety days before
today on, unless a transaction of the journal says that it pays it."""

import collections
import csv
import datetime
import io
import os
import re

import bridge

FILES = ("tests/data/bridge/hledger/plans.journal", "tests/hosts/plans/calendar.journal")
WITH = ("tests/data/bridge/hledger/paid.journal",)  # which a file includes
NAME = "hledger"
SHOWS = "each occurrence: name, day, amount, direction"
OWN = ("assets", "liabilities")
SIGNS = {"EUR": "€", "USD": "$", "JPY": "¥"}


def version():
    return bridge.output(["hledger", "--version"], {"PATH": os.environ["PATH"]}).split()[1].rstrip(",")


def _transactions(file, moment, *words):
    """Each transaction as a list of its postings."""
    env = {"PATH": os.environ["PATH"], "HOME": str(file.parent), "LC_ALL": "C.UTF-8"} | bridge.at(moment)
    first, last = moment.date() - datetime.timedelta(400), moment.date() + datetime.timedelta(400)
    text = bridge.output(["hledger", "-f", file, "print", f"--forecast={first}..{last}", "-O", "csv", *words], env)
    transactions = collections.defaultdict(list)
    for posting in csv.DictReader(io.StringIO(text, newline="")):
        transactions[posting["txnidx"]].append(posting)
    return transactions.values()


def _tag(transaction, name):
    found = re.search(rf"\b{name}: *([^,\n]*)", transaction[0]["comment"])
    return found and found[1].strip()


def _money_of(transaction):
    own = [posting for posting in transaction if posting["account"].startswith(OWN)]
    spent = [posting for posting in own if posting["amount"].startswith("-")]
    first = (spent or own)[0]
    sign = SIGNS.get(first["commodity"], first["commodity"])
    kind = "transfer" if len(own) == len(transaction) else "expense" if spent else "income"
    return bridge.money(first["amount"] + " " + sign), kind


def shown(_, file, moment):
    """What it says is due."""
    today = moment.date()
    first, last = today - datetime.timedelta(90), today + datetime.timedelta(bridge.DAYS_AHEAD)
    paid = {(_tag(each, "plan"), _tag(each, "paid-of"))
            for each in _transactions(file, moment, "not:tag:_generated-transaction")}
    for transaction in _transactions(file, moment, "tag:_generated-transaction"):
        day = datetime.date.fromisoformat(transaction[0]["date"])
        if first <= day <= last and (_tag(transaction, "plan"), str(day)) not in paid:
            yield transaction[0]["description"] or None, day, *_money_of(transaction)


def published(records, _file, _today):
    """The same of the feed. A rule without a description has its account for a name there."""
    for record in records:
        yield None if record.name.startswith(OWN) else record.name, record.day, record.amount, record.kind
