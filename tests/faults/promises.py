"""What every command that writes to a phone promises however it is disturbed. Each function answers the promises that were
broken, in words."""

import hashlib
import re
import sys
from functools import cached_property, lru_cache
from pathlib import Path

from places import TEMPORARY, digest, file_names, tree

sys.path.insert(0, str(Path(__file__).parent.parent / "app"))
from stores import Packet  # noqa: E402

DONE, REFUSED, PARTLY, SKIPPED = 0, 16, 17, 20
KILLED = -9
PHONE_UNCHANGED = (11, 12, 13, 14, 15, REFUSED, 18, 19)
CHROME = "com.android.chrome"
KINDS_OF_PACKETS = {
    "com.android.browser": "bookmarks", CHROME: "bookmarks", "com.android.providers.calendar": "calendar",
    "com.android.providers.telephony": "textMessages", "com.vornmobile.android.contactsimport": "contacts",
    "com.vornmobile.android.socialphonebook": "contacts", "com.vornmobile.notes": "notes"}
SQLITE = b"SQLite format 3\0"
LOGS_OF_SQLITE = ("-wal", "-shm", "-journal")


def masked(text):
    """Times and the names that are made of them differ from run to run."""
    return re.sub(r"\d{9,}", "#", text)


@lru_cache(maxsize=1000)
def content_of_packet(_digest, path):
    """A digest of what a packet holds, equal for packets of two runs; None when it is not whole. The first argument, the
    digest of the file's bytes, lets the answer be remembered."""
    try:
        packet = Packet(path)
    except Exception:  # whatever it is that cannot be read
        return None
    contents = sorted(content_of_file(packet, name) for name in packet.files if not name.endswith(LOGS_OF_SQLITE))
    return hashlib.sha1(repr(contents).encode(errors="surrogatepass")).hexdigest()


def content_of_file(packet, name):
    data = packet.files[name]
    text = "\n".join(packet.database(name).iterdump()) if data.startswith(SQLITE) else data.decode("latin-1")
    return masked(name), masked(text)


class PhoneState:
    """What a phone holds."""

    def __init__(self, phone):
        self.packets = {path.parent.name: (digest(path), path) for path in sorted(phone.glob("packets/*/fullbackupdata"))}
        files = file_names(phone / "storage")
        self.temporary = [name for name in file_names(phone) if TEMPORARY in name]
        self.files = {name: digest(phone / "storage" / name) for name in files if TEMPORARY not in name}

    @cached_property
    def contents(self):
        return {packet_id: content_of_packet(*packet) for packet_id, packet in self.packets.items()}

    def bytes_of(self, packet_id):
        return self.packets.get(packet_id, (None,))[0]

    def packets_unlike(self, other):
        return {packet_id for packet_id in self.packets.keys() | other.packets.keys()
                if self.bytes_of(packet_id) != other.bytes_of(packet_id)}


def broken_by_ending(ended, is_killed):
    """The exit code is one of the documented, and whoever reads it learns why."""
    if ended.code is None:
        return ["it hangs"]
    if is_killed:
        return [] if ended.code == KILLED else [f"it was killed but ended with {ended.code}"]
    if ended.code == DONE:
        return []
    if ended.code not in (*PHONE_UNCHANGED, PARTLY, SKIPPED):
        return [f"it ended with {ended.code}: {ended.messages[-2000:]}"]
    if ended.last.get("type") not in ("summary", "error") or ended.last["code"] != ended.code:
        return ["its last line is no summary of how it ended"]
    if ended.code == SKIPPED:
        return [] if ended.skipped() or ended.packets_in("skipped") else ["it skipped something and does not say what"]
    return [] if ended.last.get("message") and ended.messages.strip() else ["it failed without a word"]


def is_unwritten(ended):
    return not ended.has_begun_to_write() or ended.code in PHONE_UNCHANGED


def broken_unwritten(place, ended):
    """Nothing on the phone differs: no name, byte, mode or time."""
    now, before = tree(place.phone), place.phone_before
    changed = [name for name in sorted(now.keys() | before.keys()) if now.get(name) != before.get(name)]
    return [f"the phone was changed (exit code {ended.code}): {changed[:5]}"] if changed else []


def broken_tidiness(ended, state, before, is_phone_lost):
    """All packets are there still, and nothing that is half done. From a phone that was lost nothing could be cleaned away."""
    broken = [f"the packet {packet_id} is gone" for packet_id in before.packets.keys() - state.packets.keys()]
    if state.temporary and ended.code != KILLED and not is_phone_lost:
        broken.append(f"not cleaned away on the phone: {state.temporary}")
    return broken


def broken_phone_backups(place, before):
    """Phone backups stay what they are. A packet that counts as fetched is the phone's own."""
    broken = [f"the phone backup {folder.name} was changed" for folder, held in place.backups_before.items()
              if not folder.exists() or tree(folder) != held]
    return broken + [f"the kept packet {path.parent.name} is not the phone's" for folder in place.new_phone_backups()
                     for path in folder.rglob("fullbackupdata") if digest(path) != before.bytes_of(path.parent.name)]


def broken_cleanliness(place, cache_of_reference):
    """After a run that was not disturbed nothing is left of an earlier one."""
    broken = [f"never cleaned away: {place.leftovers()}"] if place.leftovers() else []
    if file_names(place.cache) != cache_of_reference:
        broken.append(f"the working folder is not clean: {file_names(place.cache)[:5]}")
    return broken
