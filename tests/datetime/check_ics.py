#!/usr/bin/env python3
"""Reads two exports of the same holidays back with the icalendar parser.

usage: check_ics.py FIRST.ics SECOND.ics EXPECTED.tsv

EXPECTED.tsv has one line per event, "YYYYMMDD<TAB>summary" in UTF-8. The two
exports differ only in their DTSTAMP. Checked: the raw lines (CRLF, at most
75 octets, no UTF-8 character split by folding), that the parser reads the
file, the events' dates and summaries, DTEND = DTSTART + 1 day, DTSTAMP in
UTC, and UIDs unique in a file and equal between the two exports.
"""
import datetime
import sys

import icalendar

failures = []


def fail(message):
    failures.append(message)


def check_raw(path, data):
    if not data.endswith(b"\r\n"):
        fail(f"{path}: does not end in CRLF")
    for number, line in enumerate(data[:-2].split(b"\r\n"), 1):
        if b"\r" in line or b"\n" in line:
            fail(f"{path}:{number}: bare CR or LF")
        if len(line) > 75:
            fail(f"{path}:{number}: {len(line)} octets")
        try:
            line.decode("utf-8")
        except UnicodeDecodeError:
            fail(f"{path}:{number}: folding split a UTF-8 character")


def read(path):
    with open(path, "rb") as f:
        data = f.read()
    check_raw(path, data)
    calendar = icalendar.Calendar.from_ical(data)
    if str(calendar.get("VERSION")) != "2.0":
        fail(f"{path}: VERSION is {calendar.get('VERSION')!r}")
    if not calendar.get("PRODID"):
        fail(f"{path}: no PRODID")
    return [c for c in calendar.walk() if c.name == "VEVENT"]


def check_events(path, events, expected):
    if len(events) != len(expected):
        fail(f"{path}: {len(events)} events, expected {len(expected)}")
    uids = set()
    for event, (day, summary) in zip(events, expected):
        start = event.decoded("DTSTART")
        end = event.decoded("DTEND")
        stamp = event.decoded("DTSTAMP")
        if isinstance(start, datetime.datetime) or start.strftime("%Y%m%d") != day:
            fail(f"{path}: DTSTART {start!r}, expected {day}")
        if isinstance(end, datetime.datetime) or end - start != datetime.timedelta(days=1):
            fail(f"{path}: DTEND {end!r} is not the day after {start!r}")
        if not isinstance(stamp, datetime.datetime) or stamp.utcoffset() != datetime.timedelta(0):
            fail(f"{path}: DTSTAMP {stamp!r} is not UTC")
        if str(event.get("SUMMARY")) != summary:
            fail(f"{path}: SUMMARY {str(event.get('SUMMARY'))!r}, expected {summary!r}")
        uid = str(event.get("UID"))
        if uid in uids:
            fail(f"{path}: UID {uid} twice")
        uids.add(uid)


def main():
    if len(sys.argv) != 4:
        print(__doc__, file=sys.stderr)
        return 2
    first_path, second_path, expected_path = sys.argv[1:]
    with open(expected_path, encoding="utf-8") as f:
        expected = [tuple(line.rstrip("\n").split("\t", 1)) for line in f if line.strip()]
    first = read(first_path)
    second = read(second_path)
    check_events(first_path, first, expected)
    check_events(second_path, second, expected)
    if [str(e.get("UID")) for e in first] != [str(e.get("UID")) for e in second]:
        fail("the UIDs differ between the two exports")
    if first and [e.decoded("DTSTAMP") for e in first] == [e.decoded("DTSTAMP") for e in second]:
        fail("the two exports were meant to differ in DTSTAMP")
    for message in failures:
        print(message, file=sys.stderr)
    print(f"{len(first)} events read back, {len(failures)} problems")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
