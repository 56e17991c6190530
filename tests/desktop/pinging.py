"""Asks a window whether it still answers, as a window manager does."""

import time

from Xlib import X, display
from Xlib.protocol import event

from desktop import Failure


class Pinger:
    """One window of one display."""

    def __init__(self, window):
        self.display = display.Display()
        self.root = self.display.screen().root
        self.window = self.display.create_resource_object("window", window)
        self.protocols = self.display.intern_atom("WM_PROTOCOLS")
        self.ping = self.display.intern_atom("_NET_WM_PING")
        self.root.change_attributes(event_mask=X.StructureNotifyMask)
        self.count = 0

    def ask(self, patience=20):
        """Seconds until the window's program has come round to answering."""
        self.count += 1
        data = (32, [self.ping, self.count, self.window.id, 0, 0])
        self.window.send_event(event.ClientMessage(window=self.window, client_type=self.protocols, data=data))
        begin = time.monotonic()
        self.display.flush()
        while time.monotonic() - begin < patience:
            if not self.display.pending_events():
                time.sleep(0.0005)  # between two looks
                continue
            told = self.display.next_event()
            if told.type == X.ClientMessage and told.client_type == self.protocols and told.data[1][1] == self.count:
                return time.monotonic() - begin
        raise Failure(f"the window did not answer within {patience} s")
