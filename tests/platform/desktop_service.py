"""A service of the desktop for tests: writes down what it is asked, one JSON object a line, and promises what it can.

usage: desktop_service.py RECORD-FILE SERVICE [refuse]

It is on the bus that DBUS_SESSION_BUS_ADDRESS names, whatever its real one would be. The tests' own interface
tarnwick.Test at /test makes it act like its user: Click(id), Dismiss(id), SetHost(there).
"""

import json
import os
import sys

from gi.repository import Gio, GLib

TEST = """
<node><interface name="tarnwick.Test">
  <method name="Click"><arg type="u" direction="in"/></method>
  <method name="Dismiss"><arg type="u" direction="in"/></method>
  <method name="SetHost"><arg type="b" direction="in"/></method>
</interface></node>
"""


def inhibitor(name, path, arguments, answer):
    taken = "".join(f'<arg type="{one}" direction="in"/>' for one in arguments)
    return name, path, f"""<node><interface name="{name}">
      <method name="Inhibit">{taken}<arg type="{answer}" direction="out"/></method></interface></node>"""


SERVICES = {
    "login": ("org.freedesktop.login1", "/org/freedesktop/login1",
              inhibitor("org.freedesktop.login1.Manager", "", "ssss", "h")[2]),
    "session": inhibitor("org.gnome.SessionManager", "/org/gnome/SessionManager", "susu", "u"),
    "power": inhibitor("org.freedesktop.PowerManagement.Inhibit", "/org/freedesktop/PowerManagement/Inhibit",
                       "ss", "u"),
    "notifications": ("org.freedesktop.Notifications", "/org/freedesktop/Notifications", """
<node><interface name="org.freedesktop.Notifications">
  <method name="Notify">
    <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
    <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/>
  </method>
  <method name="GetCapabilities"><arg type="as" direction="out"/></method>
  <method name="CloseNotification"><arg type="u" direction="in"/></method>
  <signal name="ActionInvoked"><arg type="u"/><arg type="s"/></signal>
  <signal name="NotificationClosed"><arg type="u"/><arg type="u"/></signal>
</interface></node>"""),
    "tray": ("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher", """
<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <signal name="StatusNotifierHostRegistered"/>
  <signal name="StatusNotifierHostUnregistered"/>
</interface></node>"""),
}


class Service:
    def __init__(self, record, kind, refuses):
        self.record = record
        self.name, self.path, self.description = SERVICES[kind]
        self.refuses = refuses
        self.host = True
        self.items = []
        self.last_id = 0

    def write(self, **what):
        with open(self.record, "a") as file:
            file.write(json.dumps(what) + "\n")

    def acquired(self, connection, _name):
        self.connection = connection
        for path, description, handle in ((self.path, self.description, self.called), ("/test", TEST, self.tested)):
            interface = Gio.DBusNodeInfo.new_for_xml(description).interfaces[0]
            connection.register_object(path, interface, handle, self.read, None)

    def called(self, _connection, sender, _path, _interface, method, arguments, invocation):
        self.write(call=method, arguments=arguments.unpack())
        if self.refuses:
            invocation.return_dbus_error("org.freedesktop.DBus.Error.AccessDenied", "refused by the test")
        elif method == "Inhibit":
            self.promise(sender, invocation)
        elif method == "GetCapabilities":
            invocation.return_value(GLib.Variant("(as)", (["actions", "body", "body-markup"],)))
        elif method == "Notify":
            self.last_id = arguments.unpack()[1] or self.last_id + 1
            invocation.return_value(GLib.Variant("(u)", (self.last_id,)))
        else:
            if method == "RegisterStatusNotifierItem":
                self.items.append(sender)
            invocation.return_value(None)

    def promise(self, sender, invocation):
        if "login1" in self.name:
            ours, theirs = os.pipe()
            descriptors = Gio.UnixFDList.new()
            answer = GLib.Variant("(h)", (descriptors.append(theirs),))
            os.close(theirs)
            invocation.return_value_with_unix_fd_list(answer, descriptors)
            GLib.unix_fd_add_full(0, ours, GLib.IOCondition.HUP, lambda *_: self.write(released=True), None)
        else:
            Gio.bus_watch_name_on_connection(self.connection, sender, Gio.BusNameWatcherFlags.NONE, None,
                                             lambda *_: self.write(released=True))
            invocation.return_value(GLib.Variant("(u)", (7,)))

    def tested(self, _connection, _sender, _path, _interface, method, arguments, invocation):
        argument = arguments.unpack()[0]
        if method == "SetHost":
            self.host = argument
            self.emit("StatusNotifierHost" + ("Registered" if argument else "Unregistered"), None)
        else:
            if method == "Click":
                self.emit("ActionInvoked", GLib.Variant("(us)", (argument, "default")))
            self.emit("NotificationClosed", GLib.Variant("(uu)", (argument, 2)))
        invocation.return_value(None)

    def emit(self, signal, arguments):
        interface = Gio.DBusNodeInfo.new_for_xml(self.description).interfaces[0].name
        self.connection.emit_signal(None, self.path, interface, signal, arguments)

    def read(self, _connection, _sender, _path, _interface, name):
        if name == "RegisteredStatusNotifierItems":
            return GLib.Variant("as", self.items)
        return GLib.Variant("b", self.host) if name.startswith("Is") else GLib.Variant("i", 0)


def main(record, kind, *options):
    service = Service(record, kind, "refuse" in options)
    Gio.bus_own_name(Gio.BusType.SESSION, service.name, 0, service.acquired, lambda *_: service.write(ready=kind), None)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main(*sys.argv[1:])
