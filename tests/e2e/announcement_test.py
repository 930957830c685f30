#!/usr/bin/env python3
"""Proves that an announcement reaches whoever listens on the accessibility bus, as a screen reader does.

Usage: announcement_test.py <program>, where <program> opens a window and announces each line of its
standard input, lines that begin with "!" with high priority.
"""

import subprocess
import sys

from accessible import ScreenReader
from desktop import Desktop, run_test, wait_for

POLITE, ASSERTIVE = 1, 2


def main(program):
    with Desktop(accessibility=True) as desktop:
        reader = ScreenReader(desktop)
        speaker = desktop.run(program, stdin=subprocess.PIPE, text=True)
        wait_for(lambda: reader.program("speaker"), 20, "the program on the accessibility bus")
        # The announcement is made in the name of the window that has the focus.
        wait_for(lambda: desktop.focused_window() == "The window", 20, "the focus")

        for line in ("Task moved to Active", "!WIP limit exceeded! ⚠️"):
            print(line, file=speaker.stdin, flush=True)

        wait_for(lambda: len(reader.listen()) >= 2, 10, "two announcements")
        assert reader.heard == [("Task moved to Active", POLITE, "The window"),
                                ("WIP limit exceeded! ⚠️", ASSERTIVE, "The window")], reader.heard
        speaker.stdin.close()
        assert speaker.wait(10) == 0, "the program ended badly"


if __name__ == "__main__":
    run_test(main, sys.argv[1:], seconds=90)
