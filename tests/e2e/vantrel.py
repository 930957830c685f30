"""Vantrel on a Desktop: the running program as its user sees it, and what it has stored as the disk has it."""

import json
import re
import signal
import sqlite3

from desktop import wait_for

HEADER = re.compile(r"column header for (.*) \[type .*\] - (\d+) tasks?(?: \(wip exceeded.*\))?")


class Vantrel:
    def __init__(self, program, desktop, reader):
        self.command = (program,)
        self._desktop = desktop
        self._reader = reader
        self._process = None

    # The process

    def start(self, wait=True):
        self._process = self._desktop.run(*self.command)
        if wait:
            wait_for(lambda: self._desktop.focused_window() == "Vantrel", 30, "the window")
            wait_for(self.columns, 30, "the board")
        return self._process

    def kill(self):
        self._process.send_signal(signal.SIGKILL)
        self._process.wait(10)
        wait_for(lambda: not self._look(), 10, "the killed program to leave the bus")

    def quit(self):
        """As its user does. Gives the exit code."""
        self._desktop.press("ctrl+q")
        return self._process.wait(20)

    def end(self):
        """As the desktop's logging out does. Gives the exit code."""
        self._process.terminate()
        return self._process.wait(20)

    # What the user sees

    def _look(self):
        return self._reader.program("Vantrel")

    def columns(self):
        """The columns by name, in their order, with the number of tasks that their headers tell."""
        program = self._look()
        headers = [HEADER.fullmatch(part.name) for part in program.all("table column header")] if program else []
        return {header[1]: int(header[2]) for header in headers if header}

    def cards(self, column):
        """The cards of a column that can be seen, in the order in which they are read out."""
        program = self._look()
        cells = [part for part in program.all("list") if part.name == column] if program else []
        return [card for cell in cells for card in cell.all("list item")
                if card.is_showing and cell.y < card.y + card.height and card.y < cell.y + cell.height]

    def card(self, name):
        """The card of that name, once it rests in view."""
        def resting():
            first = self._find(name)
            second = self._find(name)
            return second if first and second and first.center == second.center else None
        return wait_for(resting, 10, f"the card {name}")

    def _find(self, name):
        program = self._look()
        found = [card for card in program.all("list item") if card.name == name] if program else []
        return next((card for card in found if card.is_showing), None)

    def list_of(self, column):
        """The part in which the cards of a column lie."""
        return next(part for part in self._look().all("list") if part.name == column)

    def notice(self):
        """The text of the notice on show."""
        alerts = [part for part in self._look().all("alert") if part.is_showing]
        return alerts[0].name if alerts else ""

    # What the disk has

    def stored(self):
        """The names of the tasks of each column, in their order."""
        return {column: [name for name, _ in tasks] for column, tasks in self._rows().items()}

    def stored_as_complete(self):
        return {name for tasks in self._rows().values() for name, is_complete in tasks if is_complete}

    def _rows(self):
        folder = self._desktop.data_folder
        configuration = json.loads((folder / "vantrel-board-configuration.json").read_text())
        columns = configuration if isinstance(configuration, list) else configuration["columns"]
        rows = {column["name"]: [] for column in sorted(columns, key=lambda column: column["position"])}
        names = {column["id"]: column["name"] for column in columns}
        with sqlite3.connect(f"file:{folder}/taskPositions.sqlite?mode=ro", uri=True, timeout=5) as store:
            for name, is_complete, column in store.execute(
                    "SELECT name, isComplete, columnId FROM plainTextTasks JOIN taskPositions USING (id) "
                    "ORDER BY position"):
                rows[names[column]].append((name, bool(is_complete)))
        return rows
