#!/usr/bin/env python3
"""Writes the seed corpus of fuzz_midi: valid and invalid messages."""
import pathlib
import struct

folder = pathlib.Path(__file__).parent / "midi"
LEFT, RIGHT, NOBODY = 0, 1, 2
FADER, PAD, NOT_LEARNT = (0xB0, 7), (0x90, 60), (0, 0)


def word(*message):
    return int.from_bytes(bytes(message), "little")


def write(name, move, start, fourteen_bits, *calls):
    data = struct.pack("<IIIIB", *move, *start, fourteen_bits)
    for call, message in calls:
        data += struct.pack("<BI", call, message)
    (folder / name).write_bytes(data)


folder.mkdir(exist_ok=True)
(folder / "nothing").write_bytes(b"")
(folder / "cut-short").write_bytes(b"\xb0\0\0\0\x07")
write("fader", FADER, PAD, 0, *((LEFT, word(0xB0, 7, v)) for v in (0, 63, 64, 127)))
write("pad", FADER, PAD, 0, (RIGHT, word(0x90, 60, 100)), (RIGHT, word(0x90, 60, 0)))
write("fourteen-bits", FADER, PAD, 1, *((LEFT, word(0xB0, n, 9)) for n in (0, 7, 8, 127)))
write("one-for-both", FADER, FADER, 0, (LEFT, word(0xB0, 7, 71)))
write("other-channel", FADER, PAD, 0, (LEFT, word(0xB1, 7, 9)), (LEFT, word(0x91, 60, 9)))
write("not-learnt", NOT_LEARNT, NOT_LEARNT, 1, (LEFT, 0), (RIGHT, word(0, 0, 100)))
write("no-status", (0, 7), (0, 60), 1, (LEFT, word(0, 7, 9)), (LEFT, word(0, 60, 9)))
write("wild-bindings", (0x1B0, 0x107), (0xFFFFFFFF, 0xFFFFFFFF), 0,
      (LEFT, word(0xB0, 7, 9)), (LEFT, word(0xFF, 0xFF, 0xFF)))
write("real-time", FADER, PAD, 0, *((LEFT, word(s)) for s in range(0xF8, 0x100)))
write("data-above-127", FADER, PAD, 0, (LEFT, word(0xB0, 7, 0xFF)), (LEFT, word(0xB0, 0xFF, 1)))
write("top-byte", FADER, PAD, 0, (LEFT, 0xFF000000 | word(0xB0, 7, 64)))
write("nobodys-handle", FADER, PAD, 0, (NOBODY, word(0xB0, 7, 64)))
write("no-short-message", FADER, PAD, 0, *((k << 4 | LEFT, word(0xB0, 7, 64)) for k in range(1, 10)))
