"""Starting and ending the program, with folders, settings and tools of the test's own."""

import json
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import tempfile

from .accessibility import Tree
from .waiting import TimedOut, wait_until


# The second entry makes the web engine publish the elements of its pages too.
_ACCESSIBLE = {
    "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
    "QTWEBENGINE_CHROMIUM_FLAGS": "--force-renderer-accessibility",
}


def ports_are_free(*ports):
    """Whether a server could listen on each of these ports of 127.0.0.1."""
    for port in ports:
        with socket.socket() as probe:
            probe.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
            try:
                probe.bind(("127.0.0.1", port))
            except OSError:
                return False
    return True


def free_port_pair():
    """Two adjacent free ports, below the range that the system hands out by itself."""
    first = 21000 + os.getpid() % 500 * 10
    for port in range(first, 30000, 2):
        if ports_are_free(port, port + 1):
            return port, port + 1
    raise AssertionError("no free pair of ports")


class Folders:
    """The private folders that stand in for a person's home; gone after clean()."""

    def __init__(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="tarnwick-e2e-"))
        self.home = self.root / "home"
        self.config = self.root / "config"
        self.data = self.root / "data"
        self.cache = self.root / "cache"
        self.tools_state = self.root / "tools"
        for folder in (self.home, self.config, self.data, self.cache, self.tools_state):
            folder.mkdir()

    def environment(self):
        return {
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.config),
            "XDG_DATA_HOME": str(self.data),
            "XDG_CACHE_HOME": str(self.cache),
            "XDG_STATE_HOME": str(self.root / "state"),
        }

    @property
    def settings_file(self):
        return self.config / "tarnwick" / "settings.json"

    def write_settings(self, **values):
        self.settings_file.parent.mkdir(parents=True, exist_ok=True)
        self.settings_file.write_text(json.dumps(values))

    def read_settings(self):
        try:
            return json.loads(self.settings_file.read_text())
        except FileNotFoundError:
            return {}

    def clean(self):
        shutil.rmtree(self.root, ignore_errors=True)


class Application:
    """One running program; what it prints goes to the file `log`."""

    def __init__(self, binary, log, environment=None, arguments=()):
        self._log = pathlib.Path(log)
        everything = {**os.environ, **_ACCESSIBLE, **(environment or {})}
        if os.geteuid() == 0:
            # The web engine refuses to start its sandbox as root. Tests only: the program itself never does this.
            everything["QTWEBENGINE_DISABLE_SANDBOX"] = "1"
        with open(self._log, "ab") as output:
            self._process = subprocess.Popen(
                [str(binary), *arguments], env=everything, stdin=subprocess.DEVNULL, stdout=output, stderr=output
            )
        self.tree = Tree(self._process.pid, self._check_alive)

    def _check_alive(self):
        if not self.running:
            last_words = self.output()[-2000:]
            raise AssertionError(f"the program ended with status {self._process.returncode}:\n{last_words}")

    @property
    def pid(self):
        return self._process.pid

    @property
    def running(self):
        return self._process.poll() is None

    def output(self):
        return self._log.read_text(errors="replace")

    def wait_for_window(self, seconds=20):
        """Until the main window is on the screen and its tree can be read."""
        return wait_until(lambda: self.tree.find(name="Tarnwick"), seconds, "the main window")

    def wait_for_end(self, seconds=20):
        """The exit status of the program, which must end by itself."""
        try:
            return self._process.wait(seconds)
        except subprocess.TimeoutExpired:
            raise TimedOut(f"the program did not end within {seconds} s") from None

    def signal(self, number):
        self._process.send_signal(number)

    def terminate(self):
        if self.running:
            self._process.send_signal(signal.SIGTERM)
            try:
                self._process.wait(10)
            except subprocess.TimeoutExpired:
                self._process.kill()
                self._process.wait()
