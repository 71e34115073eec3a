"""What a migration promises however it is disturbed. Each function answers the promises that were broken, in words."""

import hashlib
import re
import sys
from collections import Counter
from functools import lru_cache
from pathlib import Path

from places import TEMPORARY, digest, file_names, tree

sys.path.insert(0, str(Path(__file__).parent.parent / "app"))
from stores import Packet  # noqa: E402

DONE, REFUSED, PARTLY, SKIPPED = 0, 16, 17, 20
KILLED = -9
PHONE_UNCHANGED = (11, 12, 13, 14, 15, REFUSED, 18, 19)
TRANSFERRED = "TarvexTransfer/"
CHROME = "com.android.chrome"
KINDS_OF_PACKETS = {
    "com.android.browser": "bookmarks", CHROME: "bookmarks", "com.android.providers.calendar": "calendar",
    "com.android.providers.telephony": "textMessages", "com.vornmobile.android.contactsimport": "contacts",
    "com.vornmobile.android.socialphonebook": "contacts", "com.vornmobile.notes": "notes"}
KINDS_OF_FOLDERS = {"Media": {"images", "videos"}, "Recordings": {"voicememos"}, "Music": {"music"}}
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
        self.contents = {packet_id: content_of_packet(*packet) for packet_id, packet in self.packets.items()}

    def bytes_of(self, packet_id):
        return self.packets.get(packet_id, (None,))[0]


class Reference:
    """The undisturbed migration."""

    def __init__(self, place):
        self.before = PhoneState(place.phone)
        self.ended = place.run(["transfer", "--yes"])
        if self.ended.code != DONE:
            raise SystemExit(f"The undisturbed migration ends with {self.ended.code}: {self.ended.messages}")
        self.after = PhoneState(place.phone)
        self.cache = file_names(place.cache)


def broken_promises(place, ended, tree_before, reference, is_killed=False, is_phone_lost=False, when_mended=lambda: None):
    """All promises that a run broke; `when_mended` is called before the same is tried again undisturbed."""
    broken = broken_by_ending(ended, is_killed)
    broken += broken_on_phone(ended, place.phone, tree_before, reference, is_phone_lost)
    broken += broken_backups(place, reference)
    when_mended()
    return broken + (broken_by_repeat(place, ended, reference) if ended.code is not None else [])


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
        return [] if ended.skipped() else ["it skipped something and does not say what"]
    return [] if ended.last.get("message") and ended.messages.strip() else ["it failed without a word"]


def broken_on_phone(ended, phone, tree_before, reference, is_phone_lost):
    """Unchanged until the restore begins; each app and each file whole or not there at all times. From a phone that was
    lost nothing could be cleaned away."""
    if not ended.has_begun_to_write() or ended.code in PHONE_UNCHANGED:
        now = tree(phone)
        changed = [name for name in sorted(now.keys() | tree_before.keys()) if now.get(name) != tree_before.get(name)]
        return [f"the phone was changed (exit code {ended.code}): {changed[:5]}"] if changed else []
    state, before, wanted = PhoneState(phone), reference.before, reference.after
    broken = [f"the packet {packet_id} is gone" for packet_id in before.packets.keys() - state.packets.keys()]
    broken += [f"the packet {packet_id} is not whole" for packet_id, content in state.contents.items() if content is None]
    whole = set(wanted.files.values())
    broken += [f"the file {name} is not whole" for name, content in state.files.items()
               if content not in whole and not name.endswith(".m3u")]
    if state.temporary and ended.code != KILLED and not is_phone_lost:
        broken.append(f"not cleaned away on the phone: {state.temporary}")
    return broken + (broken_by_loss(ended, state, reference) if ended.code in (DONE, SKIPPED) else [])


def broken_by_loss(ended, state, reference):
    """What is not named as skipped is on the phone."""
    skipped, wanted = ended.skipped(), reference.after
    broken = [f"{packet_id} lacks something that is not named" for packet_id, content in wanted.contents.items()
              if not skipped & {packet_id, KINDS_OF_PACKETS[packet_id]} and state.contents.get(packet_id) != content]
    return broken + [f"the file {name} is missing and not named" for name in missing_files(state, wanted)
                     if not skipped & KINDS_OF_FOLDERS[name.rsplit("/", 1)[0].removeprefix(TRANSFERRED).split("/")[0]]]


def missing_files(state, wanted):
    missing = Counter(wanted.files.values()) - Counter(state.files.values())
    return [name for name, content in wanted.files.items() if content in missing]


def broken_backups(place, reference):
    """A packet that counts as fetched is the phone's own."""
    originals = {packet_id: packet[0] for packet_id, packet in reference.before.packets.items()}
    return [f"the kept packet {path.parent.name} is not the phone's" for path in place.kept_packets()
            if digest(path) != originals.get(path.parent.name)]


def broken_by_repeat(place, first, reference):
    """The same again, undisturbed, moves what the first run did not move, and doubles nothing unasked."""
    before = PhoneState(place.phone)
    moved = [packet_id for packet_id, packet in before.packets.items() if packet[0] != reference.before.bytes_of(packet_id)]
    second = place.run(["transfer", "--yes"])
    if second.code == REFUSED and second.says("--again"):
        if not first.has_begun_to_write() or (not moved and first.code in PHONE_UNCHANGED):
            return ["the repeat asks for --again, though nothing had been written"]
        if first.code == DONE:
            return []
        second = place.run(["transfer", "--yes", "--again"])
    elif moved and not first.says("could not be noted"):
        return [f"the repeat doubles {moved} unasked"]
    if second.code != DONE and not is_loss_of_doubling(second, moved):
        return [f"the repeat ends with {second.code}: {second.messages[-1500:]}"]
    return broken_after_repeat(place, before, moved, reference)


def is_loss_of_doubling(ended, moved):
    """Bookmarks of the sample that are put into Chrome's file a second time do not fit into it, which is told."""
    return ended.code == SKIPPED and ended.skipped() <= {CHROME} and CHROME in moved


def broken_after_repeat(place, before, moved, reference):
    state, wanted = PhoneState(place.phone), reference.after
    broken = [f"after the repeat the packet {packet_id} is not as it should be" for packet_id in wanted.packets
              if packet_id not in moved and state.contents.get(packet_id) != wanted.contents[packet_id]]
    broken += [f"after the repeat the packet {packet_id} is not whole" for packet_id in moved
               if state.contents.get(packet_id) is None or state.bytes_of(packet_id) == before.bytes_of(packet_id)]
    # A playlist that lacked a song stays beside the one that has it.
    songs_and_pictures = Counter(content for name, content in state.files.items() if not name.endswith(".m3u"))
    doubled = songs_and_pictures - Counter(wanted.files.values())
    if missing_files(state, wanted) or doubled:
        broken.append("after the repeat the phone does not hold the files that it should")
    if file_names(place.cache) != reference.cache:
        broken.append(f"the working folder is not clean: {file_names(place.cache)[:5]}")
    if place.leftovers():
        broken.append(f"never cleaned away: {place.leftovers()}")
    return broken
