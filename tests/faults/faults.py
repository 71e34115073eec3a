#!/usr/bin/env python3
"""Lets calls of phone-migrate to the file system go wrong, one per run, and checks its promises. See docs/faults.md.

Usage: faults.py PROGRAM LIBRARY DEPTH [--scenario transfer|restore|redo] [--kinds KIND,...] [--at TEXT] [--workers N]

PROGRAM    phone-migrate
LIBRARY    the library of fail_calls.cpp
DEPTH      "all": every call; a number: so many calls of each sort, and for each doubling of their count as many more;
           "-N": every Nth call
TEXT       of the calls only those whose name and path ("fsync /.../transfers.json") hold it, a regular expression
"restore" undoes a transfer, "redo" undoes that.
"""

import argparse
import re
import shutil
import sys
import time
from collections import Counter, defaultdict
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from places import Sample, scratch_folder
from restore import Restore
from transfer import Transfer

# What can become of a call: which calls can meet it ("s" and "p" as in the library's trace), and what the library is told.
FAULTS = {
    "full once": ("s", {"FAULTS_KIND": "ENOSPC"}),
    "full from then on": ("s", {"FAULTS_KIND": "ENOSPC", "FAULTS_ON": "1"}),
    "broken once": ("", {"FAULTS_KIND": "EIO"}),
    "broken from then on": ("", {"FAULTS_KIND": "EIO", "FAULTS_ON": "1"}),
    "part once": ("p", {"FAULTS_KIND": "part"}),
    "part from then on": ("p", {"FAULTS_KIND": "part", "FAULTS_ON": "1"}),
    "killed before": ("", {"FAULTS_KIND": "killBefore"}),
    "killed after": ("", {"FAULTS_KIND": "killAfter"}),
    "phone gone": ("", {"FAULTS_KIND": "gone"}),
}


SCENARIOS = ("transfer", "restore", "redo")  # each that is an undo begins where the one before it ended


def scenario_named(name, sample, folder):
    scenario = Transfer(sample, folder / "transfer")
    for undo in SCENARIOS[1:SCENARIOS.index(name) + 1]:
        scenario = Restore(scenario, folder / undo)
    return scenario


class Call:
    def __init__(self, line):
        number, self.limits, self.name, self.path = line.split("\t", 3)
        self.number = int(number)

    def sort(self):
        """Calls of one sort do the same to files that differ in their name only."""
        path = re.sub(r"(Media|Recordings|app_parts|Music)/.*", r"\1/*", self.path)
        return self.name, re.sub(r"\.phone-migrate-\w+", "*", re.sub(r"[0-9a-f]{16,}|\d+", "#", path))


class Laboratory:
    """Makes attempts, each in a place of its own, and collects what they break."""

    def __init__(self, program, library, scenario, folder):
        self.library, self.folder = library, folder
        self.sample = Sample(program, folder)
        self.scenario = scenario_named(scenario, self.sample, folder)
        self.calls = self.count_calls()

    def count_calls(self):
        place = self.scenario.place(self.folder / "count", self.library)
        if place.run(self.scenario.command(place), {}).code != 0:
            raise SystemExit("The program fails when its calls are only counted.")
        return [Call(line) for line in place.trace.read_text().splitlines()]

    def attempt(self, number, kind):
        """One fault. Answers how the run ended, and the promises that it broke."""
        place = self.scenario.place(self.folder / f"{number}-{kind}".replace(" ", "-"), self.library)
        ended = place.run(self.scenario.command(place), {"FAULTS_AT": str(number), **FAULTS[kind][1]})
        hit = place.trace.read_text() if place.trace.exists() else ""
        gone = Path(f"{place.phone}.gone")
        if gone.exists():
            gone.rename(place.phone)
        broken = self.scenario.broken_promises(place, ended, is_killed=kind.startswith("killed") and hit,
                                               is_phone_lost=kind in ("broken from then on", "phone gone"))
        if self.sample.is_changed():
            broken.append("the source was changed")
        shutil.rmtree(place.folder)
        return ended.code, [f"{kind} at {' '.join(hit.split()) or number}: {promise}" for promise in broken]


def chosen(calls, kind, depth):
    """The numbers of the calls that meet this fault. Which ones differs from fault to fault, but not from run to run."""
    calls = [call for call in calls if set(FAULTS[kind][0]) <= set(call.limits)]
    turn = list(FAULTS).index(kind)
    if depth == "all":
        return [call.number for call in calls]
    if depth.startswith("-"):
        stride = int(depth[1:])
        return [call.number for call in calls[turn * stride // len(FAULTS)::stride]]
    by_sort = defaultdict(list)
    for call in calls:
        by_sort[call.sort()].append(call.number)
    return sorted(number for numbers in by_sort.values() for number in spread(numbers, int(depth), turn))


def spread(numbers, depth, turn):
    count = min(len(numbers), depth * len(numbers).bit_length())
    return {numbers[(2 * index * len(FAULTS) + 2 * turn + 1) * len(numbers) // (2 * count * len(FAULTS))]
            for index in range(count)}


class Tally:
    """What came of the attempts so far, on the terminal."""

    def __init__(self, total):
        self.total, self.codes, self.broken, self.began = total, defaultdict(Counter), [], time.monotonic()

    def add(self, kind, code, broken):
        self.codes[kind]["killed" if code == -9 else "hangs" if code is None else str(code)] += 1
        self.broken += broken
        for promise in broken:
            print(f"BROKEN {promise}", flush=True)
        done = self.done()
        if done % 100 == 0:
            print(f"{done} of {self.total} in {time.monotonic() - self.began:.0f} s", flush=True)

    def done(self):
        return sum(codes.total() for codes in self.codes.values())

    def show(self, calls):
        print(f"{calls} calls, {self.done()} faults, {len(self.broken)} promises broken. Exit codes:")
        for kind, codes in self.codes.items():
            print(f"    {kind}: " + ", ".join(f"{code} ({count})" for code, count in sorted(codes.items())))


def arguments():
    parser = argparse.ArgumentParser()
    parser.add_argument("program", type=Path)
    parser.add_argument("library", type=Path)
    parser.add_argument("depth")
    parser.add_argument("--scenario", choices=SCENARIOS, default="transfer")
    parser.add_argument("--kinds", default=",".join(FAULTS))
    parser.add_argument("--at", default="")
    parser.add_argument("--workers", type=int, default=8)  # a run mostly waits
    return parser.parse_args()


def main():
    asked = arguments()
    with scratch_folder() as folder:
        laboratory = Laboratory(asked.program.resolve(), asked.library.resolve(), asked.scenario, Path(folder))
        calls = [call for call in laboratory.calls if re.search(asked.at, f"{call.name} {call.path}")]
        plan = [(number, kind) for kind in asked.kinds.split(",") for number in chosen(calls, kind, asked.depth)]
        tally = Tally(len(plan))
        print(f"{len(laboratory.calls)} calls, {len(plan)} faults", flush=True)
        with ThreadPoolExecutor(asked.workers) as workers:
            results = workers.map(lambda attempt: (attempt[1], *laboratory.attempt(*attempt)), plan)
            for kind, code, broken in results:
                tally.add(kind, code, broken)
        tally.show(len(laboratory.calls))
    return 1 if tally.broken else 0


if __name__ == "__main__":
    sys.exit(main())
