"""What an assistive tool is told of every control of every window."""

import socket

from driver.accessibility import BUTTON, LABEL, Gone
from driver.cases import PracticeCase, build_folder
from driver.desktop import DOCUMENT_ROLES, start, wait_for_desktop_screen
from driver.display import press_keys
from driver.practice import brew_only
from driver.report import report_file
from driver.waiting import wait_until
from driver.windows import CHECK_BOX, MENU_ITEM, log_text, open_logs, open_settings

# The roles of what a person can act on or is told the state of.
CONTROLS = {
    "check box", "check menu item", "combo box", "entry", "link", "list", "list item", "menu item", "page tab",
    "password text", "progress bar", "push button", "radio button", "slider", "spin box", "text", "toggle button",
}
WINDOWS = {"alert", "alert message", "dialog", "frame", "window"}
STATES_OF_INTEREST = ("checkable", "checked", "default", "editable", "expanded", "focusable", "focused", "read-only")


class AccessibilityReport(PracticeCase):
    """Walks through the program's states and writes down every control on show; each must have a name."""

    def setUp(self):
        super().setUp()
        self.lines = []
        self.nameless = []

    def describe(self, element, where):
        states = element.states
        words = [state for state in STATES_OF_INTEREST if state in states]
        if "enabled" not in states:
            words.append("disabled")
        if element.role in ("progress bar", "spin box"):
            words.append(f"value {element.value:g}")
        if element.role in CONTROLS and not element.name.strip():
            self.nameless.append(f"{where}: a {element.role}")
        return f"{element.role:14} {element.name!r:70} {', '.join(words)}"

    def add(self, element, where):
        try:
            # The desktop's page belongs to the desktop.
            if element.role in DOCUMENT_ROLES:
                return
            if element.showing and (element.role in CONTROLS or (element.role == LABEL and element.name)):
                self.lines.append("  " + self.describe(element, where))
        except Gone:
            return
        for child in element.children():
            self.add(child, where)

    def note(self, state):
        """Writes down what is on show now."""
        self.lines.append(f"\n== {state}")
        for window in self.tree.root().children():
            if window.showing:
                if window.role not in WINDOWS or not window.name.strip():
                    self.nameless.append(f"{state}: the window {window.role} {window.name!r}")
                self.lines.append(f"{window.role} {window.name!r}")
                self.add(window, state)

    def finish(self, name):
        report_file(name).write_text("\n".join(self.lines).lstrip() + "\n", encoding="utf-8")
        self.assertEqual(self.nameless, [], "controls without a name, and windows that do not say that they are")

    def test_home_desktop_and_menu(self):
        self.start_with_practice(pace=0.05, faults=("pull-hangs",))
        self.tree.wait_for(BUTTON, "Launch Linux")
        self.note("home, first run")
        press_keys("alt+t")
        self.tree.wait_for(MENU_ITEM, "Quit")
        self.note("home, menu open")
        press_keys("Escape")
        start(self.tree)
        self.tree.wait_for(text="layers downloaded", seconds=20)
        self.note("home, busy")
        self.assertIsNotNone(self.tree.find(text="Colima ready: done"))
        self.assertIsNotNone(self.tree.find(text="Ready: waiting"))
        self.tree.press("Cancel")
        self.tree.wait_for(text="Cancelled.")
        self.note("home, cancelled")
        self.application.terminate()

        self.tools.environment["TARNWICK_PRACTICE_FAULTS"] = ""
        self.start_program(self.tools.environment)
        self.tools.order("compose-fails")
        start(self.tree)
        self.tree.press("Show details", role=CHECK_BOX, seconds=20)
        self.note("home, failed, details open")
        self.tools.order()
        start(self.tree)
        wait_for_desktop_screen(self.tree)
        self.note("desktop")
        self.tree.press("Keys")
        self.tree.wait_for(text="Click inside the desktop first")
        self.note("desktop, keys help")
        self.tree.press("Keys")
        self.tree.press("Home")
        self.tree.wait_for(BUTTON, "Stop")
        self.note("home, running")
        self.finish("accessibility-main.txt")

    def test_offer_and_conflict(self):
        folder = brew_only(self.folders.root / "brew-only", build_folder())
        self.start_with_practice(pace=0.05, tool_folder=folder)
        holder = socket.create_server(("127.0.0.1", self.http_port))
        self.addCleanup(holder.close)
        start(self.tree)
        self.tree.wait_for(BUTTON, "Install")
        self.note("install offer")
        self.tree.press("Install")
        self.tree.wait_for(text="is already in use", seconds=30)
        self.note("port conflict")
        self.finish("accessibility-dialogs.txt")

    def test_settings_and_logs(self):
        self.start_with_practice(pace=0.05)
        open_settings(self.tree)
        self.note("settings")
        self.tree.press("Require a password", role=CHECK_BOX)
        self.tree.wait_for(name="Password, hidden")
        self.note("settings, password hidden")
        self.tree.press("Remove this flavor…")
        self.tree.wait_for(BUTTON, "Delete container and volume")
        self.note("settings, remove confirmation")
        self.tree.press("Cancel")
        open_logs(self.tree)
        wait_until(lambda: log_text(self.tree) not in ("", "Loading…"), 10, "the end of the loading")
        self.note("logs")
        self.finish("accessibility-windows.txt")


