"""One press brings up the desktop; every way back out of it works."""

from driver.accessibility import BUTTON
from driver.cases import PracticeCase
from driver.desktop import main_button, main_button_ready, start, wait_for_desktop_screen, wait_for_page
from driver.display import press_keys
from driver.waiting import wait_until

PAGE = "practice engine"
CHECKLIST = ("Colima ready", "Image downloaded", "Desktop starting", "Ready")


class Launch(PracticeCase):
    def test_one_press_shows_the_desktop(self):
        self.start_with_practice(pace=0.5)
        self.tree.wait_for(BUTTON, "Launch Linux")
        self.assertIn(
            "Downloads about 1 GB once, then starts in a few seconds. Nothing to type.", self.tree.texts()
        )
        start(self.tree)
        for row in CHECKLIST:
            self.tree.wait_for(text=row)
        self.assertEqual(main_button(self.tree).name, "Starting…")
        self.assertFalse(main_button_ready(self.tree))
        self.tree.wait_for(text="layers downloaded", seconds=30)

        wait_for_desktop_screen(self.tree)
        wait_for_page(self.tree, PAGE)
        for title in ("Fullscreen", "Reload", "Open in browser", "Logs", "Stop", "Home", "Keys"):
            self.assertIsNotNone(self.tree.find(BUTTON, title), f"no button {title} on the desktop screen")
        self.assertTrue(self.tools.container_runs())
        self.assertEqual(self.folders.read_settings()["launchedFlavors"], ["alpine-xfce"])

    def test_home_and_back_keeps_the_container(self):
        self.start_with_practice()
        start(self.tree)
        wait_for_desktop_screen(self.tree)
        self.tree.press("Home")
        self.tree.wait_for(BUTTON, "Open desktop")
        self.assertTrue(self.tools.container_runs())
        start(self.tree)
        wait_for_desktop_screen(self.tree, 10)
        wait_for_page(self.tree, PAGE)

    def test_cancel_during_the_download(self):
        self.start_with_practice(pace=1)
        start(self.tree)
        self.tree.wait_for(text="layers downloaded", seconds=30)
        self.tree.press("Cancel")
        self.tree.wait_for(text="Cancelled.", seconds=10)
        self.tree.wait_for(BUTTON, "Launch Linux")
        self.tree.wait_gone(text="Image downloaded")
        self.assertFalse(self.tools.container_runs())

    def test_stop_from_the_desktop_leads_home(self):
        self.start_with_practice()
        start(self.tree)
        wait_for_desktop_screen(self.tree)
        self.tree.press("Stop")
        self.tree.wait_for(BUTTON, "Open desktop", seconds=20)
        wait_until(lambda: main_button_ready(self.tree), 20, "the end of the stop")
        self.assertFalse(self.tools.container_runs())
        self.assertIsNone(self.tree.find(BUTTON, "Stop"))

    def test_a_failed_download_says_why(self):
        self.start_with_practice(faults=("pull-disk-full",))
        start(self.tree)
        self.tree.wait_for(
            text="The disk is full. Free some space, or give Colima a bigger disk, and try again.", seconds=30
        )
        self.tree.wait_for(name="Show details")
        wait_until(lambda: main_button_ready(self.tree), 5, "the main button to come back")

    def test_a_desktop_that_runs_already_is_adopted(self):
        self.start_with_practice()
        start(self.tree)
        wait_for_desktop_screen(self.tree)
        self.application.terminate()
        self.assertTrue(self.tools.container_runs(), "ending the program ended the desktop")
        self.start_program(self.tools.environment)
        self.tree.wait_for(BUTTON, "Stop", seconds=20)
        self.assertIsNone(self.tree.find(BUTTON, "Fullscreen"), "the desktop opened unasked")


class Quit(PracticeCase):
    def test_quitting_leaves_the_desktop_running(self):
        self.start_with_practice()
        start(self.tree)
        wait_for_desktop_screen(self.tree)
        self.tree.press("Home")
        self.tree.wait_for(BUTTON, "Open desktop")
        press_keys("ctrl+q")
        self.assertEqual(self.application.wait_for_end(10), 0)
        self.assertTrue(self.tools.container_runs())

    def test_quitting_stops_colima_when_asked_to(self):
        self.start_with_practice(stopColimaOnQuit=True)
        self.tools.run("colima", "start")
        self.assertEqual(self.tools.run("docker", "info").returncode, 0)
        self.tree.wait_for(BUTTON, "Launch Linux")
        press_keys("ctrl+q")
        self.assertEqual(self.application.wait_for_end(20), 0)
        self.assertNotEqual(self.tools.run("docker", "info").returncode, 0)
