"""A port that another program holds."""

import socket

from driver.accessibility import BUTTON
from driver.application import free_port_pair
from driver.cases import PracticeCase
from driver.desktop import main_button, start, wait_for_desktop_screen, wait_for_page
from driver.display import click, press_keys
from driver.waiting import wait_until


class PortConflict(PracticeCase):
    def meet_conflict(self):
        """Starts a launch that finds its port taken; the sheet's accepting button."""
        self.start_with_practice(pace=0.05)
        holder = socket.create_server(("127.0.0.1", self.http_port))
        self.addCleanup(holder.close)
        start(self.tree)
        self.tree.wait_for(text=f"Port {self.http_port} is already in use", seconds=20)
        self.tree.wait_for(text=f"-iTCP:{self.http_port}):")
        # The table of lsof names this very process.
        self.tree.wait_for(text="LISTEN")
        return wait_until(self.accepting_button, 5, "the button that accepts")

    def accepting_button(self):
        return next((button for button in self.tree.all(BUTTON) if button.name.startswith("Use ")), None)

    def expect_launch_on_suggested_ports(self, title):
        http_port, https_port = (int(word) for word in title.split() if word.isdigit())
        wait_for_desktop_screen(self.tree)
        wait_for_page(self.tree, "practice engine")
        settings = self.folders.read_settings()
        self.assertEqual((settings["httpPort"], settings["httpsPort"]), (http_port, https_port))
        request = self.tools.remembered()["container"]["request"]
        self.assertEqual((request["httpPort"], request["httpsPort"]), (http_port, https_port))

    def test_accepted_by_mouse(self):
        button = self.meet_conflict()
        title = button.name
        click(button)
        self.expect_launch_on_suggested_ports(title)

    def test_accepted_by_return(self):
        title = self.meet_conflict().name
        press_keys("Return")
        self.expect_launch_on_suggested_ports(title)

    def test_cancelled(self):
        self.meet_conflict()
        self.tree.press("Cancel")
        self.tree.wait_gone(text="is already in use")
        wait_until(lambda: main_button(self.tree).enabled, 5, "the main button")
        self.assertEqual(self.folders.read_settings()["httpPort"], self.http_port)
        self.assertFalse(self.tools.container_runs())
        self.assertIsNone(self.tree.find(text="Colima ready"))
