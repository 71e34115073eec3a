"""Moving the sample to the phone, and what that promises however it is disturbed."""

from collections import Counter

from places import Place, file_names
from promises import (CHROME, DONE, KINDS_OF_PACKETS, PHONE_UNCHANGED, REFUSED, SKIPPED, PhoneState, broken_by_ending,
                      broken_cleanliness, broken_phone_backups, broken_tidiness, broken_unwritten, is_unwritten)

TRANSFERRED = "TarvexTransfer/"
KINDS_OF_FOLDERS = {"Media": {"images", "videos"}, "Recordings": {"voicememos"}, "Music": {"music"}}


class Transfer:
    """A scenario: the places in which it begins, its command, and its promises by the measure of the undisturbed migration."""

    def __init__(self, sample, folder):
        """`folder` is where the undisturbed migration is made."""
        self.sample = sample
        self.finished = self.place(folder)
        self.before = self.unmoved = PhoneState(self.finished.phone)
        self.ended = self.finished.run(self.command(self.finished))
        if self.ended.code != DONE:
            raise SystemExit(f"The undisturbed migration ends with {self.ended.code}: {self.ended.messages}")
        self.after = PhoneState(self.finished.phone)
        self.cache = file_names(self.finished.cache)

    def place(self, folder, library=None):
        return Place(self.sample, folder, library)

    def command(self, _place):
        return ["transfer", "--yes"]

    def broken_promises(self, place, ended, is_killed=False, is_phone_lost=False, when_mended=lambda: None):
        """All promises that a run broke; `when_mended` is called before the same is tried again undisturbed."""
        broken = broken_by_ending(ended, is_killed)
        broken += self.broken_on_phone(place, ended, is_phone_lost)
        broken += broken_phone_backups(place, self.before)
        when_mended()
        return broken + (self.broken_by_repeat(place, ended) if ended.code is not None else [])

    def broken_on_phone(self, place, ended, is_phone_lost):
        """Unchanged until the restore begins; each app and each file whole or not there at all times."""
        if is_unwritten(ended):
            return broken_unwritten(place, ended)
        state = PhoneState(place.phone)
        broken = broken_tidiness(ended, state, self.before, is_phone_lost)
        broken += [f"the packet {packet_id} is not whole" for packet_id, content in state.contents.items() if content is None]
        whole = set(self.after.files.values())
        broken += [f"the file {name} is not whole" for name, content in state.files.items()
                   if content not in whole and not name.endswith(".m3u")]
        return broken + (self.broken_by_loss(ended, state) if ended.code in (DONE, SKIPPED) else [])

    def broken_by_loss(self, ended, state):
        """What is not named as skipped is on the phone."""
        skipped, wanted = ended.skipped(), self.after
        broken = [f"{packet_id} lacks something that is not named" for packet_id, content in wanted.contents.items()
                  if not skipped & {packet_id, KINDS_OF_PACKETS[packet_id]} and state.contents.get(packet_id) != content]
        return broken + [f"the file {name} is missing and not named" for name in missing_files(state, wanted)
                         if not skipped & KINDS_OF_FOLDERS[name.rsplit("/", 1)[0].removeprefix(TRANSFERRED).split("/")[0]]]

    def broken_by_repeat(self, place, first):
        """The same again, undisturbed, moves what the first run did not move, and doubles nothing unasked."""
        before = PhoneState(place.phone)
        moved = [packet_id for packet_id, packet in before.packets.items() if packet[0] != self.before.bytes_of(packet_id)]
        second = place.run(self.command(place))
        if second.code == REFUSED and second.says("--again"):
            if not first.has_begun_to_write() or (not moved and first.code in PHONE_UNCHANGED):
                return ["the repeat asks for --again, though nothing had been written"]
            if first.code == DONE:
                return []
            second = place.run([*self.command(place), "--again"])
        elif moved and not first.says("could not be noted"):
            return [f"the repeat doubles {moved} unasked"]
        if second.code != DONE and not is_loss_of_doubling(second, moved):
            return [f"the repeat ends with {second.code}: {second.messages[-1500:]}"]
        return self.broken_after_repeat(place, before, moved)

    def broken_after_repeat(self, place, before, moved):
        state, wanted = PhoneState(place.phone), self.after
        broken = [f"after the repeat the packet {packet_id} is not as it should be" for packet_id in wanted.packets
                  if packet_id not in moved and state.contents.get(packet_id) != wanted.contents[packet_id]]
        broken += [f"after the repeat the packet {packet_id} is not whole" for packet_id in moved
                   if state.contents.get(packet_id) is None or state.bytes_of(packet_id) == before.bytes_of(packet_id)]
        # A playlist that lacked a song stays beside the one that has it.
        songs_and_pictures = Counter(content for name, content in state.files.items() if not name.endswith(".m3u"))
        doubled = songs_and_pictures - Counter(wanted.files.values())
        if missing_files(state, wanted) or doubled:
            broken.append("after the repeat the phone does not hold the files that it should")
        return broken + broken_cleanliness(place, self.cache)


def is_loss_of_doubling(ended, moved):
    """Bookmarks of the sample that are put into Chrome's file a second time do not fit into it, which is told."""
    return ended.code == SKIPPED and ended.skipped() <= {CHROME} and CHROME in moved


def missing_files(state, wanted):
    missing = Counter(wanted.files.values()) - Counter(state.files.values())
    return [name for name, content in wanted.files.items() if content in missing]
