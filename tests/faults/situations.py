#!/usr/bin/env python3
"""Puts phone-migrate into situations in which its promises must hold: full disks, many starts at once. See docs/faults.md.

Usage: situations.py PROGRAM disks|crowd

Exits with 77 when the situation cannot be had on this computer.
"""

import subprocess
import sys
from contextlib import contextmanager
from pathlib import Path

from places import Sample, finish, scratch_folder
from promises import DONE, REFUSED
from transfer import Transfer

CANNOT_BE_HAD = 77
STARTS = 20
# In KiB. The phone needs room for what it holds and ends with 3 MiB; some of the disk of the working folder must stay free.
SIZES = {"phone": (192, 256, 512, 1024, 2048, 3072, 4096, 8192), "data": (16, 32, 48, 64, 8192),
         "cache": (16, 64, 256, 1024, 4096, 8192, 16384)}


@contextmanager
def disk(folder, kibibytes):
    """A disk of this size in the place of the folder, with what is in it."""
    held = folder.with_name(folder.name + ".held")
    if folder.exists():
        folder.rename(held)
    folder.mkdir()
    subprocess.run(["mount", "-t", "tmpfs", "-o", f"mode=0700,size={kibibytes}k", "tmpfs", folder], check=True)
    try:
        if held.exists():
            subprocess.run(["cp", "-a", f"{held}/.", folder], check=True)
        yield lambda: subprocess.run(["mount", "-o", "remount,size=1g", folder], check=True)
    finally:
        subprocess.run(["umount", "--lazy", folder], check=True)


def can_mount(folder):
    return subprocess.run(["mount", "-t", "tmpfs", "tmpfs", folder], stderr=subprocess.DEVNULL).returncode == 0 and \
        subprocess.run(["umount", folder]).returncode == 0


def broken_on_disk(transfer, folder, name, kibibytes):
    place = transfer.place(folder / f"{name}-{kibibytes}")
    with disk(place.folder / name, kibibytes) as make_larger:
        place.remember()
        ended = place.run(transfer.command(place))
        print(f"{name} on a disk of {kibibytes} KiB: exit code {ended.code}", flush=True)
        return transfer.broken_promises(place, ended, when_mended=make_larger)


def broken_on_disks(transfer, folder):
    return [f"{name} on a disk of {size} KiB: {promise}" for name, sizes in SIZES.items() for size in sizes
            for promise in broken_on_disk(transfer, folder, name, size)]


def broken_in_crowd(transfer, folder):
    """One does the work, the others are refused, and nothing is there twice."""
    place = transfer.place(folder / "crowd")
    all_ended = [finish(process) for process in [place.start(transfer.command(place)) for _ in range(STARTS)]]
    codes = sorted(ended.code for ended in all_ended)
    print(f"{STARTS} starts at once: exit codes {codes}")
    refused = [ended for ended in all_ended
               if ended.code == REFUSED and (ended.says("Another run") or ended.says("--again"))]
    broken = [] if codes.count(DONE) == 1 and len(refused) == STARTS - 1 else [f"they ended with {codes}"]
    return broken + transfer.broken_after_repeat(place, transfer.before, [])


def main():
    program, situation = Path(sys.argv[1]).resolve(), sys.argv[2]
    with scratch_folder() as scratch:
        folder = Path(scratch)
        if situation == "disks" and not can_mount(folder):
            print("SKIPPED: disks cannot be mounted here; this needs root")
            return CANNOT_BE_HAD
        sample = Sample(program, folder)
        transfer = Transfer(sample, folder / "transfer")
        check = {"disks": broken_on_disks, "crowd": broken_in_crowd}[situation]
        broken = check(transfer, folder)
        broken += ["the source was changed"] if sample.is_changed() else []
    print("\n".join(f"BROKEN {promise}" for promise in broken) or "No promise broken.")
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main())
