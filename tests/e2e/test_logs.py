"""The logs window: refreshed, followed, copied, saved, and saved where there is no room."""

import os
import subprocess

from driver.accessibility import BUTTON
from driver.cases import PracticeCase
from driver.desktop import start, wait_for_desktop_screen
from driver.display import press_keys
from driver.waiting import wait_until
from driver.windows import CHECK_BOX, TEXT, answer_panel, log_text, open_logs

FIRST_LINE = "Practice desktop: starting."


class Logs(PracticeCase):
    def open_with_desktop(self):
        self.start_with_practice(pace=0.05)
        start(self.tree)
        wait_for_desktop_screen(self.tree)
        self.tree.press("Home")
        open_logs(self.tree)
        wait_until(lambda: FIRST_LINE in log_text(self.tree), 10, "the container's log")

    def write_line(self, line):
        """Writes into the container's log, as a program in the desktop would."""
        with open(self.folders.tools_state / "container.log", "a", encoding="utf-8") as log:
            log.write(line + "\n")

    def test_without_a_container(self):
        self.start_with_practice()
        self.tools.run("colima", "start")
        open_logs(self.tree)
        wait_until(lambda: log_text(self.tree) not in ("", "Loading…"), 10, "the end of the loading")
        self.assertIn("No such container", log_text(self.tree))

    def test_refreshed_and_followed(self):
        self.open_with_desktop()
        self.write_line("a line that nobody asked for")
        press_keys("Shift_L")
        self.assertNotIn("nobody asked for", log_text(self.tree))
        self.tree.press("Refresh")
        wait_until(lambda: "nobody asked for" in log_text(self.tree), 5, "the refreshed log")
        self.tree.press("Follow", role=CHECK_BOX)
        for number in (1, 2):
            self.write_line(f"followed line {number}")
            wait_until(lambda: f"followed line {number}" in log_text(self.tree), 5, "the followed log")

    def test_copied(self):
        self.open_with_desktop()
        self.tree.press("Copy")
        # Pasted where text can be pasted: the name in the save panel, which keeps one line of it.
        self.tree.press("Save…")
        name = self.tree.wait_for(TEXT, "File name:")
        wait_until(lambda: name.focused, 5, "the panel's focus")
        press_keys("ctrl+a", "ctrl+v")
        wait_until(lambda: name.text.startswith(FIRST_LINE), 5, "the pasted log")

    def save_to(self, path):
        self.tree.press("Save…")
        self.assertEqual(self.tree.wait_for(TEXT, "File name:").text, "tarnwick-logs.txt")
        answer_panel(self.tree, path)

    def test_saved(self):
        self.open_with_desktop()
        self.write_line("ein Umlaut: ä")
        self.tree.press("Refresh")
        wait_until(lambda: "Umlaut" in log_text(self.tree), 5, "the refreshed log")
        target = self.folders.home / "saved.txt"
        self.save_to(target)
        wait_until(target.exists, 5, "the saved file")
        self.assertEqual(target.read_text(encoding="utf-8").rstrip("\n"), log_text(self.tree).rstrip("\n"))

    def full_disk(self):
        """A folder on a disk without room, with the log that was saved there before."""
        folder = self.folders.root / "full"
        folder.mkdir()
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "none", str(folder)], capture_output=True)
        if mounted.returncode != 0:
            self.skipTest("a full disk needs the right to mount one")
        self.addCleanup(subprocess.run, ["umount", "-l", str(folder)], check=True)
        old = folder / "saved.txt"
        old.write_text("the log of yesterday\n")
        with open(folder / "filling", "wb", buffering=0) as filling:
            try:
                while True:
                    filling.write(bytes(4096))
            except OSError:
                pass
        return old

    def test_saved_to_a_full_disk_keeps_the_old_file(self):
        old = self.full_disk()
        self.open_with_desktop()
        self.save_to(old)
        self.tree.press("Yes")
        self.tree.wait_gone(BUTTON, "Yes")
        # The failure is silent; a second save shows that the first one is over.
        other = self.folders.home / "elsewhere.txt"
        self.save_to(other)
        wait_until(other.exists, 5, "the second file")
        self.assertEqual(old.read_text(), "the log of yesterday\n")
        self.assertEqual(sorted(os.listdir(old.parent)), ["filling", "saved.txt"])
