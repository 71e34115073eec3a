#!/usr/bin/env python3
"""Checks that the bookmarks of an iPhone backup stand complete in the packets of a phone's two browsers.

Usage: check_bookmarks.py BACKUP_FOLDER NOT_BEFORE BROWSER BROWSER_BEFORE CHROME CHROME_BEFORE

The packets are the phone's files "fullbackupdata" after and before the transfer, which began not before NOT_BEFORE, in
milliseconds since 1970. It reads the backup's database by itself, works out every row of the browser's database and every
byte of Chrome's file, and compares; only the clock's times are looked at for what they can be. What the phone had before
must still be there. Prints what is wrong and exits with 1 when there is anything.
"""

import json
import re
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
from stores import Packet, Table, backup_database

BROWSER_DATABASE = "db/browser2.db"
CHROME_FILE = "r/app_chrome/Default/Bookmarks"
BROWSER_ROOT = 1
FIRST_NODE = 10000
TICKS_PER_MILLISECOND = 10000  # of the times in Chrome's new nodes

BOOKMARK_NODE = '{\n"date_added": "%s",\n"id": "%s",\n"name": "%s",\n"type": "url",\n"url": "%s"\n}'
FOLDER_FIELDS = ('{\n"children": [ %s ],\n"date_added": "%s",\n"date_modified": "%s",\n"id": "%s",\n"name": "%s",\n'
                 '"type": "folder"\n}')
EMPTY_ROOT = ('"%s": {\n"children": [   ],\n"date_added": "0",\n"date_modified": "0",\n"id": "%s",\n"name": "%s",\n'
              '"type": "folder"\n}')
NEW_FILE = '{\n"roots": {\n%s,\n%s,\n%s\n},\n"version": 1\n}\n'


class Folder:
    def __init__(self, title, parent):
        self.title, self.parent = title, parent
        self.bookmarks, self.folders = [], []

    def is_empty(self):
        return not self.bookmarks and all(folder.is_empty() for folder in self.folders)


def tree_of(backup):
    """The root with everything below it that is not empty; None without a root."""
    rows = backup.execute("SELECT * FROM bookmarks WHERE type=1").fetchall()
    folders = {row["id"]: Folder(row["title"], row["parent"] or 0) for row in rows}
    for number, folder in folders.items():
        folder.bookmarks = [(row["title"], row["url"]) for row in
                            backup.execute(f"SELECT * FROM bookmarks WHERE parent={number} AND type=0")]
        folder.folders = [folders[row["id"]] for row in rows if row["id"] != number and (row["parent"] or 0) == number]
    for folder in folders.values():
        folder.folders = [inner for inner in folder.folders if not inner.is_empty()]
    root = folders.get(0)
    return None if root is None or root.is_empty() else root


class Browser:
    """What must stand in the browser's table."""

    def __init__(self, before, is_now):
        self.table = Table(before, "bookmarks")
        self.own = set(self.table.rows)
        self._is_now = is_now

    def add_content(self, folder, parent):
        for title, url in folder.bookmarks:
            self._add(parent, title=title, url=url, folder=0, created=self._is_now, modified=self._is_now)
        for inner in folder.folders:
            self.add_content(inner, self._add(parent, title=inner.title, folder=1))

    def problems(self, after):
        torn = [row["_id"] for row in after.execute("SELECT _id FROM bookmarks WHERE created <> modified")]
        return self.table.problems(after) + [f"bookmarks {number}: created at one time, modified at another"
                                             for number in torn if number not in self.own]

    def _add(self, parent, **values):
        return self.table.add(parent=parent, position=0, version=1, dirty=1, **values)


def escaped(text):
    pieces = []
    for character in text or "":
        code = ord(character)
        if 32 <= code <= 126:
            pieces.append(character)
        elif code <= 0xFFFF:
            pieces.append(f"\\u{code:04X}")
        else:
            pieces.append("".join(f"\\u{unit:04X}" for unit in (0xD800 + (code - 0x10000 >> 10), code & 0x3FF | 0xDC00)))
    return "".join(pieces)


class Chrome:
    """The text of Chrome's file. In place of times stand marks, for each folder one."""

    def __init__(self):
        self._next_node = FIRST_NODE
        self.parents = [None]  # of the folders by their number, in the order in which they look at the clock

    def _take(self):
        self._next_node += 1
        return self._next_node - 1

    def children(self, folder, number=0):
        nodes = []
        for inner in folder.folders:
            self.parents.append(number)
            nodes.append(self._node(inner, len(self.parents) - 1))
        nodes += [BOOKMARK_NODE % (self.mark(number), self._take(), escaped(title), escaped(url))
                  for title, url in folder.bookmarks]
        return ",\n".join(nodes)

    def _node(self, folder, number):
        return self._folder(self.children(folder, number), number, escaped(folder.title))

    def _folder(self, children, number, name):
        return FOLDER_FIELDS % (children, self.mark(number), self.mark(number), self._take(), name)

    @staticmethod
    def mark(number):
        return f"\0{number}\0"

    def text(self, root, before):
        """`before` is the file's bytes, None without a file."""
        existing = decoded(before)
        place = existing and place_of_synced(existing)
        children = self.children(root)
        if place:
            return existing[:place[0]] + (",\n" if place[1] else "") + children + existing[place[0]:]
        return NEW_FILE % (EMPTY_ROOT % ("bookmark_bar", 1, "Desktop Bookmarks"), EMPTY_ROOT % ("other", 2, "Other Bookmarks"),
                           '"synced": ' + self._folder(children, 0, "Mobile Bookmarks"))


def decoded(before):
    """The text without its checksum; None when it cannot be read."""
    try:
        return before and re.sub('"checksum"[^,]*,', "", before.decode(), count=1, flags=re.IGNORECASE)
    except UnicodeDecodeError:
        return None


def place_of_synced(text):
    """Where the array of the synced root ends, and whether it holds anything; None without that array."""
    found = re.search(r'"synced".*?"children".*?\[', text, re.IGNORECASE | re.DOTALL)
    depth = 0
    for place in range(found.end() if found else len(text), len(text)):
        if text[place] == "]" and depth == 0:
            return place, "}" in text[found.end():place]
        depth += {"{": 1, "}": -1}.get(text[place], 0)
    return None


def chrome_problems(chrome, expected, found, is_now):
    marks = [int(number) for number in re.findall("\0(\\d+)\0", expected)]
    pattern = re.sub("\0\\d+\0", r"(\\d+)", re.escape(expected))
    match = re.fullmatch(pattern, found)
    if match is None:
        return [f"Chrome's file: {first_difference(re.sub('date_(added|modified)....[0-9]+', 'date', found), expected)}"]
    times = dict(zip(marks, map(int, match.groups())))
    problems = [f"Chrome's file: folder {mark} has the times {times[mark]} and {stamp}"
                for mark, stamp in zip(marks, map(int, match.groups())) if times[mark] != stamp]
    for mark, stamp in times.items():
        if not is_now(stamp // TICKS_PER_MILLISECOND) or stamp < times.get(chrome.parents[mark], 0):
            problems.append(f"Chrome's file: folder {mark} has the time {stamp}")
    return problems


def first_difference(found, expected):
    expected = re.sub("date_(added|modified)....(\0\\d+\0|[0-9]+)", "date", expected)
    place = next((place for place, pair in enumerate(zip(found, expected)) if pair[0] != pair[1]),
                 min(len(found), len(expected)))
    return f"{expected[place:place + 200]!r} (there is {found[place:place + 200]!r})"


def json_problems(text, root):
    """A text in the backup that holds a quote or a backslash may break the file."""
    def texts(folder):
        yield folder.title
        for bookmark in folder.bookmarks:
            yield from bookmark
        for inner in folder.folders:
            yield from texts(inner)

    try:
        json.loads(text)
    except ValueError as error:
        return [] if re.search(r'["\\]', "".join(filter(None, texts(root)))) else [f"Chrome's file: {error}"]
    return []


def main(arguments):
    if len(arguments) != 6:
        print(__doc__, file=sys.stderr)
        return 2
    not_before = int(arguments[1])
    now = time.time() * 1000

    def is_now(milliseconds):
        return isinstance(milliseconds, int) and not_before <= milliseconds <= now

    root = tree_of(backup_database(arguments[0], "HomeDomain-Library/Safari/Bookmarks.db"))
    packet, before, chrome_packet, chrome_before = map(Packet, arguments[2:])
    browser = Browser(before.database(BROWSER_DATABASE), is_now)
    browser.add_content(root, BROWSER_ROOT)
    problems = browser.problems(packet.database(BROWSER_DATABASE))
    # The write-ahead log is kept, and with it its index, which the phone makes anew.
    problems += packet.differences(before, [BROWSER_DATABASE + suffix for suffix in ("", "-wal", "-shm")])

    chrome = Chrome()
    expected = chrome.text(root, chrome_before.files.get(CHROME_FILE))
    found = chrome_packet.files[CHROME_FILE].decode()
    problems += chrome_problems(chrome, expected, found, is_now) + json_problems(found, root)
    problems += chrome_packet.differences(chrome_before, [CHROME_FILE, CHROME_FILE + ".bak"])
    if CHROME_FILE + ".bak" in chrome_packet.files:
        problems.append(f"{CHROME_FILE}.bak is still there")
    own = len(browser.own)
    print(f"{own} rows of the browser's own, {len(browser.table.rows) - own} of the backup, {len(expected)} characters in "
          "Chrome's file")
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
