"""What needs a client of the X server: asking a window whether it is alive, and embedding tray icons."""

import ctypes
import ctypes.util
import time

from .waiting import wait_until

_X = ctypes.CDLL(ctypes.util.find_library("X11"))
_CLIENT_MESSAGE = 33
_STRUCTURE_NOTIFY = 1 << 17
_REQUEST_DOCK = 0


class _Message(ctypes.Structure):
    _fields_ = [
        ("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int), ("display", ctypes.c_void_p),
        ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
        ("data", ctypes.c_long * 5),
    ]


class _Event(ctypes.Union):
    _fields_ = [("type", ctypes.c_int), ("message", _Message), ("padding", ctypes.c_long * 24)]


for _name, _answer in (("XOpenDisplay", ctypes.c_void_p), ("XInternAtom", ctypes.c_ulong),
                       ("XDefaultRootWindow", ctypes.c_ulong), ("XCreateSimpleWindow", ctypes.c_ulong)):
    getattr(_X, _name).restype = _answer

# A window that is gone by the time it is used must not end the tests.
_ERROR_HANDLER = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(lambda *_: 0)
_X.XSetErrorHandler(_ERROR_HANDLER)


class Client:
    """A connection to the display."""

    def __init__(self):
        self._display = ctypes.c_void_p(_X.XOpenDisplay(None))
        self._root = _X.XDefaultRootWindow(self._display)

    def close(self):
        _X.XCloseDisplay(self._display)

    def _atom(self, name):
        return _X.XInternAtom(self._display, name.encode(), 0)

    def _send(self, to, mask, window, kind, *data):
        event = _Event()
        event.message.type, event.message.window, event.message.format = _CLIENT_MESSAGE, window, 32
        event.message.message_type = self._atom(kind)
        event.message.data[: len(data)] = data
        _X.XSendEvent(self._display, ctypes.c_ulong(to), 0, ctypes.c_long(mask), ctypes.byref(event))
        _X.XFlush(self._display)

    def _messages(self):
        """The messages that have come since the last time."""
        event = _Event()
        while _X.XPending(self._display):
            _X.XNextEvent(self._display, ctypes.byref(event))
            if event.type == _CLIENT_MESSAGE:
                yield event.message


class Pulse(Client):
    """Asks a window again and again whether its program still handles events, as window managers do."""

    def __init__(self, window):
        super().__init__()
        self._window = window
        # Where Qt's answers can be heard by others than the window manager.
        _X.XSelectInput(self._display, ctypes.c_ulong(self._root), ctypes.c_long(_STRUCTURE_NOTIFY))

    def longest_wait(self, seconds, limit=20):
        """The longest time in seconds that one of the questions of the next seconds was left unanswered."""
        end = time.monotonic() + seconds
        longest, number = 0, 0
        while time.monotonic() < end:
            number += 1
            asked = time.monotonic()
            self._send(self._window, 0, self._window, "WM_PROTOCOLS", self._atom("_NET_WM_PING"), number, self._window)
            wait_until(lambda: any(each.data[1] == number for each in self._messages()), limit, "a sign of life", 0.001)
            longest = max(longest, time.monotonic() - asked)
            time.sleep(0.005)
        return longest


class EmbeddingTray(Client):
    """A tray of the old kind, which takes icons as windows."""

    def __init__(self):
        super().__init__()
        self._window = _X.XCreateSimpleWindow(self._display, ctypes.c_ulong(self._root), 0, 0, 64, 32, 0, 0, 0)
        selection = self._atom("_NET_SYSTEM_TRAY_S0")
        _X.XSetSelectionOwner(self._display, ctypes.c_ulong(selection), ctypes.c_ulong(self._window), 0)
        _X.XMapWindow(self._display, ctypes.c_ulong(self._window))
        self._send(self._root, _STRUCTURE_NOTIFY, self._root, "MANAGER", 0, selection, self._window)
        self._icons = []

    def icons(self):
        """The windows that asked to be taken."""
        for message in self._messages():
            if message.message_type == self._atom("_NET_SYSTEM_TRAY_OPCODE") and message.data[1] == _REQUEST_DOCK:
                icon = message.data[2]
                self._icons.append(icon)
                _X.XReparentWindow(self._display, ctypes.c_ulong(icon), ctypes.c_ulong(self._window), 0, 0)
                _X.XMapWindow(self._display, ctypes.c_ulong(icon))
                _X.XFlush(self._display)
        return self._icons
