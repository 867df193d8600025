#!/usr/bin/env python3
"""Writes VrkConfig.ico: a blue rounded square with a white tick, at 16, 24, 32, 48 and 64 pixels."""
import math
import struct
import sys


def coverage(size, x, y):
    """Returns (alpha of the square, alpha of the tick) at pixel (x, y), supersampled 4 x 4."""
    square = tick = 0.0
    radius = size * 0.22
    width = size * 0.11
    points = [(0.26, 0.52), (0.43, 0.69), (0.75, 0.33)]
    points = [(px * size, py * size) for px, py in points]
    for sy in range(4):
        for sx in range(4):
            fx = x + (sx + 0.5) / 4
            fy = y + (sy + 0.5) / 4
            # Rounded square with a one-pixel margin.
            lo, hi = 0.5, size - 0.5
            cx = min(max(fx, lo + radius), hi - radius)
            cy = min(max(fy, lo + radius), hi - radius)
            if lo <= fx <= hi and lo <= fy <= hi and math.hypot(fx - cx, fy - cy) <= radius:
                square += 1
            for (ax, ay), (bx, by) in zip(points, points[1:]):
                dx, dy = bx - ax, by - ay
                t = max(0.0, min(1.0, ((fx - ax) * dx + (fy - ay) * dy) / (dx * dx + dy * dy)))
                if math.hypot(fx - (ax + t * dx), fy - (ay + t * dy)) <= width:
                    tick += 1
                    break
    return square / 16, tick / 16


def image(size):
    rows = []
    for y in range(size - 1, -1, -1):  # bottom-up
        row = b""
        for x in range(size):
            square, tick = coverage(size, x, y)
            shade = y / max(1, size - 1)
            blue = (int(0x2A + 0x20 * (1 - shade)), int(0x5C + 0x30 * (1 - shade)), int(0xC8 + 0x30 * (1 - shade)))
            r, g, b = (c * (1 - tick) + 255 * tick for c in blue)
            row += struct.pack("BBBB", int(b), int(g), int(r), int(255 * square))
        rows.append(row)
    mask_row = b"\0" * (((size + 31) // 32) * 4)
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    return header + b"".join(rows) + mask_row * size


def main(path):
    sizes = [16, 24, 32, 48, 64]
    images = [image(s) for s in sizes]
    out = struct.pack("<HHH", 0, 1, len(sizes))
    offset = 6 + 16 * len(sizes)
    for size, data in zip(sizes, images):
        out += struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    with open(path, "wb") as f:
        f.write(out + b"".join(images))


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else "VrkConfig.ico")
