#!/usr/bin/env python3
"""The services of a desktop on its session bus, each on a connection of its own, and a client of what programs offer
there. None is there until it is told to come.

Each line of the input is a JSON array: a service, one of its commands (a method in lower case below), and the command's
arguments. Each is answered by a line of JSON. Values for the bus are given in GVariant's text format.
"""

import json
import os
import subprocess
import sys
import traceback

from gi.repository import Gio, GLib

NAME_IS_OWNED = 1  # what RequestName answers
LONGEST_CALL = 15000  # milliseconds


def connect():
    kind = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    return Gio.DBusConnection.new_for_address_sync(os.environ["DBUS_SESSION_BUS_ADDRESS"], kind, None, None)


class Service:
    """A name with one object, whose methods and properties on the bus are this object's with the same names."""

    def __init__(self):
        self.connection = None

    def come(self):
        self.connection = connect()
        info = Gio.DBusNodeInfo.new_for_xml(f"<node><interface name='{self.interface}'>{self.xml}</interface></node>")
        self.connection.register_object(self.path, info.interfaces[0], self._called, self._read, None)
        reply = self.connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            GLib.Variant("(su)", (self.name, 0)), None, Gio.DBusCallFlags.NONE, LONGEST_CALL, None)
        assert reply.unpack() == (NAME_IS_OWNED,)

    def go(self):
        self.connection.close_sync(None)
        self.connection = None

    def emit(self, signal, *arguments):
        self.connection.emit_signal(None, self.path, self.interface, signal, GLib.Variant.new_tuple(*arguments))

    def _called(self, connection, sender, path, interface, method, parameters, invocation):
        invocation.return_value(getattr(self, method)(sender, *parameters.unpack()))

    def _read(self, connection, sender, path, interface, name):
        return getattr(self, name)


class Watcher(Service):
    """Where items of the tray are registered; hosts show them."""

    name = interface = "org.kde.StatusNotifierWatcher"
    path = "/StatusNotifierWatcher"
    xml = """<method name='RegisterStatusNotifierItem'><arg type='s' direction='in'/></method>
        <method name='RegisterStatusNotifierHost'><arg type='s' direction='in'/></method>
        <property name='RegisteredStatusNotifierItems' type='as' access='read'/>
        <property name='IsStatusNotifierHostRegistered' type='b' access='read'/>
        <property name='ProtocolVersion' type='i' access='read'/>
        <signal name='StatusNotifierItemRegistered'><arg type='s'/></signal>
        <signal name='StatusNotifierItemUnregistered'><arg type='s'/></signal>
        <signal name='StatusNotifierHostRegistered'/>
        <signal name='StatusNotifierHostUnregistered'/>"""
    ProtocolVersion = GLib.Variant("i", 0)

    def come(self, with_host):
        self._items, self._has_host = [], with_host
        super().come()

    def host_comes(self):
        self._has_host = True
        self.emit("StatusNotifierHostRegistered")

    def host_goes(self):
        self._has_host = False
        self.emit("StatusNotifierHostUnregistered")

    def items(self):
        """The names of the connections that have registered an item and are there still."""
        return self._items

    def RegisterStatusNotifierItem(self, sender, service):
        self._items.append(service)
        self.emit("StatusNotifierItemRegistered", GLib.Variant("s", service))
        Gio.bus_watch_name_on_connection(self.connection, service, Gio.BusNameWatcherFlags.NONE, None, self._vanished)

    def _vanished(self, connection, service):
        if connection and connection is self.connection and service in self._items:
            self._items.remove(service)
            self.emit("StatusNotifierItemUnregistered", GLib.Variant("s", service))

    def RegisterStatusNotifierHost(self, sender, service):
        self.host_comes()

    @property
    def RegisteredStatusNotifierItems(self):
        return GLib.Variant("as", self._items)

    @property
    def IsStatusNotifierHostRegistered(self):
        return GLib.Variant("b", self._has_host)


class Notifications(Service):
    """Keeps what it is asked for; a notification's number is its place in the list, from one."""

    name = interface = "org.freedesktop.Notifications"
    path = "/org/freedesktop/Notifications"
    xml = """<method name='Notify'><arg type='s' direction='in'/><arg type='u' direction='in'/>
            <arg type='s' direction='in'/><arg type='s' direction='in'/><arg type='s' direction='in'/>
            <arg type='as' direction='in'/><arg type='a{sv}' direction='in'/><arg type='i' direction='in'/>
            <arg type='u' direction='out'/></method>
        <method name='CloseNotification'><arg type='u' direction='in'/></method>
        <method name='GetCapabilities'><arg type='as' direction='out'/></method>
        <method name='GetServerInformation'><arg type='s' direction='out'/><arg type='s' direction='out'/>
            <arg type='s' direction='out'/><arg type='s' direction='out'/></method>
        <signal name='NotificationClosed'><arg type='u'/><arg type='u'/></signal>
        <signal name='ActionInvoked'><arg type='u'/><arg type='s'/></signal>
        <signal name='ActivationToken'><arg type='u'/><arg type='s'/></signal>"""

    def come(self):
        self._shown, self._closed = [], []
        super().come()

    def shown(self):
        """The arguments of each notification so far."""
        return self._shown

    def closed(self):
        """The numbers of those that were closed."""
        return self._closed

    def invoke(self, number, action, token):
        self.emit("ActivationToken", GLib.Variant("u", number), GLib.Variant("s", token))
        self.emit("ActionInvoked", GLib.Variant("u", number), GLib.Variant("s", action))

    def Notify(self, sender, *arguments):
        self._shown.append(arguments)
        return GLib.Variant("(u)", (len(self._shown),))

    def CloseNotification(self, sender, number):
        self._closed.append(number)
        closed_by_a_call = 3
        self.emit("NotificationClosed", GLib.Variant("u", number), GLib.Variant("u", closed_by_a_call))

    def GetCapabilities(self, sender):
        return GLib.Variant("(as)", (["actions"],))

    def GetServerInformation(self, sender):
        return GLib.Variant("(ssss)", ("test", "test", "1", "1.2"))


class ScreenSaver(Service):
    name = interface = "org.freedesktop.ScreenSaver"
    path = "/org/freedesktop/ScreenSaver"
    xml = """<method name='GetActive'><arg type='b' direction='out'/></method>
        <signal name='ActiveChanged'><arg type='b'/></signal>"""

    def come(self, is_active):
        self._is_active = is_active
        super().come()

    def change(self, is_active):
        self._is_active = is_active
        self.emit("ActiveChanged", GLib.Variant("b", is_active))

    def GetActive(self, sender):
        return GLib.Variant("(b)", (self._is_active,))


class Portal(Service):
    """What the user has chosen for all programs."""

    name = "org.freedesktop.portal.Desktop"
    interface = "org.freedesktop.portal.Settings"
    path = "/org/freedesktop/portal/desktop"
    xml = """<method name='ReadAll'><arg type='as' direction='in'/><arg type='a{sa{sv}}' direction='out'/></method>
        <method name='Read'><arg type='s' direction='in'/><arg type='s' direction='in'/>
            <arg type='v' direction='out'/></method>
        <signal name='SettingChanged'><arg type='s'/><arg type='s'/><arg type='v'/></signal>
        <property name='version' type='u' access='read'/>"""
    version = GLib.Variant("u", 1)

    def __init__(self):
        super().__init__()
        self._groups = {}

    def choose(self, group, key, text):
        value = GLib.Variant.parse(None, text)
        self._groups.setdefault(group, {})[key] = value
        if self.connection:
            self.emit("SettingChanged", GLib.Variant("s", group), GLib.Variant("s", key), GLib.Variant("v", value))

    def ReadAll(self, sender, groups):
        return GLib.Variant("(a{sa{sv}})", ({group: self._groups.get(group, {}) for group in groups},))

    def Read(self, sender, group, key):
        return GLib.Variant("(v)", (GLib.Variant("v", self._groups[group][key]),))


class Manager(Service):
    """The user's service manager, as far as it starts services: each as a process of this one."""

    name = "org.freedesktop.systemd1"
    interface = "org.freedesktop.systemd1.Manager"
    path = "/org/freedesktop/systemd1"
    xml = """<method name='StartTransientUnit'><arg type='s' direction='in'/><arg type='s' direction='in'/>
            <arg type='a(sv)' direction='in'/><arg type='a(sa(sv))' direction='in'/>
            <arg type='o' direction='out'/></method>"""

    def come(self):
        self._units = []
        super().come()

    def units(self):
        """The names of the services so far."""
        return self._units

    def StartTransientUnit(self, sender, unit, mode, properties, others):
        values = dict(properties)
        [(program, arguments, _)] = values["ExecStartEx"]
        added = dict(variable.split("=", 1) for variable in values["Environment"])
        subprocess.Popen(arguments, executable=program, env=os.environ | added, stdin=subprocess.DEVNULL,
                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        self._units.append(unit)
        return GLib.Variant("(o)", (f"{self.path}/job/{len(self._units)}",))


class Client:
    """Calls whatever is on the bus, while the services here go on."""

    def __init__(self):
        self._connection = connect()

    def call(self, destination, path, interface, method, text="()"):
        self._send(destination, path, interface, method, text, self._replied)
        return Ellipsis  # the answer comes with the reply

    def send(self, destination, path, interface, method, text="()"):
        """Does not wait for a reply."""
        self._send(destination, path, interface, method, text, None)
        self._connection.flush_sync(None)

    def _send(self, destination, path, interface, method, text, replied):
        self._connection.call(destination, path, interface, method, GLib.Variant.parse(None, text), None,
                              Gio.DBusCallFlags.NO_AUTO_START, LONGEST_CALL, None, replied)

    def _replied(self, connection, result):
        try:
            answer({"reply": connection.call_finish(result).unpack()})
        except GLib.Error as error:
            answer({"error": error.message})


def answer(value):
    print(json.dumps(value), flush=True)


def fail(*exception):
    """No callback of the main loop may fail unseen."""
    traceback.print_exception(*exception)
    os._exit(1)


def main():
    sys.excepthook = fail
    services = {kind.__name__: kind() for kind in (Watcher, Notifications, ScreenSaver, Portal, Manager, Client)}
    loop = GLib.MainLoop()

    def read(channel, condition):
        line = sys.stdin.readline()
        if not line:
            loop.quit()
            return False
        service, command, *arguments = json.loads(line)
        value = getattr(services[service], command)(*arguments)
        if value is not Ellipsis:
            answer(value)
        return True
    GLib.io_add_watch(GLib.IOChannel.unix_new(0), GLib.PRIORITY_DEFAULT, GLib.IOCondition.IN | GLib.IOCondition.HUP,
                      read)
    loop.run()


if __name__ == "__main__":
    main()
