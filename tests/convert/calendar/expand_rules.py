#!/usr/bin/env python3
"""Expands recurrences with python3-dateutil, in the local time of a zone.

Reads a JSON list of cases from standard input: zone, start (seconds since 1970), frequency (such as "WEEKLY"), interval,
count. Writes for each the list of its moments, the start first, in seconds since 1970.
"""
import datetime
import json
import sys

from dateutil import rrule, tz


def expand(case):
    zone = tz.gettz(case["zone"])
    start = datetime.datetime.fromtimestamp(case["start"], zone).replace(tzinfo=None)
    rule = rrule.rrule(
        getattr(rrule, case["frequency"]), dtstart=start, interval=case["interval"], count=case["count"]
    )
    return [int(moment.replace(tzinfo=zone).timestamp()) for moment in rule]


json.dump([expand(case) for case in json.load(sys.stdin)], sys.stdout)
