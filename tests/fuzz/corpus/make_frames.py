#!/usr/bin/env python3
"""Writes the seed corpus of fuzz_frames."""
import pathlib
import struct

MAGIC = 0x4152484552594C52
POINT = struct.Struct("<fffiBBBB")


def header(magic=MAGIC, version=3, build=1700, zones=3, ready=1, output=1, beat=1):
    return struct.pack("<QIiiIIxxxxq", magic, version, build, zones, ready, output, beat)


def ring(start, newest, frames, zone=0, reading=0):
    return struct.pack("<BQQQ", zone, start, newest, reading) + b"".join(frames)


def frame(number, points, count=None, sent=1):
    data = b"".join(POINT.pack(*p) for p in points)
    return struct.pack("<QQqIB", number, number, sent, len(points) if count is None else count,
                       len(data) // 4) + data


def calls(newest, slots):
    return struct.pack("<Q", newest) + b"".join(struct.pack("<QIqQ", *slot) for slot in slots)


LINE = [(-32000.0, 5000.0, 0.0, 0, 0, 0, 3, 0), (-32000.0, 5000.0, 0.0, 0xFFFFFF, 0, 0, 1, 0),
        (32000.0, -5000.0, 0.0, 0xFFFFFF, 0, 0, 1, 0), (32000.0, -5000.0, 0.0, 0, 0, 0, 3, 0)]
NAN, INF = float("nan"), float("inf")
WILD = [(NAN, 0.0, 0.0, 0xFFFFFF, 0, 0, 0, 0), (INF, -INF, 0.0, 0xFFFFFF, 0, 0, 0, 0),
        (3e38, -3e38, 0.0, -1, 9, 9, 255, 9), (1e-45, 1e-45, 0.0, -2**31, 0, 0, 0, 0),
        (-3e38, 3e38, 0.0, 0x00FF00, 0, 0, 0, 0)]
EMPTY = frame(0, [])

INPUTS = {
    "nothing": b"",
    "one-frame": header() + ring(0, 1, [EMPTY, frame(1, LINE)]),
    "three-frames": header() + ring(4, 7, [EMPTY] * 5 + [frame(n, LINE) for n in (5, 6, 7)], 2),
    "missed-by-overrun": header() + ring(0, 40, [frame(n, LINE) for n in (*range(32, 41), 25)]),
    "torn": header() + ring(0, 2, [EMPTY, frame(0, LINE), frame(2, LINE)]),
    "count-too-large": header() + ring(0, 1, [EMPTY, frame(1, LINE, 8193)]),
    "count-negative": header() + ring(0, 1, [EMPTY, frame(1, LINE, 0xFFFFFFFF)]),
    "count-full": header() + ring(0, 1, [EMPTY, frame(1, LINE, 8192)]),
    "newest-backwards": header() + ring(9, 3, [frame(n, LINE) for n in range(4)]),
    "newest-far-ahead": header() + ring(0, 2**63, [frame(2**63, LINE)]),
    "number-wraps": header() + ring(2**64 - 1, 1, [frame(0, LINE), frame(1, LINE)]),
    "being-read": header() + ring(0, 1, [EMPTY, frame(1, LINE)], reading=2),
    "reading-nonsense": header() + ring(0, 1, [EMPTY, frame(1, LINE)], reading=2**64 - 1),
    "wild-points": header() + ring(0, 1, [EMPTY, frame(1, WILD)]),
    "zones-too-many": header(zones=9) + ring(0, 1, [EMPTY, frame(1, LINE)], 255),
    "zones-negative": header(zones=-2**31) + ring(0, 1, [EMPTY, frame(1, LINE)]),
    "header-of-ones": b"\xff" * 48,
    "calls": header() + ring(0, 0, [EMPTY] * 16)
    + calls(4, [(0, 0, 0, 0)] + [(n, n, n, 42) for n in range(1, 5)]),
    "calls-unfinished": header() + ring(0, 0, [EMPTY] * 16) + calls(2, [(0, 0, 0, 0)] * 2 + [(2, 1, 5, 42)]),
    "calls-unknown": header() + ring(0, 0, [EMPTY] * 16) + calls(1, [(0, 0, 0, 0), (1, 2**32 - 1, -2**63, 2**64 - 1)]),
    "calls-far-ahead": header() + ring(0, 0, [EMPTY] * 16) + calls(2**64 - 1, [(64, 1, 1, 1)]),
    "no-zones": header(zones=0, beat=-2**63),
}

folder = pathlib.Path(__file__).parent / "frames"
for name, content in INPUTS.items():
    (folder / name).write_bytes(content)
