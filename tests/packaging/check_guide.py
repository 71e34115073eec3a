#!/usr/bin/env python3
"""Checks the messages in the user's guide against the sources: each stands there letter for letter, with its exit code, and each
error of the command line stands in the guide.

In the tables of the guide's last section the first cell quotes messages; "..." in them stands for any text. In the sources an
error is a text behind an exit code, or a sentence of FILES_OF_ERRORS.

Usage: check_guide.py ROOT. Prints each difference and exits with 1 when there is one.
"""

import json
import re
import sys
from pathlib import Path

FILES_OF_ERRORS = ["platform/core/DRPrivateFolder.cpp", "app/sample/DRSample.cpp", "app/cli/DRPacketCommand.cpp"]

LITERAL = re.compile(r'u?"((?:[^"\\\n]|\\.)*)"(?:_s)?')
TEXT = re.compile(rf"(?:{LITERAL.pattern}\s*)+")
CODED = re.compile(rf"DRExitCode::(\w+),\s*({TEXT.pattern})")
SENTENCE = re.compile(r'u?"(?:[A-Z%]|\\")[\s\S]* [\s\S]*\."(?:_s)?')
QUOTED = re.compile(r'"((?:[^"]|(?<=\.)"(?=\.))+)"')


def unquoted(literals):
    """The text of literals that stand beside each other."""
    return "".join(literal[1] for literal in LITERAL.finditer(literals)).replace('\\"', '"').replace("\\n", "\n").strip()


class Program:
    """What the program says."""

    def __init__(self, root):
        sources = [path for layer in ("platform", "model", "convert", "wizard", "app") for path in (root / layer).rglob("*.cpp")]
        contents = {path.relative_to(root).as_posix(): path.read_text(encoding="utf-8") for path in sources}
        numbers = dict(re.findall(r"(\w+) = (\d+)", (root / "app/cli/DRExitCode.h").read_text(encoding="utf-8")))
        self.texts = {unquoted(text[0]) for content in contents.values() for text in TEXT.finditer(content)}
        self.texts.update(json.loads((root / "app/resources/texts/en.json").read_text(encoding="utf-8")).values())
        self.errors = {unquoted(match[2]): numbers[match[1]] for content in contents.values() for match in CODED.finditer(content)}
        for name in FILES_OF_ERRORS:
            said = [unquoted(text[0]) for text in TEXT.finditer(contents[name]) if SENTENCE.fullmatch(text[0].strip())]
            self.errors.update({text: numbers["FailedPhoneUnchanged"] for text in said if text not in self.errors})


def messages_of(guide):
    """Pairs of a quoted message and the codes beside it; none for tables without codes."""
    section = guide[guide.index("## 7."):]
    for line in section.splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        for message in QUOTED.findall(cells[0]) if line.startswith("| ") else []:
            yield message, re.findall(r"\d+", cells[1]) if re.fullmatch(r"[\d, ]+", cells[1]) else None


def pattern_of(message):
    parts = [re.escape(part.strip()) for part in re.split(r"\.\.\.(?!\.)|…", message)]
    return re.compile(r"[\s\S]*".join(parts))


def main():
    root = Path(sys.argv[1])
    program = Program(root)
    messages = list(messages_of((root / "docs/user-guide.md").read_text(encoding="utf-8")))
    differences = [f"the program does not say: {message}" for message, _ in messages
                   if not any(pattern_of(message).fullmatch(text) for text in program.texts)]
    for error, code in program.errors.items():
        codes = [codes for message, codes in messages if pattern_of(message).fullmatch(error)]
        if not codes:
            differences.append(f"the guide lacks: {error}")
        elif not any(code in (told or []) for told in codes):
            differences.append(f"the guide does not tell that code {code} goes with: {error}")
    print("\n".join(differences) or f"{len(messages)} messages, {len(program.errors)} errors, no difference")
    return 1 if differences or not program.errors else 0


if __name__ == "__main__":
    sys.exit(main())
