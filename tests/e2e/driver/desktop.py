"""What the tests do with the program's screens, in the words on them."""

import time

from .accessibility import BUTTON, Gone
from .waiting import wait_until

# In a page the web engine announces the document itself under one of these roles.
DOCUMENT_ROLES = ("web document", "document web", "document frame")

# A press takes effect a moment later, and a finished start shows its desktop a moment later.
IDLE_SECONDS = 3


def main_button(tree):
    """The home screen's main button, whatever its title is at the moment."""
    for title in ("Launch Linux", "Open desktop", "Starting…", "Installing…"):
        found = tree.find(BUTTON, title)
        if found:
            return found
    return None


def _enabled(button):
    try:
        return button is not None and button.enabled
    except Gone:
        return False


def main_button_ready(tree):
    """Whether the main button is there and can be pressed."""
    return _enabled(main_button(tree))


def start(tree):
    """Presses the main button as soon as it is there and can be pressed."""
    wait_until(lambda: main_button_ready(tree), 20, "the main button")
    main_button(tree).press()


def wait_for_desktop_screen(tree, seconds=60, on_the_way=None):
    """Until the desktop screen's toolbar is on show; on_the_way() is called again and again meanwhile. A start that
    has come to an end without it ends the wait too: the error then holds what is to be read on the screen."""
    idle_since = None

    def there():
        nonlocal idle_since
        if tree.find(BUTTON, "Fullscreen"):
            return True
        if on_the_way:
            on_the_way()
        if not main_button_ready(tree):
            idle_since = None
        elif idle_since is None:
            idle_since = time.monotonic()
        elif time.monotonic() - idle_since > IDLE_SECONDS:
            raise AssertionError("the start ended without a desktop; on the screen:\n" + "\n".join(tree.texts()))
        return False

    wait_until(there, seconds, "the desktop screen")


def _documents(tree):
    def is_page(element):
        try:
            return element.role in DOCUMENT_ROLES and element.showing
        except Gone:
            return False

    return [element for element in tree.elements() if is_page(element)]


def wait_for_document(tree, seconds=60):
    """Until the web view holds a page with something in it; the page's element."""
    return wait_until(
        lambda: next((page for page in _documents(tree) if page.children()), None), seconds, "the page"
    )


def page_texts(tree):
    """What is to be read on the page in the web view, element by element."""
    found = []
    for page in _documents(tree):
        for part in page.descendants():
            try:
                found.append(part.text)
            except Gone:
                continue
    return found


def wait_for_page(tree, text, seconds=30):
    """Until the page in the web view shows this text; the whole text of the element that does."""
    return wait_until(
        lambda: next((found for found in page_texts(tree) if text in found), None), seconds, f"the page with {text!r}"
    )
