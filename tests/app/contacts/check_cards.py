#!/usr/bin/env python3
"""Checks that the contacts and calls of an iPhone backup stand complete in the files that were made for a phone.

Usage: check_cards.py BACKUP_FOLDER VCF CALLLOG

BACKUP_FOLDER  the backup: a folder with Manifest.mbdb
VCF            the phone's full_backup_vcard.vcf after the transfer
CALLLOG        the phone's TempCallLogs after the transfer

It reads the backup's databases and the two files by itself, the cards with python3-vobject, and compares them. The phone's
own cards and calls come first and are left alone. Days are compared in the time zone of TZ, which must be that of the
transfer. Prints what is missing and exits with 1 when there is anything.
"""

import datetime
import hashlib
import sqlite3
import sys
import urllib.parse
import xml.etree.ElementTree
from pathlib import Path

import vobject

REFERENCE_DATE = datetime.datetime(2001, 1, 1, tzinfo=datetime.timezone.utc)
LAST_YEAR_OF_NONE = 1799  # the phone keeps a day without a year in 1604

PHONES, EMAILS, ADDRESSES, DATES, ACCOUNTS, PAGES, RELATIONS = 3, 4, 5, 12, 13, 22, 23

NAME_COLUMNS = {"Last": "family", "First": "given", "Middle": "additional", "Prefix": "prefix", "Suffix": "suffix"}
READING_COLUMNS = {"First": "x-phonetic-first-name", "Middle": "x-phonetic-middle-name", "Last": "x-phonetic-last-name"}
ADDRESS_PARTS = {"Street": "street", "City": "city", "State": "region", "ZIP": "code"}
PHONE_TYPES = {"Work": {"WORK"}, "Home": {"HOME"}, "Mobile": {"CELL"}, "Main": {"PREF"}, "HomeFAX": {"HOME", "FAX"},
               "WorkFAX": {"WORK", "FAX"}, "Pager": {"PAGER"}}
PLACE_TYPES = {"Work": {"WORK"}, "Home": {"HOME"}}
EMAIL_TYPES = {**PLACE_TYPES, "Mobile": {"CELL"}}
UNTYPED = [set(), {"VOICE"}, {"OTHER"}]
SERVICES = {"AIM": "x-aim", "GoogleTalk": "x-google-talk", "ICQ": "x-icq", "Jabber": "x-jabber", "MSN": "x-msn",
            "NetMeeting": "x-netmeeting", "QQ": "x-qq", "Skype": "x-skype-username", "Yahoo": "x-yahoo"}
SERVICES.update({f"{service}Instant": name for service, name in list(SERVICES.items()) if service != "NetMeeting"})

CUSTOM = "vnd.android.cursor.item/"
CUSTOM_LABEL = "0"  # the type of a row whose label is a text
PLACE_NUMBERS = {"Home": "1", "Work": "2"}


def open_database(folder, name):
    path = Path(folder).resolve() / hashlib.sha1(name.encode()).hexdigest()
    database = sqlite3.connect(f"file:{urllib.parse.quote(str(path))}?immutable=1", uri=True)
    database.row_factory = sqlite3.Row
    return database


def plain(text):
    """The text as a card can hold it: line breaks are line feeds."""
    return text.replace("\r\n", "\n").replace("\r", "\n")


class Label:
    """What a value is for: one of the phone's own labels, or a text that somebody typed."""

    def __init__(self, stored):
        self.is_own = stored is not None and stored.startswith("_$!<") and stored.endswith(">!$_")
        self.name = stored[4:-4] if self.is_own else stored

    def is_named(self, text):
        if self.name is None:
            return text == ""
        if self.is_own:  # "HomeFAX" may be shown as "Home Fax"
            return text.replace(" ", "").casefold() == self.name.casefold()
        return text == self.name

    def is_type(self, types, known):
        """Whether a property's TYPE parameters say it. `known` are the labels that have types of their own."""
        upper = {each.upper() for each in types}
        if self.is_own and self.name in known:
            return upper == known[self.name]
        if self.name is None:
            return upper in UNTYPED
        # A parameter cannot hold double quotes.
        expected = Label(None)
        expected.is_own, expected.name = self.is_own, self.name.replace('"', "'")
        return len(types) == 1 and types[0].startswith("X-") and expected.is_named(types[0][2:])

    def __repr__(self):
        return repr(self.name)


class Value:
    def __init__(self, row, labels, parts):
        number = row["label"]
        self.label = Label(labels[number - 1] if number is not None and 0 < number <= len(labels) else None)
        self.text = row["value"]
        self.parts = parts


class AddressBook:
    def __init__(self, folder):
        book = open_database(folder, "HomeDomain-Library/AddressBook/AddressBook.sqlitedb")
        pictures = open_database(folder, "HomeDomain-Library/AddressBook/AddressBookImages.sqlitedb")
        labels = [row[0] for row in book.execute("SELECT value FROM ABMultiValueLabel ORDER BY ROWID")]
        keys = dict(book.execute("SELECT ROWID, value FROM ABMultiValueEntryKey"))
        parts = {}
        for parent, key, value in book.execute("SELECT parent_id, key, value FROM ABMultiValueEntry"):
            parts.setdefault(parent, {})[keys[key]] = value
        self.people = list(book.execute("SELECT * FROM ABPerson ORDER BY ROWID"))
        self.pictures = dict(pictures.execute("SELECT record_id, data FROM ABFullSizeImage"))
        self._values = {}
        for row in book.execute("SELECT * FROM ABMultiValue ORDER BY UID"):
            value = Value(row, labels, parts.get(row["UID"], {}))
            self._values.setdefault((row["record_id"], row["property"]), []).append(value)

    def values(self, person, number):
        return self._values.get((person["ROWID"], number), [])


def day(seconds):
    moment = REFERENCE_DATE + datetime.timedelta(seconds=float(seconds))
    # Of years before 1900 the operating system may not know the zone's clock: the oldest that it knows will do.
    local = moment.astimezone()
    return local.strftime("--%m-%d") if local.year <= LAST_YEAR_OF_NONE else local.date().isoformat()


def custom_columns(value):
    """The columns of an X-ANDROID-CUSTOM property whose value was unescaped once: those in between are escaped again."""
    columns, escaped = [""], False
    for character in value:
        if escaped or character not in "\\;":
            columns[-1] += character
            escaped = False
        elif character == "\\":
            escaped = True
        else:
            columns.append("")
    return columns


class Card:
    """A card whose properties are taken away as they are accounted for, so that none answers for two."""

    def __init__(self, component):
        self._lines = {name: list(lines) for name, lines in component.contents.items()}
        self._custom = [custom_columns(line.value) for line in self._lines.get("x-android-custom", [])]

    def take_first(self, name):
        lines = self._lines.get(name)
        return lines.pop(0).value if lines else None

    def take(self, name, matches):
        for line in self._lines.get(name, []):
            if matches(line, line.params.get("TYPE", [])):
                self._lines[name].remove(line)
                return True
        return False

    def take_custom(self, kind, matches):
        for columns in self._custom:
            if columns[0] == CUSTOM + kind and matches(columns):
                self._custom.remove(columns)
                return True
        return False

    def left(self):
        lines = [f"{name}: {line.value!r}" for name, lines in self._lines.items() for line in lines
                 if name not in ("version", "x-android-custom")]
        return lines + self._custom


def name_part(name, attribute):
    part = getattr(name, attribute)
    return " ".join(part) if isinstance(part, list) else part


class Comparison:
    """One person and its card; `missing` says what the card lacks."""

    def __init__(self, book, person, component):
        self.missing = []
        self._book = book
        self._person = person
        self._card = Card(component)
        self._check_names()
        self._check_texts()
        self._check_birthday()
        self._check_picture()
        for number, check in ((PHONES, self._check_phone), (EMAILS, self._check_email), (PAGES, self._check_page),
                              (ADDRESSES, self._check_address), (ACCOUNTS, self._check_account),
                              (DATES, self._check_date), (RELATIONS, self._check_relation)):
            for value in book.values(person, number):
                if not check(value):
                    self.missing.append(f"{check.__name__[7:]} {value.label} {value.text or value.parts}")
        self.missing += [f"(what nobody has) {line}" for line in self._card.left()]

    def _expect(self, what, expected, found):
        if found != expected:
            self.missing.append(f"{what} {expected!r} (there is {found!r})")

    def _text(self, column):
        text = self._person[column]
        return None if text is None else plain(text)

    def _check_names(self):
        name, shown = self._card.take_first("n"), self._card.take_first("fn")
        if name is None or shown is None:
            self.missing.append("N or FN")
            return
        for column, attribute in NAME_COLUMNS.items():
            part = self._text(column) or ""
            self._expect(column, part, name_part(name, attribute))
            if part not in shown:
                self.missing.append(f"{column} {part!r} in the name as shown ({shown!r})")
        for column, prop in READING_COLUMNS.items():
            reading = self._text(f"{column}Phonetic")
            self._expect(prop, reading if self._person[column] is not None else None, self._card.take_first(prop))

    def _check_texts(self):
        organization, department = self._text("Organization"), self._text("Department")
        expected = None
        if organization is not None or department is not None:
            expected = [organization or ""] + ([department] if department is not None else [])
        self._expect("organisation", expected, self._card.take_first("org"))
        self._expect("job title", self._text("JobTitle"), self._card.take_first("title"))
        for column in ("Nickname", "Note"):
            text = self._text(column)
            if text is not None and not self._card.take(column.lower(), lambda line, types: line.value == text):
                self.missing.append(f"{column} {text[:60]!r}")

    def _check_birthday(self):
        birthday = self._person["Birthday"]
        self._expect("birthday", None if birthday is None else day(birthday), self._card.take_first("bday"))

    def _check_picture(self):
        picture = self._book.pictures.get(self._person["ROWID"])
        if picture is not None and not self._card.take("photo", lambda line, types: line.value == picture):
            self.missing.append(f"picture of {len(picture)} bytes")

    def _take_typed(self, name, value, known, text=plain):
        return self._card.take(name, lambda line, types: line.value == text(value.text) and value.label.is_type(types, known))

    def _check_phone(self, value):
        # A pause and a wait, which Android's importer knows as letters.
        return self._take_typed("tel", value, PHONE_TYPES, lambda text: plain(text).replace(",", "p").replace(";", "w"))

    def _check_email(self, value):
        return self._take_typed("email", value, EMAIL_TYPES)

    def _check_page(self, value):
        return self._take_typed("url", value, PLACE_TYPES)

    def _check_address(self, value):
        # One place for the country: its name, else its code.
        country = value.parts.get("Country") or value.parts.get("CountryCode", "").upper()

        def matches(line, types):
            return (value.label.is_type(types, PLACE_TYPES) and name_part(line.value, "country") == country and
                    all(name_part(line.value, attribute) == plain(value.parts.get(key, ""))
                        for key, attribute in ADDRESS_PARTS.items()))
        return self._card.take("adr", matches)

    def _check_account(self, value):
        service = value.parts.get("service") or value.parts.get("InstantMessageService")
        user = value.parts.get("username") or value.parts.get("InstantMessageUsername")
        if service in SERVICES:
            return self._card.take(SERVICES[service], lambda line, types: line.value == user and
                                   value.label.is_type(types, PLACE_TYPES))

        def matches(columns):
            return columns[1] == user and columns[6] == service and self._is_labelled(value.label, columns, PLACE_NUMBERS)
        return self._card.take_custom("im", matches)

    def _check_date(self, value):
        return self._card.take_custom("contact_event", lambda columns: columns[1] == day(value.text) and
                                      self._is_labelled(value.label, columns, {}))

    def _check_relation(self, value):
        return self._card.take_custom("relation", lambda columns: columns[1] == plain(value.text) and
                                      self._is_labelled(value.label, columns, {}))

    @staticmethod
    def _is_labelled(label, columns, numbers):
        if label.is_own and label.name in numbers:
            return columns[2] == numbers[label.name]
        if label.name is None:
            return columns[3] == ""
        return columns[2] == CUSTOM_LABEL and label.is_named(columns[3])


def check_cards(book, path):
    with open(path, encoding="utf-8", newline="") as file:
        cards = list(vobject.readComponents(file.read(), validate=False))
    own_count = len(cards) - len(book.people)
    if own_count < 0:
        return [f"{len(book.people)} people, but only {len(cards)} cards"]
    problems = []
    for person, card in zip(book.people, cards[own_count:]):
        comparison = Comparison(book, person, card)
        name = " ".join(filter(None, (person["First"], person["Last"], person["Organization"])))
        problems += [f"person {person['ROWID']} ({name}): {what}" for what in comparison.missing]
    print(f"{own_count} cards of the phone's own, {len(book.people)} of the backup")
    return problems


def expected_call(row):
    return {"Number": row["address"] or "-2", "Date": str(row["date"] * 1000), "Duration": str(row["duration"]),
            "Type": "2" if row["flags"] & 1 else "1", "NumberType": "0"}


def check_calls(folder, path):
    database = open_database(folder, "WirelessDomain-Library/CallHistory/call_history.db")
    expected = [expected_call(row) for row in database.execute("SELECT * FROM call ORDER BY ROWID")]
    calls = [{child.tag: child.text or "" for child in call} for call in xml.etree.ElementTree.parse(path).getroot()]
    own_count = len(calls) - len(expected)
    if own_count < 0:
        return [f"{len(expected)} calls, but only {len(calls)} in the log"]
    problems = []
    # The first new call shares its number with the last of the phone's own.
    first = max((int(call["ID"]) for call in calls[:own_count]), default=1)
    for index, (wanted, call) in enumerate(zip(expected, calls[own_count:])):
        if {"ID": str(first + index), **wanted} != call:
            problems.append(f"call {index + 1}: {wanted} (there is {call})")
    print(f"{own_count} calls of the phone's own, {len(expected)} of the backup")
    return problems


def main(arguments):
    if len(arguments) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    folder, cards, calls = arguments
    problems = check_cards(AddressBook(folder), cards) + check_calls(folder, calls)
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
