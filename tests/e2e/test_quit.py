"""Quitting with "Stop Colima when I quit"."""

import time

from driver.accessibility import BUTTON
from driver.cases import PracticeCase, build_folder
from driver.desktop import start, wait_for_desktop_screen
from driver.display import press_keys
from driver.practice import RecordedTools
from driver.windows import CHECK_BOX, choose_from_menu, open_settings


class QuitWithColima(PracticeCase):
    def start_recorded(self, **options):
        self.recorded = RecordedTools(self.folders.root / "recorded", build_folder())
        self.start_with_practice(tool_folder=self.recorded.folder, **options)

    def colima_stops(self):
        return self.recorded.calls("colima").count("stop")

    def test_colima_is_stopped_once(self):
        self.start_recorded(pace=0.2)
        open_settings(self.tree)
        self.tree.press("Stop Colima when I quit", role=CHECK_BOX)
        start(self.tree)
        wait_for_desktop_screen(self.tree)
        self.tree.press("Home")
        self.tree.wait_for(BUTTON, "Open desktop")
        choose_from_menu(self.tree, "Quit")
        self.assertEqual(self.application.wait_for_end(20), 0)
        self.assertEqual(self.colima_stops(), 1)
        self.assertFalse(self.tools.remembered()["engineUp"])

    def test_a_colima_that_hangs_holds_the_quit_for_a_minute_at_most(self):
        self.start_recorded(faults=("colima-stop-hangs",), stopColimaOnQuit=True)
        self.tools.run("colima", "start")
        self.tree.wait_for(BUTTON, "Launch Linux")
        press_keys("ctrl+q")
        began = time.monotonic()
        self.assertEqual(self.application.wait_for_end(70), 0)
        self.assertLess(time.monotonic() - began, 64)
        self.assertEqual(self.colima_stops(), 1)
