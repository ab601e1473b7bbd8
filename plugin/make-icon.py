#!/usr/bin/env python3

"""Draws the editor's icon and writes it as EditorIcon.cpp beside this script.

The picture: a ring on a round of sea, with an edit point on it and a pencil across. Drawn at eight times
the size and averaged, so that its edges are smooth.
"""
import math
import pathlib
import struct
import zlib

SIZE, FINE = 16, 8


def color_at(x, y):
    """Colour and alpha (0 to 1) at a point of the 16 by 16 picture; None outside of everything."""
    # The pencil's axis runs from its tip at (6.2, 9.8) to its end at (15, 1).
    along = ((x - 6.2) - (y - 9.8)) / math.sqrt(2)
    across = ((x - 6.2) + (y - 9.8)) / math.sqrt(2)
    if 0 <= along <= 12.4:
        half = min(1.75, 0.25 + along * 0.55)
        if abs(across) <= half:
            if along < 1.4:
                return (52, 46, 40)
            if along < 3.0:
                return (246, 219, 172)
            if along > 10.9:
                return (226, 92, 92)
            return (255, 196, 46) if across < 0.35 else (224, 150, 22)
        if abs(across) <= half + 0.55 and along > 0.4:
            return (24, 52, 88)
    radius = math.hypot(x - 7.2, y - 8.8)
    if math.hypot(x - 2.6, y - 11.6) < 1.5:
        return (255, 255, 255)
    if abs(radius - 5.3) < 0.95:
        return (74, 222, 92)
    if radius < 7.0:
        shade = 1.0 - 0.035 * (x + y - 16)
        return (int(42 * shade), int(112 * shade), int(178 * shade))
    return None


def pixel(column, row):
    total = [0.0, 0.0, 0.0, 0.0]
    for i in range(FINE):
        for j in range(FINE):
            color = color_at(column + (i + 0.5) / FINE, row + (j + 0.5) / FINE)
            if color:
                for k in range(3):
                    total[k] += min(255, max(0, color[k]))
                total[3] += 1
    if not total[3]:
        return bytes(4)
    return bytes([round(total[k] / total[3]) for k in range(3)] + [round(255 * total[3] / FINE**2)])


def chunk(kind, data):
    body = kind + data
    return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))


rows = b"".join(b"\0" + b"".join(pixel(c, r) for c in range(SIZE)) for r in range(SIZE))
png = (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", SIZE, SIZE, 8, 6, 0, 0, 0))
       + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))
lines = [", ".join(f"0x{b:02x}" for b in png[i:i + 16]) for i in range(0, len(png), 16)]
here = pathlib.Path(__file__).parent
(here / "EditorIcon.cpp").write_text(
    '#include "plugin/EditorIcon.h"\n\nnamespace OverlayEditor {\n\n// Written by make-icon.py.\n'
    "// clang-format off\nstatic const unsigned char kPng[] = {\n    "
    + ",\n    ".join(lines) + "\n};\n// clang-format on\n\n"
    "std::span<const unsigned char> editorIconPng() {\n    return kPng;\n}\n\n}  // namespace OverlayEditor\n")
