#!/usr/bin/env python3
"""Checks that the messages of an iPhone backup stand complete in a phone's message packet.

Usage: check_messages.py BACKUP_FOLDER PACKET PACKET_BEFORE

BACKUP_FOLDER  the backup: a folder with Manifest.mbdb
PACKET         the expanded packet of the phone's messages after the transfer: a folder with apps/
PACKET_BEFORE  the same before the transfer

It reads the backup's database and files by itself, works out row for row what a transfer must leave in the phone's
database, and compares. What the phone had before must still be there. Prints what is wrong and exits with 1 when there is
anything. Dates that the phone's own triggers take from the clock are only looked at for their form.
"""

import posixpath
import re
import sys
from pathlib import Path

from backup import Backup, PARTS_FOLDER, open_database
from films import film_problem

PACKET_ID = "com.android.providers.telephony"
REFERENCE_DATE = 978307200  # 2001-01-01 in seconds since 1970
PLACEHOLDER = "\ufffc"  # where an attachment stands in a text
CLOCK = object()  # a date that a trigger took from the clock, in whole seconds
MOST_PROBLEMS = 15  # shown of each table

SMIL_HEAD = '<smil><head><layout><root-layout width="320px" height="480px"/>'
SMIL_IMAGE = '<region id="Image" left="0" top="0" width="320px" height="320px" fit="meet"/>'
SMIL_TEXT = '<region id="Text" left="0" top="320" width="320px" height="160px" fit="meet"/>'
SMIL_KINDS = (("image/", "img"), ("video/", "video"), ("audio/", "audio"))
NO_ATTACHMENT = ("text/plain", "application/smil")


class Attachment:
    def __init__(self, name, mime, data):
        self.name, self.mime, self.data = name, mime, data

    def is_kind(self, kind):
        return kind in (self.mime or "").lower()


class Message:
    """`seconds` since 1970; a text or address that there is none of is None."""

    def __init__(self, is_from_me, address, text, seconds, attachments):
        self.is_from_me, self.address, self.text = is_from_me, address, text
        self.seconds, self.attachments = seconds, attachments


class Chat:
    def __init__(self, recipients, messages):
        self.recipients, self.messages = recipients, messages


def like_pattern(location):
    """The value of a location as it would be read in a statement: a number or a literal; None when it is neither."""
    if re.fullmatch(r"\s*[+-]?\d+(\.\d*)?\s*", location):
        return float(location) if "." in location else int(location)
    if re.fullmatch(r"\s*'(?:[^']|'')*'\s*", location):
        return location.strip()[1:-1].replace("''", "'")
    return None


class IPhone:
    """The chats of the backup, those of the newer layout first."""

    def __init__(self, backup):
        self._backup = backup
        self._database = backup.database
        self.chats = [self._chat(row) for row in self._rows("SELECT * FROM chat")]
        if self._rows("SELECT 1 FROM sqlite_master WHERE name = 'msg_group'"):
            groups = [self._group(row["ROWID"]) for row in self._rows("SELECT * FROM msg_group")]
            self.chats += [group for group in groups if group.recipients and group.messages]

    def _rows(self, sql, *values):
        return self._database.execute(sql, values).fetchall()

    def _chat(self, row):
        handles = self._rows("SELECT * FROM handle WHERE ROWID IN (SELECT handle_id FROM chat_handle_join WHERE "
                             "chat_id = ?)", row["ROWID"])
        recipients = [handle["id"] for handle in handles] or [row["chat_identifier"]]
        messages = self._rows("SELECT * FROM message WHERE ROWID IN (SELECT message_id FROM chat_message_join WHERE "
                              "chat_id = ?) ORDER BY date", row["ROWID"])
        return Chat(recipients, [self._message(message, recipients) for message in messages])

    def _message(self, row, recipients):
        handles = self._rows("SELECT * FROM handle WHERE ROWID = ?", row["handle_id"])
        text = row["text"]
        attachments = []
        for file in self._rows("SELECT * FROM attachment WHERE ROWID IN (SELECT attachment_id FROM "
                               "message_attachment_join WHERE message_id = ?)", row["ROWID"]):
            if file["filename"] is not None:
                attachments.append(self._attachment(file["filename"], file["mime_type"]))
        return Message(row["is_from_me"] != 0, handles[0]["id"] if handles else recipients[0],
                       None if text is None else text.replace(PLACEHOLDER, ""), row["date"] + REFERENCE_DATE,
                       [each for each in attachments if each])

    def _attachment(self, stored, mime):
        data = self._backup.read(stored.replace("~/", "").replace("/var/mobile/", ""))
        return None if data is None else Attachment(posixpath.basename(stored), mime, data)

    def _group(self, group):
        recipients = [row["address"] for row in self._rows("SELECT * FROM group_member WHERE group_id = ?", group)]
        rows = self._rows("SELECT * FROM (SELECT * FROM message WHERE group_id = ?1 AND association_id <> 0 GROUP BY "
                          "association_id UNION SELECT * FROM message WHERE group_id = ?1 AND association_id = 0) "
                          "ORDER BY date", group)
        rows = rows or self._rows("SELECT * FROM message WHERE group_id = ? ORDER BY date", group)
        return Chat(recipients, [self._group_message(group, row) for row in rows])

    def _group_message(self, group, row):
        text, attachments = row["text"], []
        for piece in self._rows("SELECT * FROM msg_pieces WHERE message_id = ?", row["ROWID"]):
            if text is None and "text/plain" in (piece["content_type"] or "").lower():
                data = piece["data"]
                text = data.decode() if isinstance(data, bytes) else data
                if text is not None:
                    continue
            if piece["content_loc"] is not None:
                found = self._piece_file(group, row["ROWID"], piece)
                attachments += [found] if found else []
        return Message(bool(row["flags"] & 1), row["address"], text, row["date"], attachments)

    def _piece_file(self, group, message, piece):
        location, mime = piece["content_loc"], piece["content_type"]
        pattern = like_pattern(location)
        rows = [] if pattern is None else self._rows("SELECT * FROM madrid_attachment WHERE filename LIKE ?", pattern)
        for row in rows:
            data = self._backup.read(row["filename"].replace("/var/mobile/", ""))
            if data is not None:
                return Attachment(posixpath.basename(row["filename"]), mime, data)
        wanted = f"{PARTS_FOLDER}{group:02x}/{message}-{piece['part_id']}"
        for path in self._backup.part_paths:
            if posixpath.splitext(path)[0] == wanted:
                data = self._backup.read(path.partition("-")[2])
                return None if data is None else Attachment(location, mime, data)
        return None


def quoted(text):
    """What the phone gets of a text that stands between quotes in a statement; None when the statement fails."""
    if text is None:
        return "(null)"
    if any(len(run) % 2 for run in re.findall("'+", text)):
        return None
    return text.replace("''", "'")


def smil(attachments):
    body, has_image = "", False
    for attachment in attachments:
        kind = next((element for part, element in SMIL_KINDS if attachment.is_kind(part)), None)
        if kind is None:
            continue
        region = ""
        if kind != "audio" and not has_image:
            region, has_image = ' region="Image"', True
        body += ("</par>" if body else "") + f'<par dur="5000ms"><{kind} src="{attachment.name}"{region}/>'
    body = (body or '<par dur="5000ms">') + '<text src="text_0.txt" region="Text"/></par>'
    return SMIL_HEAD + (SMIL_IMAGE if has_image else "") + SMIL_TEXT + f"</layout></head><body>{body}</body></smil>"


class Table:
    """The rows that a table of the phone's database must hold, by ID: those from before, then what is added."""

    def __init__(self, database, name):
        self.name = name
        self.rows = {}
        self._next = 1
        if database is None:
            return
        self.rows = {row["_id"]: dict(row) for row in database.execute(f"SELECT * FROM {name}")}
        self._next = max(self.rows, default=0) + 1
        for row in database.execute("SELECT seq FROM sqlite_sequence WHERE name = ?", (name,)):
            self._next = max(self._next, row[0] + 1)

    def add(self, **values):
        number = self._next
        self._next += 1
        self.rows[number] = {"_id": number, **values}
        return number

    def first(self, **values):
        return next((row for row in self.rows.values() if all(row[key] == value for key, value in values.items())), None)


class Phone:
    """What must stand in the phone's database. Rows name only the columns that are looked at."""

    def __init__(self, before):
        self.addresses, self.threads, self.vendor_threads, self.texts, self.multimedia, self.parts = (
            Table(before, name) for name in
            ("canonical_addresses", "threads", "vrnm_threads", "sms", "pdu", "part"))
        self.files = {}  # attachment by ID of its part
        self.tables = (self.addresses, self.threads, self.vendor_threads, self.texts, self.multimedia, self.parts)
        # A conversation's newest text, kept apart: looking for it each time would take too long.
        self._newest = {}
        for row in self.texts.rows.values():
            self._note_newest(row["thread_id"], row["date"])

    def _note_newest(self, thread, milliseconds):
        self._newest[thread] = max(self._newest.get(thread, 0), milliseconds)

    def add_chat(self, chat):
        recipients = " ".join(str(self._address(recipient)) for recipient in chat.recipients)
        thread = self.threads.first(recipient_ids=recipients)
        date = 0 if thread is None else self._newest.get(thread["_id"], 0)
        if thread is None:
            number = self.threads.add(date=0, message_count=0, recipient_ids=recipients, snippet=None, read=1,
                                      has_attachment=0)
            thread = self.threads.rows[number]
            self.vendor_threads.rows[number] = {"_id": number, "date": 0, "recipient_ids": recipients, "snippet": None,
                                                "snippet_type": 0}
        for message in chat.messages:
            self._add_message(thread, message)
            date = max(date, message.seconds * 1000)
        if chat.messages:
            thread["read"] = 1
            self._set_snippet(self.vendor_threads.rows[thread["_id"]], date, chat.messages[-1].text)

    @staticmethod
    def _set_snippet(row, date, text):
        snippet = quoted(text)
        if snippet is not None:
            row.update(date=date, snippet=snippet, snippet_type=2)

    def _address(self, recipient):
        wanted = quoted(recipient)
        known = None if wanted is None else self.addresses.first(address=wanted)
        return known["_id"] if known else self.addresses.add(address=recipient)

    def _add_message(self, thread, message):
        """Adds the rows, and does what the phone's triggers do then."""
        snippet = None
        if message.attachments:
            self._add_multimedia(thread, message)
        else:
            milliseconds = message.seconds * 1000
            self.texts.add(thread_id=thread["_id"], address=message.address, date=milliseconds, read=1,
                           type=0 if message.is_from_me else 1, body=message.text, sequence_time=milliseconds)
            self._note_newest(thread["_id"], milliseconds)
            snippet = message.text
        newest = {"date": CLOCK, "snippet": snippet, "snippet_cs": None if message.attachments else 0}
        thread.update(newest, message_count=thread["message_count"] + 1)
        self.vendor_threads.rows[thread["_id"]].update(newest, snippet_type=2 if message.is_from_me else 1)

    def _add_multimedia(self, thread, message):
        number = self.multimedia.add(
            thread_id=thread["_id"], date=message.seconds, msg_box=2 if message.is_from_me else 1,
            ct_t="application/vnd.wap.multipart.related", m_type=128 if message.is_from_me else 132,
            sequence_time=message.seconds * 1000)
        for attachment in message.attachments:
            stem = posixpath.splitext(attachment.name)[0]
            part = self.parts.add(mid=number, seq=0, ct=attachment.mime, chset=None, cid=f"<{stem}>",
                                  cl=attachment.name, text=None)
            self.files[part] = attachment
            if attachment.mime is not None and attachment.mime not in NO_ATTACHMENT:
                thread["has_attachment"] = 1
        # Only a text that there is none of becomes a blank; an empty one stays empty.
        self.parts.add(mid=number, seq=0, ct="text/plain", chset=106, cid="<text_0>", cl="text_0.txt", _data=None,
                       text=" " if message.text is None else message.text)
        self.parts.add(mid=number, seq=-1, ct="application/smil", cid="<smil>", cl="smil.xml", _data=None,
                       text=smil(message.attachments))


class Comparison:
    def __init__(self, packet, before, expected):
        self.problems = []
        self._root = Path(packet) / "apps" / PACKET_ID
        self._own_files = {path.name for path in (Path(before) / "apps" / PACKET_ID / "r/app_parts").glob("*")}
        self._expected = expected
        self._database = open_database(self._root / "db/mmssms.db")
        for table in expected.tables:
            self._compare_table(table)
        self._compare_files(before)

    def _compare_table(self, table):
        found = {row["_id"]: dict(row) for row in self._database.execute(f"SELECT * FROM {table.name}")}
        problems = []
        for number in sorted(table.rows.keys() | found.keys()):
            wanted, row = table.rows.get(number), found.get(number)
            if wanted is None or row is None:
                problems.append(f"{table.name} {number}: {'nobody sent it' if row else 'missing'}: {row or wanted}")
                continue
            for column, value in wanted.items():
                if not self._is_same(value, row[column]):
                    problems.append(f"{table.name} {number}: {column} {value!r:.200} (there is {row[column]!r:.200})")
        self.problems += problems[:MOST_PROBLEMS]
        if len(problems) > MOST_PROBLEMS:
            self.problems.append(f"{table.name}: {len(problems) - MOST_PROBLEMS} more")

    @staticmethod
    def _is_same(wanted, found):
        if wanted is CLOCK:
            return isinstance(found, int) and found > 0 and found % 1000 == 0
        return type(wanted) is type(found) and wanted == found

    def _compare_files(self, before):
        names = set()
        seconds = {row["_id"]: row["date"] for row in self._expected.multimedia.rows.values()}
        for row in self._database.execute("SELECT * FROM part WHERE _data IS NOT NULL"):
            attachment = self._expected.files.get(row["_id"])
            if attachment is None:
                continue
            folder, name = posixpath.split(row["_data"])
            if folder != f"/data/data/{PACKET_ID}/app_parts" or name in names | self._own_files:
                self.problems.append(f"part {row['_id']}: {row['_data']}: not a place of its own")
            names.add(name)
            stamp = re.fullmatch(r"PART_(-?\d+)", name)
            if not stamp or int(stamp[1]) // 1000 != seconds.get(row["mid"]):
                self.problems.append(f"part {row['_id']}: {name} is not stamped {seconds.get(row['mid'])}...")
            self._compare_file(attachment, self._root / "r/app_parts" / name)
        if len(names) != len(self._expected.files):
            self.problems.append(f"{len(self._expected.files)} attachments, but {len(names)} files")
        there = {path.name for path in (self._root / "r/app_parts").glob("*")}
        for name in sorted(there ^ (names | self._own_files)):
            self.problems.append(f"r/app_parts/{name}: {'belongs to nothing' if name in there else 'missing'}")
        for name in self._own_files & there:
            own = Path(before) / "apps" / PACKET_ID / "r/app_parts" / name
            if own.read_bytes() != (self._root / "r/app_parts" / name).read_bytes():
                self.problems.append(f"r/app_parts/{name}: the phone's own file is another")

    def _compare_file(self, attachment, path):
        if not path.is_file():
            self.problems.append(f"{attachment.name}: no file {path.name}")
            return
        data = path.read_bytes()
        problem = None
        if attachment.is_kind("video/"):
            problem = film_problem(attachment.data, data)
        elif data != attachment.data:
            problem = f"{len(attachment.data)} bytes became {len(data)} others"
        if problem:
            self.problems.append(f"{attachment.name} ({path.name}): {problem}")


def main(arguments):
    if len(arguments) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    folder, packet, before = arguments
    store = Path(before) / "apps" / PACKET_ID / "db/mmssms.db"
    expected = Phone(open_database(store) if store.is_file() else None)
    own_count = len(expected.texts.rows) + len(expected.multimedia.rows)
    chats = IPhone(Backup(folder)).chats
    for chat in chats:
        expected.add_chat(chat)
    print(f"{own_count} messages of the phone's own; {sum(len(chat.messages) for chat in chats)} messages in {len(chats)} "
          f"chats of the backup, with {len(expected.files)} attachments")
    problems = Comparison(packet, before, expected).problems
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
