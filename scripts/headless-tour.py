"""Opens the window, presses the main button, waits for the desktop, takes a picture of each, and stops the desktop.

Runs inside in-virtual-display.sh. With --practice it is a newcomer's first start: settings, data and the practice
engine's memory live in a folder that is gone afterwards. Without, they are those that the program has for this user,
and a desktop that ran before keeps running. TARNWICK_TOUR_PAUSE: seconds that a desktop gets to draw itself.
usage: headless-tour.py [--practice BUILD-FOLDER] PICTURE-FOLDER PROGRAM [ARGUMENT…]
"""

import os
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests" / "e2e"))

from driver.accessibility import BUTTON  # noqa: E402
from driver.application import Application, Folders, free_port_pair, ports_are_free  # noqa: E402
from driver.desktop import start, wait_for_desktop_screen, wait_for_document  # noqa: E402
from driver.display import colours, screenshot  # noqa: E402
from driver.practice import PracticeTools  # noqa: E402
from driver.waiting import wait_until  # noqa: E402

# A first start may set up a virtual machine and download an image of more than a gigabyte.
DESKTOP_SECONDS = 45 * 60

PICTURES = ("home.png", "progress.png", "desktop.png")


def step(text):
    print(text, flush=True)


def take_tour(application, pictures):
    tree = application.tree
    application.wait_for_window()
    # The program looks for a desktop that runs already as soon as its window is there.
    time.sleep(1)
    ran_before = tree.find(BUTTON, "Stop") is not None
    screenshot(pictures / "home.png")
    step("The window is open.")

    start(tree)
    step("The main button is pressed.")
    watcher = ProgressWatcher(tree, pictures / "progress.png")
    wait_for_desktop_screen(tree, DESKTOP_SECONDS, watcher.look)
    page = wait_for_document(tree)
    time.sleep(float(os.environ.get("TARNWICK_TOUR_PAUSE", "0")))
    wait_until(lambda: is_drawn(pictures / "desktop.png", page), 30, "the desktop's picture")
    step("The desktop is shown.")

    if not ran_before:
        tree.press("Stop")
        tree.wait_for(BUTTON, "Open desktop", seconds=70)
        step("The desktop is stopped.")


class ProgressWatcher:
    """Takes a picture of a start on its way: of its beginning, and again when a part of the download has arrived."""

    def __init__(self, tree, picture):
        self._tree = tree
        self._picture = picture
        self._seen = None

    def look(self):
        if self._seen == "download":
            return
        layers = [text for text in self._tree.texts() if "layers downloaded" in text and not text.startswith("0 of")]
        if layers:
            self._take("download", layers[0])
        elif self._seen is None and self._tree.find(BUTTON, "Cancel"):
            self._take("beginning", "the start is on its way")

    def _take(self, what, text):
        screenshot(self._picture)
        self._seen = what
        step(f"Progress: {text}")


def is_drawn(path, page):
    """Takes the picture, and tells whether more than an empty page is on it."""
    time.sleep(1)
    screenshot(path)
    return colours(path, page.frame) > 8


def newcomer(build):
    """Folders and tools of somebody who has never started the program; the usual ports when they are free."""
    folders = Folders()
    tools = PracticeTools(build, folders.tools_state, pace=1)
    if not ports_are_free(3000, 3001):
        http, https = free_port_pair()
        folders.write_settings(httpPort=http, httpsPort=https)
        step(f"Port 3000 or 3001 is taken on this machine: using {http} and {https}.")
    return folders, tools


def main(arguments):
    folders = tools = None
    environment = {}
    if arguments[0] == "--practice":
        folders, tools = newcomer(arguments[1])
        environment = {**folders.environment(), **tools.environment}
        arguments = arguments[2:]
    pictures = pathlib.Path(arguments[0]).resolve()
    pictures.mkdir(parents=True, exist_ok=True)
    log = pictures / "program.log"
    for old in (*(pictures / name for name in PICTURES), pictures / "failure.png", pictures / "failure.txt", log):
        old.unlink(missing_ok=True)
    application = Application(arguments[1], log, environment, arguments[2:])
    try:
        take_tour(application, pictures)
    except AssertionError as reason:
        screenshot(pictures / "failure.png")
        (pictures / "failure.txt").write_text(application.tree.dump())
        print(f"It did not get to the desktop: {reason}", file=sys.stderr)
        print(f"More in {pictures}: failure.png, failure.txt (all that was to be read) and {log.name}", file=sys.stderr)
        return 1
    finally:
        application.terminate()
        if tools:
            tools.clean()
        if folders:
            folders.clean()
    step("Pictures of the home screen, the progress and the desktop:")
    for name in PICTURES:
        # A start that is over at once shows no progress.
        step(f"  {pictures / name}" if (pictures / name).exists() else "  (none of the progress: there was none to see)")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
