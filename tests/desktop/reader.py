"""What a screen reader is told: names, kinds and states of everything in a program's windows, shown or hidden."""

from desktop import Failure
from gi.repository import Gio, GLib

ACCESSIBLE, COMPONENT, TEXT = (f"org.a11y.atspi.{part}" for part in ("Accessible", "Component", "Text"))
ROOT = "/org/a11y/atspi/accessible/root"
CHECKED, ENABLED, FOCUSED, VISIBLE = 1 << 4, 1 << 8, 1 << 12, 1 << 30
FRAME, LABEL, EDIT, BUTTON, RADIO_BUTTON = "frame", "label", "text", "push button", "radio button"
ANSWER = 10_000  # milliseconds for one answer


class Bus:
    """A connection to a message bus."""

    def __init__(self, address):
        flags = Gio.DBusConnectionFlags
        kind = flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION
        self.connection = Gio.DBusConnection.new_for_address_sync(address, kind, None, None)

    def call(self, name, path, interface, method, *arguments, kinds=None):
        """What the method answers, or nothing where its owner has gone. Arguments are texts unless `kinds` tells."""
        values = GLib.Variant(f"({kinds or 's' * len(arguments)})", arguments)
        try:
            return self.connection.call_sync(name, path, interface, method, values, None, 0, ANSWER, None).unpack()
        except GLib.Error:
            return ()

    def get(self, name, path, interface, property_name, otherwise=None):
        answer = self.call(name, path, "org.freedesktop.DBus.Properties", "Get", interface, property_name)
        return answer[0] if answer else otherwise

    def process(self, name):
        """The process behind a name on the bus, or None."""
        bus = "org.freedesktop.DBus"
        answer = self.call(bus, "/org/freedesktop/DBus", bus, "GetConnectionUnixProcessID", name)
        return answer[0] if answer else None


def connect(address):
    """A connection, or None as long as nobody listens there."""
    try:
        return Bus(address)
    except GLib.Error:
        return None


class Element:
    """Something that a program shows, or would show if its window were not hidden."""

    def __init__(self, bus, name, path):
        self.bus = bus
        self.address = name, path
        self.name = bus.get(name, path, ACCESSIBLE, "Name", "").strip()
        self.kind = (self.ask(ACCESSIBLE, "GetRoleName") or ("",))[0]

    def ask(self, interface, method, *arguments, kinds=None):
        return self.bus.call(*self.address, interface, method, *arguments, kinds=kinds)

    def children(self):
        found = self.ask(ACCESSIBLE, "GetChildren")
        return [Element(self.bus, *address) for address in (found[0] if found else [])]

    def everything(self):
        yield self
        for child in self.children():
            yield from child.everything()

    def has(self, state):
        found = self.ask(ACCESSIBLE, "GetState")
        return bool(found and found[0][0] & state)

    def text(self):
        """What is written in it, or None where nothing can be."""
        whole = (0, -1)
        found = self.ask(TEXT, "GetText", *whole, kinds="ii")
        return found[0] if found else None

    def geometry(self):
        """Left, top, width and height on the screen, or nothing where it has gone."""
        on_screen = 0
        found = self.ask(COMPONENT, "GetExtents", on_screen, kinds="u")
        return found[0] if found else ()


class Reader:
    """Reads the windows of the programs of one session."""

    def __init__(self, session_bus):
        name = "org.a11y.Bus"
        answer = session_bus.call(name, "/org/a11y/bus", name, "GetAddress")
        if not answer:
            raise Failure("the bus of the screen readers does not start")
        self.bus = Bus(answer[0])
        self.focused = None

    def program(self, pid):
        """The program of this process, or None as long as it has not come forward."""
        desktop = Element(self.bus, "org.a11y.atspi.Registry", ROOT)
        return next((one for one in desktop.children() if self.bus.process(one.address[0]) == pid), None)

    def follow_focus(self):
        """From now on, `last_focused` tells what the user is at, menus included."""
        registry, event = "org.a11y.atspi.Registry", "object:state-changed:focused"
        self.bus.call(registry, "/org/a11y/atspi/registry", registry, "RegisterEvent", event, [], "", kinds="sass")
        subscription = (None, "org.a11y.atspi.Event.Object", "StateChanged", None, "focused", 0)
        self.bus.connection.signal_subscribe(*subscription, self.note_focus)

    def note_focus(self, _connection, sender, path, _interface, _signal, values):
        if values.unpack()[1]:
            self.focused = sender, path

    def last_focused(self):
        """The name of what was last focused, or None."""
        while GLib.MainContext.default().iteration(False):
            pass
        return self.focused and Element(self.bus, *self.focused).name

    def beside_focused(self):
        """The names of what stands where the last focused stands, itself among them, in their order."""
        parent = self.bus.get(*self.focused, ACCESSIBLE, "Parent")
        return [one.name for one in Element(self.bus, *parent).children()] if parent else []
