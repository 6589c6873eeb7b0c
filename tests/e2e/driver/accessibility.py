"""Finding and using the elements of a program's accessibility tree.

Speaks to the accessibility bus directly and asks for all children of an element at once. Counting them first and asking
for them one by one, as the usual libraries do, makes Qt 6.4 crash when a scroll bar goes away in between.
"""

from gi.repository import Gio, GLib

from .waiting import wait_until

# Roles by the names used in the tests.
BUTTON = "push button"
LABEL = "label"

_ACCESSIBLE = "org.a11y.atspi.Accessible"
_ACTION = "org.a11y.atspi.Action"
_COMPONENT = "org.a11y.atspi.Component"
_EDITABLE_TEXT = "org.a11y.atspi.EditableText"
_TEXT = "org.a11y.atspi.Text"
_VALUE = "org.a11y.atspi.Value"
_CALL_MILLISECONDS = 5000
_SCREEN_COORDINATES = 0

# Bits of the state set, by the protocol's numbers.
_CHECKED, _ENABLED, _EXPANDED, _FOCUSED, _SHOWING = 4, 8, 10, 12, 25
_STATE_NAMES = {
    1: "active", 4: "checked", 7: "editable", 8: "enabled", 9: "expandable", 10: "expanded", 11: "focusable",
    12: "focused", 16: "modal", 23: "selected", 25: "showing", 39: "default", 41: "checkable", 43: "read-only",
}


class Gone(Exception):
    """The element is not there any more, or does not answer."""


class _Bus:
    """The accessibility bus of this session."""

    def __init__(self):
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address = session.call_sync(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None, Gio.DBusCallFlags.NONE, 20000
        ).unpack()[0]
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._connection = Gio.DBusConnection.new_for_address_sync(address, flags)

    def call(self, name, path, interface, method, arguments=None):
        try:
            answer = self._connection.call_sync(
                name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, _CALL_MILLISECONDS
            )
        except GLib.GError as error:
            raise Gone(str(error)) from None
        return answer.unpack()

    def pid_of(self, name):
        bus = "org.freedesktop.DBus"
        return self.call(bus, "/org/freedesktop/DBus", bus, "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))[0]


class Element:
    """One element; valid until the program removes it. What is asked of it afterwards raises Gone."""

    def __init__(self, bus, name, path):
        self._bus = bus
        self._name = name
        self._path = path

    def _call(self, interface, method, arguments=None):
        return self._bus.call(self._name, self._path, interface, method, arguments)

    def _property(self, interface, name):
        arguments = GLib.Variant("(ss)", (interface, name))
        return self._call("org.freedesktop.DBus.Properties", "Get", arguments)[0]

    def _has_state(self, bit):
        words = self._call(_ACCESSIBLE, "GetState")[0]
        return bool(words[bit // 32] >> (bit % 32) & 1)

    @property
    def role(self):
        return self._call(_ACCESSIBLE, "GetRoleName")[0]

    @property
    def name(self):
        return self._property(_ACCESSIBLE, "Name")

    @property
    def text(self):
        """What a person reads there: the text when it has one, else the name."""
        if _TEXT in self._call(_ACCESSIBLE, "GetInterfaces")[0]:
            text = self._call(_TEXT, "GetText", GLib.Variant("(ii)", (0, -1)))[0]
            if text:
                return text
        return self.name

    @property
    def showing(self):
        return self._has_state(_SHOWING)

    @property
    def enabled(self):
        return self._has_state(_ENABLED)

    @property
    def checked(self):
        return self._has_state(_CHECKED)

    @property
    def expanded(self):
        return self._has_state(_EXPANDED)

    @property
    def focused(self):
        return self._has_state(_FOCUSED)

    @property
    def states(self):
        """The names of those of its states that the tests look at."""
        words = self._call(_ACCESSIBLE, "GetState")[0]
        return [name for bit, name in _STATE_NAMES.items() if words[bit // 32] >> (bit % 32) & 1]

    @property
    def value(self):
        """The value of a progress bar or a spin box, from 0 to its maximum."""
        return self._property(_VALUE, "CurrentValue")

    @property
    def frame(self):
        """Left, top, width and height on the screen in pixels."""
        return self._call(_COMPONENT, "GetExtents", GLib.Variant("(u)", (_SCREEN_COORDINATES,)))[0]

    def focus(self):
        """Gives it the keyboard's focus."""
        self._call(_COMPONENT, "GrabFocus")

    def set_value(self, value):
        """Gives a spin box another value, as an assistive tool does."""
        arguments = GLib.Variant("(ssv)", (_VALUE, "CurrentValue", GLib.Variant("d", value)))
        self._call("org.freedesktop.DBus.Properties", "Set", arguments)

    def set_text(self, text):
        """Replaces a text field's content, as an assistive tool does."""
        self._call(_EDITABLE_TEXT, "SetTextContents", GLib.Variant("(s)", (text,)))

    def press(self):
        """Does the element's action "Press", as of a button, or "Toggle", as of a check box."""
        names = [action[0] for action in self._call(_ACTION, "GetActions")[0]]
        wanted = next((name for name in ("Press", "Toggle") if name in names), None)
        if wanted is None:
            raise AssertionError(f"{self.role} {self.name!r} cannot be pressed, only {names}")
        self._call(_ACTION, "DoAction", GLib.Variant("(i)", (names.index(wanted),)))

    def children(self):
        """The elements right below this one; none when it is gone."""
        try:
            references = self._call(_ACCESSIBLE, "GetChildren")[0]
        except Gone:
            return []
        return [Element(self._bus, name, path) for name, path in references if name and path != "/org/a11y/atspi/null"]

    def descendants(self):
        """All elements below this one, depth first."""
        for child in self.children():
            yield child
            yield from child.descendants()


class Tree:
    """The tree of the program with one process id. check_alive() raises when the program has ended."""

    def __init__(self, pid, check_alive):
        self._pid = pid
        self._check_alive = check_alive
        self._bus = _Bus()

    def root(self):
        """The program's element, or None while it has not announced itself."""
        self._check_alive()
        desktop = Element(self._bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
        for program in desktop.children():
            try:
                if self._bus.pid_of(program._name) == self._pid:
                    return program
            except Gone:
                continue
        return None

    def elements(self):
        root = self.root()
        return root.descendants() if root else iter(())

    def all(self, role=None, name=None, text=None):
        """The elements on show with this role, exact name, and text contained in what a person reads there."""

        def fits(element):
            try:
                return (
                    (role is None or element.role == role)
                    and (name is None or element.name == name)
                    and (text is None or text in element.text)
                    and element.showing
                )
            except Gone:
                return False

        return [element for element in self.elements() if fits(element)]

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

        def pressed():
            try:
                button = next((element for element in self.all(role, name) if element.enabled), None)
                if button:
                    button.press()
                return button is not None
            except Gone:
                return False

        wait_until(pressed, seconds, f"an enabled {role} {name!r}")

    def windows(self, title):
        """The program's top-level windows with this title."""

        def fits(window):
            try:
                return window.name == title and window.showing
            except Gone:
                return False

        root = self.root()
        return [window for window in root.children() if fits(window)] if root else []

    def texts(self):
        """Everything readable on show, in tree order."""
        found = []
        for element in self.elements():
            try:
                if element.showing and element.text:
                    found.append(element.text)
            except Gone:
                continue
        return found

    def dump(self):
        """The whole tree as indented text, for the reports of failed tests."""
        lines = []

        def add(element, depth):
            try:
                state = "" if element.showing else " (hidden)"
                value = element.text.replace("\n", "⏎")[:120]
                lines.append(f"{'  ' * depth}{element.role} {value!r}{state}")
            except Gone:
                return
            for child in element.children():
                add(child, depth + 1)

        try:
            root = self.root()
        except AssertionError as ended:
            return str(ended)
        if root:
            add(root, 0)
        return "\n".join(lines) or "(the program has no accessibility tree)"
