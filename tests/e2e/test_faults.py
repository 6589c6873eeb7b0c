"""The sentence that a person reads when a tool fails, for each way in which the practice engine can be ordered to."""

import os
import re
import time
import unittest

from driver.accessibility import BUTTON, LABEL
from driver.cases import PracticeCase, build_folder
from driver.desktop import main_button, start
from driver.practice import brew_only
from driver.report import report_file
from driver.waiting import TimedOut, wait_until
from driver.windows import CHECK_BOX, open_settings

COLIMA = "Colima could not start. Open Show details for the full output."
CONTAINER = "The desktop container could not start. Open Show details for the full output."
NO_ANSWER = "The desktop did not answer in time. Open Show details, or the Logs window, to see why."
INSTALLATION = "The installation did not finish. Open Show details to see what Homebrew said."
DESKTOP = "(the desktop is shown)"
CANCELLED = "Cancelled."

# What a launch comes to: the faults ordered together, and the sentence.
LAUNCH_FAULTS = (
    (("colima-start-fails",), COLIMA),
    (("colima-start-hangs",), CANCELLED),
    (("colima-holds-pipe",), DESKTOP),
    (("daemon-unreachable",), COLIMA),
    (("docker-crashes",), COLIMA),
    (("docker-prints-help",), NO_ANSWER),
    (("pull-disk-full",), "The disk is full. Free some space, or give Colima a bigger disk, and try again."),
    (("pull-no-network",), "No internet connection to download from. Check your network and try again."),
    (("pull-manifest-unknown",), "The image or tag was not found. It may have been renamed. Try another flavor."),
    (("pull-hangs",), CANCELLED),
    (("pull-floods",), DESKTOP),
    (("pull-invalid-utf8",), DESKTOP),
    (("pull-long-line",), DESKTOP),
    (("compose-missing",), DESKTOP),
    (("compose-missing", "run-fails"), CONTAINER),
    (("compose-fails",), CONTAINER),
    (("compose-asks",), CONTAINER),
    (("compose-name-in-use-once",), DESKTOP),
    (("port-in-use",), "A network port is already in use by another program. Choose other ports in Settings."),
    (("container-dies", "desktop-answers-500"), NO_ANSWER),
    (("desktop-redirects",), DESKTOP),
    (("desktop-new-certificate",), DESKTOP),
)

# These reach the limits of time that the program sets its tools, which are minutes long.
SLOW_FAULTS = (
    (("docker-hangs",), COLIMA, 90),
    (("docker-hangs", "docker-ignores-sigterm"), COLIMA, 90),
    (("desktop-slow",), DESKTOP, 100),
    (("compose-hangs",), CONTAINER, 240),
    (("desktop-answers-500",), NO_ANSWER, 300),
    (("desktop-never-answers",), NO_ANSWER, 300),
)

# A press takes effect a moment later; until then the end of the run before would be read.
PRESS_SECONDS = 0.5

# What a tool that was ordered to flood prints; more would only take longer.
FLOOD = {"TARNWICK_PRACTICE_FLOOD_MB": "30"}

# What only tools say: names of layers, log formats, paths, options and error words of theirs.
RAW = re.compile(r"time=\"|level=|\bexit status\b|[0-9a-f]{12}|sha256:|Error response|^Error:|--[a-z]+|errno|daemon:", re.I)


class Table:
    """Collects what was read, for the report."""

    def __init__(self):
        self._rows = []

    def add(self, faults, sentence):
        self._rows.append((" and ".join(f"`{fault}`" for fault in faults), " ".join(sentence.split())))

    def write(self, name):
        lines = ["| ordered fault | what the user reads |", "|---|---|"]
        lines += [f"| {faults} | {sentence} |" for faults, sentence in self._rows]
        report_file(name).write_text("\n".join(lines) + "\n", encoding="utf-8")


class FaultCase(PracticeCase):
    def start_program(self, environment):
        super().start_program({**environment, **FLOOD})

    def outcome(self, seconds=30):
        """What the launch that was just begun comes to; one that stands still is cancelled."""
        time.sleep(PRESS_SECONDS)
        try:
            wait_until(lambda: self.tree.find(BUTTON, "Fullscreen") or self.ended(), seconds, "the end of the launch")
        except TimedOut:
            self.tree.press("Cancel")
            wait_until(self.ended, 10, "the end of the cancelled launch")
        if self.tree.find(BUTTON, "Fullscreen"):
            return DESKTOP
        details = self.tree.find(CHECK_BOX, "Show details")
        if details:
            return self.error_sentence()
        return CANCELLED if self.tree.find(text=CANCELLED) else "\n".join(self.tree.texts())

    def ended(self):
        button = main_button(self.tree)
        return button and button.enabled

    def error_sentence(self):
        """The text that stands before "Show details"."""
        texts = self.tree.texts()
        return texts[texts.index("Show details") - 1]

    def expect_no_raw_output(self):
        """Outside the details, which are closed at first, nothing that only a tool would say is on show."""
        self.assertIsNone(self.tree.find(name="Details"))
        for label in self.tree.all(LABEL):
            self.assertNotRegex(label.text, RAW)

    def expect_details_with_output(self):
        self.tree.press("Show details", role=CHECK_BOX)
        self.assertGreater(len(self.tree.wait_for(name="Details").text), 5)
        self.tree.press("Show details", role=CHECK_BOX)

    def expect(self, faults, sentence, seconds, table):
        self.tools.run("docker", "practice", "reset")
        self.tools.order(*faults)
        start(self.tree)
        read = self.outcome(seconds)
        table.add(faults, read)
        self.assertEqual(read, sentence)
        if read != DESKTOP:
            self.expect_no_raw_output()
        if read not in (DESKTOP, CANCELLED):
            self.expect_details_with_output()
        if read == DESKTOP:
            self.tree.press("Home")
            self.tree.press("Stop")
            wait_until(lambda: not self.tree.find(BUTTON, "Stop") and self.ended(), 20, "the end of the stop")
        self.tools.order()


class LaunchFaults(FaultCase):
    def test_each_ends_in_its_sentence(self):
        self.start_with_practice(pace=0.02)
        table = Table()
        self.addCleanup(table.write, "faults.md")
        for faults, sentence in LAUNCH_FAULTS:
            with self.subTest(" and ".join(faults)):
                seconds = 6 if sentence == CANCELLED else 40
                self.expect(faults, sentence, seconds, table)

    @unittest.skipUnless(os.environ.get("TARNWICK_SLOW_TESTS"), "takes a quarter of an hour; set TARNWICK_SLOW_TESTS")
    def test_each_that_reaches_a_limit_of_time(self):
        self.start_with_practice(pace=0.02)
        table = Table()
        self.addCleanup(table.write, "faults-slow.md")
        for faults, sentence, seconds in SLOW_FAULTS:
            with self.subTest(" and ".join(faults)):
                self.expect(faults, sentence, seconds, table)


class OtherFaults(FaultCase):
    """Of the installation and of the actions in the settings window."""

    def setUp(self):
        super().setUp()
        self.table = Table()

    def test_of_the_installation(self):
        folder = brew_only(self.folders.root / "brew-only", build_folder())
        self.start_with_practice(pace=0.02, tool_folder=folder)
        self.addCleanup(self.table.write, "faults-installation.md")
        for fault, sentence in (
            ("brew-fails", INSTALLATION),
            ("brew-installs-elsewhere", INSTALLATION),
            ("brew-hangs", CANCELLED),
        ):
            with self.subTest(fault):
                self.tools.order(fault)
                start(self.tree)
                self.tree.press("Install")
                read = self.outcome(5)
                self.table.add((fault,), read)
                self.assertEqual(read, sentence)
                self.expect_no_raw_output()

    def test_of_the_settings(self):
        self.start_with_practice(pace=0.02)
        self.addCleanup(self.table.write, "faults-settings.md")
        start(self.tree)
        self.assertEqual(self.outcome(), DESKTOP)
        self.tree.press("Home")
        open_settings(self.tree)

        self.order_and_read("brew-services-fails", "brew services could not change Colima's login item: ",
                            lambda: self.tree.press("Start Colima at login (brew services)", role=CHECK_BOX))
        box = self.tree.find(CHECK_BOX, "Start Colima at login (brew services)")
        self.assertFalse(box.checked, "the switch stayed where nothing was switched")
        self.order_and_read("volume-rm-fails",
                            "The volume could not be removed. Stop the desktop first, then try again.", self.remove)
        self.order_and_read("colima-stop-fails", "Could not stop Colima: ",
                            lambda: self.tree.press("Stop Colima so new settings apply"))

    def remove(self):
        self.tree.press("Remove this flavor…")
        self.tree.press("Delete container and volume")

    def order_and_read(self, fault, sentence, act):
        with self.subTest(fault):
            self.tools.order(fault)
            act()
            read = self.tree.wait_for(text=sentence, seconds=20).text
            self.table.add((fault,), read)
