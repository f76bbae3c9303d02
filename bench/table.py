#!/usr/bin/env python3
"""Makes Markdown tables of what scripts/bench measured.

table.py times FILE...         JSON files of Google Benchmark, with repetitions: processor time, medians
table.py instructions FILE...  callgrind's dumps, one for each run of a benchmark: instructions
table.py processes FILE...     JSON files of hyperfine, one for each round: processor time, medians
table.py memory FILE           lines like "window VmRSS: 12345 kB": medians

Every benchmark and every command is named COMPARISON/SIDE.
"""

import json
import re
import statistics
import sys


def add(table, name, value):
    """Files a value under its comparison and side: "paint/svg/dense/ours" is the side "ours" of "paint/svg/dense"."""
    comparison, side = name.rsplit("/", 1)
    table.setdefault(comparison, {}).setdefault(side, []).append(value)


def times(paths):
    table = {}
    for path in paths:
        with open(path) as file:
            results = json.load(file)
        # In the order in which the program registers them, not in that of the run.
        for run in sorted(results["benchmarks"], key=lambda run: run["family_index"]):
            if run["run_type"] == "iteration":
                if "error_message" in run:
                    sys.exit(f"{run['name']}: {run['error_message']}")
                assert run["time_unit"] == "us"
                add(table, run["run_name"].removesuffix("/process_time"), run["cpu_time"])
    context = results["context"]
    repetitions = min(len(values) for sides in table.values() for values in sides.values())
    print(f"{context['compiler']}, Qt {context['qt']}, {context['build_type']} build; medians of {repetitions}.")
    return table


def instructions(paths):
    table = {}
    for path in paths:
        with open(path) as file:
            name = None
            for line in file:
                if line.startswith("desc: Trigger: Client Request: "):
                    name = line.split(": ", 3)[3].strip()
                elif line.startswith("totals: ") and name:
                    add(table, name, int(line.split()[1]))
                    name = None
    return table


def processes(paths):
    table = {}
    for path in paths:
        with open(path) as file:
            for result in json.load(file)["results"]:
                add(table, result["command"], (result["user"] + result["system"]) * 1000)
    return table


def memory(paths):
    table = {}
    for path in paths:
        with open(path) as file:
            for line in file:
                program, _, kibibytes, _ = line.split()
                add(table, "memory at rest/" + {"window": "ours", "form": "bare"}[program], int(kibibytes) / 1024)
    return table


def medians(table):
    return {name: {side: statistics.median(values) for side, values in sides.items()} for name, sides in table.items()}


def number(value):
    """Three digits that count, none of them behind the point from 100 on."""
    return f"{value:,.0f}" if value >= 100 else f"{value:#.3g}" if value >= 1 else f"{value:.3f}"


def show(table, title, unit, divisor):
    other = None
    for name, sides in medians(table).items():
        ours = sides.pop("ours") / divisor
        ((side, theirs),) = sides.items()
        if side != other:
            print(f"\n| {title} | ours, {unit} | {side}, {unit} | ratio |\n|---|---:|---:|---:|")
            other = side
        theirs /= divisor
        print(f"| {name} | {number(ours)} | {number(theirs)} | {ours / theirs:.3f} |")


def show_ticks(table, unit, factor):
    """What each tick costs, of dials that differ in nothing but their number."""
    print(f"\n| Ticks | ours, {unit} a tick | bare, {unit} a tick |\n|---:|---:|---:|")
    for name, sides in medians(table).items():
        if match := re.fullmatch(r"paint/ticks/(\d+)", name):
            ticks = int(match[1])
            print(f"| {ticks:,} | {number(sides['ours'] * factor / ticks)} | {number(sides['bare'] * factor / ticks)} |")


def main():
    kinds = {"times": times, "instructions": instructions, "processes": processes, "memory": memory}
    if len(sys.argv) < 3 or sys.argv[1] not in kinds:
        sys.exit(__doc__)
    kind, paths = sys.argv[1:2] + [sys.argv[2:]]
    table = kinds[kind](paths)
    if kind == "times":
        show(table, "Work", "ms", 1e3)
        show_ticks(table, "ns", 1e3)
    elif kind == "instructions":
        show(table, "Work", "million", 1e6)
        show_ticks(table, "instructions", 1)
    elif kind == "processes":
        show(table, "Program", "ms", 1)
    else:
        show(table, "Program", "MiB", 1)


main()
