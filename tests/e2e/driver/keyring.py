"""A keyring of a test's own on its session bus."""

import os
import signal
import subprocess

from gi.repository import Gio, GLib

_NAME = "org.freedesktop.secrets"
_ROOT = "/org/freedesktop/secrets"
_COLLECTION = f"{_ROOT}/collection/login"
_MASTER_PASSWORD = b"keyring of the tests\n"


class Keyring:
    """An unlocked keyring whose content is kept in a folder; it takes the place of one that is there already."""

    def __init__(self, folder):
        folder.mkdir()
        self._daemon = subprocess.Popen(
            ["gnome-keyring-daemon", "--foreground", "--replace", "--unlock", "--components=secrets"],
            env={**os.environ, "XDG_DATA_HOME": str(folder), "XDG_CACHE_HOME": str(folder)},
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
        )
        self._daemon.stdin.write(_MASTER_PASSWORD)
        self._daemon.stdin.close()
        # It prints its address as soon as it can be asked.
        self._daemon.stdout.readline()
        # Its sessions end with the connection.
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)

    def lock(self):
        self._call("org.freedesktop.Secret.Service", "Lock", "(ao)", ([_COLLECTION],))

    def _open_session(self):
        """The number of an exchange in which secrets travel as they are."""
        arguments = ("plain", GLib.Variant("s", ""))
        return self._call("org.freedesktop.Secret.Service", "OpenSession", "(sv)", arguments)[1]

    def unlock(self):
        session = self._open_session()
        secret = (session, b"", _MASTER_PASSWORD, "text/plain")
        self._call("org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface", "UnlockWithMasterPassword",
                   "(o(oayays))", (_COLLECTION, secret))

    def passwords(self):
        """The desktop passwords that it holds."""
        attributes = {"service": "Tarnwick", "account": "webtop-password"}
        items, _ = self._call("org.freedesktop.Secret.Service", "SearchItems", "(a{ss})", (attributes,))
        session = self._open_session()
        (found,) = self._call("org.freedesktop.Secret.Service", "GetSecrets", "(aoo)", (items, session))
        return [bytes(value).decode() for _, _, value, _ in found.values()]

    def freeze(self):
        """It answers nobody until it is thawed."""
        self._daemon.send_signal(signal.SIGSTOP)

    def thaw(self):
        self._daemon.send_signal(signal.SIGCONT)

    def _call(self, interface, method, kinds, arguments):
        arguments = GLib.Variant(kinds, arguments)
        return self._bus.call_sync(_NAME, _ROOT, interface, method, arguments, None, 0, 5000, None).unpack()

    def clean(self):
        self.thaw()
        self._daemon.send_signal(signal.SIGTERM)
        self._daemon.wait(10)
        self._daemon.stdout.close()
