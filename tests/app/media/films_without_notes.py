"""Films as phones up to Android 2 want them: without the notes of a person's."""

import struct
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "messages"))
from films import boxes


def without_notes(data):
    """The film without its boxes "moov/udta", the places of its pictures moved accordingly."""
    found = list(boxes(data, 0, len(data)))
    notes = [(start, end) for path, start, _, end in found if path == "/moov/udta"]

    def removed_before(place):
        return sum(end - start for start, end in notes if end <= place)

    film = bytearray(data)
    for path, start, content, end in found:
        if path == "/moov":
            struct.pack_into(">I", film, start, end - start - removed_before(end))
        if path.endswith("/stco"):
            for place in range(content + 8, end, 4):
                number, = struct.unpack_from(">I", film, place)
                struct.pack_into(">I", film, place, number - removed_before(number))
    for start, end in reversed(notes):
        del film[start:end]
    return bytes(film)
