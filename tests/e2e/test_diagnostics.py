"""The report for bug reports: all that is needed, and nothing that is nobody's business."""

import pathlib

from driver.cases import PracticeCase
from driver.desktop import start, wait_for_desktop_screen
from driver.display import clipboard
from driver.windows import choose_from_menu

COPIED = "The diagnostics are copied. Paste them into your bug report."


class Diagnostics(PracticeCase):
    def test_copied_after_a_launch(self):
        home = str(pathlib.Path.home())
        self.start_with_practice(shareFolder=home)
        start(self.tree)
        wait_for_desktop_screen(self.tree)
        self.tree.press("Home")
        choose_from_menu(self.tree, "Copy diagnostics", keys="alt+h")
        self.tree.wait_for(text=COPIED, seconds=20)
        report = clipboard()
        for part in (
            "Tarnwick: ",
            "Qt: 6.",
            "Web engine: 6.",
            "colima: ",
            "docker compose: ",
            "engine: 2",
            f"Ports: {self.http_port} and {self.https_port}",
            "Shared folder: ~\n",
            "Running (Standard)",
            "Status: Downloaded newer image",
        ):
            self.assertIn(part, report)
        self.assertNotIn(home, report)

    def test_tools_that_hang_are_named(self):
        self.start_with_practice(faults=["docker-hangs"])
        choose_from_menu(self.tree, "Copy diagnostics", keys="alt+h")
        self.tree.wait_for(text=COPIED, seconds=40)
        self.assertIn("engine: does not answer", clipboard())
