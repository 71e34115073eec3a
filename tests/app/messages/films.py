"""What a film (QuickTime, MP4) is made of, to compare one with its copy that lost the notes of a person's."""

import struct


def boxes(data, start, end, path=""):
    """The boxes of a film between two places: path, start, start of the content, end."""
    containers = {"/moov", "/moov/udta", "/moov/trak", "/moov/trak/mdia", "/moov/trak/mdia/minf",
                  "/moov/trak/mdia/minf/stbl", "/moov/trak/mdia/minf/dinf"}
    while start < end:
        size, header = struct.unpack_from(">I", data, start)[0], 8
        if size == 1:
            size, header = struct.unpack_from(">Q", data, start + 8)[0], 16
        size = size or end - start
        if size < header or start + size > end:
            raise ValueError(f"a box of {size} bytes at {start}, where {end - start} are left")
        name = path + "/" + data[start + 4:start + 8].decode("latin-1")
        yield name, start, start + header, start + size
        if name in containers:
            yield from boxes(data, start + header, start + size, name)
        start += size


def film(data):
    """Names and contents of the boxes that hold something themselves, without notes of a person's and without places;
    and the pictures that stand at these places."""
    contents, places, sizes = [], (), ()
    for path, _, start, end in boxes(data, 0, len(data)):
        content = data[start:end]
        if path.startswith("/moov/udta"):
            continue
        if path.endswith(("/stco", "/co64")):
            places = [number[0] for number in struct.iter_unpack(">I" if path.endswith("stco") else ">Q", content[8:])]
        elif path.endswith("/stsz"):
            sizes = [number[0] for number in struct.iter_unpack(">I", content[12:])]
        if not path.endswith(("moov", "trak", "mdia", "minf", "stbl", "dinf", "/stco", "/co64")):
            contents.append((path, content))
    return contents, [data[place:place + size] for place, size in zip(places, sizes)]


def film_problem(original, cleaned):
    """What is wrong with a film from which the notes of a person's should have been taken; None when nothing is."""
    if not original:
        return None if not cleaned else "bytes from nowhere"
    try:
        if any(path.startswith("/moov/udta") for path, *_ in boxes(cleaned, 0, len(cleaned))):
            return "its notes are still there"
        (boxes_before, pictures_before), (boxes_after, pictures_after) = film(original), film(cleaned)
    except (ValueError, struct.error) as error:
        return f"its structure is broken: {error}"
    if boxes_before != boxes_after:
        return "its boxes are others"
    return None if pictures_before == pictures_after else "its pictures are not where it says"
