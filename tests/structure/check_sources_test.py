#!/usr/bin/env python3
"""Each rule of check_sources.py finds its fault, and a tree without one passes."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECKER = pathlib.Path(__file__).with_name("check_sources.py")
SOUND = {
    "docs/architecture.md": "| layer | may include |\n|---|---|\n| base | - |\n| board | base |\n",
    "cmake/symbols.tsv": "# symbol, drawing\nsquare\town\n",
    "src/base/Record.h": '#include <QString>\n#include "base/Other.h"\n',
    "src/board/CMakeLists.txt": "vantrel_layer(board\n    DEPENDS base\n    LINK Qt6::Core)\n",
    "src/board/Board.cpp": '#include "base/Record.h"\n#include "Board.moc"\n',
    "src/ui/board/Cell.qml": 'import QtQuick\nimport Vantrel.ViewModels\nItem {\n    symbol: "square"\n}\n',
}
FAULTY = [
    ("src/base/Record.h", '#include "board/Board.h"\n', "src/base/Record.h:1: base may not include board"),
    ("src/board/Board.cpp", '#include "Record.h"\n', "Board.cpp:1: board includes Record.h without its layer"),
    ("src/board/Board.cpp", "#include <sqlite3.h>\n", "board may not know SQLite"),
    ("src/attic/Old.cpp", "", "docs/architecture.md does not name the layer attic"),
    ("src/base/CMakeLists.txt", "vantrel_layer(base DEPENDS board)\n", "base may not link board"),
    ("src/ui/board/Cell.qml", "import QtMultimedia\n", "ui may not import QtMultimedia"),
    ("src/ui/board/Cell.qml", 'symbol: open ? "square" : "sqare"\n', "there is no symbol sqare"),
    ("src/base/Record.h", "// TO" "DO: all of it\n", "unfinished work"),
    ("README.md", "As Part" " 3.3 has it.\n", "a reference to a document outside"),
    ("tests/run.sh", "cd /tmp/" "wt/x\n", "a path of one machine"),
    ("README.md", "<<<<" "<<< HEAD\n", "a merge that is not finished"),
]


def check(files):
    with tempfile.TemporaryDirectory() as root:
        subprocess.run(["git", "init", "-q", root], check=True)
        for name, text in files.items():
            path = pathlib.Path(root, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, "utf-8")
        return subprocess.run([sys.executable, CHECKER, root], capture_output=True, text=True)


class CheckSources(unittest.TestCase):
    def test_a_sound_tree_passes(self):
        result = check(SOUND)
        self.assertEqual((0, f"{len(SOUND)} files: nothing to complain of\n"), (result.returncode, result.stdout))

    def test_each_fault_is_found_alone(self):
        for name, text, complaint in FAULTY:
            with self.subTest(complaint):
                result = check(SOUND | {name: text})
                self.assertEqual(1, result.returncode, result.stderr)
                self.assertIn(complaint, result.stdout)
                self.assertEqual(1, len(result.stdout.splitlines()), result.stdout)


unittest.main()
