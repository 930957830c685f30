#!/usr/bin/env python3
"""Checks what no compiler checks: the arrows between the layers, and words that do not belong into the repository.

Usage: check_sources.py ROOT
"""
import pathlib
import re
import subprocess
import sys

TEXT_ENDINGS = {".cpp", ".h", ".mm", ".qml", ".py", ".md", ".txt", ".cmake", ".sh", ".json", ""}
FORBIDDEN = [
    (re.compile(r"\b(TO" r"DO|FIX" r"ME|X" r"XX)\b|not imple" r"mented"), "unfinished work", ("src/", "tests/", "bench/", "tools/")),
    (re.compile(r"\bPart [1-7]\.[0-9]"), "a reference to a document outside the repository", ("",)),
    (re.compile(r"/(work|farm)/|/tmp/(wt|bash_jobs)"), "a path of one machine", ("",)),
]


def allowed_includes(root):
    """The table of docs/architecture.md: layer -> layers it may include."""
    rows = re.findall(r"^\| (\w+) \| (.+) \|$", (root / "docs/architecture.md").read_text("utf-8"), re.M)
    table = {layer: set(re.findall(r"\w+", may)) for layer, may in rows if layer != "layer"}
    if not table:
        sys.exit("docs/architecture.md has no table of layers")
    return table


def wrong_includes(root, files):
    table = allowed_includes(root)
    for path in files:
        parts = path.parts
        if len(parts) < 3 or parts[0] != "src" or path.suffix not in {".h", ".cpp", ".mm"}:
            continue
        layer = parts[1]
        if layer not in table:
            yield f"{path}: docs/architecture.md does not name the layer {layer}"
            continue
        for number, line in enumerate((root / path).read_text("utf-8").splitlines(), 1):
            match = re.match(r'\s*#include "(\w+)/', line)
            if match and match[1] in table and match[1] != layer and match[1] not in table[layer]:
                yield f"{path}:{number}: {layer} may not include {match[1]}"


def forbidden_words(root, files):
    for path in files:
        if path.suffix not in TEXT_ENDINGS or path.name == pathlib.Path(__file__).name:
            continue
        try:
            lines = (root / path).read_text("utf-8").splitlines()
        except UnicodeDecodeError:
            continue
        for pattern, what, folders in FORBIDDEN:
            if not any(str(path).startswith(folder) for folder in folders):
                continue
            for number, line in enumerate(lines, 1):
                if pattern.search(line):
                    yield f"{path}:{number}: {what}: {line.strip()[:80]}"


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    listed = subprocess.run(["git", "-C", root, "ls-files", "--cached", "--others", "--exclude-standard"],
                            check=True, capture_output=True, text=True).stdout.splitlines()
    files = [pathlib.Path(name) for name in listed if (root / name).is_file()]
    faults = [*wrong_includes(root, files), *forbidden_words(root, files)]
    print("\n".join(faults) or f"{len(files)} files: nothing to complain of")
    sys.exit(bool(faults))


main()
