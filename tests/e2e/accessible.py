"""What a screen reader knows of the programs on a Desktop: who is there, what is shown where, what is said."""

import os
from dataclasses import dataclass

from desktop import Unavailable


@dataclass
class Part:
    """One accessible object, as it was when it was looked at."""

    role: str
    name: str
    description: str
    is_showing: bool
    is_selected: bool
    is_focusable: bool
    is_focused: bool
    x: int
    y: int
    width: int
    height: int
    children: list

    def everything(self):
        """This part and all in it, from top to bottom."""
        return [self] + [part for child in self.children for part in child.everything()]

    def all(self, role):
        """The parts of that role in here, from top to bottom."""
        return [part for part in self.everything() if part.role == role]

    @property
    def center(self):
        return self.x + self.width // 2, self.y + self.height // 2


class ScreenReader:
    """One a process: the accessibility library keeps the bus that it first met."""

    def __init__(self, desktop):
        os.environ.update(desktop.environment)
        try:
            import gi
            gi.require_version("Atspi", "2.0")
            from gi.repository import Atspi, GLib
        except (ImportError, ValueError) as error:
            raise Unavailable(f"the accessibility library of Python is not installed: {error}") from error
        if Atspi.init() not in (0, 1):
            raise Unavailable("the accessibility bus cannot be reached")
        self._atspi = Atspi
        self._loop = GLib.MainContext.default()
        self._failure = GLib.Error
        self.heard = []
        self._events = Atspi.EventListener.new(self._handle)
        self._events.register("object:announcement")

    def _handle(self, event):
        self.heard.append((event.any_data, event.detail1, event.source.get_name()))

    def listen(self):
        """Takes in what has arrived, and gives all announcements so far: text, urgency, window."""
        while self._loop.iteration(False):
            pass
        return self.heard

    def program(self, name):
        """The program of that name as a Part with all that is in it; nothing if it is not on the bus."""
        self.listen()
        try:
            desktop = self._atspi.get_desktop(0)
            # After a crash the one that is gone may be listed for a moment.
            for index in reversed(range(desktop.get_child_count())):
                program = desktop.get_child_at_index(index)
                if program and program.get_name() == name:
                    program.clear_cache()
                    return self._look_at(program)
        except self._failure:
            pass  # It changed while it was looked at: whoever waits looks again.
        return None

    def _look_at(self, accessible):
        states = accessible.get_state_set()
        has = {name: states.contains(getattr(self._atspi.StateType, name))
               for name in ("SHOWING", "SELECTED", "FOCUSABLE", "FOCUSED")}
        place = accessible.get_extents(self._atspi.CoordType.SCREEN)
        children = [accessible.get_child_at_index(i) for i in range(accessible.get_child_count())]
        return Part(accessible.get_role_name(), accessible.get_name() or "", accessible.get_description() or "",
                    has["SHOWING"], has["SELECTED"], has["FOCUSABLE"], has["FOCUSED"],
                    place.x, place.y, place.width, place.height,
                    [self._look_at(child) for child in children if child])
