#!/usr/bin/python3 -B
"""The part of a desktop that takes tray icons and notices over the message bus. Usage: panel.py FILE

Writes each notice into the file, as a line of JSON with its title, text, icon and time. The first line says that the
panel is ready. The first line of this file is Debian's own Python, as that has its bindings to the message bus.
"""

import json
import sys

from gi.repository import Gio, GLib

INTERFACES = """<node>
  <interface name="org.kde.StatusNotifierWatcher">
    <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
    <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
    <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
    <property name="ProtocolVersion" type="i" access="read"/>
    <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  </interface>
  <interface name="org.freedesktop.Notifications">
    <method name="Notify">
      <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
      <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/>
    </method>
    <method name="CloseNotification"><arg type="u" direction="in"/></method>
    <method name="GetCapabilities"><arg type="as" direction="out"/></method>
    <method name="GetServerInformation">
      <arg type="s" direction="out"/><arg type="s" direction="out"/>
      <arg type="s" direction="out"/><arg type="s" direction="out"/>
    </method>
  </interface>
</node>"""
PLACES = {"org.kde.StatusNotifierWatcher": "/StatusNotifierWatcher",
          "org.freedesktop.Notifications": "/org/freedesktop/Notifications"}


class Panel:
    def __init__(self, path):
        self.file = open(path, "w", encoding="utf-8", buffering=1)
        self.notices, self.items = 0, []
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.awaited = len(PLACES)
        for interface in Gio.DBusNodeInfo.new_for_xml(INTERFACES).interfaces:
            self.bus.register_object(PLACES[interface.name], interface, self.call, self.property, None)
            Gio.bus_own_name_on_connection(self.bus, interface.name, Gio.BusNameOwnerFlags.NONE, self.owned, None)

    def tell(self, words):
        self.file.write(json.dumps(words, ensure_ascii=False) + "\n")

    def owned(self, *_):
        self.awaited -= 1
        if self.awaited == 0:
            self.tell("ready")

    def property(self, _bus, _sender, _path, _interface, name):
        return {
            "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
            "ProtocolVersion": GLib.Variant("i", 0),
            "RegisteredStatusNotifierItems": GLib.Variant("as", self.items),
        }[name]

    def call(self, _bus, _sender, _path, _interface, method, parameters, invocation):
        answer = None
        if method == "Notify":
            _, _, icon, title, text, _, _, milliseconds = parameters.unpack()
            self.notices += 1
            self.tell({"title": title, "text": text, "icon": icon, "time": milliseconds})
            answer = GLib.Variant("(u)", (self.notices,))
        elif method == "RegisterStatusNotifierItem":
            self.items += parameters.unpack()
        elif method == "GetCapabilities":
            answer = GLib.Variant("(as)", (["body"],))
        elif method == "GetServerInformation":
            answer = GLib.Variant("(ssss)", ("panel", "Nubaria", "1", "1.2"))
        invocation.return_value(answer)


if __name__ == "__main__":
    panel = Panel(sys.argv[1])
    GLib.MainLoop().run()
