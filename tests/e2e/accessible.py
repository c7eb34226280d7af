#!/usr/bin/env python3
"""An accessibility client, as a screen reader is one. Prints JSON.

accessible.py tree                     what every program on the accessibility bus tells, as nested objects
accessible.py act ROLE NAME ACTION     does an action of the one accessible with that role and name
accessible.py listen EVENT...          a line for each such event, until it is ended; the first line when it begins
"""

import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402


def _children(node):
    found = (node.get_child_at_index(i) for i in range(node.get_child_count()))
    return [child for child in found if child is not None]


def _role(node):
    # The one role whose name changed: at-spi2-core 2.46 (Debian 12) says "push button", 2.56 (Debian 13) "button".
    return "push button" if node.get_role() == Atspi.Role.PUSH_BUTTON else node.get_role_name()


def _actions(node):
    return [node.get_action_name(i) for i in range(node.get_n_actions())] if node.get_action_iface() else []


def _told(node):
    told = {"role": _role(node), "name": node.get_name(), "description": node.get_description(),
            "states": sorted(state.value_nick for state in node.get_state_set().get_states()),
            "actions": _actions(node)}
    if node.get_component_iface():
        place = node.get_extents(Atspi.CoordType.SCREEN)
        told["place"] = [place.x, place.y, place.width, place.height]
    return told | {"children": [_told(child) for child in _children(node)]}


def _matching(node, role, name):
    if _role(node) == role and node.get_name() == name:
        yield node
    for child in _children(node):
        yield from _matching(child, role, name)


def tree():
    return [_told(child) for child in _children(Atspi.get_desktop(0))]


def act(role, name, action):
    found = list(_matching(Atspi.get_desktop(0), role, name))
    if len(found) != 1:
        sys.exit(f"{len(found)} accessibles are a {role} with the name {name!r}")
    actions = _actions(found[0])
    if action not in actions:
        sys.exit(f"no action {action!r} among {actions}")
    return found[0].do_action(actions.index(action))


def listen(*events):
    def told(event):
        print(json.dumps({"event": event.type, "role": _role(event.source), "name": event.source.get_name(),
                          "detail": event.detail1}, ensure_ascii=False), flush=True)
    listener = Atspi.EventListener.new(told)
    for event in events:
        listener.register(event)
    print(json.dumps("listening"), flush=True)
    Atspi.event_main()


def main(command, *words):
    print(json.dumps({"tree": tree, "act": act, "listen": listen}[command](*words), ensure_ascii=False))


if __name__ == "__main__":
    main(*sys.argv[1:])
