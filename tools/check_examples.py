#!/usr/bin/env python3
"""Checks that the examples in documents do what they show.

A block marked "console" holds commands after "$ ", continued after "> ", each followed by what it prints. The blocks of a
page run one after the other in one shell, in a new folder, after those of the README.md beside it, which prepare it. Every
page must have such a block.

Usage: check_examples.py FOLDER PROGRAM [--write]. Prints each difference and exits with 1 when there is one; with --write it
puts what the commands print into the pages instead.
"""

import difflib
import os
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

BLOCK = re.compile(r"(?<=^```console\n).*?(?=^```$)", re.DOTALL | re.MULTILINE)
COMMAND = re.compile(r"^\$ .*\n(?:> ?.*\n)*", re.MULTILINE)
END_OF_OUTPUT = "\x1d\n"


def commands_of(text):
    """The commands of a page as the shell takes them, in their order."""
    found = [command for block in BLOCK.findall(text) for command in COMMAND.findall(block)]
    return [re.sub(r"^[$>] ?", "", command, flags=re.MULTILINE) for command in found]


def outputs_of(preparation, commands, program):
    """What each of the commands prints. Fewer outputs than commands when the shell ends early."""
    marked = [command + f"printf '{END_OF_OUTPUT.encode('unicode_escape').decode()}'\n" for command in preparation + commands]
    with tempfile.TemporaryDirectory() as folder:
        environment = {"HOME": folder, "PATH": f"{Path(program).resolve().parent}:/usr/bin:/bin", "LC_ALL": "C.UTF-8",
                       **{name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}}
        ran = subprocess.run(["bash", "--norc", "-c", "".join(marked)], cwd=folder, env=environment, text=True, timeout=240,
                             stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    outputs = ran.stdout.split(END_OF_OUTPUT)[len(preparation):-1]
    return [output if output.endswith("\n") or not output else output + "\n" for output in outputs]


def with_outputs(text, outputs):
    """The page with the outputs behind its commands."""
    remaining = iter(outputs)

    def filled(block):
        return "".join(command + next(remaining, "(the shell ended before this)\n") for command in COMMAND.findall(block[0]))

    return BLOCK.sub(filled, text)


def main():
    folder, program = Path(sys.argv[1]), sys.argv[2]
    preparation = commands_of((folder / "README.md").read_text(encoding="utf-8"))
    pages = sorted(page for page in folder.glob("*.md") if page.name != "README.md")
    texts = [page.read_text(encoding="utf-8") for page in pages]
    # Most of the time goes into waiting for the disk.
    with ThreadPoolExecutor(max_workers=4) as pool:
        outputs = list(pool.map(lambda text: outputs_of(preparation, commands_of(text), program), texts))
    wrong = 0
    for page, text, printed in zip(pages, texts, outputs):
        shown = with_outputs(text, printed)
        if not printed:
            print(f"{page}: has no example")
            wrong += 1
        elif shown != text and "--write" in sys.argv:
            page.write_text(shown, encoding="utf-8")
        elif shown != text:
            print("\n".join(difflib.unified_diff(text.splitlines(), shown.splitlines(), str(page), "what it prints", "", "", 1, "")))
            wrong += 1
    print(f"{len(pages)} pages, {wrong} of them wrong")
    return 1 if wrong or not pages else 0


if __name__ == "__main__":
    sys.exit(main())
