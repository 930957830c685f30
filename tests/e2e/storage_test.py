#!/usr/bin/env python3
"""Real disks that refuse: a folder that may not be written, and one that is full for a while.

Usage: storage_test.py <vantrel>. Permissions mean nothing to root, so as root the program is played as the user
nobody. A full disk is a small tmpfs, which only root may mount: without that its chapter is left out.
"""

import contextlib
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

from accessible import ScreenReader
from desktop import Desktop, run_test, wait_for
from vantrel import Vantrel

NOBODY = 65534


@contextlib.contextmanager
def small_disk():
    """A file system of 3 MB that anybody may write to; nothing where it cannot be mounted."""
    folder = tempfile.mkdtemp(prefix="vantrel-disk-")
    mount = ["mount", "-t", "tmpfs", "-o", "size=3m,mode=777", "tmpfs", folder]
    mounted = os.getuid() == 0 and subprocess.run(mount, check=False, stderr=subprocess.DEVNULL).returncode == 0
    try:
        yield pathlib.Path(folder) if mounted else None
    finally:
        if mounted:
            subprocess.run(["umount", "--lazy", folder], check=True)
        os.rmdir(folder)


def as_ordinary_user(chapter, *arguments):
    """Runs `chapter` in a process of its own, which belongs to nobody if this one belongs to root."""
    child = os.fork()
    if child == 0:
        status = 1
        try:
            if os.getuid() == 0:
                os.setgroups([])
                os.setgid(NOBODY)
                os.setuid(NOBODY)
            run_test(chapter, arguments, seconds=120)
            status = 0
        except SystemExit as end:
            status = end.code
        except BaseException:
            sys.excepthook(*sys.exc_info())
        finally:
            os._exit(status)
    status = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
    if status != 0:
        sys.exit(status)


def add_task(desktop, name):
    desktop.press("ctrl+n")
    desktop.type(name)
    desktop.press("Return")
    time.sleep(0.3)
    desktop.press("Return")


def folder_that_may_not_be_written(program):
    with Desktop(accessibility=True) as desktop:
        desktop.data_folder.parent.mkdir(parents=True)
        # The program gives its own folder the permissions that it needs, so the refusal is one level up.
        desktop.data_folder.parent.chmod(0o500)
        vantrel = Vantrel(program, desktop, ScreenReader(desktop))
        vantrel.start()
        assert list(vantrel.columns()) == ["To Do", "Doing", "Done"], vantrel.columns()
        wait_for(lambda: str(desktop.data_folder) in vantrel.notice(), 10, "a notice that names the folder")
        add_task(desktop, "Lives in memory")
        wait_for(lambda: vantrel.columns().get("To Do") == 1, 10, "the task on the board")
        desktop.data_folder.parent.chmod(0o700)
        assert not desktop.data_folder.exists(), "something was written all the same"


def disk_that_is_full_for_a_while(program, disk):
    with Desktop(accessibility=True) as desktop:
        desktop.data_folder.parent.mkdir(parents=True)
        desktop.data_folder.symlink_to(disk)
        vantrel = Vantrel(program, desktop, ScreenReader(desktop))
        vantrel.start()
        add_task(desktop, "Before")
        wait_for(lambda: vantrel.stored()["To Do"] == ["Before"], 10, "the first task on the disk")

        filler = disk / "filler"
        with contextlib.suppress(OSError), filler.open("wb", buffering=0) as file:
            while True:
                file.write(b"x" * 4096)
        names = [f"Task {number}" for number in range(40)]
        for name in names:
            add_task(desktop, name)
        wait_for(lambda: "taskPositions.sqlite" in vantrel.notice(), 20, "a notice that names the file")
        wait_for(lambda: vantrel.columns().get("To Do") == 41, 10, "all tasks on the board")
        assert len(vantrel.stored()["To Do"]) < 41, "the disk was not full"

        filler.unlink()
        wait_for(lambda: vantrel.stored()["To Do"] == ["Before", *names], 30, "all tasks on the disk")
        assert vantrel.end() == 0, "the program ended badly"
        vantrel.start()
        assert vantrel.columns()["To Do"] == 41, vantrel.columns()


def main(program):
    with tempfile.TemporaryDirectory(prefix="vantrel-copy-") as folder, small_disk() as disk:
        # The user nobody may not be allowed to reach the build folder.
        os.chmod(folder, 0o755)
        copy = shutil.copy(program, folder)
        as_ordinary_user(folder_that_may_not_be_written, copy)
        if disk:
            as_ordinary_user(disk_that_is_full_for_a_while, copy, disk)
        else:
            print("left out: no small disk can be mounted here")


if __name__ == "__main__":
    main(*sys.argv[1:])
