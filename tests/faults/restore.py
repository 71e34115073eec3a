"""Putting the phone's apps back, and what that promises however it is disturbed."""

from places import Place, file_names
from promises import (DONE, KINDS_OF_PACKETS, PARTLY, SKIPPED, PhoneState, broken_by_ending, broken_cleanliness,
                      broken_phone_backups, broken_tidiness, broken_unwritten, is_unwritten)


class Restore:
    """A scenario: the undo of another one. Where that ended this begins, and the phone backup that was made last is put back."""

    def __init__(self, undone, folder):
        """`folder` is where the undisturbed restore is made."""
        self.origin, self.sample, self.unmoved = undone.finished, undone.sample, undone.unmoved
        self.restored_from = self.origin.phone_backups()[-1].name
        self.finished = self.place(folder)
        self.before = PhoneState(self.finished.phone)
        ended = self.finished.run(self.command(self.finished))
        if ended.code != DONE:
            raise SystemExit(f"The undisturbed restore ends with {ended.code}: {ended.messages}")
        self.after = PhoneState(self.finished.phone)
        self.cache, self.ledger = file_names(self.finished.cache), self.finished.ledger()
        if not self.before.packets_unlike(self.after) or self.after.packets_unlike(undone.before):
            raise SystemExit("The undisturbed restore does not bring back what was before")

    def place(self, folder, library=None):
        return Place(self.sample, folder, library, self.origin)

    def command(self, place):
        return restoring(next(path for path in place.phone_backups() if path.name == self.restored_from))

    def broken_promises(self, place, ended, is_killed=False, is_phone_lost=False):
        broken = broken_by_ending(ended, is_killed)
        broken += self.broken_on_phone(place, ended, is_phone_lost)
        broken += broken_phone_backups(place, self.before)
        broken += self.broken_ledger(place, ended)
        if ended.code is None:
            return broken
        return broken + self.broken_way_back(place) + self.broken_by_repeat(place)

    def broken_on_phone(self, place, ended, is_phone_lost):
        """Unchanged until the restore begins; each packet old or that of the phone backup at all times; files are not touched."""
        if is_unwritten(ended):
            return broken_unwritten(place, ended)
        state = PhoneState(place.phone)
        broken = broken_tidiness(ended, state, self.before, is_phone_lost)
        unlike = state.packets_unlike(self.after)
        broken += [f"the packet {packet_id} is neither old nor put back"
                   for packet_id in unlike & state.packets_unlike(self.before)]
        if state.files != self.before.files:
            broken.append("files on the phone were changed")
        return broken + (broken_summary(place, ended, unlike) if ended.code in (DONE, SKIPPED, PARTLY) else [])

    def broken_ledger(self, place, ended):
        """It can be read at all times, and what was moved to the phone and is on it counts as being there."""
        ledger = place.ledger()
        if ledger is None or ledger.keys() != self.ledger.keys():
            return ["the ledger of transfers cannot be read"]
        if ended.says("could not be noted"):
            return []
        moved = {KINDS_OF_PACKETS[packet_id] for packet_id in PhoneState(place.phone).packets_unlike(self.unmoved)}
        broken = [f"{kind} is on the phone and not in the ledger" for kind in sorted(moved) if not ledger[kind]]
        if ended.code == DONE and ledger != self.ledger:
            broken.append(f"the ledger was not kept: {ledger}")
        return broken

    def broken_way_back(self, place):
        """What was changed is what it was again once the phone backup is put back that was made before."""
        changed = PhoneState(place.phone).packets_unlike(self.before)
        if not changed:
            return []
        kept = place.new_phone_backups()
        if len(kept) != 1:
            return [f"{len(kept)} phone backups were made before {sorted(changed)} were changed"]
        ended = place.run(restoring(kept[0]))
        unlike = PhoneState(place.phone).packets_unlike(self.before)
        if ended.code != DONE or unlike:
            return [f"the way back ends with {ended.code} and these are not back: {sorted(unlike)}: {ended.messages[-1500:]}"]
        return []

    def broken_by_repeat(self, place):
        """The same again, undisturbed, puts everything back."""
        ended = place.run(self.command(place))
        if ended.code != DONE:
            return [f"the repeat ends with {ended.code}: {ended.messages[-1500:]}"]
        state = PhoneState(place.phone)
        broken = [f"after the repeat the packet {packet_id} is not put back" for packet_id in state.packets_unlike(self.after)]
        broken += broken_tidiness(ended, state, self.before, is_phone_lost=False)
        if state.files != self.before.files:
            broken.append("after the repeat files on the phone were changed")
        if place.ledger() != self.ledger:
            broken.append(f"after the repeat the ledger is another: {place.ledger()}")
        return broken + broken_cleanliness(place, self.cache)


def restoring(phone_backup):
    return ["restore", phone_backup, "--yes"]


def broken_summary(place, ended, unlike):
    """What is not put back is named, and the phone backup that was made before, which holds every packet."""
    named = ended.packets_in("failed", "skipped")
    broken = [f"{packet_id} is not put back and not named" for packet_id in unlike - named]
    broken += [f"{packet_id} counts as put back" for packet_id in unlike & ended.packets_in("putBack")]
    if [str(path) for path in place.new_phone_backups()] != [(ended.last.get("phoneBackup") or {}).get("path")]:
        broken.append("the phone backup that was made before is not named")
    return broken
