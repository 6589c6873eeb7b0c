"""A keyring of a test's own on its session bus."""

import os
import signal
import subprocess


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
        self._daemon.stdin.write(b"keyring of the tests\n")
        self._daemon.stdin.close()
        # It prints its address as soon as it can be asked.
        self._daemon.stdout.readline()

    def clean(self):
        self._daemon.send_signal(signal.SIGTERM)
        self._daemon.wait(10)
        self._daemon.stdout.close()
