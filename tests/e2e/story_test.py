#!/usr/bin/env python3
"""The story of a first day, played with keyboard and mouse on the program as it is installed.

Usage: story_test.py <vantrel>. Looks at the window through the accessibility tree and at the disk with a
database reader of its own; kills the program at random moments and looks again.
"""

import random
import sys
import time

from accessible import ScreenReader
from desktop import Desktop, run_test, wait_for
from vantrel import Vantrel

NAMES = [f"Task {number}" for number in range(1, 21)]


def is_run_of(part, whole):
    """True if `part` stands somewhere in `whole`, and is empty only if `whole` is."""
    return bool(part) == bool(whole) and any(
        whole[start:start + len(part)] == part for start in range(len(whole) - len(part) + 1))


class Story:
    def __init__(self, program, desktop):
        self.desktop = desktop
        self.vantrel = Vantrel(program, desktop, ScreenReader(desktop))
        # What the user has done so far: the columns with the names of their tasks, in order.
        self.board = {"To Do": [], "Doing": [], "Done": []}
        self.complete = set()

    def check(self, when):
        """The window and the disk both have what the user has done."""
        self.wait_until_shown(when)
        try:
            wait_for(lambda: self.vantrel.stored() == self.board, 10, f"the disk to have it {when}")
            wait_for(lambda: self.vantrel.stored_as_complete() == self.complete, 10, f"completion {when}")
        except AssertionError:
            print("expected:", self.board, self.complete)
            print("stored:", self.vantrel.stored(), self.vantrel.stored_as_complete())
            raise

    def wait_until_shown(self, when):
        try:
            wait_for(self._is_shown, 10, f"the window to show it {when}")
        except AssertionError:
            print("expected:", self.board)
            print("shown:", self.vantrel.columns(), self.vantrel.notice())
            print({column: [(card.name, card.y) for card in cards] for column, cards in self._shown().items()})
            raise

    def _shown(self):
        return {column: self.vantrel.cards(column) for column in self.board}

    def _is_shown(self):
        """What can be seen of a cell must be a run of its tasks without holes, and its header counts all."""
        if self.vantrel.columns() != {column: len(names) for column, names in self.board.items()}:
            return False
        shown = self._shown()
        distances = {below.y - above.y - above.height for cards in shown.values()
                     for above, below in zip(cards, cards[1:])}
        return len(distances) <= 1 and all(is_run_of([card.name for card in cards], self.board[column])
                                           for column, cards in shown.items())

    # What the user does

    def in_view(self, column, count):
        """The names of that many cards that can be reached with the mouse."""
        lists = self.vantrel.list_of(column)
        names = [card.name for card in self.vantrel.cards(column)
                 if card.y >= lists.y and card.y + card.height <= lists.y + lists.height]
        assert len(names) >= count, f"only {names} in view in {column}"
        return names[:count]

    def select(self, name):
        self.desktop.click(self.vantrel.card(name).center)
        wait_for(lambda: self.vantrel.card(name).is_selected, 5, f"{name} to be selected")

    def drag(self, names, to, height):
        """Drags the cards by the first of them to a height in a column, from 0 to 1. Which row that means is the
        window's business: it is taken from the disk, and check() tells whether all else fits."""
        cell = self.vantrel.list_of(to)
        before = self.vantrel.stored()
        self.desktop.drag(self.vantrel.card(names[0]).center,
                          (cell.x + cell.width // 2, cell.y + int(cell.height * height)))
        wait_for(lambda: self.vantrel.stored() != before, 10, f"the drop of {names} to reach the disk")
        time.sleep(0.5)
        after = self.vantrel.stored()[to]
        assert all(name in after for name in names), f"{names} are not in {to}: {after}"
        for name in sorted(names, key=after.index):
            self.note_move(name, to, after.index(name))

    def note_move(self, name, to, index=None):
        for names in self.board.values():
            if name in names:
                names.remove(name)
        self.board[to].insert(len(self.board[to]) if index is None else index, name)
        if to == "Done":
            self.complete.add(name)
        else:
            self.complete.discard(name)


def types_twenty_tasks(story):
    for name in NAMES:
        story.desktop.press("ctrl+n")
        time.sleep(0.3)
        story.desktop.type(name)
        story.desktop.press("Return")
        time.sleep(0.3)
        story.desktop.press("Return")
        story.board["To Do"].append(name)
        wait_for(lambda: story.vantrel.columns().get("To Do") == len(story.board["To Do"]), 5, f"{name} at once")
    story.check("after typing twenty tasks")


def moves_by_keys(story):
    story.select("Task 2")
    story.desktop.press("ctrl+shift+Right")
    story.note_move("Task 2", "Doing")
    story.check("after a move to the next column by keys")
    story.desktop.press("ctrl+shift+Right")
    story.note_move("Task 2", "Done")
    story.check("after a completion by keys")
    story.select("Task 3")
    story.desktop.press("ctrl+shift+Down")
    story.note_move("Task 3", "To Do", 2)
    story.check("after a move down by keys")
    story.desktop.press("ctrl+shift+Return")
    story.note_move("Task 3", "Done", 0)
    story.check("after the command that completes")


def moves_by_mouse(story):
    story.drag(story.in_view("To Do", 2)[1:], "Doing", height=0.9)
    story.check("after a drag to another column")
    story.drag(story.in_view("To Do", 1), "Done", height=0.9)
    story.check("after a drag that completes")
    story.drag(story.in_view("To Do", 1), "To Do", height=0.5)
    story.check("after a drag within a column")
    assert story.in_view("To Do", 1) == story.board["To Do"][:1], "the drop has scrolled its cell"


def renames_on_the_card(story):
    [old] = story.in_view("To Do", 1)
    story.select(old)
    story.desktop.press("F2")
    story.desktop.type("Renamed")
    story.desktop.press("Return")
    names = story.board["To Do"]
    names[names.index(old)] = "Renamed"
    story.check("after a renaming")


def moves_several_at_once(story):
    first, second = story.in_view("To Do", 2)
    story.select(first)
    story.desktop.click(story.vantrel.card(second).center, "ctrl")
    story.drag([first, second], "Doing", height=0.1)
    story.check("after a drag of two cards")


def refreshes(story):
    story.desktop.press("ctrl+r")
    time.sleep(1)
    story.check("after a refresh")


def survives_kills(story, rounds=4):
    """The program is killed shortly after the last thing that was shown."""
    for number in range(rounds):
        for _ in range(random.randint(1, 4)):
            [name] = story.in_view("To Do", 1)
            story.select(name)
            story.desktop.press("ctrl+shift+Right")
            story.note_move(name, "Doing")
            story.wait_until_shown("before a kill")
        time.sleep(random.uniform(0, 0.3))
        story.vantrel.kill()
        story.vantrel.start()
        story.check(f"after kill {number + 1}")


def second_copy_raises_the_first(story):
    story.desktop.minimize("Vantrel")
    wait_for(lambda: story.desktop.focused_window() != "Vantrel", 10, "the window to be minimized")
    other = story.desktop.run(*story.vantrel.command)
    assert other.wait(10) == 0, "the second copy did not end well"
    wait_for(lambda: story.desktop.focused_window() == "Vantrel", 10, "the first window to come back")
    story.check("after a second copy was started")


def main(program):
    seed = random.randrange(1 << 32)
    random.seed(seed)
    print("seed", seed)
    with Desktop(accessibility=True) as desktop:
        story = Story(program, desktop)
        story.vantrel.start()
        story.check("at the first start")
        for chapter in (types_twenty_tasks, moves_by_keys, moves_by_mouse, moves_several_at_once, renames_on_the_card,
                        refreshes, survives_kills, second_copy_raises_the_first):
            begin = time.monotonic()
            chapter(story)
            print(f"{chapter.__name__}: {time.monotonic() - begin:.1f} s", flush=True)
        for end in (story.vantrel.quit, story.vantrel.end):
            assert end() == 0, "the program ended badly"
            story.vantrel.start()
            story.check("after an orderly restart")


if __name__ == "__main__":
    run_test(main, sys.argv[1:], seconds=240)
