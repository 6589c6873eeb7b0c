"""From a cold engine to a page in the window, on a real Docker engine."""

import json
import os
import re
import subprocess

from driver.accessibility import BUTTON
from driver.desktop import start, wait_for_desktop_screen, wait_for_page
from driver.waiting import wait_until
from real_engine import CONTAINER, IMAGE, VOLUME, RealCase, docker, engine_answers

PASSWORD = "0123456789abcdef01234567"


def published_addresses():
    ports = json.loads(docker("inspect", "-f", "{{json .NetworkSettings.Ports}}", CONTAINER))
    return {name: {(entry["HostIp"], entry["HostPort"]) for entry in entries or ()} for name, entries in ports.items()}


def listeners(*ports):
    """The addresses on which anything listens on these ports."""
    table = subprocess.run(["ss", "-Hltn"], check=True, capture_output=True, text=True).stdout
    addresses = [line.split()[3] for line in table.splitlines()]
    return {address for address in addresses if address.rpartition(":")[2] in map(str, ports)}


class ColdStart(RealCase):
    def test_compose_from_nothing_to_the_page_and_back(self):
        self.start_on_engine(compose=True)
        self.assertFalse(engine_answers())
        start(self.tree)
        seen = set()

        def on_the_way():
            seen.update(re.findall(r"\d+ of (\d+) layers downloaded", " ".join(self.tree.texts())))
            return self.tree.find(BUTTON, "Fullscreen")

        wait_until(on_the_way, 120, "the desktop screen", pause=0.02)
        self.assertIn("7", seen, "the download's progress was not to be seen")
        self.assertEqual(self.colima_calls(), ["start --cpu 2 --memory 4 --disk 20"])
        page = wait_for_page(self.tree, "Volume")

        # Docker's own view of what was made.
        self.assertEqual(docker("inspect", "-f", "{{.Config.Image}}", CONTAINER), IMAGE)
        self.assertEqual(
            docker("inspect", "-f", '{{index .Config.Labels "com.docker.compose.project"}}', CONTAINER), "tarnwick"
        )
        self.assertEqual(
            published_addresses(), {"3000/tcp": {("127.0.0.1", "3000")}, "3001/tcp": {("127.0.0.1", "3001")}}
        )
        self.assertEqual(listeners(3000, 3001), {"127.0.0.1:3000", "127.0.0.1:3001"})
        self.assertEqual(docker("inspect", "-f", "{{.HostConfig.ShmSize}}", CONTAINER), str(1024**3))
        self.assertEqual(docker("inspect", "-f", "{{.HostConfig.RestartPolicy.Name}}", CONTAINER), "unless-stopped")

        # Stopped, taken away altogether, and started again: what was in its volume is there.
        self.tree.press("Stop")
        self.tree.wait_for(BUTTON, "Open desktop", seconds=30)
        self.wait_for_container_end()
        docker("rm", CONTAINER)
        start(self.tree)
        wait_for_desktop_screen(self.tree, 60)
        first_start = re.search(r"Volume (\w+)", page).group(1)
        wait_for_page(self.tree, f"Volume {first_start}, start 2.")
        self.assertEqual(docker("volume", "inspect", "-f", "{{.Name}}", VOLUME), VOLUME)

    def test_plain_run_without_a_compose_tool(self):
        self.start_on_engine(compose=False)
        start(self.tree)
        wait_for_desktop_screen(self.tree, 120)
        wait_for_page(self.tree, "start 1.")
        self.assertEqual(
            docker("inspect", "-f", '{{index .Config.Labels "com.docker.compose.project"}}', CONTAINER), ""
        )
        self.assertEqual(
            published_addresses(), {"3000/tcp": {("127.0.0.1", "3000")}, "3001/tcp": {("127.0.0.1", "3001")}}
        )
        self.tree.press("Stop")
        self.tree.wait_for(BUTTON, "Open desktop", seconds=30)
        start(self.tree)
        wait_for_desktop_screen(self.tree, 60)
        wait_for_page(self.tree, "start 2.")


class Password(RealCase):
    def setUp(self):
        super().setUp()
        # The item as the program itself keeps it.
        subprocess.run(
            ["secret-tool", "store", "--label=Tarnwick", "service", "Tarnwick", "account", "webtop-password"],
            input=PASSWORD, text=True, check=True, timeout=20,
        )

    def test_the_desktop_asks_and_the_window_signs_in(self):
        self.start_on_engine(compose=True, requirePassword=True)
        start(self.tree)
        wait_for_desktop_screen(self.tree, 120)
        wait_for_page(self.tree, "start 1.")
        self.assertEqual(self.fetch(3001)[0], 401)
        self.assertEqual(self.fetch(3001, f"linux:{PASSWORD}")[0], 200)

        # The password is in the container's environment and nowhere else that others could read.
        compose_file = self.folders.data / "Tarnwick" / "compose-alpine-xfce.yml"
        self.assertIn("- PASSWORD\n", compose_file.read_text())
        for folder, _, files in os.walk(self.folders.root):
            for name in files:
                with open(os.path.join(folder, name), "rb") as file:
                    self.assertNotIn(PASSWORD.encode(), file.read(), f"the password is in {folder}/{name}")
        self.assertNotIn(PASSWORD, " ".join(self.tree.texts()))


class Cancelled(RealCase):
    def test_cancel_during_a_real_download(self):
        self.start_on_engine(compose=True)
        start(self.tree)
        self.tree.wait_for(text="layers downloaded", seconds=60)
        self.tree.press("Cancel")
        self.tree.wait_for(text="Cancelled.", seconds=20)
        self.assertEqual(docker("ps", "-aq"), "")
