#!/usr/bin/env python3
"""Checks that what the documents name is there: linked files and their headings, and in backticks the files and folders of this
tree, the classes and operations that begin with DR, the benchmarks and the tests.

Usage: check_references.py ROOT. Prints each name that leads nowhere and exits with 1 when there is one.
"""

import re
import sys
from pathlib import Path

FENCE = re.compile(r"^```.*?^```$", re.DOTALL | re.MULTILINE)
LINK = re.compile(r"\]\(([^)\s]+)\)")
CODE = re.compile(r"`([^`\n]+)`")
HEADING = re.compile(r"^#+ (.+)$", re.MULTILINE)
FOLDERS = ("platform", "model", "convert", "wizard", "app", "tests", "tools", "scripts", "docs", "fuzz", "bench", "cmake", "packaging")
CLASS = re.compile(r"(DR[A-Z]\w+)(?:(?:::|\.)(\w+))?(?:\.(?:h|cpp))?(?:\(.*\))?")


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def anchors_of(page):
    """The names under which a page's headings can be linked to."""
    text = FENCE.sub("", page.read_text(encoding="utf-8"))
    return {re.sub(r"[^\w -]", "", heading.lower()).strip().replace(" ", "-") for heading in HEADING.findall(text)}


def does_link_lead(page, target):
    if "://" in target:
        return True
    path, _, anchor = target.partition("#")
    linked = page.parent / path if path else page
    return linked.exists() and (not anchor or linked.suffix != ".md" or anchor in anchors_of(linked))


class Tree:
    """What the sources hold."""

    def __init__(self, root):
        self.root = root
        files = [path for folder in FOLDERS for path in (root / folder).rglob("*") if path.suffix in (".h", ".cpp", ".txt")]
        self.words = {word for path in files for word in re.findall(r"\w+", path.read_text(encoding="utf-8"))}

    def holds_path(self, path):
        """Also a class's files named without their ending."""
        return (self.root / path).exists() or (self.root / (path + ".h")).exists()

    def holds(self, name):
        """Whether what the name looks like is there; so is everything that looks like none of it. Placeholders are free."""
        if re.search(r"[<>*]|\.\.\.|(?<![A-Za-z])[A-Z]{3,}(?![A-Za-z])|Something", name):
            return True
        if name.startswith(tuple(folder + "/" for folder in FOLDERS)) and re.fullmatch(r"[\w./-]+", name):
            return self.holds_path(name.rstrip("/"))
        if match := CLASS.fullmatch(name):
            return all(part in self.words for part in match.groups() if part and part not in ("h", "cpp"))
        if re.fullmatch(r"(test|bench|migrate)_\w+", name):
            return name in self.words
        return True


def offences_of(page, tree):
    text = page.read_text(encoding="utf-8")
    prose = FENCE.sub(lambda fence: "\n" * fence[0].count("\n"), text)
    for link in LINK.finditer(CODE.sub(lambda code: " " * len(code[0]), prose)):
        if not does_link_lead(page, link[1]):
            yield f"{page.relative_to(tree.root)}:{line_of(prose, link.start())}: the link to {link[1]} leads nowhere"
    for code in CODE.finditer(prose):
        if not tree.holds(code[1]):
            yield f"{page.relative_to(tree.root)}:{line_of(prose, code.start())}: there is no {code[1]}"


def main():
    root = Path(sys.argv[1])
    tree = Tree(root)
    pages = [*root.glob("*.md"), *sorted((root / "docs").rglob("*.md"))]
    offences = [offence for page in pages for offence in offences_of(page, tree)]
    print("\n".join(offences) or f"{len(pages)} pages, nothing leads nowhere")
    return 1 if offences or not pages else 0


if __name__ == "__main__":
    sys.exit(main())
