#!/usr/bin/env python3
"""Checks what becomes of the photos, videos, voice memos and music of an iPhone.

Usage: check_media.py inspected BACKUP_FOLDER MUSIC_LIBRARY JSON_FILE
       check_media.py moved BACKUP_FOLDER MUSIC_LIBRARY PHONE_FOLDER STORAGE_BEFORE

"inspected" looks at the counts and bytes that the program tells; "moved" at the phone after a transfer, whose storage was a
copy of STORAGE_BEFORE. It reads backup and music library by itself, works out which files there must be on the phone, and
compares names, bytes and times. Files that the backup or the library lacks must not be there, nor anything else. Prints
what is wrong and exits with 1 when there is anything.
"""

import hashlib
import json
import sys
from pathlib import Path

from films_without_notes import without_notes
from libraries import Backup, VIDEOS

LONGEST_NAME = 255  # bytes
LONGEST_EXTENSION = 15
MEDIA, RECORDINGS, MUSIC = "TarvexTransfer/Media/", "TarvexTransfer/Recordings/", "Music/"


def sha256(data):
    return hashlib.sha256(data).hexdigest()


def is_video(name):
    return name.rpartition(".")[2].lower() in VIDEOS


def fitted(name, suffix=""):
    """The name with a suffix before its extension, short enough."""
    stem, dot, extension = name.rpartition(".")
    if not stem or len(extension) > LONGEST_EXTENSION:
        stem, dot, extension = name, "", ""
    tail = suffix + dot + extension
    return stem.encode()[:LONGEST_NAME - len(tail.encode())].decode(errors="ignore") + tail


def visible(text):
    name = text.strip().replace("/", "_")
    return fitted("_" + name[1:] if name.startswith(".") else name)


class Storage:
    """What must be on the phone: hash and time by path; no time when it does not matter."""

    def __init__(self, before):
        self.files = {str(path.relative_to(before)): (sha256(path.read_bytes()), None)
                      for path in before.rglob("*") if path.is_file()}

    def place(self, folder, name, data, time):
        """Puts a file where it may lie. Answers the path."""
        number, digest = 1, sha256(data)
        while True:
            path = folder + (fitted(name, f" ({number})") if number > 1 else fitted(name))
            if path not in self.files:
                self.files[path] = digest, time
            if self.files[path][0] == digest:
                return path
            number += 1

    def copy(self, folder, name, source, change=lambda data: data):
        return self.place(folder, name, change(source.read_bytes()), source.stat().st_mtime_ns)

    def problems(self, after):
        found = {str(path.relative_to(after)): path for path in after.rglob("*") if not path.is_dir()}
        for path in sorted(found.keys() - self.files.keys()):
            yield f"{path}: nobody wanted it"
        for path in sorted(self.files.keys() - found.keys()):
            yield f"{path}: missing"
        for path in sorted(self.files.keys() & found.keys()):
            digest, time = self.files[path]
            if sha256(found[path].read_bytes()) != digest:
                yield f"{path}: other bytes"
            if time is not None and found[path].stat().st_mtime_ns != time:
                yield f"{path}: another time of change"


def playlist_text(songs, places):
    """The playlist's file, which stands in the folder of the music."""
    lines = ["#EXTM3U"]
    for song in songs:
        place = places[song.path].removeprefix(MUSIC)
        lines += [f"#EXTINF:{song.seconds},{song.artist} - {song.title}", "./" * place.startswith("#") + place]
    return "\n".join(lines + [""]).encode()


def lead_astray(storage, playlist, songs):
    """Which entries of a playlist on the phone do not lead to their songs."""
    entries = [line for line in (storage / playlist).read_text().split("\n") if line and not line.startswith("#")]
    if len(entries) != len(songs):
        yield f"{playlist}: {len(entries)} entries for {len(songs)} songs"
    for entry, song in zip(entries, songs):
        target = (storage / playlist).parent / entry
        if not target.is_file() or target.read_bytes() != song.path.read_bytes():
            yield f"{playlist}: {entry} is not {song.path}"


def moved(backup, library, phone, before):
    phone, storage = Path(phone), Storage(Path(before))
    is_old = json.loads((phone / "phone.json").read_text())["androidBaseVersion"] <= 2
    for name, path in backup.pictures():
        if path.exists():
            storage.copy(MEDIA, name, path, without_notes if is_old and is_video(name) else bytes)
    for name, path in backup.memos():
        if path.exists():
            storage.copy(RECORDINGS, name, path)
    playlists = [(name, [song for song in songs if song.path.exists()]) for name, songs in backup.playlists(library)]
    places = {}
    for _, songs in playlists:
        for song in songs:
            folder = f"{MUSIC}{visible(song.artist)}/{visible(song.album)}/"
            places[song.path] = storage.copy(folder, song.path.name, song.path)
    own = [(storage.place(MUSIC, visible_playlist(name), playlist_text(songs, places), None), songs)
           for name, songs in playlists if songs]
    problems = list(storage.problems(phone / "storage"))
    return problems or [problem for path, songs in own for problem in lead_astray(phone / "storage", path, songs)]


def visible_playlist(name):
    name = name.strip().replace("/", "_") + ".m3u"
    return "_" + name[1:] if name.startswith(".") else name


def inspected(backup, library, told):
    pictures = [(name, path) for name, path in backup.pictures() if path.exists()]
    playlists = [[song.path for song in songs if song.path.exists()] for _, songs in backup.playlists(library)]
    files = {
        "images": [path for name, path in pictures if not is_video(name)],
        "videos": [path for name, path in pictures if is_video(name)],
        "voicememos": [path for _, path in backup.memos() if path.exists()],
        "music": [path for songs in playlists for path in songs],
    }
    wanted = {kind: {"count": len(paths), "bytes": sum(path.stat().st_size for path in paths), "state": "loaded"}
              for kind, paths in files.items()}
    wanted["music"]["playlists"] = sum(bool(songs) for songs in playlists)
    kinds = json.loads(Path(told).read_text())["kinds"]
    return [f"{kind}: {name} {value} (told: {kinds[kind].get(name)})" for kind, values in wanted.items()
            for name, value in values.items() if kinds[kind].get(name) != value]


def main(command, backup, library, *arguments):
    problems = {"inspected": inspected, "moved": moved}[command](Backup(backup), library, *arguments)
    print("\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
