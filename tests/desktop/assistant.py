"""Assistive technology: what a client of AT-SPI hears of the program, and how it acts on it."""

import atexit
import functools
import os
import shutil
import tempfile
import time
from pathlib import Path

import gi

from desktop import Failure, wait_for

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  (the version comes first)

ANSWER_TIME = 5000  # milliseconds for one question
SHOWING, SENSITIVE = Atspi.StateType.SHOWING, Atspi.StateType.SENSITIVE
CHECKED, FOCUSED = Atspi.StateType.CHECKED, Atspi.StateType.FOCUSED
BUTTON = Atspi.role_get_name(Atspi.Role.PUSH_BUTTON)  # "push button", from AT-SPI 2.56 on "button"


def remove_when_free(folder):
    """Removes the folder of the buses, which end by themselves once their session has."""
    end = time.monotonic() + 5
    while any(path.is_socket() for path in folder.rglob("*")) and time.monotonic() < end:
        time.sleep(0.05)
    shutil.rmtree(folder, ignore_errors=True)


def start_session(desktop):
    """Starts a D-Bus session, in which the bus of the assistive technology starts on demand."""
    folder = Path(tempfile.mkdtemp(prefix="na"))
    atexit.register(remove_when_free, folder)
    desktop.environment |= {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "GSETTINGS_BACKEND": "memory"}
    reader, writer = os.pipe()
    # Both buses keep their sockets in a folder of their own: it outlives the desktop, as the second one does.
    daemon = ("dbus-daemon", "--session", "--nofork", f"--print-address={writer}", f"--address=unix:dir={folder}")
    desktop.spawn("env", f"XDG_RUNTIME_DIR={folder}", *daemon, pass_fds=(writer,))
    os.close(writer)
    with os.fdopen(reader) as addresses:
        address = addresses.readline().strip()
    if not address:
        raise Failure("the D-Bus session does not start")
    os.environ["DBUS_SESSION_BUS_ADDRESS"] = desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = address


def answered(function):
    """Has a function say so when the program does not answer, or what it is about has gone."""

    @functools.wraps(function)
    def asking(*arguments):
        try:
            return function(*arguments)
        except GLib.Error as error:
            raise Failure(f"no answer to '{function.__name__.replace('_', ' ')}': {error.message}") from None

    return asking


def states(node):
    return node.get_state_set()


def is_showing(node):
    return states(node).contains(SHOWING)


def children(node):
    found = (node.get_child_at_index(number) for number in range(node.get_child_count()))
    return [child for child in found if child]


def text(node):
    return Atspi.Text.get_text(node, 0, -1)


def actions(node):
    return [Atspi.Action.get_action_name(node, number) for number in range(Atspi.Action.get_n_actions(node))]


class Assistant:
    """One client. Whatever finds a thing waits for it."""

    def __init__(self, desktop):
        self.desktop = desktop

    def start(self):
        start_session(self.desktop)
        if Atspi.init() not in (0, 1):
            raise Failure("the bus of the assistive technology does not start")
        Atspi.set_timeout(ANSWER_TIME, ANSWER_TIME)
        # Everything is asked anew: what is kept would be renewed by events, for which nothing waits here.
        Atspi.get_desktop(0).set_cache_mask(Atspi.Cache.NONE)

    # Hearing

    def windows(self):
        """The windows of the program that are on the screen. Does not wait."""
        programs = children(Atspi.get_desktop(0))  # the session has but one
        return [window for program in programs for window in children(program) if is_showing(window)]

    def showing(self):
        """Everything on the screen as (node, parents), in reading order. Does not wait."""
        waiting = [(window, []) for window in reversed(self.windows())]
        while waiting:
            node, parents = waiting.pop()
            yield node, parents
            inner = [child for child in children(node) if is_showing(child)]
            waiting += [(child, [*parents, node]) for child in reversed(inner)]

    def all(self, role, name=None, description=None):
        """Everything of these words. Does not wait."""
        return [
            node for node, _ in self.showing()
            if node.get_role_name() == role
            and name in (None, node.get_name())
            and description in (None, node.get_description())
        ]

    def find(self, role, name=None, description=None):
        what = " ".join(word for word in ("the", role, name, description) if word)
        return self.wait_for(lambda: self.all(role, name, description), what)[0]

    def wait_for(self, condition, what):
        """Waits for a condition on things that may go, or not answer, meanwhile."""

        def holds():
            try:
                return condition()
            except GLib.Error:
                return None

        return wait_for(holds, what)

    @answered
    def wait_for_text(self, node, expected):
        self.wait_for(lambda: text(node) == expected, f"the text '{expected}' in {node.get_name()}")

    @answered
    def wait_for_state(self, node, state, expected=True):
        what = f"{node.get_name()} {'to be' if expected else 'not to be'} {state.value_nick}"
        self.wait_for(lambda: states(node).contains(state) == expected, what)

    # Acting

    @answered
    def act(self, node, action):
        """Does not wait for what comes of it."""
        offered = actions(node)
        if action not in offered or not Atspi.Action.do_action(node, offered.index(action)):
            raise Failure(f"{node.get_role_name()} {node.get_name()} does not carry out {action}, of {offered}")

    def press(self, name):
        button = self.find(BUTTON, name)
        self.wait_for_state(button, SENSITIVE)
        self.act(button, "Press")

    @answered
    def toggle(self, name, expected):
        switch = self.find("check box", name)
        self.act(switch, "Toggle")
        self.wait_for_state(switch, CHECKED, expected)

    @answered
    def write(self, node, words):
        self.wait_for_state(node, SENSITIVE)
        if not Atspi.EditableText.set_text_contents(node, words):
            raise Failure(f"{node.get_role_name()} {node.get_name()} cannot be written")
        self.wait_for_text(node, words)

    @answered
    def choose(self, purpose, item):
        """Chooses in the list of a combo box that stays closed."""
        combo = self.find("combo box", description=purpose)
        self.choose_in(combo, combo.get_child_at_index(0), item)

    @answered
    def choose_from_open_list(self, purpose, item):
        combo = self.find("combo box", description=purpose)
        self.act(combo, "ShowMenu")
        self.choose_in(combo, self.list_of(combo), item)
        self.wait_for(lambda: not is_showing(combo.get_child_at_index(0)), f"the end of the list of {purpose}")

    def choose_in(self, combo, box, item):
        self.act(next(one for one in children(box) if one.get_name() == item), "Toggle")
        self.wait_for(lambda: combo.get_name() == item, f"{combo.get_description()} to be {item}")

    @answered
    def change_value(self, node, difference):
        """Does not wait for what comes of it."""
        Atspi.Value.set_current_value(node, Atspi.Value.get_current_value(node) + difference)

    def list_of(self, combo):
        """The list that a combo box shows while it is open."""
        box = combo.get_child_at_index(0)
        self.wait_for_state(box, SHOWING)
        return box
