"""A desktop of the tests' own: a virtual X server, a session bus and, if wanted, the accessibility bus.

Everything is started as a child of this process and ended with it, and nothing of the user's session is
touched. Where a needed program is missing, Unavailable says which: the test then skips itself.
"""

import ctypes
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

SKIPPED = 77  # the exit code that ctest counts as "skipped"
AT_SPI_LAUNCHER = "/usr/libexec/at-spi-bus-launcher"


class Unavailable(Exception):
    """Something that the test needs is not there; the text says what."""


def wait_for(condition, seconds, what):
    """Gives the first true result of `condition`; fails with `what` after `seconds`."""
    end = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise AssertionError(f"waited {seconds} s in vain for {what}")
        time.sleep(0.02)


def run_test(main, arguments, seconds):
    """Runs a test program: it fails if it takes longer than `seconds`, and is skipped if it cannot run."""

    def fail(*_):
        raise AssertionError(f"the test took longer than {seconds} s")

    signal.signal(signal.SIGALRM, fail)
    signal.alarm(seconds)
    try:
        main(*arguments)
    except Unavailable as missing:
        print(f"SKIPPED: {missing}")
        sys.exit(SKIPPED)


class Desktop:
    """Used as a context; `environment` is what programs on it are started with."""

    def __init__(self, accessibility=False):
        self._accessibility = accessibility
        self._children = []
        self._folder = None
        self.environment = {}

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for child in reversed(self._children):
            if child.poll() is None:
                child.terminate()
                try:
                    child.wait(5)
                except subprocess.TimeoutExpired:
                    child.kill()
                    child.wait()
        if self._folder:
            shutil.rmtree(self._folder, ignore_errors=True)

    @property
    def home(self):
        return self._folder / "home"

    @property
    def data_folder(self):
        """Where the program keeps its files on this desktop."""
        return self.home / ".local" / "share" / "Vantrel"

    def run(self, *command, **options):
        """Starts a program on this desktop; it ends with the desktop at the latest."""
        options.setdefault("env", self.environment)
        child = subprocess.Popen([str(word) for word in command], preexec_fn=_end_with_parent, **options)
        self._children.append(child)
        return child

    def xdotool(self, *words):
        """What xdotool prints for a command; nothing if the command fails."""
        answer = subprocess.run([_program("xdotool"), *map(str, words)], env=self.environment,
                                capture_output=True, text=True, check=False)
        return answer.stdout.strip() if answer.returncode == 0 else ""

    def focused_window(self):
        """The title of the window that has the keyboard."""
        return self.xdotool("getwindowfocus", "getwindowname")

    def clipboard(self):
        """The text that another program gets from the clipboard; nothing if there is none."""
        answer = subprocess.run([_program("xclip"), "-o", "-selection", "clipboard"], env=self.environment,
                                capture_output=True, text=True, timeout=10, check=False)
        return answer.stdout if answer.returncode == 0 else ""

    def minimize(self, title):
        self.xdotool("search", "--onlyvisible", "--name", f"^{title}$", "windowminimize")

    def press(self, *keys):
        self.xdotool("key", "--delay", 30, *keys)

    def type(self, text):
        self.xdotool("type", "--delay", 5, text)

    def move_mouse(self, place):
        # Not "--sync": that waits many seconds for a pointer that is there already.
        self.xdotool("mousemove", *place)
        time.sleep(0.04)

    def click(self, place, *modifiers):
        """Clicks with the left button, while the modifiers are held."""
        self.move_mouse(place)
        for modifier in modifiers:
            self.xdotool("keydown", modifier)
        self.xdotool("click", 1)
        for modifier in modifiers:
            self.xdotool("keyup", modifier)

    def drag(self, start, end):
        """Drags with the left button in a dozen steps, as a hand does."""
        steps = 12
        self.move_mouse(start)
        time.sleep(0.2)
        self.xdotool("mousedown", 1)
        for step in range(1, steps + 1):
            point = [a + (b - a) * step // steps for a, b in zip(start, end)]
            self.move_mouse(point)
        time.sleep(0.3)
        self.xdotool("mouseup", 1)

    def _start(self):
        self._folder = pathlib.Path(tempfile.mkdtemp(prefix="vantrel-desktop-"))
        for name in ("home", "run"):
            (self._folder / name).mkdir(mode=0o700)
        self.environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(self.home),
            "XDG_RUNTIME_DIR": str(self._folder / "run"),
            "XDG_DATA_HOME": str(self.home / ".local" / "share"),
            "XDG_CONFIG_HOME": str(self.home / ".config"),
            "XDG_CACHE_HOME": str(self.home / ".cache"),
            "LC_ALL": "C.UTF-8",
            "TZ": "Europe/Berlin",
            "QT_QPA_PLATFORM": "xcb",
            "QT_QUICK_BACKEND": "software",
        }
        for name in ("LSAN_OPTIONS", "ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"):
            if name in os.environ:
                self.environment[name] = os.environ[name]
        self.environment["DISPLAY"] = ":" + self._start_server(
            "Xvfb", "-screen", "0", "1400x1000x24", "-nolisten", "tcp",
            # Without this the server starts over when its last client goes, which may be the first one.
            "-noreset", "-displayfd", "1")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_server(
            "dbus-daemon", "--session", "--nofork", "--print-address=1")
        self.run(_program("openbox"), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        # A window that is there before its manager never gets the focus.
        wait_for(lambda: self.xdotool("get_num_desktops"), 20, "the window manager")
        if self._accessibility:
            self.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
            self.run(_program(AT_SPI_LAUNCHER), "--launch-immediately",
                     stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def _start_server(self, program, *arguments):
        """Starts a server that prints its address as its first line, and gives that."""
        server = self.run(_program(program), *arguments, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True)
        address = server.stdout.readline().strip()
        if not address:
            raise Unavailable(f"{program} does not start here")
        return address


def _end_with_parent():
    """Has the system end this new process with the test, even if that is killed."""
    set_parent_death_signal = 1
    ctypes.CDLL(None).prctl(set_parent_death_signal, signal.SIGTERM)


def _program(name):
    path = shutil.which(name)
    if not path:
        raise Unavailable(f"{name} is not installed")
    return path
