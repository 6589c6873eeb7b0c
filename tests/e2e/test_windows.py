"""Windows that are opened twice stay one."""

from driver.accessibility import BUTTON
from driver.application import Application
from driver.cases import PracticeCase, build_folder
from driver.display import press_keys
from driver.waiting import wait_until


class OpenedTwice(PracticeCase):
    def expect_one(self, title):
        self.assertEqual(len(self.tree.windows(title)), 1, title)

    def test_settings_and_logs(self):
        self.start_with_practice()
        for title, part in (("Settings", "Reveal app folder"), ("Logs", "Refresh")):
            with self.subTest(title):
                self.tree.press(title)
                self.tree.wait_for(BUTTON, part)
                self.tree.press(title)
                self.expect_one(title)
                # The window's own key closes it, and it can be opened anew.
                wait_until(lambda: "active" in self.tree.windows(title)[0].states, 5, "the window's focus")
                press_keys("ctrl+w")
                wait_until(lambda: not self.tree.windows(title), 5, "the end of the window")
                self.tree.press(title)
                self.tree.wait_for(BUTTON, part)
                self.expect_one(title)

    def test_by_keys_and_by_menu(self):
        self.start_with_practice()
        press_keys("ctrl+comma")
        self.tree.wait_for(BUTTON, "Reveal app folder")
        self.expect_one("Settings")
        self.tree.press("Logs")
        self.tree.wait_for(BUTTON, "Refresh")
        self.expect_one("Logs")

    def test_a_second_start_shows_the_first_one(self):
        self.start_with_practice()
        press_keys("alt+F4")
        self.tree.wait_gone(name="Tarnwick")
        self.assertTrue(self.application.running)
        second = Application(
            build_folder() / "app" / "tarnwick",
            self.folders.root / "second.log",
            {**self.folders.environment(), **self.tools.environment},
        )
        self.addCleanup(second.terminate)
        self.assertEqual(second.wait_for_end(10), 0)
        self.tree.wait_for(BUTTON, "Launch Linux")
        self.expect_one("Tarnwick")
