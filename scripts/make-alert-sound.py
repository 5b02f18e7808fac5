#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Orvane
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes data/alert.wav: a soft two-note chime (E6 then A6), 0.45 s, 22.05 kHz mono.

Each note is a sine with a little of its octave, a quick attack and an exponential decay,
so the alert is noticeable without being harsh. Run from the repository's top folder.
"""
import math
import struct
import sys
import wave

RATE = 22050
LENGTH_S = 0.45
NOTES = [(1318.51, 0.00), (1760.00, 0.12)]  # frequency in Hz, start in s
VOLUME = 0.32


def sample(t):
    value = 0.0
    for frequency, start in NOTES:
        local = t - start
        if local < 0:
            continue
        attack = min(1.0, local / 0.006)
        decay = math.exp(-local * 9.0)
        tone = math.sin(2 * math.pi * frequency * local) + 0.25 * math.sin(4 * math.pi * frequency * local)
        value += attack * decay * tone
    fade_out = min(1.0, (LENGTH_S - t) / 0.03)
    return max(-1.0, min(1.0, VOLUME * value * fade_out))


def main(path):
    frames = bytearray()
    for i in range(int(RATE * LENGTH_S)):
        frames += struct.pack('<h', int(sample(i / RATE) * 32767))
    with wave.open(path, 'wb') as out:
        out.setnchannels(1)
        out.setsampwidth(2)
        out.setframerate(RATE)
        out.writeframes(bytes(frames))


if __name__ == '__main__':
    main(sys.argv[1] if len(sys.argv) > 1 else 'data/alert.wav')
