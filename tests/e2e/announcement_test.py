#!/usr/bin/env python3
"""Proves that an announcement reaches whoever listens on the accessibility bus, as a screen reader does.

Usage: announcement_test.py <program>, where <program> opens a window and announces each line of its
standard input, lines that begin with "!" with high priority.
"""

import os
import subprocess
import sys

from desktop import Desktop, Unavailable, fail_after, skip, wait_for

POLITE, ASSERTIVE = 1, 2


class Listener:
    """Collects the announcements of all programs on the desktop of os.environ."""

    def __init__(self):
        try:
            import gi
            gi.require_version("Atspi", "2.0")
            from gi.repository import Atspi, GLib
        except (ImportError, ValueError) as error:
            raise Unavailable(f"the accessibility library of Python is not installed: {error}") from error
        self.heard = []
        if Atspi.init() not in (0, 1):
            raise Unavailable("the accessibility bus cannot be reached")
        self._atspi = Atspi
        self._loop = GLib.MainContext.default()
        self._events = Atspi.EventListener.new(self._handle)
        self._events.register("object:announcement")

    def _handle(self, event):
        self.heard.append((event.any_data, event.detail1, event.source.get_name()))

    def listen(self):
        """Takes in what has arrived, and gives all that was heard so far."""
        while self._loop.iteration(False):
            pass
        return self.heard

    def knows(self, name):
        """True once a program of that name is on the accessibility bus."""
        self.listen()
        desktop = self._atspi.get_desktop(0)
        programs = [desktop.get_child_at_index(i) for i in range(desktop.get_child_count())]
        return any(program and program.get_name() == name for program in programs)


def main(program):
    with Desktop(accessibility=True) as desktop:
        os.environ.update(desktop.environment)
        listener = Listener()
        speaker = desktop.run(program, stdin=subprocess.PIPE, text=True)
        wait_for(lambda: listener.knows("speaker"), 20, "the program on the accessibility bus")
        # The announcement is made in the name of the window that has the focus.
        wait_for(lambda: desktop.xdotool("getwindowfocus", "getwindowname") == "The window", 20, "the focus")

        for line in ("Task moved to Active", "!WIP limit exceeded! ⚠️"):
            print(line, file=speaker.stdin, flush=True)

        wait_for(lambda: len(listener.listen()) >= 2, 10, "two announcements")
        assert listener.heard == [("Task moved to Active", POLITE, "The window"),
                                  ("WIP limit exceeded! ⚠️", ASSERTIVE, "The window")], listener.heard
        speaker.stdin.close()
        assert speaker.wait(10) == 0, "the program ended badly"


if __name__ == "__main__":
    fail_after(90)
    try:
        main(*sys.argv[1:])
    except Unavailable as missing:
        skip(missing)
