"""The places from which the desktop is stopped, beside the desktop's own toolbar."""

from driver.accessibility import BUTTON
from driver.cases import PracticeCase
from driver.desktop import main_button, start, wait_for_desktop_screen
from driver.display import press_keys
from driver.tray import TrayHost
from driver.waiting import wait_until
from driver.windows import choose_from_menu


class Stop(PracticeCase):
    def launch(self):
        start(self.tree)
        wait_for_desktop_screen(self.tree)

    def expect_stopped(self):
        self.tree.wait_gone(BUTTON, "Fullscreen")
        self.tree.wait_gone(BUTTON, "Stop", seconds=20)
        wait_until(lambda: main_button(self.tree).enabled, 20, "the end of the stop")
        self.assertFalse(self.tools.container_runs())
        # A stop says nothing, and leaves Colima running.
        self.assertIsNone(self.tree.find(text="Cancelled."))
        self.assertEqual(self.tools.run("docker", "info").returncode, 0)

    def test_from_the_home_screen(self):
        self.start_with_practice(pace=0.05)
        self.launch()
        self.tree.press("Home")
        self.tree.press("Stop")
        self.expect_stopped()

    def test_from_the_menu_of_the_window(self):
        self.start_with_practice(pace=0.05)
        self.launch()
        self.tree.press("Home")
        self.tree.wait_for(BUTTON, "Stop")
        choose_from_menu(self.tree, "Stop")
        self.expect_stopped()


class Tray(PracticeCase):
    """With a tray that tells what it is asked to show, and that is clicked from here."""

    def setUp(self):
        super().setUp()
        self.tray = TrayHost()
        self.addCleanup(self.tray.close)

    def test_launch_and_stop(self):
        self.start_with_practice(pace=0.05)
        wait_until(lambda: self.tray.items(), 10, "the tray item")
        self.assertEqual(self.tray.titles(), ["Tarnwick: Stopped", "Open desktop", "Stop", "Quit"])
        self.assertFalse(self.tray.enabled("Stop"))
        self.tray.choose("Open desktop")
        wait_for_desktop_screen(self.tree)
        wait_until(lambda: self.tray.titles()[0] == "Tarnwick: Running (Standard)", 5, "the status line")
        self.assertTrue(self.tray.enabled("Stop"))
        self.tray.choose("Stop")
        self.tree.wait_for(BUTTON, "Open desktop", seconds=20)
        wait_until(lambda: self.tray.titles()[0] == "Tarnwick: Stopped", 20, "the end of the stop")
        self.assertFalse(self.tools.container_runs())

    def test_lives_without_a_window_and_quits_from_the_tray(self):
        self.start_with_practice()
        wait_until(lambda: self.tray.items(), 10, "the tray item")
        press_keys("alt+F4")
        self.tree.wait_gone(name="Tarnwick")
        self.assertTrue(self.application.running)
        self.tray.choose("Open desktop")
        wait_for_desktop_screen(self.tree)
        self.tray.choose("Quit")
        self.assertEqual(self.application.wait_for_end(20), 0)
        self.assertTrue(self.tools.container_runs(), "quitting ended the desktop")

