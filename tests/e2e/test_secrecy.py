"""A whole session with a known password: it is nowhere but where it must be."""

from driver.cases import PracticeCase
from driver.desktop import start, wait_for_desktop_screen, wait_for_page
from driver.display import clipboard, press_keys
from driver.keyring import Keyring
from driver.secrecy import ProcessWatch, files_with, listening_sockets, open_to_others
from driver.waiting import wait_until
from driver.windows import CHECK_BOX, choose_from_menu, log_text, open_logs, open_settings

PAGE = "practice engine"
CLEARED_AFTER = 60


class Secrecy(PracticeCase):
    def setUp(self):
        super().setUp()
        self.keyring = Keyring(self.folders.root / "keyring")
        self.addCleanup(self.keyring.clean)

    def make_password(self):
        """Turns protection on, and gives the password that was made."""
        open_settings(self.tree)
        self.tree.press("Require a password", role=CHECK_BOX)
        self.tree.press("Show")
        password = self.tree.wait_for(text="Password: ").name.removeprefix("Password: ")
        self.tree.press("Hide")
        self.tree.wait_for(name="Password, hidden")
        return password

    def copy_password(self, password):
        self.tree.press("Copy")
        wait_until(lambda: clipboard() == password, 5, "the password on the clipboard")

    def close_window(self, title):
        wait_until(lambda: "active" in self.tree.windows(title)[0].states, 5, "the window's focus")
        press_keys("ctrl+w")
        wait_until(lambda: not self.tree.windows(title), 5, "the end of the window")

    def use_everything(self):
        self.tree.press("Home")
        open_logs(self.tree)
        wait_until(lambda: log_text(self.tree) not in ("", "Loading…"), 10, "the container's log")
        self.tree.press("Copy")
        wait_until(lambda: clipboard().strip() == log_text(self.tree).strip(), 5, "the log on the clipboard")
        self.assertNotIn(self.password, clipboard())
        self.close_window("Logs")
        choose_from_menu(self.tree, "Copy diagnostics", keys="alt+h")
        self.tree.wait_for(text="The diagnostics are copied.", seconds=20)
        self.assertNotIn(self.password, clipboard())
        open_settings(self.tree)
        self.tree.press("Update image and recreate")
        wait_for_desktop_screen(self.tree)
        wait_for_page(self.tree, PAGE)

    def expect_nowhere(self, watch):
        self.assertGreater(watch.looks, 100)
        self.assertEqual(watch.in_arguments, set())
        # The tool that makes the container, and the practice engine's server, which is the container.
        self.assertTrue(watch.in_environment, "the watch has not even seen the call that needs it")
        for arguments in watch.in_environment:
            self.assertRegex(arguments, r"/(docker|tarnwick-practice-desktop)( |$)|/tarnwick $")
        for folder in (self.folders.config, self.folders.data, self.folders.cache, self.folders.home):
            self.assertEqual(files_with(self.password, folder), [])
        self.assertNotIn(self.password, self.application.output())
        self.assertNotIn(self.password, self.tree.dump())

    def test_a_password_stays_where_it_belongs(self):
        self.start_with_practice(pace=0.05)
        self.password = self.make_password()
        watch = ProcessWatch(self.password)
        watch.start()
        self.addCleanup(watch.finish)
        self.copy_password(self.password)
        self.close_window("Settings")
        start(self.tree)
        wait_for_desktop_screen(self.tree)
        wait_for_page(self.tree, PAGE)
        self.assertEqual(listening_sockets(self.application.pid), [])
        self.use_everything()
        watch.finish()
        self.expect_nowhere(watch)
        for folder in (self.folders.config / "tarnwick", self.folders.data / "Tarnwick"):
            self.assertEqual(open_to_others(folder), [])
        limits = dict(line.split("  ", 1) for line in self.limits())
        self.assertEqual(limits["Max core file size"].split()[:2], ["0", "0"])

    def limits(self):
        with open(f"/proc/{self.application.pid}/limits", encoding="ascii") as file:
            return [line for line in file if "  " in line]

    def test_the_clipboard_forgets_it(self):
        self.start_with_practice()
        password = self.make_password()
        self.copy_password(password)
        wait_until(lambda: password not in clipboard(), CLEARED_AFTER + 15, "the end of the password on the clipboard")
