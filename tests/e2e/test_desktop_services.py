"""The program in desktops that offer much, little, or nothing but trouble beside the display."""

import os
import subprocess
import time

from driver.accessibility import BUTTON
from driver.cases import PracticeCase
from driver.desktop import start, wait_for_desktop_screen
from driver.display import press_keys
from driver.keyring import Keyring
from driver.services import DesktopService, SilentBus
from driver.tray import TrayHost
from driver.waiting import wait_until
from driver.windows import CHECK_BOX, open_settings
from driver.x11 import EmbeddingTray, Pulse

LONGEST_STALL = 0.1


class ServicesCase(PracticeCase):
    def window(self, title="Tarnwick", seconds=20):
        """The number of the program's window on the display; the accessibility tree needs a bus, this does not."""

        def found():
            search = ["xdotool", "search", "--onlyvisible", "--pid", str(self.application.pid), "--name", f"^{title}$"]
            return subprocess.run(search, capture_output=True, text=True, timeout=10).stdout.split()

        return int(wait_until(found, seconds, f"the window {title}")[0])

    def windows(self):
        return self.tree.windows("Tarnwick")

    def close_window(self):
        subprocess.run(["xdotool", "windowactivate", "--sync", str(self.window())], check=True, timeout=10)
        press_keys("alt+F4")
        wait_until(lambda: not self.windows(), 10, "the end of the window")

    def expect_alive(self, window, provoke=lambda: None):
        """No wait of the program's is as long as the limit, for longer than anybody waits for a service. What the rest
        of the machine does can make a window wait once, but not each time."""
        pulse = Pulse(window)
        self.addCleanup(pulse.close)
        stalls = []
        for _ in range(3):
            provoke()
            stalls.append(pulse.longest_wait(4))
            if stalls[-1] < LONGEST_STALL:
                return
        self.fail(f"the window did not answer for {stalls} seconds")

    def service(self, kind):
        service = DesktopService(kind, self.folders.root)
        self.addCleanup(service.close)
        return service


class TrayHosts(ServicesCase):
    def tray(self):
        tray = TrayHost()
        self.addCleanup(tray.close)
        return tray

    def test_late_dying_and_returning_beside_a_window(self):
        self.start_with_practice()
        first = self.tray()
        wait_until(first.items, 10, "the item in a tray that came late")
        self.assertEqual(first.titles()[0], "Tarnwick: Stopped")
        first.close()
        # Longer than it waits for another one.
        time.sleep(6)
        self.assertEqual(len(self.windows()), 1)
        second = self.tray()
        wait_until(second.items, 10, "the item in the next tray")
        self.assertEqual(second.titles()[0], "Tarnwick: Stopped")

    def test_dying_and_returning_without_a_window(self):
        first = self.tray()
        self.start_with_practice()
        wait_until(first.items, 10, "the item")
        self.close_window()
        # A panel that is started again.
        first.close()
        again = self.tray()
        wait_until(again.items, 10, "the item after the panel's restart")
        time.sleep(6)
        self.assertEqual(self.windows(), [])

        again.close()
        wait_until(self.windows, 15, "the window that opens by itself")
        last = self.tray()
        wait_until(last.items, 10, "the item in the last tray")
        self.close_window()
        last.choose("Open desktop")
        wait_for_desktop_screen(self.tree)

    def test_of_the_old_kind(self):
        self.start_with_practice()
        time.sleep(1)
        tray = EmbeddingTray()
        wait_until(tray.icons, 10, "the icon in a tray that came late")
        self.close_window()
        tray.close()
        wait_until(self.windows, 15, "the window that opens by itself")
        again = EmbeddingTray()
        self.addCleanup(again.close)
        wait_until(again.icons, 10, "the icon in the next tray")


class Messages(ServicesCase):
    def test_the_end_of_a_launch_is_told_and_a_click_opens_the_window(self):
        tray = TrayHost()
        self.addCleanup(tray.close)
        service = self.service("notifications")
        self.start_with_practice(pace=0.1)
        start(self.tree)
        wait_until(lambda: tray.items() and tray.titles()[0] == "Tarnwick: Starting…", 10, "the start")
        self.close_window()
        told = wait_until(lambda: service.calls("Notify"), 60, "the message")
        self.assertEqual(told[0][3:5], ["The desktop is running", "Standard is ready."])
        service.click("org.freedesktop.Notifications", 1)
        wait_for_desktop_screen(self.tree)
        self.assertEqual(len(service.calls("Notify")), 1)

    def test_what_the_user_sees_is_not_told(self):
        service = self.service("notifications")
        self.start_with_practice(pace=0.05)
        start(self.tree)
        wait_for_desktop_screen(self.tree)
        time.sleep(1)
        self.assertEqual(service.calls("Notify"), [])


class Sleep(ServicesCase):
    def setUp(self):
        super().setUp()
        self.login = self.service("login")

    def start_download(self):
        self.prepare_practice(pace=1)
        system_bus = {"DBUS_SYSTEM_BUS_ADDRESS": os.environ["DBUS_SESSION_BUS_ADDRESS"]}
        self.start_program({**self.tools.environment, **system_bus})
        self.assertEqual(self.login.calls("Inhibit"), [])
        start(self.tree)
        wait_until(lambda: self.login.calls("Inhibit"), 40, "the request to stay awake")
        self.assertTrue(self.tree.find(text="Downloading"))
        self.assertEqual(self.login.told("released"), [])

    def expect_released(self):
        wait_until(lambda: self.login.told("released"), 10, "the end of the request")

    def test_is_kept_away_until_a_cancel(self):
        self.start_download()
        self.tree.press("Cancel")
        self.expect_released()
        self.tree.wait_for(text="Cancelled.")

    def test_is_kept_away_until_the_program_quits(self):
        self.start_download()
        self.application.terminate()
        self.expect_released()

    def test_is_kept_away_until_the_program_is_killed(self):
        self.start_download()
        self.application.signal(9)
        self.expect_released()


class WithoutBus(ServicesCase):
    def start_on(self, address):
        self.prepare_practice(requirePassword=True)
        environment = {**self.tools.environment, "DBUS_SESSION_BUS_ADDRESS": address}
        self.start_program(environment, ["--settings"], window=None)

    def test_that_is_not_there(self):
        self.start_on(f"unix:path={self.folders.root}/none")
        self.expect_alive(self.window("Settings"))

    def test_that_never_answers(self):
        bus = SilentBus(self.folders.root / "bus")
        self.addCleanup(bus.close)
        self.start_on(bus.address)
        self.expect_alive(self.window("Settings", seconds=10))

    def test_that_is_not_even_named(self):
        # An empty folder in place of the one in which a bus of the user's would be looked for.
        self.folders.root.joinpath("runtime").mkdir(mode=0o700)
        self.prepare_practice(requirePassword=True)
        environment = {**self.tools.environment, "XDG_RUNTIME_DIR": str(self.folders.root / "runtime")}
        address = os.environ.pop("DBUS_SESSION_BUS_ADDRESS")
        try:
            self.start_program(environment, ["--settings"], window=None)
        finally:
            os.environ["DBUS_SESSION_BUS_ADDRESS"] = address
        self.expect_alive(self.window("Settings"))


class SecretStore(ServicesCase):
    NOT_KEPT = "At present the keychain does not answer or is locked"

    def setUp(self):
        super().setUp()
        self.keyring = Keyring(self.folders.root / "keyring")
        self.addCleanup(self.keyring.clean)

    def start_with_settings(self, **settings):
        self.start_with_practice(**settings)
        open_settings(self.tree)
        return self.window("Settings")

    def toggle(self):
        self.tree.press("Require a password", role=CHECK_BOX)

    def shown_password(self):
        if self.tree.find(BUTTON, "Show"):
            self.tree.press("Show")
        return self.tree.wait_for(text="Password: ").name.removeprefix("Password: ")

    def keep_a_password(self):
        """Has the program make and store one, and end."""
        self.start_with_settings()
        self.toggle()
        password = self.shown_password()
        wait_until(lambda: self.keyring.passwords() == [password], 10, "the stored password")
        self.application.terminate()
        return password

    def test_that_is_locked_is_used_when_it_is_unlocked(self):
        kept = self.keep_a_password()
        self.keyring.lock()
        window = self.start_with_settings(requirePassword=True)
        self.tree.wait_for(text=self.NOT_KEPT)
        self.expect_alive(window)
        # Turned off and on, there is a password for this session.
        self.toggle()
        self.toggle()
        of_session = wait_until(self.shown_password, 10, "a password for the session")
        self.assertNotEqual(of_session, kept)
        self.tree.wait_for(text=self.NOT_KEPT)

        self.keyring.unlock()
        wait_until(lambda: self.shown_password() == kept, 10, "the stored password")
        self.tree.wait_gone(text=self.NOT_KEPT)
        self.assertEqual(self.keyring.passwords(), [kept])

    def test_that_never_answers(self):
        kept = self.keep_a_password()
        self.keyring.freeze()
        window = self.start_with_settings(requirePassword=True)
        self.expect_alive(window)
        self.tree.wait_for(text=self.NOT_KEPT)

        def ask():
            self.toggle()
            self.toggle()

        self.expect_alive(window, ask)
        self.keyring.thaw()
        self.assertEqual(self.keyring.passwords(), [kept])

    def test_that_is_not_there(self):
        self.keyring.clean()
        window = self.start_with_settings()
        self.toggle()
        self.tree.wait_for(text=self.NOT_KEPT)
        self.expect_alive(window)
        password = self.shown_password()
        self.keyring = Keyring(self.folders.root / "later")
        self.addCleanup(self.keyring.clean)
        self.tree.wait_gone(text=self.NOT_KEPT)
        wait_until(lambda: self.keyring.passwords() == [password], 10, "the password in the store that came up")
