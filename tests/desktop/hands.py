"""A mouse and a keyboard that a Wayland compositor takes for real ones: it lets this client bring them in."""

import socket
import string
import struct
import tempfile
import time

from desktop import LEFT, PATIENCE, RIGHT, Failure

# Objects that every connection has, and numbers of requests and events, as the protocols have them.
DISPLAY = 1
SYNC, GET_REGISTRY, BIND, CREATE = 0, 1, 0, 0
ERROR, GLOBAL = 0, 0
MOVE_TO, BUTTON, FRAME = 1, 2, 4
KEYMAP, KEY, MODIFIERS = 0, 1, 2
XKB_TEXT = 1
BUTTONS = {LEFT: 0x110, RIGHT: 0x111}
DOWN_AND_UP = (1, 0)

# Every letter has a key of its own, so that none has to be found between Shift and AltGr.
NAMED = ["Return", "Escape", "space", "Control_L", "Alt_L", "F4"]
LETTERS = string.ascii_letters + string.digits + string.punctuation + "áéíóúüñÁÉÍÓÚÜÑ¿¡"
FIRST_CODE = 9  # of X, which is 8 more than the one that is sent
HELD = {"ctrl": 1 << 2, "alt": 1 << 3}


def keymap():
    names = NAMED + [f"U{ord(letter):04X}" for letter in LETTERS]
    keys = [(f"<K{code}>", code, name) for code, name in enumerate(names, FIRST_CODE)]
    codes = "".join(f"{key} = {code};" for key, code, _ in keys)
    symbols = "".join(f"key {key} {{ [ {name} ] }};" for key, _, name in keys)
    holding = {name: key for key, _, name in keys}
    return f"""xkb_keymap {{
        xkb_keycodes "hands" {{ minimum = 8; maximum = 255; {codes} }};
        xkb_types "hands" {{ include "complete" }};
        xkb_compatibility "hands" {{ include "complete" }};
        xkb_symbols "hands" {{
            {symbols}
            modifier_map Control {{ {holding["Control_L"]} }}; modifier_map Mod1 {{ {holding["Alt_L"]} }};
        }};
    }};"""


def words(*numbers):
    return struct.pack(f"={len(numbers)}I", *numbers)


class Hands:
    """What it does has reached the compositor when the call is over, but not yet the program."""

    def __init__(self, path, width, height):
        self.extent = width, height
        self.received = b""
        self.created = DISPLAY
        self.offered = {}  # numbers by interface
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(PATIENCE)
        self.socket.connect(str(path))
        self.registry = self.create(DISPLAY, GET_REGISTRY)
        self.arrive()
        seat = self.bind("wl_seat")
        self.mouse = self.create(self.bind("zwlr_virtual_pointer_manager_v1"), CREATE, words(seat))
        self.keyboard = self.create(self.bind("zwp_virtual_keyboard_manager_v1"), CREATE, words(seat))
        with tempfile.TemporaryFile() as file:
            text = keymap().encode() + b"\0"
            file.write(text)
            file.flush()
            self.send(self.keyboard, KEYMAP, words(XKB_TEXT, len(text)), [file.fileno()])
            self.arrive()

    # The protocol

    def send(self, target, request, content=b"", files=()):
        head = struct.pack("=IHH", target, request, 8 + len(content))
        socket.send_fds(self.socket, [head + content], files)

    def create(self, target, request, content=b""):
        self.created += 1
        self.send(target, request, content + words(self.created))
        return self.created

    def bind(self, interface):
        if interface not in self.offered:
            raise Failure(f"the compositor does not know {interface}")
        name = interface.encode() + b"\0"
        name = words(len(name)) + name + b"\0" * (-len(name) % 4)
        version = 1
        return self.create(self.registry, BIND, words(self.offered[interface]) + name + words(version))

    def arrive(self):
        """Waits until the compositor has taken everything that was sent."""
        answer = self.create(DISPLAY, SYNC)
        sender = None
        while sender != answer:
            sender, event, size = struct.unpack("=IHH", self.read(8))
            content = self.read(size - 8)
            if (sender, event) == (DISPLAY, ERROR):
                raise Failure(f"the compositor refuses: {content[12:].decode(errors='replace')}")
            if (sender, event) == (self.registry, GLOBAL):
                name, length = struct.unpack_from("=II", content)
                self.offered[content[8:7 + length].decode()] = name

    def read(self, size):
        while len(self.received) < size:
            try:
                more = self.socket.recv(4096)
            except OSError:
                more = b""
            if not more:
                raise Failure("the compositor has gone")
            self.received += more
        content, self.received = self.received[:size], self.received[size:]
        return content

    # The mouse

    def point_at(self, x, y):
        self.act(self.mouse, MOVE_TO, x, y, *self.extent)

    def click(self, button, times):
        for _ in range(times):
            for pressed in DOWN_AND_UP:
                self.act(self.mouse, BUTTON, BUTTONS[button], pressed)

    def act(self, device, request, *numbers):
        milliseconds = int(time.monotonic() * 1000) % (1 << 32)
        self.send(device, request, words(milliseconds, *numbers))
        if device == self.mouse:
            self.send(self.mouse, FRAME)
        self.arrive()

    # The keyboard

    def press(self, combination):
        """A key, after the names of those that are held meanwhile."""
        *held, name = combination.split("+") if len(combination) > 1 else [combination]
        keys = [*NAMED, *LETTERS]
        if name not in keys:
            raise Failure(f"the keyboard has no key {name}")
        self.hold(sum(HELD[one] for one in held))
        for pressed in DOWN_AND_UP:
            self.act(self.keyboard, KEY, FIRST_CODE - 8 + keys.index(name), pressed)
        self.hold(0)

    def hold(self, held):
        self.send(self.keyboard, MODIFIERS, words(held, 0, 0, 0))
