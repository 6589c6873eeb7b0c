"""A computer with nothing but Homebrew, and every way to stop what takes long."""

from driver.accessibility import BUTTON
from driver.cases import PracticeCase, build_folder
from driver.desktop import main_button, start, wait_for_desktop_screen, wait_for_page
from driver.practice import brew_only
from driver.waiting import wait_until

HINT = "Colima and Docker are not installed. The button will offer to install them."
OFFER = "Install Colima and Docker?"


class NothingInstalled(PracticeCase):
    def start_with_brew_only(self, **options):
        folder = brew_only(self.folders.root / "brew-only", build_folder())
        self.start_with_practice(tool_folder=folder, **options)

    def test_first_run_installs_launches_and_shows_the_desktop(self):
        self.start_with_brew_only(pace=0.2)
        self.tree.wait_for(text=HINT)
        start(self.tree)
        self.tree.wait_for(text=OFFER)
        self.tree.wait_for(text="This runs “brew install colima docker” with Homebrew.")
        self.tree.press("Install")
        self.tree.wait_for(BUTTON, "Installing…")
        self.assertIsNone(self.tree.find(text="Colima ready"), "the checklist shows while tools are installed")
        wait_for_desktop_screen(self.tree)
        wait_for_page(self.tree, "practice engine")
        self.tree.press("Home")
        self.tree.wait_for(BUTTON, "Open desktop")
        self.assertIsNone(self.tree.find(text=HINT))

    def test_declining_the_offer_changes_nothing(self):
        self.start_with_brew_only()
        start(self.tree)
        self.tree.wait_for(text=OFFER)
        self.tree.press("Cancel")
        self.tree.wait_gone(text=OFFER)
        self.assertTrue(main_button(self.tree).enabled)
        self.assertIsNotNone(self.tree.find(text=HINT))
        # And it can be asked for again.
        start(self.tree)
        self.tree.wait_for(text=OFFER)


class Cancel(PracticeCase):
    def cancel(self):
        self.tree.press("Cancel")
        self.tree.wait_for(text="Cancelled.", seconds=10)
        wait_until(lambda: main_button(self.tree).enabled, 5, "the main button")
        self.tree.wait_gone(text="Colima ready")
        self.assertIsNone(self.tree.find(name="Show details"), "a cancelled run is shown as a failed one")

    def test_cancel_during_the_installation(self):
        folder = brew_only(self.folders.root / "brew-only", build_folder())
        self.start_with_practice(faults=("brew-hangs",), tool_folder=folder)
        start(self.tree)
        self.tree.press("Install")
        self.tree.wait_for(text="Installing with Homebrew (brew install colima docker)…")
        self.cancel()
        self.assertFalse((folder / "docker").exists())

    def test_cancel_during_the_start_of_colima(self):
        self.start_with_practice(faults=("colima-start-hangs",))
        start(self.tree)
        self.tree.wait_for(text="Starting Colima (the first start sets up a small Linux VM)…")
        self.cancel()
        self.assertNotEqual(self.tools.run("docker", "info").returncode, 0)
        # What was cancelled can be started again.
        start(self.tree)
        self.tree.wait_for(text="Starting Colima")
        self.assertIsNone(self.tree.find(text="Cancelled."))

    def test_cancel_during_a_download_that_stands_still(self):
        self.start_with_practice(faults=("pull-hangs",))
        start(self.tree)
        self.tree.wait_for(text="layers downloaded", seconds=30)
        self.cancel()
        self.assertEqual(self.tools.remembered()["images"], [])
