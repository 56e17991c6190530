#!/usr/bin/python3 -B
"""Keeps a formatted text in the clipboard of the display, as a word processor does, until it is ended.

Usage: clipboard.py TEXT HTML

Tells a line once it has the clipboard. Needs python3-xlib.
"""

import sys

from Xlib import X, Xatom, display
from Xlib.protocol import event


def main():
    text, html = (words.encode() for words in sys.argv[1:])
    connection = display.Display()
    window = connection.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
    atom = connection.intern_atom
    contents = {atom("UTF8_STRING"): text, atom("text/plain;charset=utf-8"): text, atom("text/html"): html}
    window.set_selection_owner(atom("CLIPBOARD"), X.CurrentTime)
    connection.sync()
    print("ready", flush=True)
    while True:
        request = connection.next_event()
        if request.type != X.SelectionRequest:
            continue
        place = request.property
        if request.target == atom("TARGETS"):
            request.requestor.change_property(place, Xatom.ATOM, 32, list(contents))
        elif request.target in contents:
            request.requestor.change_property(place, request.target, 8, contents[request.target])
        else:
            place = X.NONE
        answer = event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection, target=request.target,
            property=place,
        )
        request.requestor.send_event(answer)
        connection.flush()


if __name__ == "__main__":
    main()
