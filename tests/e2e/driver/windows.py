"""Opening the program's windows by what a person sees."""

from .accessibility import BUTTON
from .display import press_keys, type_text
from .waiting import wait_until

MENU_ITEM = "menu item"
CHECK_BOX = "check box"
SPIN_BUTTON = "spin box"
TEXT = "text"


def open_settings(tree):
    """From the home screen; until the window can be used."""
    tree.press("Settings")
    return tree.wait_for(CHECK_BOX, "Require a password")


def open_logs(tree):
    """From the home screen; until the window can be used."""
    wait_until(lambda: tree.find(BUTTON, "Logs"), 10, "the button Logs").press()
    return tree.wait_for(BUTTON, "Refresh")


def log_text(tree):
    """What the logs window shows."""
    view = tree.find(name="Log of the desktop's container")
    return view.text if view else ""


def choose_from_menu(tree, title, keys="alt+t"):
    """Opens a menu of the main window by its keys and chooses an item."""
    press_keys(keys)
    tree.press(title, role=MENU_ITEM)


def replace_text(tree, name, text):
    """Types another text into a field, and leaves the field."""
    tree.wait_for(TEXT, name).focus()
    press_keys("ctrl+a")
    type_text(text)
    press_keys("Tab")


def answer_panel(tree, path):
    """Types a path into the open file panel and confirms it."""
    name = wait_until(lambda: tree.find(TEXT, "File name:") or tree.find(TEXT, "Directory:"), 10, "the panel")
    wait_until(lambda: name.focused, 5, "the panel's focus")
    press_keys("ctrl+a")
    type_text(str(path))
    press_keys("Return")
