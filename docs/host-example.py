#!/usr/bin/env python3
"""A finance application in a hundred lines: a host of Korvel Today, as docs/hosts.md describes one.

host-example.py             carries out what was chosen in the panel, then publishes the plans
host-example.py register    becomes the program that opens the panel's URLs
host-example.py URL         the same as without an argument, and notes what the panel asks for by this URL
"""

import base64, calendar, datetime, fcntl, json, os, pathlib, plistlib, subprocess, sys

GROUP, ACCOUNT, DAYS_AHEAD = "K7RV2LTD9A.group.com.korvel.finance", "anna", 7
DATA = pathlib.Path(os.environ.get("XDG_DATA_HOME") or pathlib.Path.home() / ".local" / "share")
CONTAINER = pathlib.Path(os.environ.get("KORVEL_GROUP_CONTAINERS") or DATA / "group-containers", GROUP)
SETTINGS = CONTAINER / "Library" / "Preferences" / f"{GROUP}.plist"
STORE, REQUESTS = (DATA / "korvel-host-example" / name for name in ("plans.json", "requests"))
# A PNG file of 36 x 36 pixels. The panel draws in white whatever is opaque.
BILL = base64.b64decode("iVBORw0KGgoAAAANSUhEUgAAACQAAAAkAQMAAADbzgrbAAAABlBMVEUAAAD///+l2Z/dAAAAAXRSTlMAQObYZgAAABxJR"
                        "EFUeNpjYMAAjP///yBIPmCogJO0VkMEiQEA/8RPP3FHfWwAAAAASUVORK5CYII=")


def moment(days, hour=0, today=None):
    day = (today or datetime.date.today()) + datetime.timedelta(days)
    return datetime.datetime.combine(day, datetime.time(hour)).timestamp()


def first_plans():
    plan = {"image": "bill", "income": False, "expense": True, "single": False}
    return {"rent": plan | {"name": "Rent", "amount": "−870.00 €", "dates": [moment(-1, 9), moment(29, 9)]},
            "phone": plan | {"name": "Phone", "amount": "−19.99 €", "dates": [moment(0, 23)], "single": True},
            "pay": plan | {"name": "Pay", "amount": "900.00 €", "income": True, "expense": False, "dates": [moment(2)]}}


def replace(path, data):
    """At any time either the old file is there or the new one, whole."""
    path.parent.mkdir(parents=True, exist_ok=True)
    new = path.with_name(f".{path.name}.new")
    with new.open("wb") as file:
        file.write(data)
        file.flush()
        os.fsync(file.fileno())
    new.rename(path)


def take_turn():
    """Until this process ends, the panel and its companion change no file of the container."""
    fcntl.flock(os.open(CONTAINER, os.O_RDONLY | os.O_DIRECTORY | os.O_CLOEXEC), fcntl.LOCK_EX)


def days_ahead(wanted, today):
    # One more would wrap to the month's first day. On its last day, -1 shows all that was due before.
    return min(wanted, calendar.monthrange(today.year, today.month)[1] - today.day - 1)


def carry_out(action, plans, day, moved):
    dates = plans.get(action["pk"], {}).get("dates", [])
    # What the panel has put off has another date in the records that follow.
    date = action["date"] if action["date"] in dates else moved.get(action["pk"])
    if date not in dates:
        return  # a run that was interrupted has done it
    dates.remove(date)
    if action["type"] == 2:
        moved[action["pk"]] = moment(action["param"], today=day)
        dates.append(moved[action["pk"]])
    elif action["type"] == 3 and action["param"] == 1:
        dates[:] = [other for other in dates if other < date]


def take_log(plans):
    log, taken = (CONTAINER / ACCOUNT / name for name in ("actions.xml", "actions.xml.taken"))
    while taken.exists() or log.exists():
        if not taken.exists():
            log.rename(taken)
        # The log does not tell the day on which it was written.
        day, moved = datetime.date.fromtimestamp(taken.stat().st_mtime), {}
        for action in plistlib.loads(taken.read_bytes()):
            carry_out(action, plans, day, moved)
        replace(STORE, json.dumps(plans).encode())
        taken.unlink()


def settings():
    return plistlib.loads(SETTINGS.read_bytes()) if SETTINGS.exists() else {}


def publish(plans):
    days = days_ahead(DAYS_AHEAD, datetime.date.today())
    replace(SETTINGS, plistlib.dumps(settings() | {"account_pk": ACCOUNT, "notification_days_count": days}))
    records = [{key: plan[key] for key in plan if key != "dates"} | {"planpk": pk, "date": date}
               for pk, plan in plans.items() for date in plan["dates"]]
    replace(CONTAINER / "notifications.xml", plistlib.dumps(records))


def register():
    entry = DATA / "applications" / "korvel-host-example.desktop"
    replace(entry, f'''[Desktop Entry]
Type=Application
Name=Example host
NoDisplay=true
Exec="{pathlib.Path(__file__).resolve()}" %u
MimeType=x-scheme-handler/korvelWidget;x-scheme-handler/korvelwidget;
'''.encode())
    subprocess.run(["update-desktop-database", entry.parent], check=True)


def request(url, plans):
    path = url.partition("://")[2]
    if path != "tw_edit_transaction":
        return {"tw_new_transaction": "add", "tw_all_transactions": "show all"}.get(path, "unknown")
    pk, date = (settings().get(f"edit_transaction_{key}") for key in ("plan_pk", "date"))
    return f"show {plans[pk]['name']}" if date in plans.get(pk, {}).get("dates", []) else "show what is gone"


def main(argument=""):
    if argument == "register":
        return register()
    CONTAINER.mkdir(mode=0o700, parents=True, exist_ok=True)
    take_turn()
    if not STORE.exists():
        replace(STORE, json.dumps(first_plans()).encode())
    plans = json.loads(STORE.read_bytes())
    take_log(plans)
    replace(CONTAINER / ACCOUNT / "icons" / "bill.png", BILL)
    publish(plans)
    if argument:
        with REQUESTS.open("a") as file:
            print(request(argument, plans), file=file)


main(*sys.argv[1:])
