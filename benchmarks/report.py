#!/usr/bin/env python3
"""Measures what things cost next to their floors and prints one table of ratios.

A floor is the least that the same work can take, measured in the same run: floor and measure take
turns, and the medians of all turns make the ratio. docs/performance.md explains each of them.
"""

import argparse
import dataclasses
import datetime
import json
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile
import typing

import bulk_against_floor
import set_against_floor

ROOT = pathlib.Path(__file__).resolve().parent.parent
RECORDED = ROOT / "benchmarks" / "recorded.json"
MEMORY = pathlib.Path("/dev/shm")  # a folder that is on no disk
MEGABYTE = 1_000_000
MEMORY_LIMIT = 5 * MEGABYTE
ONE_MATCH = "match/one"
ONE_OF_MANY = "select/one/10000"
NONE_OF_MANY = "select/none/10000"


@dataclasses.dataclass
class Row:
    """One line of the table. Measure and floor are names of medians, or make a number of them."""

    title: str
    suite: str
    measure: typing.Any
    floor: typing.Any
    goal: typing.Optional[float] = None
    faster: bool = False  # how many times as fast, not how many times as slow
    unit: str = "s"


def index_build(medians):
    """What patterns add to a build and a first question, against plain URLs."""
    return medians["build/patterns"] - medians["build/urls"]


def beyond_nodes(medians):
    """What a walker of patterns holds beside its nodes."""
    return medians["walker"] - medians["nodes"]


# title, suite, measure, floor, goal
ROWS = [
    Row("10,000 patterns, URL seen before", "engine", "select/seen/10000", ONE_MATCH, 0.15),
    Row("10,000 patterns, new URL, one matches", "engine", ONE_OF_MANY, ONE_MATCH, 1.5),
    Row("10,000 patterns, new URL, none matches", "engine", NONE_OF_MANY, ONE_MATCH, 0.5),
    Row("10,000 patterns against 10, one matches", "engine", ONE_OF_MANY, "select/one/10", 1.5),
    Row("10,000 patterns against 10, none matches", "engine", NONE_OF_MANY, "select/none/10", 1.5),
    Row("10,000 patterns, 1,000 share text", "engine", "select/sharing", "match/sharing", 1.3),
    Row("write, 10,000 plain URLs", "engine", "write/urls", "set/leaf", 5.0),
    Row("write, 10,000 patterns", "engine", "write/patterns", ONE_MATCH, 5.0),
    Row("write, patterns against plain URLs", "engine", "write/patterns", "write/urls", 1.3),
    Row("traversal, 1,000 rows", "engine", "run/rows", "set/rows", 1.5),
    Row("build, 10,000 plain URLs", "build", "build/urls", "parse/urls", 1.0),
    Row("build, 10,000 patterns", "build", "build/patterns", "parse/patterns", 1.0),
    Row("build, what patterns add", "build", index_build, "parse/patterns", 0.25),
    Row("check, 10,000 plain URLs", "build", "check/urls", "parse/urls", 3.0),
    Row("check, 10,000 patterns", "build", "check/patterns", "parse/patterns", 3.0),
    Row("memory, 10,000 patterns", "memory", beyond_nodes, "limit", 1.0, unit="B"),
    Row("unitflow set", "set", "set", "floor"),
    Row("resolve --all on disk, one job", "disk", "one job", "floor", 1.5),
    Row("resolve --all on disk, two jobs", "disk", "one job", "two jobs", 1.7, faster=True),
    Row("resolve --all in memory, one job", "tmpfs", "one job", "floor", 1.5),
    Row("resolve --all in memory, two jobs", "tmpfs", "one job", "two jobs", 1.7, faster=True),
]


def main():
    options = parse_arguments()
    rows = [row for row in ROWS if re.search(options.filter, f"{row.suite}: {row.title}")]
    if not rows:
        sys.exit(f'no row is found by "{options.filter}"')
    recorded = json.loads(RECORDED.read_text(encoding="utf-8")) if options.check else None

    machine = {"cores": os.cpu_count()}
    medians = {}
    for suite in dict.fromkeys(row.suite for row in rows):
        print(f"Measuring: {suite} ...", file=sys.stderr)
        rows_of_suite = [row for row in rows if row.suite == suite]
        medians[suite] = SUITES[suite](options, rows_of_suite, machine)
    results = [result_of(row, medians[row.suite]) for row in rows]

    print(table(results))
    if options.json:
        report = {"date": datetime.date.today().isoformat(), "machine": machine, "rows": results}
        options.json.write_text(json.dumps(report, indent=4) + "\n", encoding="utf-8")
    if options.check:
        sys.exit(check(results, recorded, options.tolerance))


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    add = parser.add_argument
    add("programs", type=existing_folder, help="the folder of the built programs")
    add("--filter", default="", help="only rows whose title or suite this expression finds")
    add("--json", type=pathlib.Path, help="write the results to this file, too")
    add("--check", action="store_true", help="fail if a ratio is worse than the recorded one")
    add("--tolerance", type=float, default=0.25, help="how much worse, as a fraction (0.25)")
    add("--processes", type=int, default=5, help="for measurements within the engine (5)")
    add("--repetitions", type=int, default=5, help="of them in each process (5)")
    add("--pairs", type=int, default=200, help="how often unitflow set is run (200)")
    add("--turns", type=int, default=5, help="how often everything is resolved (5)")
    add("--instances", type=int, default=10_000, help="that are resolved (10,000)")
    add("--folder", type=existing_folder, help="where to put workspaces; the engine needs none")
    return parser.parse_args()


def existing_folder(path):
    folder = pathlib.Path(path).resolve()
    if not folder.is_dir():
        raise argparse.ArgumentTypeError(f"{path} is no folder")
    return folder


# ---- Measuring ----------------------------------------------------------------------------------


def measure_engine(options, rows, machine):
    """Rows of one suite share a process: what one leaves of the heap is what the next ones get. How
    the heap comes to lie is chance, so there are several processes.
    """
    runs = {}
    for _ in range(options.processes):
        report = run_engine_benchmarks(options, rows)
        machine["compiler"] = report["context"]["compiler"]
        machine["qt"] = report["context"]["qt"]
        for run in report["benchmarks"]:
            if run["run_type"] == "iteration":
                name = run["run_name"].removesuffix("/manual_time")
                # What measures itself does so in processor time, like all others.
                time = run["real_time" if name != run["run_name"] else "cpu_time"]
                runs.setdefault(name, []).append(time / 1e9)
    return medians_of(runs)


def run_engine_benchmarks(options, rows):
    with tempfile.TemporaryDirectory() as scratch:
        output = pathlib.Path(scratch, "engine.json")
        command = [
            options.programs / "engine-benchmarks",
            f"--benchmark_filter=^({'|'.join(sorted(names_in(rows)))})(/manual_time)?$",
            f"--benchmark_repetitions={options.repetitions}",
            "--benchmark_enable_random_interleaving=true",
            "--benchmark_min_time=0.05",
            f"--benchmark_out={output}",
        ]
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return json.loads(output.read_text(encoding="utf-8"))


def names_in(rows):
    names = {name for row in rows for name in (row.measure, row.floor)}
    if index_build in names:
        names = (names - {index_build}) | {"build/patterns", "build/urls"}
    return names


def measure_memory(options, _rows, _machine):
    output = subprocess.run([options.programs / "graph-memory"], check=True, capture_output=True)
    return json.loads(output.stdout) | {"limit": MEMORY_LIMIT}


def measure_set(options, _rows, _machine):
    example = ROOT / "examples" / "oven-line"
    folder = options.folder or ROOT / "build"
    runs = set_against_floor.measure(options.programs, example, options.pairs, folder)
    return medians_of(runs)


def measure_bulk_on_disk(options, _rows, _machine):
    return measure_bulk(options, options.folder or ROOT / "build")


def measure_bulk_in_memory(options, _rows, _machine):
    if not MEMORY.is_dir():
        sys.exit(f"there is no {MEMORY} here; leave this out with --filter")
    return measure_bulk(options, MEMORY)


def measure_bulk(options, folder):
    runs = bulk_against_floor.measure(options.programs, options.instances, options.turns, folder)
    return medians_of(runs)


def medians_of(runs):
    return {name: statistics.median(seconds) for name, seconds in runs.items()}


SUITES = {
    "engine": measure_engine,
    "build": measure_engine,
    "memory": measure_memory,
    "set": measure_set,
    "disk": measure_bulk_on_disk,
    "tmpfs": measure_bulk_in_memory,
}


# ---- Reporting ----------------------------------------------------------------------------------


def result_of(row, medians):
    measure, floor = (
        value(medians) if callable(value) else medians[value] for value in (row.measure, row.floor)
    )
    ratio = measure / floor
    met = None
    if row.goal is not None:
        met = ratio >= row.goal if row.faster else ratio <= row.goal
    return {
        "title": row.title,
        "measure": measure,
        "floor": floor,
        "unit": row.unit,
        "ratio": round(ratio, 4),
        "goal": row.goal,
        "faster": row.faster,
        "met": met,
    }


def table(results):
    lines = [("", "measure", "floor", "ratio", "goal", "")]
    for result in results:
        goal = result["goal"]
        sign = "≥" if result["faster"] else "≤"
        lines.append(
            (
                result["title"],
                amount(result["measure"], result["unit"]),
                amount(result["floor"], result["unit"]),
                f"{result['ratio']:.3g}",
                "" if goal is None else f"{sign} {goal:g}",
                {True: "met", False: "missed", None: ""}[result["met"]],
            )
        )
    widths = [max(map(len, column)) for column in zip(*lines)]
    return "\n".join(
        "  ".join(
            cell.ljust(width) if number in (0, 5) else cell.rjust(width)
            for number, (cell, width) in enumerate(zip(line, widths))
        ).rstrip()
        for line in lines
    )


def amount(value, unit):
    if unit == "B":
        return f"{value / MEGABYTE:.2f} MB"
    for factor, name in ((1, "s"), (1e3, "ms"), (1e6, "µs")):
        if value * factor >= 1:
            return f"{value * factor:.3g} {name}"
    return f"{value * 1e9:.3g} ns"


def check(results, recorded, tolerance):
    """The exit code: 1 if a ratio is worse than the one that was recorded."""
    ratios = {row["title"]: row["ratio"] for row in recorded["rows"]}
    failed = 0
    for result in results:
        before = ratios.get(result["title"])
        if before is None:
            print(f"not recorded: {result['title']}")
            continue
        limit = before / (1 + tolerance) if result["faster"] else before * (1 + tolerance)
        worse = result["ratio"] < limit if result["faster"] else result["ratio"] > limit
        if worse:
            failed = 1
            now = result["ratio"]
            print(f"worse than recorded: {result['title']}: {now:.3g}, was {before:.3g}")
    return failed


if __name__ == "__main__":
    main()
