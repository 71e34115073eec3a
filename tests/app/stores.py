"""Opens the databases of an iPhone backup and of a phone's packets, and says what their tables should hold."""

import hashlib
import io
import sqlite3
import tarfile
import tempfile
import urllib.parse
import zlib
from pathlib import Path

REFERENCE_DATE = 978307200  # 2001-01-01 in seconds since 1970
MOST_PROBLEMS = 15  # shown of each table


def backup_database(folder, path):
    """A file of the backup, such as "HomeDomain-Library/SMS/sms.db", which stays as it is."""
    stored = Path(folder).resolve() / hashlib.sha1(path.encode()).hexdigest()
    database = sqlite3.connect(f"file:{urllib.parse.quote(str(stored))}?immutable=1", uri=True)
    database.row_factory = sqlite3.Row
    return database


class Packet:
    """The files of a packet: their bytes by path below "apps/PACKET_ID/"."""

    def __init__(self, path):
        *header, payload = Path(path).read_bytes().split(b"\n", 4)
        if header[0] != b"ANDROID BACKUP" or header[2:] != [b"1", b"none"]:
            raise ValueError(f"{path}: not a packet: {header}")
        self.files = {}
        with tarfile.open(fileobj=io.BytesIO(zlib.decompress(payload))) as archive:
            for entry in archive:
                if entry.isfile():
                    self.files[entry.name.split("/", 2)[2]] = archive.extractfile(entry).read()

    def database(self, path):
        """A database with its write-ahead log, opened on a copy."""
        with tempfile.TemporaryDirectory() as folder:
            for suffix in ("", "-wal"):
                if path + suffix in self.files:
                    (Path(folder) / f"copy{suffix}").write_bytes(self.files[path + suffix])
            memory = sqlite3.connect(":memory:")
            memory.row_factory = sqlite3.Row
            copy = sqlite3.connect(Path(folder) / "copy")
            copy.backup(memory)
            copy.close()
            return memory

    def differences(self, before, changed):
        """What differs from the packet `before` in files other than those in `changed`."""
        names = (self.files.keys() | before.files.keys()) - set(changed)
        return [f"{name}: another than before" for name in sorted(names)
                if self.files.get(name) != before.files.get(name)]


class Table:
    """The rows that a table must hold, by ID: those from before, then what is added, the rest of whose columns must have
    their defaults."""

    def __init__(self, before, name):
        self.name = name
        self.rows = {row["_id"]: dict(row) for row in before.execute(f"SELECT * FROM {name}")}
        self._next = max(self.rows, default=0) + 1
        for row in before.execute("SELECT seq FROM sqlite_sequence WHERE name = ?", (name,)):
            self._next = max(self._next, row[0] + 1)
        self._defaults = {column["name"]: before.execute(f"SELECT {column['dflt_value'] or 'NULL'}").fetchone()[0]
                          for column in before.execute(f"PRAGMA table_info({name})")}

    def add(self, **values):
        number = self._next
        self._next += 1
        self.rows[number] = {**self._defaults, **values, "_id": number}
        return number

    def problems(self, after):
        """How the table of the database `after` differs. A value that is a function must say whether it fits."""
        found = {row["_id"]: dict(row) for row in after.execute(f"SELECT * FROM {self.name}")}
        problems = []
        for number in sorted(self.rows.keys() | found.keys()):
            wanted, row = self.rows.get(number), found.get(number)
            if wanted is None or row is None:
                problems.append(f"{self.name} {number}: {'nobody wanted it' if row else 'missing'}: {row or wanted}")
                continue
            problems += [f"{self.name} {number}: {column} {value!r:.200} (there is {row[column]!r:.200})"
                         for column, value in wanted.items() if not fits(value, row[column])]
        more = len(problems) - MOST_PROBLEMS
        return problems[:MOST_PROBLEMS] + ([f"{self.name}: {more} more"] if more > 0 else [])


def fits(wanted, found):
    if callable(wanted):
        return wanted(found)
    return type(wanted) is type(found) and wanted == found
