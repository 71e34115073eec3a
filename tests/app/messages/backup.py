"""Reads the message database and the files of an iPhone backup."""

import hashlib
import sqlite3
import struct
import urllib.parse
from pathlib import Path

PARTS_FOLDER = "MediaDomain-Library/SMS/Parts/"


def open_database(path):
    database = sqlite3.connect(f"file:{urllib.parse.quote(str(Path(path).resolve()))}?immutable=1", uri=True)
    database.row_factory = sqlite3.Row
    return database


class Backup:
    def __init__(self, folder):
        self._folder = Path(folder)
        self.database = open_database(self._stored("HomeDomain-Library/SMS/sms.db"))
        self.part_paths = [path for path in self._manifest() if path.startswith(PARTS_FOLDER)]

    def _stored(self, path):
        return self._folder / hashlib.sha1(path.encode()).hexdigest()

    def read(self, path):
        """The bytes of a file of the domain MediaDomain, None when it is not in the backup."""
        stored = self._stored(f"MediaDomain-{path}")
        return stored.read_bytes() if stored.is_file() else None

    def _manifest(self):
        data = (self._folder / "Manifest.mbdb").read_bytes()
        place = 6

        def text():
            nonlocal place
            length = struct.unpack_from(">H", data, place)[0]
            place += 2
            if length == 0xFFFF:
                return b""
            place += length
            return data[place - length:place]

        while place < len(data):
            domain, path = text(), text()
            for _ in range(3):
                text()
            place += 39
            count = data[place]
            place += 1
            for _ in range(2 * count):
                text()
            yield (domain + b"-" + path).decode(errors="replace")
