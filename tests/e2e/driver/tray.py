"""A tray: it takes the items that programs register, and opens nothing by itself."""

import subprocess
import sys

from gi.repository import Gio, GLib

from .waiting import wait_until

WATCHER = "org.kde.StatusNotifierWatcher"
MENU = "com.canonical.dbusmenu"

_INTERFACE = """
<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
</interface></node>
"""


def serve():
    """Runs the tray until it is ended; in a process of its own, since it needs an event loop."""
    items = []

    def called(connection, sender, path, interface, method, arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            items.append(sender)
        invocation.return_value(None)

    def read(connection, sender, path, interface, name):
        if name == "RegisteredStatusNotifierItems":
            return GLib.Variant("as", items)
        return GLib.Variant("b", True) if name.startswith("Is") else GLib.Variant("i", 0)

    def acquired(connection, name):
        description = Gio.DBusNodeInfo.new_for_xml(_INTERFACE).interfaces[0]
        connection.register_object("/StatusNotifierWatcher", description, called, read, None)

    Gio.bus_own_name(Gio.BusType.SESSION, WATCHER, 0, acquired, lambda *_: print("ready", flush=True), None)
    GLib.MainLoop().run()


class TrayHost:
    """The tray of the session; the items of programs that start after it are in it."""

    def __init__(self):
        code = f"import sys; sys.path[:0] = {sys.path!r}; from driver.tray import serve; serve()"
        self._process = subprocess.Popen([sys.executable, "-c", code], stdout=subprocess.PIPE, text=True)
        if self._process.stdout.readline() != "ready\n":
            raise AssertionError("the tray did not start")
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)

    def close(self):
        self._process.terminate()
        self._process.wait(10)
        self._process.stdout.close()

    def items(self):
        """The bus names of the programs that have an item here."""
        return self._get(WATCHER, "/StatusNotifierWatcher", WATCHER, "RegisteredStatusNotifierItems")

    def titles(self):
        """What the item's menu says, from top to bottom, without the lines between."""
        return [title for _, title, _ in self._entries()]

    def enabled(self, title):
        return next(enabled for _, name, enabled in self._entries() if name == title)

    def choose(self, title):
        """Clicks an entry of the menu as soon as it can be clicked."""
        wait_until(lambda: self.enabled(title), 10, f"the tray's {title}")
        number = next(number for number, name, _ in self._entries() if name == title)
        self._call(self.items()[-1], self._menu_path(), MENU, "Event",
                   GLib.Variant("(isvu)", (number, "clicked", GLib.Variant("s", ""), 0)))

    def _entries(self):
        arguments = GLib.Variant("(iias)", (0, -1, []))
        _, (_, _, children) = self._call(self.items()[-1], self._menu_path(), MENU, "GetLayout", arguments)
        for number, properties, _ in children:
            title = properties.get("label", "").replace("_", "")
            if title:
                yield number, title, properties.get("enabled", True)

    def _menu_path(self):
        return self._get(self.items()[-1], "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Menu")

    def _get(self, name, path, interface, property_name):
        arguments = GLib.Variant("(ss)", (interface, property_name))
        return self._call(name, path, "org.freedesktop.DBus.Properties", "Get", arguments)[0]

    def _call(self, name, path, interface, method, arguments):
        answer = self._bus.call_sync(name, path, interface, method, arguments, None, 0, 5000, None)
        return answer.unpack()
