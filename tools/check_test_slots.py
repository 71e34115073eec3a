#!/usr/bin/env python3
"""Checks that moc has seen every test function: behind a raw string with a lone quote or brace it passes over functions without a word,
and they would never run.

Usage: check_test_slots.py TESTS BUILT_TESTS. Prints each function that was passed over and exits with 1 when there is one.
"""

import re
import sys
from pathlib import Path

SLOT = re.compile(r"^    void (\w+)\(\)", re.MULTILINE)

SECTION_END = re.compile(r"^(?:private:|};)$", re.MULTILINE)


def main():
    tests, built = Path(sys.argv[1]), Path(sys.argv[2])
    mocs = {path.stem: path.read_text(encoding="utf-8") for path in built.glob("*_autogen/include/**/Test*.moc")}
    missing = seen = 0
    for source in sorted(tests.rglob("Test*.cpp")):
        text = source.read_text(encoding="utf-8")
        if source.stem not in mocs:
            continue  # not part of this build
        slots = SECTION_END.split(text[text.index("Q_SLOTS:"):])[0]
        for name in SLOT.findall(slots):
            seen += 1
            if f'"{name}"' not in mocs[source.stem]:
                print(f"{source}: moc passed over {name}")
                missing += 1
    print(f"{seen} test functions seen")
    return 1 if missing or not seen else 0


if __name__ == "__main__":
    sys.exit(main())
