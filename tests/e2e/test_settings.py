"""What is changed in the settings window reaches the tools and the desktop."""

import base64
import http.client
import ssl

from driver.accessibility import BUTTON
from driver.application import free_port_pair, ports_are_free
from driver.cases import PracticeCase, build_folder
from driver.desktop import main_button, start, wait_for_desktop_screen, wait_for_page
from driver.display import press_keys
from driver.keyring import Keyring
from driver.practice import RecordedTools
from driver.waiting import wait_until
from driver.windows import CHECK_BOX, SPIN_BUTTON, TEXT, answer_panel, open_settings, replace_text

PAGE = "practice engine"


def status_of_page(port, password=None):
    """What the desktop's server answers to a browser, with or without the sign-in."""
    trusting = ssl._create_unverified_context()
    connection = http.client.HTTPSConnection("127.0.0.1", port, timeout=10, context=trusting)
    headers = {}
    if password is not None:
        headers["Authorization"] = "Basic " + base64.b64encode(f"linux:{password}".encode()).decode()
    connection.request("GET", "/", headers=headers)
    status = connection.getresponse().status
    connection.close()
    return status


class SettingsCase(PracticeCase):
    def start_recorded(self, **options):
        self.recorded = RecordedTools(self.folders.root / "recorded", build_folder())
        self.start_with_practice(pace=0.05, tool_folder=self.recorded.folder, **options)

    def launch(self):
        start(self.tree)
        wait_for_desktop_screen(self.tree)

    def home(self):
        self.tree.press("Home")
        self.tree.wait_for(BUTTON, "Open desktop")

    def apply(self):
        self.tree.press("Apply settings now")
        wait_for_desktop_screen(self.tree)

    def container(self):
        return self.tools.remembered()["container"]

    def settings(self):
        return self.folders.read_settings()


class Rebuilding(SettingsCase):
    def test_update_downloads_again_and_makes_a_new_container(self):
        self.start_recorded()
        self.launch()
        wait_for_page(self.tree, PAGE)
        first = self.container()["id"]
        self.home()
        open_settings(self.tree)
        self.tree.press("Update image and recreate")
        wait_for_desktop_screen(self.tree)
        wait_for_page(self.tree, PAGE)
        self.assertNotEqual(self.container()["id"], first)
        pulls = [call for call in self.recorded.calls("docker") if call.startswith("pull ")]
        self.assertEqual(len(pulls), 2)

    def test_changed_ports_are_applied(self):
        self.start_recorded()
        self.launch()
        self.home()
        old_ports = self.http_port, self.https_port
        new_http, new_https = free_port_pair()
        open_settings(self.tree)
        replace_text(self.tree, "HTTP port", str(new_http))
        # As by an assistive tool that dictates: not a key is pressed.
        self.tree.wait_for(TEXT, "HTTPS port").set_text(str(new_https))
        wait_until(
            lambda: (self.settings()["httpPort"], self.settings()["httpsPort"]) == (new_http, new_https),
            5, "the new ports in the settings",
        )
        self.assertEqual(self.container()["request"]["httpPort"], old_ports[0], "a change was applied unasked")
        self.apply()
        wait_for_page(self.tree, PAGE)
        self.assertEqual(self.container()["request"]["httpPort"], new_http)
        self.assertEqual(status_of_page(new_https), 200)
        self.assertTrue(ports_are_free(*old_ports))

    def test_machine_sizes_reach_colima(self):
        self.start_recorded()
        open_settings(self.tree)
        self.tree.wait_for(SPIN_BUTTON, "CPUs").set_value(3)
        wait_until(lambda: self.settings().get("cpu") == 3, 5, "the number in the settings")
        self.launch()
        self.assertEqual(self.tools.remembered()["cpu"], 3)
        self.home()
        self.tree.press("Stop Colima so new settings apply")
        self.tree.wait_for(
            text="Colima was stopped. Press the main button to start it again with the new settings.", seconds=20
        )
        self.assertFalse(self.tools.remembered()["engineUp"])


class Password(SettingsCase):
    def setUp(self):
        super().setUp()
        self.keyring = Keyring(self.folders.root / "keyring")
        self.addCleanup(self.keyring.clean)

    def shown_password(self):
        name = self.tree.wait_for(text="Password: ").name
        return name.removeprefix("Password: ")

    def paste_into_port(self, expected):
        """Pastes as a person would, into a field that takes numbers only, and leaves it as it was."""
        field = self.tree.wait_for(TEXT, "HTTP port")
        field.focus()
        press_keys("ctrl+a", "ctrl+v")
        wait_until(lambda: field.text == expected, 5, "the pasted password")
        press_keys("Tab")
        wait_until(lambda: field.text == str(self.http_port), 5, "the port in its field")

    def test_on_shown_copied_renewed_and_applied(self):
        self.start_recorded()
        self.launch()
        self.assertEqual(status_of_page(self.https_port), 200)
        self.home()
        open_settings(self.tree)
        self.tree.press("Require a password", role=CHECK_BOX)
        self.tree.wait_for(name="Password, hidden")
        self.tree.press("Show")
        first = self.shown_password()
        self.assertGreaterEqual(len(first), 12)
        self.tree.press("Copy")
        self.paste_into_port(first)
        self.tree.press("New password")
        second = wait_until(lambda: self.shown_password() != first and self.shown_password(), 10, "a new password")
        self.tree.press("Hide")
        self.tree.wait_for(name="Password, hidden")
        self.assertNotIn(second, self.tree.dump())

        self.apply()
        # The view signs in by itself; nobody else gets in.
        wait_for_page(self.tree, PAGE)
        self.assertEqual(status_of_page(self.https_port), 401)
        self.assertEqual(status_of_page(self.https_port, first), 401)
        self.assertEqual(status_of_page(self.https_port, second), 200)
        self.expect_nowhere(first, second)

    def expect_nowhere(self, *passwords):
        """Neither in an argument, nor in a file of the program, nor in what it prints."""
        texts = {tool: "\n".join(self.recorded.calls(tool)) for tool in ("docker", "colima", "brew")}
        texts["its output"] = self.application.output()
        for folder in (self.folders.config, self.folders.data):
            for file in folder.rglob("*"):
                if file.is_file():
                    texts[str(file)] = file.read_text(errors="replace")
        for password in passwords:
            for place, text in texts.items():
                self.assertNotIn(password, text, place)

    def test_survives_a_restart_of_the_program(self):
        self.start_recorded()
        open_settings(self.tree)
        self.tree.press("Require a password", role=CHECK_BOX)
        self.tree.press("Show")
        first = self.shown_password()
        self.application.terminate()
        self.start_program(self.tools.environment)
        open_settings(self.tree)
        self.tree.wait_for(name="Password, hidden")
        self.tree.press("Show")
        self.assertEqual(self.shown_password(), first)


class SharedFolder(SettingsCase):
    def test_chosen_and_cleared(self):
        self.start_recorded()
        folder = self.folders.home / "Pictures of ours"
        folder.mkdir()
        open_settings(self.tree)
        self.tree.press("Share a Mac folder…")
        self.tree.wait_for(BUTTON, "Share")
        self.tree.press("Cancel")
        self.tree.wait_gone(BUTTON, "Share")
        self.assertIsNone(self.tree.find(BUTTON, "Stop sharing"))
        self.tree.press("Share a Mac folder…")
        answer_panel(self.tree, folder)
        self.tree.wait_for(BUTTON, "Stop sharing")
        self.assertEqual(self.settings()["shareFolder"], str(folder))
        self.launch()
        self.assertEqual(self.tools.remembered()["mount"], f"{folder}:w")
        self.assertEqual(self.container()["request"]["sharePath"], str(folder))
        self.home()
        self.tree.press("Stop sharing")
        self.tree.wait_gone(BUTTON, "Stop sharing")
        self.assertEqual(self.settings()["shareFolder"], "")


class RemoveFlavor(SettingsCase):
    def ask(self):
        open_settings(self.tree)
        self.tree.press("Remove this flavor…")
        self.tree.wait_for(text="the volume “tarnwick-config-alpine-xfce” with every file")

    def volume(self):
        return self.folders.tools_state / "volumes" / "tarnwick-config-alpine-xfce"

    def test_cancelled(self):
        self.start_recorded()
        self.launch()
        self.home()
        self.ask()
        self.tree.press("Cancel")
        self.tree.wait_gone(BUTTON, "Delete container and volume")
        self.assertTrue(self.tools.container_runs())
        self.assertTrue(self.volume().exists())

    def test_confirmed(self):
        self.start_recorded()
        self.launch()
        self.home()
        self.ask()
        self.tree.press("Delete container and volume")
        self.tree.wait_for(
            text="Removed the container (if it used Standard) and the volume tarnwick-config-alpine-xfce.", seconds=20
        )
        self.tree.wait_for(BUTTON, "Launch Linux")
        self.assertTrue(main_button(self.tree).enabled)
        self.assertFalse(self.tools.container_runs())
        self.assertFalse(self.volume().exists())
        self.assertEqual(self.settings()["launchedFlavors"], [])
