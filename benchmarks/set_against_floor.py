"""What `unitflow set` costs, as a ratio to the floor: a program that only reads, parses and durably
rewrites the same files. Both are whole processes, run in turns in the same folder.
"""

import argparse
import json
import os
import pathlib
import shutil
import statistics
import sys
import tempfile
import time

SOURCE = "controller"
URL = "Settings/TemperatureUnit"
VALUES = ("°F", "°C")  # the example starts with the second one
WARM_UP = 5


def main():
    options = parse_arguments()
    programs = options.programs.resolve()
    with tempfile.TemporaryDirectory(dir=options.folder) as scratch:
        workspace = pathlib.Path(scratch, "workspace")
        shutil.copytree(options.example, workspace)
        set_unit = [str(programs / "unitflow"), "-C", str(workspace), "set", SOURCE, URL]
        read, rewritten = files_of(workspace, set_unit)
        floor = [str(programs / "rewrite-floor"), *read, "--rewrite", *rewritten]

        pairs = []
        for turn in range(1, WARM_UP + options.pairs + 1):
            value = VALUES[turn % 2]
            # Whoever comes second may find caches warm, so they take turns in that, too.
            if turn % 4 < 2:
                set_time = timed([*set_unit, value])
                floor_time = timed(floor)
            else:
                floor_time = timed(floor)
                set_time = timed([*set_unit, value])
            if not is_set(workspace, value):
                sys.exit(f"unitflow set did not write {value}")
            pairs.append((set_time, floor_time))

    print(f"{len(read)} files read, {len(rewritten)} more read and rewritten, {options.pairs} pairs")
    report(pairs[WARM_UP:])


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("programs", type=pathlib.Path, help="the folder of the built programs")
    parser.add_argument("example", type=pathlib.Path, help="the workspace to copy")
    parser.add_argument("--pairs", type=int, default=200, help="how often both are run")
    parser.add_argument("--folder", default="build", help="where to put the copy")
    return parser.parse_args()


def files_of(workspace, set_unit):
    """The files that are only read, and those that a set rewrites too, found by doing one."""
    links = json.loads((workspace / "links.json").read_text(encoding="utf-8"))
    needed = {
        workspace / "links.json",
        workspace / "configuration" / "manifest.json",
        workspace / "configuration" / f"{SOURCE}.json",
        *(workspace / "dependency" / f"{link['dependency']}.json" for link in links),
        *(
            workspace / ("process" if link["process"] else "configuration") / f"{link['target']}.json"
            for link in links
        ),
    }
    before = {path: path.read_bytes() for path in needed}
    timed([*set_unit, VALUES[0]])
    rewritten = {path for path in needed if path.read_bytes() != before[path]}
    if len(rewritten) < 2:
        sys.exit("unitflow set changed less than two files")
    return sorted(map(str, needed - rewritten)), sorted(map(str, rewritten))


def timed(command):
    """Seconds from starting the process to its end."""
    silence = [(os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0)]
    start = time.perf_counter()
    process = os.posix_spawn(command[0], command, os.environ, file_actions=silence)
    _, status = os.waitpid(process, 0)
    seconds = time.perf_counter() - start
    if status != 0:
        sys.exit(f"failed: {' '.join(command)}")
    return seconds


def is_set(workspace, value):
    tree = json.loads((workspace / "configuration" / f"{SOURCE}.json").read_text(encoding="utf-8"))
    for key in URL.split("/"):
        tree = tree[key]
    return tree == value


def report(pairs):
    set_time = statistics.median(pair[0] for pair in pairs)
    floor_time = statistics.median(pair[1] for pair in pairs)
    low, _, high = statistics.quantiles((pair[0] / pair[1] for pair in pairs), n=4)
    print(f"unitflow set   {set_time * 1000:8.2f} ms  median")
    print(f"rewrite-floor  {floor_time * 1000:8.2f} ms  median")
    print(f"ratio          {set_time / floor_time:8.2f}     half of the pairs {low:.2f} to {high:.2f}")


if __name__ == "__main__":
    main()
