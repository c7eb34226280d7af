"""A window of another program on Wayland, which asks the compositor for activation tokens. It speaks the protocol
itself: a toolkit keeps its tokens to itself.

    client = wayland_client.Client(path)
    client.show("com.example.other", 200, 100)
    token = client.activation_token()  # for a key that is pressed in the window
"""

import os
import socket
import struct

import harness

# Interface: its requests by their numbers.
REQUESTS = {
    "wl_display": {"sync": 0, "get_registry": 1},
    "wl_registry": {"bind": 0},
    "wl_compositor": {"create_surface": 0},
    "wl_shm": {"create_pool": 0},
    "wl_shm_pool": {"create_buffer": 0},
    "wl_surface": {"attach": 1, "commit": 6},
    "wl_seat": {"get_keyboard": 1},
    "xdg_wm_base": {"get_xdg_surface": 2, "pong": 3},
    "xdg_surface": {"get_toplevel": 1, "ack_configure": 4},
    "xdg_toplevel": {"set_app_id": 3},
    "xdg_activation_v1": {"get_activation_token": 1},
    "xdg_activation_token_v1": {"set_serial": 0, "set_surface": 2, "commit": 3},
}
# The events that matter here, by interface and number.
ERROR, SYNCED, GLOBAL, DEVICES = ("wl_display", 0), ("wl_callback", 0), ("wl_registry", 0), ("wl_seat", 0)
PING, CONFIGURE, TOKEN = ("xdg_wm_base", 0), ("xdg_surface", 0), ("xdg_activation_token_v1", 0)
LEAVE, KEY = ("wl_keyboard", 2), ("wl_keyboard", 3)
XRGB8888 = 1
POINTER, KEYBOARD = 1, 2  # among the devices of a seat


def _text(data):
    """A string of the protocol: its length with the zero at its end, then its bytes up to whole words."""
    size = struct.unpack_from("=I", data)[0]
    return data[4:4 + size - 1].decode()


def _argument(value):
    if isinstance(value, int):
        return struct.pack("=I", value)
    data = value.encode() + b"\0"
    return struct.pack("=I", len(data)) + data + bytes(-len(data) % 4)


class Client:
    """A connection to the compositor with one window. What the compositor tells is read while something is awaited."""

    def __init__(self, path):
        self._interfaces = {1: "wl_display"}
        self._globals, self._unread = {}, b""
        self._is_configured = self._is_synced = False
        self._key = self._token = None
        self._losses = self._devices = 0
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.connect(str(path))
        self._socket.setblocking(False)
        self._registry = self._make(1, "get_registry", "wl_registry")
        self._seat = self._bind("wl_seat")
        self._synchronize()
        if self._devices & KEYBOARD:
            self._make(self._seat, "get_keyboard", "wl_keyboard")

    def close(self):
        self._socket.close()

    def _send(self, target, request, *arguments, descriptors=()):
        body = b"".join(map(_argument, arguments))
        head = struct.pack("=IHH", target, REQUESTS[self._interfaces[target]][request], 8 + len(body))
        socket.send_fds(self._socket, [head + body], descriptors)

    def _number(self, interface):
        """Of a new object."""
        number = len(self._interfaces) + 1
        self._interfaces[number] = interface
        return number

    def _make(self, target, request, interface, *arguments, **options):
        """Sends a request whose first argument is a new object."""
        number = self._number(interface)
        self._send(target, request, number, *arguments, **options)
        return number

    def _bind(self, interface):
        self._wait(lambda: interface in self._globals, interface)
        number = self._number(interface)
        self._send(self._registry, "bind", self._globals[interface], interface, 1, number)
        return number

    def _wait(self, condition, what):
        harness.wait_for(lambda: self._read() or condition(), what)

    def _read(self):
        try:
            data, descriptors, _, _ = socket.recv_fds(self._socket, 1 << 16, 16)
        except BlockingIOError:
            return
        for descriptor in descriptors:  # of the keyboard's layout
            os.close(descriptor)
        if not data:
            raise AssertionError("the compositor has ended the connection")
        self._unread += data
        while len(self._unread) >= 8:
            target, event, size = struct.unpack_from("=IHH", self._unread)
            if len(self._unread) < size:
                break
            body, self._unread = self._unread[8:size], self._unread[size:]
            self._take((self._interfaces[target], event), target, body)

    def _take(self, event, target, body):
        if event == ERROR:
            raise AssertionError(f"the compositor finds fault: {_text(body[8:])}")
        if event == GLOBAL:
            self._globals[_text(body[4:])] = struct.unpack_from("=I", body)[0]
        elif event == PING:
            self._send(target, "pong", *struct.unpack("=I", body))
        elif event == CONFIGURE:
            self._is_configured = True
            self._send(target, "ack_configure", *struct.unpack("=I", body))
        elif event == KEY:
            self._key, = struct.unpack_from("=I", body)
        elif event == DEVICES:
            self._devices, = struct.unpack("=I", body)
        elif event == LEAVE:
            self._losses += 1
        elif event == TOKEN:
            self._token = _text(body)
        elif event == SYNCED:
            self._is_synced = True

    def show(self, app_id, width, height):
        """Shows a window of one colour."""
        self._surface = self._make(self._bind("wl_compositor"), "create_surface", "wl_surface")
        shell = self._make(self._bind("xdg_wm_base"), "get_xdg_surface", "xdg_surface", self._surface)
        self._send(self._make(shell, "get_toplevel", "xdg_toplevel"), "set_app_id", app_id)
        self._send(self._surface, "commit")
        self._wait(lambda: self._is_configured, "a place for the window")
        pixels = os.memfd_create("pixels")
        os.write(pixels, struct.pack("=I", 0x00a000) * (width * height))
        size = width * height * 4
        pool = self._make(self._bind("wl_shm"), "create_pool", "wl_shm_pool", size, descriptors=[pixels])
        os.close(pixels)
        picture = self._make(pool, "create_buffer", "wl_buffer", 0, width, height, width * 4, XRGB8888)
        self._send(self._surface, "attach", picture, 0, 0)
        self._send(self._surface, "commit")

    def activation_token(self):
        """A token for a key that is pressed in the window, which is awaited."""
        self._wait(lambda: self._key is not None, "a pressed key")
        token = self._make(self._bind("xdg_activation_v1"), "get_activation_token", "xdg_activation_token_v1")
        self._send(token, "set_serial", self._key, self._seat)
        self._send(token, "set_surface", self._surface)
        self._send(token, "commit")
        self._key = self._token = None
        self._wait(lambda: self._token, "an activation token")
        return self._token

    def focus_losses(self):
        """How often the keyboard has left the window."""
        self._synchronize()
        return self._losses

    def has_devices(self):
        """Whether there are a pointer and a keyboard."""
        self._synchronize()
        return self._devices & (POINTER | KEYBOARD) == POINTER | KEYBOARD

    def _synchronize(self):
        """Returns when all that the compositor had to tell has been read."""
        self._is_synced = False
        self._make(1, "sync", "wl_callback")
        self._wait(lambda: self._is_synced, "an answer of the compositor")
