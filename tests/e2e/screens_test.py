#!/usr/bin/env python3
"""A month of reminders on the screens of analytics, and every screen as a screen reader has it.

Usage: screens_test.py <vantrel>. The reminders are files in a folder, as other programs write them.
"""

import datetime
import json
import random
import sys
import uuid

from accessible import ScreenReader
from desktop import Desktop, run_test, wait_for
from vantrel import Vantrel

OPEN_TASKS = 40
FINISHED_TASKS = 60
DAYS = 20


def write_month(desktop):
    """Open reminders of all ages and finished ones of the last twenty days, and the settings that show them."""
    chance = random.Random(1)
    now = datetime.datetime.now(datetime.timezone.utc)
    folder = desktop.home / "reminders"
    (folder / "Errands").mkdir(parents=True)
    for number in range(OPEN_TASKS + FINISHED_TASKS):
        is_open = number < OPEN_TASKS
        # The last hour and the first day stay free, so that no clock makes a difference.
        finished = now - datetime.timedelta(hours=chance.uniform(1, 24 * (DAYS - 1)))
        created = now - datetime.timedelta(days=chance.uniform(0, 45)) if is_open else finished - datetime.timedelta(3)
        uid = uuid.UUID(int=chance.getrandbits(128))
        status = ["STATUS:NEEDS-ACTION"] if is_open else ["STATUS:COMPLETED", f"COMPLETED:{finished:%Y%m%dT%H%M%SZ}"]
        lines = ["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Vantrel//Test//EN", "BEGIN:VTODO", f"UID:{uid}",
                 f"DTSTAMP:{created:%Y%m%dT%H%M%SZ}", f"CREATED:{created:%Y%m%dT%H%M%SZ}", f"SUMMARY:Errand {number}",
                 *status, "END:VTODO", "END:VCALENDAR", ""]
        (folder / "Errands" / f"{uid}.ics").write_text("\r\n".join(lines))
    desktop.data_folder.mkdir(parents=True)
    (desktop.data_folder / "user-defaults.json").write_text(json.dumps(
        {"isOmniFocusEnabled": False, "isRemindersEnabled": True, "remindersFolder": str(folder)}))


class Tour:
    def __init__(self, program, desktop):
        self.desktop = desktop
        self.reader = ScreenReader(desktop)
        self.vantrel = Vantrel(program, desktop, self.reader)

    def shown(self, role, name):
        """The parts of that role whose names begin so, as far as they can be seen."""
        program = self.reader.program("Vantrel")
        return [part for part in program.all(role) if part.is_showing and part.name.startswith(name)] if program else []

    def awaits(self, role, name):
        return wait_for(lambda: self.shown(role, name), 10, f'the {role} "{name}"')

    def awaits_focus(self, name):
        def focused():
            program = self.reader.program("Vantrel")
            return program and any(part.is_focused and part.name.startswith(name) for part in program.everything())
        wait_for(focused, 10, f'the focus on "{name}"')

    def awaits_said(self, text):
        wait_for(lambda: any(said.startswith(text) for said, *_ in self.reader.listen()), 10, f'"{text}" to be said')

    def check_names(self, screen):
        """Nothing that the keyboard can be on is without a name, but for menus: they are known by their items."""
        parts = self.reader.program("Vantrel").everything()
        nameless = [part.role for part in parts if part.is_showing and (part.is_focusable or part.is_focused)
                    and not part.name and part.role != "popup menu"]
        assert not nameless, f"without a name on {screen}: {nameless}"


def throughput(tour):
    tour.desktop.press("alt+3")
    [chart] = tour.awaits("chart", "Completed per day")
    tour.awaits_said(f"Analytics updated with {FINISHED_TASKS} completed tasks shown as line chart for per day view")
    summary = f"{FINISHED_TASKS} total tasks completed across {DAYS + 1} Per Day periods."
    assert chart.description.startswith(summary), chart.description
    points = [point.name for point in chart.all("image")]
    assert len(points) == DAYS + 1 and all(" completed" in point for point in points), points
    assert sum(int(point.split(": ")[1].split()[0]) for point in points) == FINISHED_TASKS, points
    tour.check_names("throughput")

    tour.awaits_focus("Time Period")
    tour.desktop.press("Tab", "Tab", "Tab")
    tour.awaits_focus("Completed per day")
    tour.desktop.press("Home", "Right")
    tour.awaits_focus(points[1])
    tour.desktop.press("shift+Tab", "shift+Tab", "Right")
    [chart] = tour.awaits("chart", "Throughput by Source")
    assert chart.description.startswith(f"OmniFocus: 0, Reminders: {FINISHED_TASKS}"), chart.description
    tour.desktop.press("shift+Tab", "Left")
    wait_for(lambda: len(tour.shown("chart", "Throughput by Source")[0].all("image")) >= DAYS * 24, 10, "the hours")


def task_age(tour):
    tour.desktop.press("alt+4")
    tour.awaits("heading", "Task Age Optimization")
    tour.awaits_said(f"Analysis complete. Found {OPEN_TASKS} tasks across 6 age categories.")
    [chart] = tour.awaits("chart", "Task Age Distribution Chart")
    bars = [bar.name for bar in chart.all("list item")]
    assert sum(int(bar.split(": ")[1].split()[0]) for bar in bars) == OPEN_TASKS, bars
    tour.check_names("task age")
    tour.awaits_focus(bars[0])
    tour.desktop.press("Right", "space")
    tour.awaits_said(bars[1])
    tour.desktop.press("Tab", "Tab", "End")
    tour.awaits_said("Selected: Errand ")
    wait_for(lambda: any(card.is_selected for card in tour.shown("list item", "Errand ")), 10, "the last card in view")
    tour.desktop.press("shift+Tab")
    tour.awaits("heading", "Task Age Optimization")


def sheets_and_menus(tour):
    tour.desktop.press("alt+1")
    wait_for(tour.vantrel.columns, 10, "the board")
    tour.check_names("the board")
    for keys, role, name in (("ctrl+n", "dialog", "Quick Add Task"), ("ctrl+i", "dialog", "Import Tasks"),
                             ("ctrl+e", "dialog", "Export Tasks"), ("F10", "popup menu", "")):
        tour.desktop.press(keys)
        tour.awaits(role, name)
        tour.check_names(keys)
        tour.desktop.press("Escape")


def clipboard(tour):
    """What is exported reaches other programs, each task of the board on a line of its own."""
    tour.desktop.press("ctrl+e")
    tour.awaits_focus("Export Scope")
    tour.desktop.press("Down")
    tour.awaits("list item", "- [ ] Errand ")
    [button] = tour.awaits("push button", "Copy to Clipboard")
    tour.desktop.click(button.center)
    lines = wait_for(tour.desktop.clipboard, 10, "a text on the clipboard").splitlines()
    still_open = [line for line in lines if line.startswith("- [ ] Errand ")]
    assert len(still_open) == OPEN_TASKS, lines
    assert all(line.startswith("- [x] Errand ") for line in lines if line not in still_open), lines


def main(program):
    with Desktop(accessibility=True) as desktop:
        write_month(desktop)
        tour = Tour(program, desktop)
        tour.vantrel.start()
        for chapter in (throughput, task_age, sheets_and_menus, clipboard):
            chapter(tour)
        assert tour.vantrel.quit() == 0, "the program ended badly"


if __name__ == "__main__":
    run_test(main, sys.argv[1:], seconds=150)
