#!/usr/bin/python3
"""Draws the frames of the loading animation and the resource file that lists them: loading_frames.py DIRECTORY

A band of light crosses a grey square. All is grey with transparency, so that it suits both themes.
"""

import math
import pathlib
import struct
import sys
import zlib

FRAMES = 150
EDGE = 56
GREY = 134
REST = 36  # alpha of the ground
LIGHT = 52  # what the middle of the band adds
BAND = 0.35  # its half width, as a part of the edge


def chunk(kind, data):
    body = kind + data
    return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))


def frame(number):
    middle = -BAND + (1 + 2 * BAND) * number / FRAMES
    row = bytearray([0])  # no filter
    for x in range(EDGE):
        distance = abs((x + 0.5) / EDGE - middle) / BAND
        light = LIGHT * (1 + math.cos(math.pi * distance)) / 2 if distance < 1 else 0
        row += bytes([GREY, round(REST + light)])
    header = struct.pack(">IIBBBBB", EDGE, EDGE, 8, 4, 0, 0, 0)  # 8 bits of grey and of alpha
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(bytes(row) * EDGE, 9))
            + chunk(b"IEND", b""))


def main():
    directory = pathlib.Path(sys.argv[1])
    directory.mkdir(parents=True, exist_ok=True)
    lines = ["<RCC>", '  <qresource prefix="/animate">']
    for number in range(FRAMES):
        name = f"loading_{number:03}.png"
        (directory / name).write_bytes(frame(number))
        lines.append(f"    <file>{name}</file>")
    lines += ["  </qresource>", "</RCC>", ""]
    (directory / "animate.qrc").write_text("\n".join(lines), encoding="utf-8")


if __name__ == "__main__":
    main()
