"""Finding and using the elements of a program's accessibility tree."""

import pyatspi
from gi.repository import GLib

from .waiting import wait_until

# Roles by the names used in the tests.
BUTTON = "push button"
LABEL = "label"


def _children(node):
    # Elements come and go while the tree is read; one that is gone is no child.
    try:
        count = node.childCount
    except (GLib.GError, LookupError, RuntimeError):
        return
    for index in range(count):
        try:
            child = node.getChildAtIndex(index)
        except (GLib.GError, LookupError, RuntimeError):
            continue
        if child is not None:
            yield child


def _role(node):
    try:
        return node.getRoleName()
    except (GLib.GError, LookupError, RuntimeError):
        return ""


def _name(node):
    try:
        return node.name or ""
    except (GLib.GError, LookupError, RuntimeError):
        return ""


def _text(node):
    try:
        text = node.queryText()
        return text.getText(0, text.characterCount)
    except (NotImplementedError, GLib.GError, LookupError, RuntimeError):
        return ""


def _has_state(node, state):
    try:
        return node.getState().contains(state)
    except (GLib.GError, LookupError, RuntimeError):
        return False


class Element:
    """One element; valid until the program removes it."""

    def __init__(self, node):
        self._node = node

    @property
    def role(self):
        return _role(self._node)

    @property
    def name(self):
        return _name(self._node)

    @property
    def text(self):
        """What a person reads there: the text when it has one, else the name."""
        return _text(self._node) or self.name

    @property
    def showing(self):
        return _has_state(self._node, pyatspi.STATE_SHOWING)

    @property
    def enabled(self):
        return _has_state(self._node, pyatspi.STATE_ENABLED)

    @property
    def checked(self):
        return _has_state(self._node, pyatspi.STATE_CHECKED)

    @property
    def value(self):
        """The value of a progress bar or a spin box, from 0 to its maximum."""
        return self._node.queryValue().currentValue

    @property
    def frame(self):
        """Left, top, width and height on the screen in pixels."""
        box = self._node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return box.x, box.y, box.width, box.height

    def press(self):
        """Does the element's first action: "Press" of a button, "Toggle" of a check box."""
        actions = self._node.queryAction()
        names = [actions.getName(index) for index in range(actions.nActions)]
        wanted = next((name for name in ("Press", "Toggle") if name in names), None)
        if wanted is None:
            raise AssertionError(f"{self.role} \"{self.name}\" cannot be pressed, only {names}")
        actions.doAction(names.index(wanted))

    def descendants(self):
        """All elements below this one, depth first."""
        for child in _children(self._node):
            yield Element(child)
            yield from Element(child).descendants()


class Tree:
    """The tree of the program with one process id. check_alive() raises when the program has ended."""

    def __init__(self, pid, check_alive):
        self._pid = pid
        self._check_alive = check_alive

    def root(self):
        """The program's element, or None while it has not announced itself."""
        self._check_alive()
        for node in _children(pyatspi.Registry.getDesktop(0)):
            try:
                if node.get_process_id() == self._pid:
                    return Element(node)
            except (GLib.GError, RuntimeError):
                continue
        return None

    def elements(self):
        root = self.root()
        return root.descendants() if root else iter(())

    def all(self, role=None, name=None, text=None):
        """The elements on show with this role, exact name, and text contained in what a person reads there."""
        return [
            element
            for element in self.elements()
            if (role is None or element.role == role)
            and (name is None or element.name == name)
            and (text is None or text in element.text)
            and element.showing
        ]

    def find(self, role=None, name=None, text=None):
        """The first such element, or None."""
        found = self.all(role, name, text)
        return found[0] if found else None

    def wait_for(self, role=None, name=None, text=None, seconds=10):
        wanted = " ".join(f"{key}={value!r}" for key, value in (("role", role), ("name", name), ("text", text)) if value)
        return wait_until(lambda: self.find(role, name, text), seconds, wanted)

    def wait_gone(self, role=None, name=None, text=None, seconds=10):
        wait_until(lambda: not self.find(role, name, text), seconds, f"the end of {role} {name} {text}")

    def press(self, name, role=BUTTON, seconds=10):
        """Waits until the button is there and can be pressed, and presses it."""

        def ready():
            return next((element for element in self.all(role, name) if element.enabled), None)

        wait_until(ready, seconds, f"an enabled {role} {name!r}").press()

    def texts(self):
        """Everything readable on show, in tree order."""
        return [element.text for element in self.elements() if element.showing and element.text]

    def dump(self):
        """The whole tree as indented text, for the reports of failed tests."""
        lines = []

        def add(element, depth):
            state = "" if element.showing else " (hidden)"
            value = element.text.replace("\n", "⏎")[:120]
            lines.append(f"{'  ' * depth}{element.role} {value!r}{state}")
            for node in _children(element._node):
                add(Element(node), depth + 1)

        try:
            root = self.root()
        except AssertionError as ended:
            return str(ended)
        if root:
            add(root, 0)
        return "\n".join(lines) or "(the program has no accessibility tree)"
