"""Services of the desktop that tell what the program asks of them, and buses that misbehave."""

import json
import pathlib
import socket
import subprocess
import sys

from gi.repository import Gio, GLib

from .waiting import wait_until

_SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "platform" / "desktop_service.py"


class DesktopService:
    """One of the services of desktop_service.py, on the session bus, for as long as it is not closed."""

    def __init__(self, kind, folder):
        self._record = folder / f"{kind}.record"
        self._process = subprocess.Popen([sys.executable, str(_SCRIPT), str(self._record), kind])
        wait_until(lambda: self.told("ready"), 10, f"the service {kind}")

    def close(self):
        self._process.kill()
        self._process.wait(10)

    def told(self, key):
        """What it wrote down under this key, oldest first."""
        if not self._record.exists():
            return []
        lines = self._record.read_text().splitlines()
        return [one[key] for one in map(json.loads, lines) if key in one]

    def calls(self, method):
        """The arguments of each call of this method."""
        lines = self._record.read_text().splitlines()
        return [one["arguments"] for one in map(json.loads, lines) if one.get("call") == method]

    def click(self, name, number):
        """Clicks a notification, as its user does."""
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        bus.call_sync(name, "/test", "tarnwick.Test", "Click", GLib.Variant("(u)", (number,)), None, 0, 5000, None)


class SilentBus:
    """A socket that takes connections and never says a word."""

    def __init__(self, path):
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.bind(str(path))
        self._socket.listen(50)
        self.address = f"unix:path={path}"

    def close(self):
        self._socket.close()
