"""What `unitflow set` takes, next to its floor: a program that only reads, parses and durably
rewrites the same files. Both are whole processes, run in turns in the same folder.
"""

import json
import pathlib
import shutil
import sys
import tempfile

from processes import timed

SOURCE = "controller"
URL = "Settings/TemperatureUnit"
VALUES = ("°F", "°C")  # the example starts with the second one
WARM_UP = 5


def measure(programs, example, pairs, folder):
    """Seconds of each run, by what was run: "set" and "floor"."""
    with tempfile.TemporaryDirectory(dir=folder) as scratch:
        workspace = pathlib.Path(scratch, "workspace")
        shutil.copytree(example, workspace)
        set_unit = [str(programs / "unitflow"), "-C", str(workspace), "set", SOURCE, URL]
        read, rewritten = files_of(workspace, set_unit)
        floor = [str(programs / "rewrite-floor"), *read, "--rewrite", *rewritten]

        seconds = {"set": [], "floor": []}
        for turn in range(1, WARM_UP + pairs + 1):
            value = VALUES[turn % 2]
            runs = [("set", [*set_unit, value]), ("floor", floor)]
            # Whoever comes second may find caches warm, so they take turns in that, too.
            for name, command in runs if turn % 4 < 2 else reversed(runs):
                seconds[name].append(timed(command))
            if not is_set(workspace, value):
                sys.exit(f"unitflow set did not write {value}")
    return {name: runs[WARM_UP:] for name, runs in seconds.items()}


def files_of(workspace, set_unit):
    """The files that are only read, and those that a set rewrites too, found by doing one."""
    links = json.loads((workspace / "links.json").read_text(encoding="utf-8"))
    needed = {
        workspace / "links.json",
        workspace / "configuration" / "manifest.json",
        workspace / "configuration" / f"{SOURCE}.json",
        *(workspace / "dependency" / f"{link['dependency']}.json" for link in links),
        *(workspace / kind_of(link) / f"{link['target']}.json" for link in links),
    }
    before = {path: path.read_bytes() for path in needed}
    timed([*set_unit, VALUES[0]])
    rewritten = {path for path in needed if path.read_bytes() != before[path]}
    if len(rewritten) < 2:
        sys.exit("unitflow set changed less than two files")
    return sorted(map(str, needed - rewritten)), sorted(map(str, rewritten))


def kind_of(link):
    return "process" if link["process"] else "configuration"


def is_set(workspace, value):
    tree = json.loads((workspace / "configuration" / f"{SOURCE}.json").read_text(encoding="utf-8"))
    for key in URL.split("/"):
        tree = tree[key]
    return tree == value
