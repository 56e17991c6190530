"""Two kinds of tray: one that is told of icons over the bus, and one that takes the icon's own window in."""

import ctypes

from desks import BAR_HEIGHT, NOTICE_TIME, SCREEN_HEIGHT, Desk, middle, window_after
from desktop import LEFT, RIGHT, Failure, click, geometry, run, wait_for

NOTIFICATIONS_PATH, DAEMON = "/org/freedesktop/Notifications", "org.dunstproject.cmd0"
NOTIFICATIONS, WATCHER = "org.freedesktop.Notifications", "org.kde.StatusNotifierWatcher"
ITEM, MENU = "org.kde.StatusNotifierItem", "com.canonical.dbusmenu"
MENU_WORDS = ["Ajustes", "Salir"]
VISIBLE_DISTANCE = 24  # of 255

DAEMON_SETTINGS = """[global]
    origin = bottom-left
    offset = 10x40
    width = 290
    font = Sans 9
    stack_duplicates = false
    history_length = 100
"""
PANEL_SETTINGS = f"""<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=10;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="{BAR_HEIGHT}"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty"><property name="plugin-1" type="string" value="systray"/></property>
</channel>
"""


def is_owned(selection):
    """Whether a program of the display has taken a role that only one can have."""
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = x11.XInternAtom.restype = x11.XGetSelectionOwner.restype = ctypes.c_ulong
    display = ctypes.c_ulong(x11.XOpenDisplay(None))
    try:
        atom = ctypes.c_ulong(x11.XInternAtom(display, selection.encode(), False))
        return x11.XGetSelectionOwner(display, atom) != 0
    finally:
        x11.XCloseDisplay(display)


def distance(colour, other):
    return max(abs(one - another) for one, another in zip(colour, other))


class Tray(Desk):
    """What both kinds have in common."""

    has_tray = True

    def expect_icon(self, shown):
        wait_for(lambda: self.registered() == shown, f"the tray to {'know' if shown else 'forget'} the icon")
        wait_for(lambda: bool(self.icon()) == shown, "the icon" if shown else "the icon to leave")

    def expect_own_icon(self):
        wait_for(self.own_icon, "the program's own picture in the tray")

    def click_icon(self, button=LEFT, times=1):
        self.dismiss()
        self.session.click(*wait_for(self.icon, "the icon"), button, times)

    def open_menu(self):
        """Opens it and leaves it so; returns where its entries are."""
        menu, (left, top, width, height) = self.unfold()
        places = [(left + width // 2, top + height * part // 4) for part in (1, 3)]
        self.check_words(places)
        return menu, dict(zip(MENU_WORDS, places))

    def unfold(self):
        """Has the menu open; returns what tells when it has closed, and where it is."""
        menu = window_after(lambda: self.click_icon(RIGHT))
        return menu, geometry(menu)

    def check_words(self, places):
        raise NotImplementedError

    def choose(self, entry, opened=None):
        menu, places = opened or self.open_menu()
        self.session.click(*places[entry])
        self.wait_until_closed(menu)

    def close_menu(self):
        """Opens the menu and closes it, for what is behind everything that was clicked before."""
        menu, _ = self.open_menu()
        self.session.press("Escape")
        self.wait_until_closed(menu)

    def wait_until_closed(self, menu):
        wait_for(lambda: "IsViewable" not in run("xwininfo", "-id", menu), "the end of the menu")


class Notifier(Tray):
    """A panel that is told of icons over the bus, and a notification daemon."""

    def start(self):
        super().start()
        settings = self.session.folders["config"] / "dunstrc"
        settings.write_text(DAEMON_SETTINGS, encoding="utf-8")
        self.session.spawn("dunst", "-config", str(settings))
        wait_for(lambda: self.session.bus.process(NOTIFICATIONS), "the notification daemon")
        self.start_panel()
        wait_for(lambda: self.ask_watcher("IsStatusNotifierHostRegistered"), "the tray")

    def start_panel(self):
        settings = self.session.folders["config"] / "xfce4" / "xfconf" / "xfce-perchannel-xml" / "xfce4-panel.xml"
        settings.parent.mkdir(parents=True, exist_ok=True)
        settings.write_text(PANEL_SETTINGS, encoding="utf-8")
        self.session.spawn("xfce4-panel", "--disable-wm-check")

    # Notices

    def expect(self, title, text):
        self.told.append((title, text, "dialog-information", NOTICE_TIME))
        wait_for(lambda: len(self.notified()) >= len(self.told), f"the notice {title}")
        # It leaves the screen by itself: what takes its time comes afterwards.
        wait_for(self.all_shown, f"the notice {title} on the screen")
        self.expect_nothing()
        self.remarks.append(f'"{title}"')

    def expect_nothing(self):
        balloon, notified = self.balloon(), self.all_notified()
        if notified != self.told:
            raise Failure(f"the notices are {notified} instead of {self.told}")
        if balloon:
            raise Failure(f"there is a balloon: {balloon}")

    def length(self, which):
        return self.session.bus.get(NOTIFICATIONS, NOTIFICATIONS_PATH, DAEMON, f"{which}Length")

    def all_shown(self):
        """Whether every notice is, or has been, on the screen, and the last one still is."""
        displayed = self.length("displayed")
        return displayed and displayed + self.length("history") == len(self.told)

    def ask_daemon(self, method):
        return self.session.bus.call(NOTIFICATIONS, NOTIFICATIONS_PATH, DAEMON, method)

    def dismiss(self):
        self.ask_daemon("NotificationCloseAll")
        wait_for(lambda: self.length("displayed") == 0, "the notices to leave")

    def close_accounts(self):
        self.dismiss()
        kept = self.ask_daemon("NotificationListHistory")[0]
        words = [(one["summary"], one["body"]) for one in reversed(kept)]
        if words != [notice[:2] for notice in self.told]:
            raise Failure(f"the daemon has kept {words}")

    # The icon

    def icon(self):
        """For as long as a notice may be told, this kind of tray shows another picture in place of the program's."""
        points = self.points()
        bare = points[-1][1]
        return middle([place for place, colour in points if distance(colour, bare) > VISIBLE_DISTANCE])

    def ask_watcher(self, property_name):
        return self.session.bus.get(WATCHER, "/StatusNotifierWatcher", WATCHER, property_name)

    def item(self):
        """The name under which the program's icon is known on the bus, or None."""
        bus = self.session.bus
        names = [item.split("/")[0] for item in self.ask_watcher("RegisteredStatusNotifierItems") or []]
        return next((name for name in names if bus.process(name) == self.nubaria.process.pid), None)

    def registered(self):
        return self.item() is not None

    def check_words(self, places):
        bus, item = self.session.bus, wait_for(self.item, "the icon on the bus")
        path = bus.get(item, "/StatusNotifierItem", ITEM, "Menu")
        everything, every_property = (0, -1), []
        layout = bus.call(item, path, MENU, "GetLayout", *everything, every_property, kinds="iias")
        words = [entry[1].get("label") for entry in layout[1][2]] if layout else None
        if words != MENU_WORDS:
            raise Failure(f"the menu offers {words}")


class Embedder(Tray):
    """A tray that takes the icon's own window in. A notice is a window of the program's, a new one replaces it."""

    tells_double_clicks = True

    def start(self):
        super().start()
        place = ("--edge", "bottom", "--align", "left", "--widthtype", "request")
        self.session.spawn("trayer", *place, "--heighttype", "pixel", "--height", str(BAR_HEIGHT))
        wait_for(lambda: is_owned("_NET_SYSTEM_TRAY_S0"), "the tray")

    # Notices

    def expect(self, title, text):
        seen = [None]

        def told():
            seen[0] = self.balloon() or seen[0]
            return seen[0] and seen[0][:2] == (title, text)

        try:
            wait_for(told, f"the notice {title}")
        except Failure:
            raise Failure(f"the last notice is {seen[0]} instead of {(title, text)}") from None
        wait_for(self.is_drawn, f"the notice {title} on the screen")
        self.remarks.append(f'"{title}"')

    def is_drawn(self):
        """Whether the bubble is on the screen, just where the screen reader is told that it is."""
        balloon, window = self.balloon(), self.window_of_balloon()
        if not balloon or not window or geometry(window) != tuple(balloon[2]):
            return False
        return int(run("import", "-silent", "-window", window, "-format", "%k", "info:-") or 0) > 16

    def window_of_balloon(self):
        found = run("xdotool", "search", "--onlyvisible", "--pid", str(self.nubaria.process.pid)).split()
        return next((one for one in found if "TYPE_TOOLTIP" in run("xprop", "-id", one, "_NET_WM_WINDOW_TYPE")), None)

    def dismiss(self):
        balloon = self.balloon()
        if balloon:
            left, top = balloon[2][:2]
            click(left + 15, top + 15)
            wait_for(lambda: not self.balloon(), "the notice to leave")

    # The icon

    def registered(self):
        found = run("xdotool", "search", "--onlyvisible", "--pid", str(self.nubaria.process.pid)).split()
        return any(top >= SCREEN_HEIGHT - BAR_HEIGHT for top in (geometry(one)[1] for one in found))

    def check_words(self, places):
        for place, word in zip(places, MENU_WORDS):
            run("xdotool", "mousemove", *map(str, place))
            wait_for(lambda wanted=word: self.session.reader.last_focused() == wanted, f"the entry {word} of the menu")
        words = self.session.reader.beside_focused()
        if words != MENU_WORDS:
            raise Failure(f"the menu offers {words}")

    def close_accounts(self):
        notified = self.all_notified()
        if notified:
            raise Failure(f"the bus has carried {notified}")
