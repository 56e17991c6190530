"""What three kinds of desktop have in common: where an icon would be, and what the user has been told."""

import re

from desktop import Failure, geometry, run, wait_for
from reader import FRAME, LABEL

NOTICE_TIME = 10_000  # milliseconds
SCREEN_HEIGHT = 860
BAR_LENGTH, BAR_HEIGHT = 200, 32  # pixels at the lower left corner of the screen, where the tray is
ICON_POINTS = 40  # that make a picture, at least

POINT = re.compile(r"^(\d+),(\d+): .*#([0-9A-F]{2})([0-9A-F]{2})([0-9A-F]{2})", re.MULTILINE)
NOTIFY = re.compile(
    r'member=Notify\n   string "[^"]*"\n   uint32 \d+\n   string "(?P<picture>[^"]*)"\n   string "(?P<title>.*?)"\n'
    r'   string "(?P<text>.*?)"\n   array \[\n.*?\n   int32 (?P<time>-?\d+)\n',
    re.DOTALL,
)


def is_purple(red, green, blue):
    return blue - green > 80 and red - green > 20


def middle(places):
    if len(places) < ICON_POINTS:
        return None
    lefts, tops = zip(*places)
    return sum(lefts) // len(places), sum(tops) // len(places)


def windows():
    """Everything on the screen, panels and menus included."""
    return set(run("xdotool", "search", "--onlyvisible", "--maxdepth", "1", "--name", ".*").split())


def is_high(window):
    """Whether it is no mere tool tip."""
    try:
        return geometry(window)[3] > BAR_HEIGHT
    except Failure:
        return False  # gone already


def window_after(action):
    """The window that comes with the action."""
    before = windows()
    action()
    return wait_for(lambda: next((one for one in windows() - before if is_high(one)), None), "the menu")


class Desk:
    """A desktop without a tray: no icon, no menu, no notice, and no word about it either."""

    has_tray = tells_double_clicks = False

    def __init__(self, session, nubaria):
        self.session = session
        self.nubaria = nubaria
        self.told = []  # titles and texts of this session
        self.remarks = []  # what there is to be said about the step that is being told

    def start(self):
        """Starts what belongs to the desktop and waits for it."""
        self.told = []

    # Notices

    def notified(self):
        """Title, text, picture and milliseconds of each notice that the bus carried to a notification daemon."""
        found = NOTIFY.finditer(self.session.notified.read_text(encoding="utf-8"))
        return [(one["title"], one["text"], one["picture"], int(one["time"])) for one in found]

    def all_notified(self):
        """The same, with all that the program told before it was last asked something."""
        self.session.catch_up()
        return self.notified()

    def balloon(self):
        """The title and text of a window of the program that is a speech bubble, and where it is; or None."""
        program = self.session.reader.program(self.nubaria.process.pid)
        for window in program.children() if program else ():
            words = [part.name for part in window.children() if part.kind == LABEL] if window.kind != FRAME else []
            if len(words) == 2:
                return *words, window.geometry()
        return None

    def expect(self, title, text):
        """Waits for this notice. What tells it has been seen to be done already."""
        del title, text
        self.expect_nothing()
        self.remarks.append("nothing is told")

    def expect_nothing(self):
        """No notice has come. What would tell one has been seen to be done already."""
        balloon, notified = self.balloon(), self.all_notified()
        if balloon or notified:
            raise Failure(f"there are notices: {balloon} and {notified}")

    def dismiss(self):
        """Puts away what is on the screen, so that it covers neither the window nor the icon."""

    def close_accounts(self):
        """At the end of the session: the desktop has kept just what was told."""
        self.expect_nothing()

    # The icon

    def points(self):
        """Place and colour of every point where an icon would be."""
        top = SCREEN_HEIGHT - BAR_HEIGHT
        found = (point.groups() for point in POINT.finditer(self.session.points(0, top, BAR_LENGTH, BAR_HEIGHT)))
        return [((int(x), top + int(y)), tuple(int(one, 16) for one in colour)) for x, y, *colour in found]

    def own_icon(self):
        """The middle of the program's own picture, or None."""
        return middle([place for place, colour in self.points() if is_purple(*colour)])

    def icon(self):
        """The middle of whatever picture stands for the program, or None."""
        return self.own_icon()

    def registered(self):
        """Whether the tray knows of an icon of the program."""
        return False

    def expect_icon(self, shown):
        """Waits until the icon is in the tray, or is not."""
        del shown  # there is no place for it
        if self.icon() or self.registered():
            raise Failure("there is an icon, and no tray")

    def expect_own_icon(self):
        self.expect_icon(False)
