#!/usr/bin/env python3
"""Checks what no compiler checks: the arrows between the layers, and what does not belong into the repository.

Usage: check_sources.py ROOT
"""
import pathlib
import re
import subprocess
import sys

CODE = {".cpp", ".h", ".mm"}
TEXT = CODE | {".qml", ".py", ".md", ".txt", ".cmake", ".sh", ".json", ".tsv", ".svg", ".yml", ""}
QML_MODULES = re.compile(r"QtQuick|QtQml|Qt\.|Vantrel\.(ViewModels|Ui)$")

# What no file may hold: pattern, what it is, and the folders it is looked for in. The words are put together here, so
# that this file may be checked as well.
FORBIDDEN = [
    (r"\b(TO" r"DO|FIX" r"ME|X" r"XX)\b|not imple" r"mented", "unfinished work", ("src/", "tests/", "bench/", "tools/")),
    (r"\bPart [1-7]\.[0-9]|\b(the|this|per|see|by) spec(ification)?\b", "a reference to a document outside", ("",)),
    (r"/(work|farm)/\w|/tmp/(wt|bash_" r"jobs)", "a path of one machine", ("",)),
    (r"^(<{7}|>{7}) ", "a merge that is not finished", ("",)),
]


def allowed_layers(root):
    """The table of docs/architecture.md: layer -> layers it may use."""
    rows = re.findall(r"^\| (\w+) \| (.+) \|$", (root / "docs/architecture.md").read_text("utf-8"), re.M)
    table = {layer: set(re.findall(r"\w+", may)) for layer, may in rows if layer != "layer"}
    if not table:
        sys.exit("docs/architecture.md has no table of layers")
    return table


def numbered_lines(root, path):
    return enumerate((root / path).read_text("utf-8").splitlines(), 1)


def layer_of(path):
    return path.parts[1] if len(path.parts) > 2 and path.parts[0] == "src" else None


def wrong_includes(root, files):
    table = allowed_layers(root)
    for path in files:
        layer = layer_of(path)
        if not layer or path.suffix not in CODE:
            continue
        if layer not in table:
            yield f"{path}: docs/architecture.md does not name the layer {layer}"
            continue
        for number, line in numbered_lines(root, path):
            include = re.match(r'\s*#\s*include\s*(["<])((\w+)/)?([^">]+)', line)
            if not include:
                continue
            quote, _, folder, name = include.groups()
            where = f"{path}:{number}: {layer}"
            if quote == '"' and not folder and not name.endswith(".moc"):
                yield f"{where} includes {name} without its layer"
            if folder in table and folder != layer and folder not in table[layer]:
                yield f"{where} may not include {folder}"
            if name == "sqlite3.h" and layer != "persistence":
                yield f"{where} may not know SQLite"


def wrong_links(root, files):
    table = allowed_layers(root)
    for path in files:
        layer = layer_of(path)
        if layer not in table or path.name != "CMakeLists.txt" or len(path.parts) != 3:
            continue
        linked = re.search(r"\bDEPENDS\s+([a-z\s]+)", (root / path).read_text("utf-8"))
        for other in sorted(set(linked[1].split() if linked else []) - table[layer]):
            yield f"{path}: {layer} may not link {other}"


def wrong_qml(root, files):
    """Imports beside the view models' module, and symbols that have no drawing."""
    symbols = {line.split("\t")[0] for _, line in numbered_lines(root, "cmake/symbols.tsv") if not line.startswith("#")}
    for path in files:
        if path.suffix != ".qml" or layer_of(path) != "ui":
            continue
        for number, line in numbered_lines(root, path):
            imported = re.match(r'\s*import\s+([\w.]+|".*")', line)
            if imported and not QML_MODULES.match(imported[1]):
                yield f"{path}:{number}: ui may not import {imported[1]}"
            for text in re.findall(r'"([a-z0-9.]+)"', line) if re.match(r"\s*symbol:", line) else []:
                if text not in symbols:
                    yield f"{path}:{number}: there is no symbol {text} in cmake/symbols.tsv"


def forbidden_words(root, files):
    for path in files:
        if path.suffix not in TEXT:
            continue
        for pattern, what, folders in FORBIDDEN:
            if not str(path).startswith(folders):
                continue
            for number, line in numbered_lines(root, path):
                if re.search(pattern, line):
                    yield f"{path}:{number}: {what}: {line.strip()[:80]}"


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    # The checkout of a build service may belong to another user.
    listed = subprocess.run(["git", "-c", "safe.directory=*", "-C", root, "ls-files", "--cached", "--others",
                             "--exclude-standard"], check=True, capture_output=True, text=True).stdout.splitlines()
    files = [pathlib.Path(name) for name in sorted(set(listed)) if (root / name).is_file()]
    checks = (wrong_includes, wrong_links, wrong_qml, forbidden_words)
    faults = [fault for check in checks for fault in check(root, files)]
    print("\n".join(faults) or f"{len(files)} files: nothing to complain of")
    sys.exit(bool(faults))


main()
