"""The places of migrations that are disturbed on purpose: a sample, made once; for each attempt a phone and user folders."""

import hashlib
import json
import os
import shutil
import stat
import subprocess
import tempfile
from pathlib import Path

LONGEST_SECONDS = 120  # a run takes two on an idle computer; what is not over then hangs
LONG_AGO = 1_600_000_000  # seconds since 1970
TEMPORARY = ".phone-migrate-"  # what the names of files begin with that are not whole yet


def scratch_folder():
    """In memory, where there is such a place: the attempts write gigabytes."""
    return tempfile.TemporaryDirectory(prefix="migrate-faults.", dir="/dev/shm" if Path("/dev/shm").is_dir() else None)


def tree(folder):
    """What lies in the folder: mode, time of change, and size and digest of a file, by relative path."""
    found = {}
    for path in [Path(folder), *sorted(Path(folder).rglob("*"))]:
        status = path.lstat()
        content = (status.st_size, digest(path)) if stat.S_ISREG(status.st_mode) else None
        found[str(path.relative_to(folder))] = (status.st_mode, status.st_mtime_ns, content)
    return found


def set_back(folder):
    """What has not changed for a while is not looked at again and again: so each run makes the same calls."""
    for path in [folder, *folder.rglob("*")]:
        if path.is_dir():
            os.utime(path, (LONG_AGO, LONG_AGO))


def digest(path):
    return hashlib.sha1(path.read_bytes()).hexdigest()


def file_names(folder):
    return sorted(str(path.relative_to(folder)) for path in Path(folder).rglob("*") if not path.is_dir())


class Ended:
    """How a run of the program ended. `lines` are the objects that it wrote, `code` is None when it had to be stopped."""

    def __init__(self, code, output, messages):
        self.code, self.messages = code, messages
        self.lines = [json.loads(line) for line in output.splitlines() if line.endswith("}")]
        self.last = self.lines[-1] if self.lines else {}

    def has_begun_to_write(self):
        return any(line.get("type") == "phase" and line["name"] in ("restore", "transferMedia") for line in self.lines)

    def skipped(self):
        """The keys of the kinds of which something was left out."""
        return {key for key, kind in (self.last.get("kinds") or {}).items() if kind["skipped"]}

    def packets_in(self, *states):
        """The packets of which a restore says that this became of them."""
        return {packet_id for packet_id, packet in (self.last.get("packets") or {}).items() if packet["state"] in states}

    def says(self, text):
        return text in self.messages or text in json.dumps(self.last)


class Sample:
    """A made-up iPhone backup, music library and phone. Nobody writes to them."""

    def __init__(self, program, folder):
        self.program, self.folder = program, folder / "sample"
        subprocess.run([program, "sample", self.folder, "--quiet"], check=True, stdout=subprocess.DEVNULL)
        self.sources = [self.folder / "backups", self.folder / "music"]
        self.source_trees = [tree(source) for source in self.sources]

    def is_changed(self):
        return [tree(source) for source in self.sources] != self.source_trees


class Place:
    """Where one attempt happens: PLACE/phone and the user's folders PLACE/data, PLACE/cache and PLACE/state. It begins with the
    sample's phone, or with the phone and the data that `origin`, another place, holds."""

    def __init__(self, sample, folder, library=None, origin=None):
        self.sample, self.folder, self.library = sample, folder, library
        self.phone, self.data, self.cache = folder / "phone", folder / "data", folder / "cache"
        self.trace = folder / "trace"
        folder.mkdir()
        shutil.copytree(origin.phone if origin else sample.folder / "phone", self.phone)
        if origin:
            self.take_data(origin)
        set_back(self.phone)
        self.remember()

    def take_data(self, origin):
        """A copy of a phone is another phone: what was kept of the one becomes what was kept of the other."""
        shutil.copytree(origin.data, self.data)
        before, now = origin.phone_identifier(), self.phone_identifier()
        for path in [*self.data.rglob("BackupData.plist"), self.ledger_path()]:
            path.write_text(path.read_text().replace(before, now))
        for folder in list(self.data.rglob(before)):
            folder.rename(folder.with_name(now))

    def phone_identifier(self):
        arguments = [self.sample.program, "phone", "--json", "--phone", self.phone]
        return json.loads(subprocess.run(arguments, check=True, capture_output=True).stdout)["id"]

    def remember(self):
        """What must stay as it is now: the phone, until it is written, and the phone backups, always."""
        self.phone_before = tree(self.phone)
        self.backups_before = {folder: tree(folder) for folder in self.phone_backups()}

    def arguments(self, command):
        return [self.sample.program, *command, "--json", "--backups", self.sample.folder / "backups", "--phone",
                self.phone, "--music", self.sample.folder / "music" / "iTunes Music Library.xml"]

    def environment(self, fault=None):
        """`fault` holds what the library is told; without it the program runs undisturbed."""
        folders = {f"XDG_{name.upper()}_HOME": self.folder / name for name in ("data", "cache", "state", "config")}
        disturbance = {} if fault is None else {
            "LD_PRELOAD": self.library, "FAULTS_TRACE": self.trace, "FAULTS_GONE": self.phone,
            "FAULTS_ROOTS": ":".join(map(str, [*self.sample.sources, self.phone, self.data, self.cache])), **fault}
        steady = {"QT_HASH_SEED": 0}  # each run makes the same calls, nearly in the same order
        return {**os.environ, **{name: str(value) for name, value in {**folders, **steady, **disturbance}.items()}}

    def start(self, command, fault=None):
        return subprocess.Popen(self.arguments(command), env=self.environment(fault), stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, errors="replace")

    def run(self, command, fault=None):
        return finish(self.start(command, fault))

    def phone_backups(self):
        """The folders of the phone backups on this computer, the oldest first."""
        return sorted(self.data.glob("phone-migrate/phone-backups/*/*"))

    def new_phone_backups(self):
        return [folder for folder in self.phone_backups() if folder not in self.backups_before]

    def ledger_path(self):
        return self.data / "phone-migrate" / "transfers.json"

    def ledger(self):
        """The kinds that were moved to the phone, and whether they count as being there; None when that cannot be read."""
        try:
            transfers = json.loads(self.ledger_path().read_text())["transfers"]
            return {transfer["kind"]: len(transfer.get("turns", [])) % 2 == 0 for transfer in transfers}
        except (OSError, ValueError, KeyError, TypeError):
            return None

    def leftovers(self):
        """Files that are not whole and that nobody will use. Phone backups are never cleaned, whole or not."""
        return [str(path.relative_to(self.folder)) for path in sorted(self.folder.rglob(TEMPORARY + "*"))
                if "phone-backups" not in path.parts]


def finish(process):
    try:
        output, messages = process.communicate(timeout=LONGEST_SECONDS)
    except subprocess.TimeoutExpired:
        process.kill()
        output, messages = process.communicate()
        return Ended(None, output, messages)
    return Ended(process.returncode, output, messages)
