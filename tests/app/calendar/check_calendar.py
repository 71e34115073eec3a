#!/usr/bin/env python3
"""Checks that the events of an iPhone backup stand complete in a phone's calendar packet.

Usage: check_calendar.py BACKUP_FOLDER PACKET PACKET_BEFORE

The packets are the phone's files "fullbackupdata" after and before the transfer. It reads the backup's database by itself,
works out row for row what a transfer in the time zone of the variable TZ must leave in the phone's database, and compares.
What the phone had before must still be there. Prints what is wrong and exits with 1 when there is anything.
"""

import calendar
import math
import os
import sqlite3
import sys
from datetime import datetime, timedelta, timezone
from pathlib import Path
from zoneinfo import ZoneInfo

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
from stores import Packet, REFERENCE_DATE, Table, backup_database

DATABASE = "db/calendar.db"
EPOCH = datetime(1970, 1, 1, tzinfo=timezone.utc)
DAY_CODES = ("MO", "TU", "WE", "TH", "FR", "SA", "SU")
FREQUENCIES = {1: "DAILY", 2: "WEEKLY", 3: "MONTHLY"}  # any other number is yearly
MOST_FURTHER_INSTANCES = 100
FARTHEST_INSTANCE = 3158915760  # seconds from the start
OWNER = {"attendeeEmail": " ", "attendeeStatus": 1, "attendeeRelationship": 2, "attendeeType": 1}


def divided(value, divisor):
    return int(math.copysign(abs(value) // divisor, value))


def milliseconds(seconds):
    return math.trunc(seconds * 1000.0)


def julian_day(seconds):
    return math.trunc(seconds / 86400.0 + 2440588.001)


def minute_of_day(ms):
    seconds = divided(ms, 1000)
    seconds = int(math.fmod(seconds, 86400))
    if ms < -999:
        seconds = (seconds + 86400) % 86400
    return divided(seconds, 60)


class LocalTime:
    """Calendar arithmetic in a time zone. Moments are seconds since 1970."""

    def __init__(self, name):
        self._zone = ZoneInfo(name)

    def at(self, seconds):
        return (EPOCH + timedelta(seconds=seconds)).astimezone(self._zone)

    def later(self, seconds, frequency, count):
        """The moments that are right: two where the clocks are set back, and where they are set forward either the time
        shifted by the gap or its end."""
        local = self.at(seconds).replace(tzinfo=None)
        shifted = self._shifted(local, frequency, count)
        early, late = (self._moment(shifted, fold) for fold in (0, 1))
        if early <= late:
            return (early, late)
        return (early, self._change_between(late, early))

    @staticmethod
    def _shifted(local, frequency, count):
        if frequency in (1, 2):
            return local + timedelta(days=count * (7 if frequency == 2 else 1))
        months = local.year * 12 + local.month - 1 + count * (1 if frequency == 3 else 12)
        year, month = months // 12, months % 12 + 1
        return local.replace(year=year, month=month, day=min(local.day, calendar.monthrange(year, month)[1]))

    def _moment(self, local, fold):
        return (local.replace(tzinfo=self._zone, fold=fold) - EPOCH).total_seconds()

    def _change_between(self, low, high):
        """The second from which on the clocks show the time of `high`."""
        low, high = math.floor(low), math.ceil(high)
        offset = self.at(high).utcoffset()
        while high - low > 1:
            middle = (low + high) // 2
            low, high = (low, middle) if self.at(middle).utcoffset() == offset else (middle, high)
        return high


class Event:
    """An event of the backup; moments are seconds since 1970."""

    def __init__(self, backup, row):
        self._backup = backup
        number = row["ROWID"]
        self.title, self.notes, self.zone = row["summary"], row["description"], row["start_tz"]
        self.start = (row["start_date"] or 0.0) + REFERENCE_DATE
        self.is_all_day = bool(row["all_day"] or row["due_all_day"])
        self.end = None if self.is_all_day else (row["end_date"] or 0.0) + REFERENCE_DATE
        self.location = next((place["title"] for place in self._owned("Location", "item_owner_id", number)), None)
        self.alarms = [self._alarm(alarm) for alarm in self._owned("Alarm", "owner_id", number)]
        self.guests = self._guests(self._owned("Participant", "owner_id", number))
        self.frequency = None
        for rule in self._owned("Recurrence", "owner_id", number)[:1]:
            self.frequency, self.interval, self.week_start = rule["frequency"], rule["interval"], rule["week_start"]
            ends = [end for end in (rule["cached_end_date"], rule["end_date"]) if end is not None and end > 1.0]
            self.last = ends[0] + REFERENCE_DATE if ends else None

    def _owned(self, table, column, number):
        return self._backup.execute(f"SELECT * FROM {table} WHERE {column}={number}").fetchall()

    def _alarm(self, row):
        if row["trigger_date"] is not None:
            return row["trigger_date"] + REFERENCE_DATE
        return self.start + (row["trigger_interval"] or 0)

    def _guests(self, rows):
        owner, guests = None, []
        for row in rows:
            if row["is_self"]:
                owner = row["email"] if row["email"] is not None else owner
            elif row["email"] is not None:
                guests.append((self._name(row["email"]), row["email"], row["status"] or 0))
        return [guest for guest in guests if owner is None or guest[1].lower() != owner.lower()]

    def _name(self, email):
        try:  # an address with a quote breaks the statement, and then nobody is found
            identity = self._backup.execute(f"SELECT * FROM Identity WHERE address='mailto:{email}'").fetchone()
        except sqlite3.Error:
            identity = None
        if identity is None:
            return email
        names = [name for name in (identity["first_name"], identity["last_name"]) if name is not None]
        return " ".join(names) if names else identity["display_name"] if identity["display_name"] is not None else email


def events_of(backup):
    for row in backup.execute("SELECT * FROM Calendar").fetchall():
        for item in backup.execute(f"SELECT * FROM CalendarItem WHERE calendar_id={row['ROWID']}").fetchall():
            yield Event(backup, item)


class Phone:
    """What must stand in the phone's database."""

    def __init__(self, before, after, local_time):
        self.tables = [Table(before, name) for name in ("Calendars", "Events", "Attendees", "Instances", "Reminders")]
        self.calendars, self.events, self.attendees, self.instances, self.reminders = self.tables
        self._local_time = local_time
        self._begins = {}  # of the instances that there are, by event in their order
        for row in after.execute("SELECT event_id, begin FROM Instances ORDER BY _id"):
            self._begins.setdefault(row["event_id"], []).append(row["begin"])
        self._calendar = min(self.calendars.rows, default=None) or self.calendars.add(
            account_name="SYNCML_ORPHANED", account_type="LOCAL", name="Phone Calendar",
            calendar_displayName="Phone Calendar", calendar_color=-13018477, calendar_access_level=5000, visible=1,
            sync_events=1, ownerAccount=" ", canOrganizerRespond=1)

    def add(self, event):
        start = milliseconds(event.start)
        end = start if event.end is None else max(start, milliseconds(event.end))
        recurs = event.frequency is not None
        duration = max(1, (end - start) // 1000)
        last = end if not recurs else None if event.last is None else milliseconds(event.last)
        number = self.events.add(
            dirty=1, calendar_id=self._calendar, title=event.title, eventLocation=event.location, description=event.notes,
            selfAttendeeStatus=1, dtstart=start, dtend=None if recurs else end, eventTimezone=event.zone,
            duration=f"P{duration}S" if recurs else None, allDay=int(event.is_all_day), hasAlarm=int(bool(event.alarms)),
            rrule=self._rule(event) if recurs else None, lastDate=last, hasAttendeeData=1, organizer=" ")
        self.attendees.add(event_id=number, **OWNER)
        self._add_instances(number, event, start, end, duration)
        for alarm in event.alarms:
            self.reminders.add(event_id=number, minutes=divided(start - milliseconds(alarm), 60000), method=1)
        for name, email, status in event.guests:
            self.attendees.add(event_id=number, attendeeName=name, attendeeEmail=email, attendeeStatus=status,
                               attendeeRelationship=2, attendeeType=1)

    def _rule(self, event):
        local = self._local_time.at(event.start)
        has_week_start = 1 <= event.week_start <= 7
        extra = ""
        if event.frequency == 3:
            extra = f";BYMONTHDAY={local.day}"
        if event.frequency == 2:
            weekday = local.isoweekday() % 7
            extra = ";BYDAY=" + DAY_CODES[(weekday + event.week_start - 1) % 7 if has_week_start else weekday]
        week_start = DAY_CODES[event.week_start - 1] if has_week_start else "SU"
        frequency = FREQUENCIES.get(event.frequency, "YEARLY")
        return f"FREQ={frequency};INTERVAL={event.interval};WKST={week_start}{extra}"

    def _add_instances(self, number, event, start, end, duration):
        """Equal instances of an event stand there once."""
        known = set()

        def add(begin, finish, first_seconds, last_seconds):
            if (begin, finish) in known:
                return
            known.add((begin, finish))
            first = julian_day(first_seconds)
            self.instances.add(event_id=number, begin=begin, end=finish, startDay=first,
                               endDay=first if event.is_all_day else julian_day(last_seconds),
                               startMinute=minute_of_day(begin), endMinute=minute_of_day(finish))

        add(start, end, divided(start, 1000), divided(end, 1000))
        if event.frequency is None:
            return
        begins = self._begins.get(number, [])
        moment = event.start
        for _ in range(MOST_FURTHER_INSTANCES):
            right = self._local_time.later(moment, event.frequency, event.interval)
            # Of several right moments the one that was taken, as the next ones follow from it.
            taken = begins[len(known)] if len(known) < len(begins) else None
            moment = next((each for each in right if milliseconds(each) == taken), right[0])
            if event.last is not None and moment > event.last or moment - event.start > FARTHEST_INSTANCE:
                return
            finish = moment + duration
            add(milliseconds(moment), milliseconds(finish), moment, finish)


def main(arguments):
    if len(arguments) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    folder, packet, before = arguments[0], Packet(arguments[1]), Packet(arguments[2])
    after = packet.database(DATABASE)
    expected = Phone(before.database(DATABASE), after, LocalTime(os.environ["TZ"]))
    own = len(expected.events.rows)
    for event in events_of(backup_database(folder, "HomeDomain-Library/Calendar/Calendar.sqlitedb")):
        expected.add(event)
    problems = packet.differences(before, [DATABASE])
    for table in expected.tables:
        problems += table.problems(after)
    print(f"{own} events of the phone's own, {len(expected.events.rows) - own} of the backup, "
          f"{len(expected.instances.rows)} instances")
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
