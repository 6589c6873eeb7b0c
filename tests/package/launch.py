"""Starts the installed program in its system, with the practice engine, and works it as a person and as a script does.

Runs inside in-virtual-display.sh, outside of the system: that holds nothing but the package and what it needs.
usage: launch.py SYSTEM-FOLDER BUILD-FOLDER first|again
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "e2e"))

from driver.accessibility import BUTTON  # noqa: E402
from driver.application import Application, free_port_pair  # noqa: E402
from driver.desktop import start, wait_for_desktop_screen, wait_for_page  # noqa: E402

VOLUME = "tarnwick-config-alpine-xfce"
MODULE = "/usr/lib/tarnwick/libtarnwick_web.so"
# What the user left in the desktop's home folder.
DIARY = "Dear diary\n"


class System:
    """The folder with the system, whose only user is root."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.home = self.folder / "root"
        self.environment = {
            "HOME": "/root",
            "PATH": "/usr/sbin:/usr/bin:/sbin:/bin",
            "TARNWICK_TOOL_FOLDERS": "/opt/practice/bin",
            "TARNWICK_PRACTICE_STATE": "/root/practice",
            "TARNWICK_PRACTICE_PACE": "0.2",
        }
        self._chroot = shutil.which("chroot")

    @property
    def diary(self):
        return self.home / "practice" / "volumes" / VOLUME / "diary.txt"

    def settings(self):
        return json.loads((self.home / ".config" / "tarnwick" / "settings.json").read_text())

    def write_settings(self, **values):
        file = self.home / ".config" / "tarnwick" / "settings.json"
        file.parent.mkdir(parents=True)
        file.write_text(json.dumps(values))

    def start(self, log, *arguments):
        print(" ".join(("# tarnwick", *arguments, "&")), flush=True)
        return Application(self._chroot, log, self.environment, [str(self.folder), "tarnwick", *arguments])

    def run(self, *command, expected=0):
        """Runs a command in the system, shows what it says, and checks its exit status."""
        print("#", *command, flush=True)
        answer = subprocess.run(
            [self._chroot, str(self.folder), *command],
            env={**os.environ, **self.environment},
            capture_output=True,
            text=True,
            timeout=60,
        )
        print(answer.stdout + answer.stderr, end="", flush=True)
        assert answer.returncode == expected, f"{command} ended with {answer.returncode} and not with {expected}"


def see_desktop(application):
    wait_for_desktop_screen(application.tree)
    wait_for_page(application.tree, "practice engine")
    loaded = pathlib.Path(f"/proc/{application.pid}/maps").read_text()
    assert MODULE in loaded, "the page is shown by another module than the installed one"
    print("The desktop's page is in the window.", flush=True)


def first(system, log):
    """Somebody's first start: the window, one press, the desktop, and something of their own in it."""
    http, https = free_port_pair()
    system.write_settings(httpPort=http, httpsPort=https, memory=3)
    application = system.start(log)
    try:
        application.wait_for_window()
        start(application.tree)
        print("The main button is pressed.", flush=True)
        see_desktop(application)
        system.run("tarnwick", "--status")
        system.diary.write_text(DIARY)
        application.tree.press("Stop")
        application.tree.wait_for(BUTTON, "Open desktop", seconds=20)
        print("The desktop is stopped.", flush=True)
    finally:
        application.terminate()
    system.run("tarnwick", "--status", expected=3)


def again(system, log):
    """The newer version finds what the older one left, and is worked by its command line."""
    application = system.start(log, "--launch")
    try:
        see_desktop(application)
        assert system.settings()["memory"] == 3, "the settings are not those from before"
        assert system.diary.read_text() == DIARY, "the desktop's files are not those from before"
        system.run("tarnwick", "--status", "--json")
        system.run("tarnwick", "--stop")
        system.run("tarnwick", "--status", expected=3)
    finally:
        application.terminate()
    # The practice engine itself must not outlive the test.
    system.run("/opt/practice/bin/colima", "stop")


def main(folder, build, which):
    for name in [name for name in os.environ if name.startswith("XDG_") and name != "XDG_RUNTIME_DIR"]:
        del os.environ[name]
    log = pathlib.Path(build) / f"package-{which}-launch.log"
    log.unlink(missing_ok=True)
    try:
        {"first": first, "again": again}[which](System(folder), log)
    except (AssertionError, subprocess.TimeoutExpired) as reason:
        print(f"{reason}\nWhat the program said:\n{log.read_text()}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
