"""What `unitflow resolve --all` takes on a large workspace, next to its floor: a program that only
reads, parses and durably rewrites the same files.
"""

import pathlib
import sys
import tempfile

import bulk_workspace
from processes import timed


def measure(programs, instances, turns, folder):
    """Seconds of each run, by what was run: "resolve" and "floor". They take turns."""
    with tempfile.TemporaryDirectory(dir=folder) as scratch:
        workspace = pathlib.Path(scratch, "workspace")
        bulk_workspace.write_workspace(workspace, instances)
        resolve = [str(programs / "unitflow"), "-C", str(workspace), "resolve", "--all"]
        read, rewritten = bulk_workspace.files(workspace, instances)
        arguments = pathlib.Path(scratch, "arguments")
        arguments.write_text("\n".join([*map(str, read), "--rewrite", *map(str, rewritten)]))
        floor = [str(programs / "rewrite-floor"), f"@{arguments}"]

        seconds = {"resolve": [], "floor": []}
        for turn in range(turns):
            runs = [("resolve", resolve), ("floor", floor)]
            # Whoever comes second may find caches warm, so they take turns in that, too.
            for name, command in runs if turn % 2 == 0 else reversed(runs):
                if name == "resolve":
                    bulk_workspace.set_state(workspace, instances, turn % 2)
                seconds[name].append(timed(command))
            check(workspace, instances, turn % 2)
    return seconds


def check(workspace, instances, state):
    lines = instances // (bulk_workspace.FOLLOWERS + 1)
    for line in range(0, lines, 7):
        for number in range(bulk_workspace.FOLLOWERS):
            if not bulk_workspace.is_in_state(workspace, line, number, state):
                sys.exit(f"unitflow resolve --all left out target {number} of line {line}")
