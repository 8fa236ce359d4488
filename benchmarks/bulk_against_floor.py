"""What `unitflow resolve --all` takes on a large workspace, next to its floor: a program that only
reads, parses and durably rewrites the same files.
"""

import os
import pathlib
import sys
import tempfile

import bulk_workspace
from processes import timed


def measure(programs, instances, turns, folder):
    """Seconds of each run, by what was run: "one job", "two jobs" and "floor". They take turns."""
    with tempfile.TemporaryDirectory(dir=folder) as scratch:
        workspace = pathlib.Path(scratch, "workspace")
        bulk_workspace.write_workspace(workspace, instances)
        resolve = [str(programs / "unitflow"), "-C", str(workspace), "resolve", "--all", "--jobs"]
        read, rewritten = bulk_workspace.files(workspace, instances)
        arguments = pathlib.Path(scratch, "arguments")
        arguments.write_text("\n".join([*map(str, read), "--rewrite", *map(str, rewritten)]))
        commands = {
            "one job": [*resolve, "1"],
            "two jobs": [*resolve, "2"],
            "floor": [str(programs / "rewrite-floor"), f"@{arguments}"],
        }

        seconds = {name: [] for name in commands}
        state = 0
        for turn in range(turns):
            # Whoever comes later may find caches warm, so they take turns in that, too.
            for name in rotated(list(commands), turn):
                if name != "floor":
                    state = 1 - state
                    bulk_workspace.set_state(workspace, instances, state)
                os.sync()  # nobody waits for what another one wrote
                seconds[name].append(timed(commands[name]))
                check(workspace, instances, state)
    return seconds


def rotated(names, turn):
    start = turn % len(names)
    return names[start:] + names[:start]


def check(workspace, instances, state):
    lines = instances // (bulk_workspace.FOLLOWERS + 1)
    for line in range(0, lines, 7):
        for number in range(bulk_workspace.FOLLOWERS):
            if not bulk_workspace.is_in_state(workspace, line, number, state):
                sys.exit(f"target {number} of line {line} is not as it should be")
