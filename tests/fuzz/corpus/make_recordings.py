#!/usr/bin/env python3
"""Writes the seed corpus of fuzz_recording."""
import pathlib


def number(value):
    out = b""
    while value > 127:
        out += bytes([value & 127 | 128])
        value >>= 7
    return out + bytes([value])


def signed(value):
    return number(value * 2 if value >= 0 else -value * 2 - 1)


def record(kind, content):
    return kind + bytes([len(content)]) + content


def frame(kind, points, at=3000, zone=0, missed=0):
    return record(kind, signed(at) + bytes([zone]) + number(missed) + points)


def event(kind, at=10, process=0):
    return record(b"H", signed(at) + bytes([kind]) + number(process))


LINE = number(2) + number(0) + number(2) \
    + b"\x0d" + signed(-32000) + signed(5000) + b"\xff\xff\xff\0" + b"\1" \
    + b"\x01" + signed(64000) + signed(-10000)
NAN = number(1) + number(0) + number(1) + b"\x06" + b"\0\0\xc0\x7f" * 2 + b"\xff\xff\xff\xff"
MOVED = number(2) + number(1) + number(1) + b"\x01" + signed(3) + signed(4)
SAME = number(2) + number(2) + number(0)
END = record(b"E", number(2))

RECORDS = {
    "one-frame": frame(b"W", LINE),
    "changed-frames": frame(b"W", LINE) + frame(b"C", MOVED) + frame(b"C", SAME) + frame(b"C", b"\0"),
    "all-events": b"".join(event(kind) for kind in range(7)),
    "complete": event(0) + frame(b"W", LINE) + END,
    "wrong-end": frame(b"W", LINE) + END,
    "after-the-end": event(0) + event(1) + END + event(2),
    "nowhere": frame(b"W", NAN),
    "changed-without-whole": frame(b"C", SAME),
    "kept-beyond-the-frame-before": frame(b"W", LINE) + frame(b"C", number(5) + number(5) + number(0)),
    "too-many-points": frame(b"W", number(8193)),
    "most-points": frame(b"W", number(8192) + number(0) + number(8192)),
    "run-of-nothing": frame(b"W", number(1) + number(0) + number(0)),
    "places-out-of-range": frame(b"W", number(1) + number(0) + number(1) + b"\1"
                                 + signed(2**25) + signed(-2**25)),
    "zone-8": frame(b"W", LINE, zone=8),
    "every-zone": b"".join(frame(b"W", LINE, zone=zone) for zone in range(8)),
    "missed-too-many": frame(b"W", LINE, missed=2**40),
    "times-backwards": event(0, 2**49) + event(1, -2**50) + event(2, -2**49),
    "time-beyond-any-show": event(0, 2**50) + event(1, 2**50),
    "number-without-end": record(b"H", b"\xff" * 12),
    "number-of-65-bits": record(b"H", b"\0\0" + b"\xff" * 9 + b"\3"),
    "output-and-light": event(1) + frame(b"W", LINE) + event(2) + event(4) + event(5),
}
FILES = {
    "empty-file": b"",
    "not-a-recording": b"\x89PNG\r\n",
    "magic-only": b"RALLYREC",
    "another-version": b"RALLYREC\x02",
    "no-records": b"RALLYREC\x01",
    "cut-record": b"RALLYREC\x01W\x09",
    "length-beyond-the-file": b"RALLYREC\x01W" + b"\xff" * 9 + b"\x01",
    "wrong-checksum": b"RALLYREC\x01" + event(0) + b"\0\0",
}

folder = pathlib.Path(__file__).parent / "recording"
folder.mkdir(exist_ok=True)
for name, content in RECORDS.items():
    (folder / name).write_bytes(b"\1" + content)
for name, content in FILES.items():
    (folder / name).write_bytes(b"\0" + content)
