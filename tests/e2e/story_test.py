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
        try:
            wait_for(self._is_shown, 10, f"the window to show it {when}")
            wait_for(lambda: self.vantrel.stored() == self.board, 10, f"the disk to have it {when}")
            wait_for(lambda: self.vantrel.stored_as_complete() == self.complete, 10, f"completion {when}")
        except AssertionError:
            print("expected:", self.board, self.complete)
            print("shown:", self.vantrel.columns(), self._shown())
            print("stored:", self.vantrel.stored(), self.vantrel.stored_as_complete())
            raise

    def _shown(self):
        return {column: [card.name for card in self.vantrel.cards(column)] for column in self.board}

    def _is_shown(self):
        """Cells make only the cards near the view: those must be a run of the cell. The header counts all."""
        if self.vantrel.columns() != {column: len(names) for column, names in self.board.items()}:
            return False
        return all(is_run_of(shown, self.board[column]) for column, shown in self._shown().items())

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
    story.desktop.press("ctrl+n")
    time.sleep(0.5)
    for name in NAMES:
        story.desktop.type(name)
        story.desktop.press("Return")
        story.board["To Do"].append(name)
        wait_for(lambda: story.vantrel.columns()["To Do"] == len(story.board["To Do"]), 5, f"{name} at once")
    story.desktop.press("Escape")
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
    first, second = story.in_view("To Do", 2)
    story.desktop.drag(story.vantrel.card(first).center, story.vantrel.place_in("Doing"))
    story.note_move(first, "Doing")
    story.check("after a drag to another column")
    story.desktop.drag(story.vantrel.card(second).center, story.vantrel.place_in("Done"))
    story.note_move(second, "Done", 0)
    story.check("after a drag that completes, which lands on top")
    first, _, third = story.in_view("To Do", 3)
    before = list(story.board["To Do"])
    target = story.vantrel.card(third)
    story.desktop.drag(story.vantrel.card(first).center, (target.center[0], target.y + target.height - 4))
    wait_for(lambda: story.vantrel.stored()["To Do"] != before, 10, "a drag within a column to be stored")
    # The place follows from the height in the cell alone, whatever the cards' heights: take it as it came.
    story.board["To Do"] = story.vantrel.stored()["To Do"]
    assert sorted(story.board["To Do"]) == sorted(before) and story.board["To Do"][0] != first
    story.check("after a drag within a column")


def moves_several_at_once(story):
    first, second = story.in_view("To Do", 2)
    story.select(first)
    story.desktop.click(story.vantrel.card(second).center, "ctrl")
    story.desktop.drag(story.vantrel.card(first).center, story.vantrel.place_in("Doing"))
    story.note_move(first, "Doing")
    story.note_move(second, "Doing")
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
            wait_for(story._is_shown, 10, "the move to be shown")
        time.sleep(random.uniform(0, 0.3))
        story.vantrel.kill()
        story.vantrel.start()
        story.check(f"after kill {number + 1}")


def second_copy_raises_the_first(story):
    other = story.desktop.run(*story.vantrel.command)
    assert other.wait(10) == 0, "the second copy did not end well"
    story.check("after a second copy was started")


def main(program):
    seed = random.randrange(1 << 32)
    random.seed(seed)
    print("seed", seed)
    with Desktop(accessibility=True) as desktop:
        story = Story(program, desktop)
        story.vantrel.start()
        story.check("at the first start")
        for chapter in (types_twenty_tasks, moves_by_keys, moves_by_mouse, moves_several_at_once, refreshes,
                        survives_kills, second_copy_raises_the_first):
            print(chapter.__name__, flush=True)
            chapter(story)
        assert story.vantrel.end() == 0, "the program ended badly"
        story.vantrel.start()
        story.check("after an orderly restart")


if __name__ == "__main__":
    run_test(main, sys.argv[1:], seconds=240)
