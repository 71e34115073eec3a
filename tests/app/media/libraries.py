"""Reads which photos, videos, voice memos and songs an iPhone had, from its backup and the computer's music library."""

import hashlib
import plistlib
import sys
import urllib.parse
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
from stores import backup_database

VIDEOS = {"mov", "mp4"}
CAMERA_ROLL = 1000
NEWER = ("CameraRollDomain-Media/", "ZGENERICASSET", "Z_PK", "ZDIRECTORY", "ZFILENAME",
         "SELECT Z_17ASSETS FROM Z_11ASSETS WHERE Z_11ALBUMS = (SELECT Z_PK FROM ZGENERICALBUM WHERE ZKIND = ?)")
OLDER = ("MediaDomain-Media/", "Photo", "primaryKey", "directory", "filename",
         'SELECT "right" FROM PhotoAlbumToPhotoJoin WHERE "left" = (SELECT primaryKey FROM PhotoAlbum WHERE kind = ?)')


class Song:
    def __init__(self, path, track):
        self.path = path
        self.title, self.artist, self.album = track["Name"], track["Artist"], track["Album"]
        self.seconds = (track["Total Time"] + 500) // 1000


class Backup:
    def __init__(self, folder):
        self._folder = Path(folder)

    def _stored(self, name):
        return self._folder / hashlib.sha1(name.encode()).hexdigest()

    def pictures(self):
        """Photos and videos of the camera roll: name and file, in its order. A file may be missing."""
        is_newer = self._stored(NEWER[0] + "PhotoData/Photos.sqlite").exists()
        root, table, key, folder, name, camera_roll = NEWER if is_newer else OLDER
        database = backup_database(self._folder, root + "PhotoData/Photos.sqlite")
        assets = {row[key]: row for row in database.execute(f"SELECT * FROM {table}")}
        for number, in database.execute(camera_roll, (CAMERA_ROLL,)):
            asset = assets[number]
            yield asset[name], self._stored(f"{root}{asset[folder]}/{asset[name]}")

    def memos(self):
        """Voice memos: name and file. A file may be missing."""
        database = backup_database(self._folder, "MediaDomain-Media/Recordings/Recordings.db")
        for row in database.execute("SELECT * FROM ZRECORDING"):
            path = row["ZPATH"].removeprefix("~/").removeprefix("/var/mobile/")
            yield path.rpartition("/")[2], self._stored("MediaDomain-" + path)

    def playlists(self, library):
        """The playlists that the iPhone took, in its order: name and songs. A song's file may be missing."""
        with open(self._folder / "Info.plist", "rb") as file:
            preferences = plistlib.loads(plistlib.load(file)["iTunes Files"]["iTunesPrefs.plist"])
        with open(library, "rb") as file:
            content = plistlib.load(file)
        tracks = {track["Track ID"]: track for track in content["Tracks"].values()}
        by_id = {int(playlist["Playlist Persistent ID"], 16): playlist for playlist in content["Playlists"]}
        for number in preferences["MusicPlaylistIDs"]:
            items = [tracks[item["Track ID"]] for item in by_id[number]["Playlist Items"]]
            yield by_id[number]["Name"], [Song(path_of(track["Location"]), track) for track in items]


def path_of(location):
    return Path(urllib.parse.unquote(urllib.parse.urlsplit(location).path))
