#!/usr/bin/env python3
"""Draws the bitmaps of dialogs_images.xrc.

The PNG and GIF files next to this script are its output and are committed;
run it again after changing a drawing:  python3 make_images.py

Only the standard library is used: shapes are rendered by supersampling
(4 x 4 samples per pixel) into RGBA, PNG is written with zlib, and the
"progress" spinner is an animated GIF (wxAnimationCtrl reads GIF) written
with a small LZW encoder.
"""
import math
import os
import struct
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))
SUB = 4  # samples per pixel along each axis


def render(size, shapes):
    """shapes: list of (inside(x, y) -> bool, (r, g, b, a)); later ones paint over."""
    pixels = []
    for py in range(size):
        row = []
        for px in range(size):
            acc = [0.0, 0.0, 0.0, 0.0]
            for sy in range(SUB):
                for sx in range(SUB):
                    x = px + (sx + 0.5) / SUB
                    y = py + (sy + 0.5) / SUB
                    colour = (0, 0, 0, 0)
                    for inside, c in shapes:
                        if inside(x, y):
                            colour = c
                    a = colour[3] / 255.0
                    acc[0] += colour[0] * a
                    acc[1] += colour[1] * a
                    acc[2] += colour[2] * a
                    acc[3] += a
            n = SUB * SUB
            alpha = acc[3] / n
            if alpha > 0:
                rgb = [round(acc[i] / acc[3]) for i in range(3)]
            else:
                rgb = [0, 0, 0]
            row.append((rgb[0], rgb[1], rgb[2], round(alpha * 255)))
        pixels.append(row)
    return pixels


def circle(cx, cy, r):
    return lambda x, y: (x - cx) ** 2 + (y - cy) ** 2 <= r * r


def rect(x0, y0, x1, y1):
    return lambda x, y: x0 <= x <= x1 and y0 <= y <= y1


def rounded_rect(x0, y0, x1, y1, r):
    def inside(x, y):
        if not (x0 <= x <= x1 and y0 <= y <= y1):
            return False
        cx = min(max(x, x0 + r), x1 - r)
        cy = min(max(y, y0 + r), y1 - r)
        return (x - cx) ** 2 + (y - cy) ** 2 <= r * r
    return inside


def polygon(points):
    def inside(x, y):
        result = False
        j = len(points) - 1
        for i, (xi, yi) in enumerate(points):
            xj, yj = points[j]
            if (yi > y) != (yj > y) and x < (xj - xi) * (y - yi) / (yj - yi) + xi:
                result = not result
            j = i
        return result
    return inside


def thick_polyline(points, width):
    half = width / 2.0

    def near_segment(x, y, a, b):
        ax, ay = a
        bx, by = b
        dx, dy = bx - ax, by - ay
        t = max(0.0, min(1.0, ((x - ax) * dx + (y - ay) * dy) / (dx * dx + dy * dy)))
        qx, qy = ax + t * dx, ay + t * dy
        return (x - qx) ** 2 + (y - qy) ** 2 <= half * half

    return lambda x, y: any(near_segment(x, y, points[i], points[i + 1])
                            for i in range(len(points) - 1))


def write_png(path, pixels):
    height = len(pixels)
    width = len(pixels[0])
    raw = bytearray()
    for row in pixels:
        raw.append(0)  # filter: none
        for p in row:
            raw.extend(p)

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)

    png = b"\x89PNG\r\n\x1a\n"
    png += chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0))
    png += chunk(b"IDAT", zlib.compress(bytes(raw), 9))
    png += chunk(b"IEND", b"")
    with open(path, "wb") as f:
        f.write(png)


def lzw_encode(indices, min_code_size):
    """GIF flavour of LZW: variable code width, clear code first, end code last."""
    clear = 1 << min_code_size
    end = clear + 1
    out = bytearray()
    bit_buffer = 0
    bit_count = 0
    code_size = min_code_size + 1

    def emit(code):
        nonlocal bit_buffer, bit_count
        bit_buffer |= code << bit_count
        bit_count += code_size
        while bit_count >= 8:
            out.append(bit_buffer & 0xFF)
            bit_buffer >>= 8
            bit_count -= 8

    table = {(i,): i for i in range(clear)}
    next_code = end + 1
    emit(clear)
    current = (indices[0],)
    for index in indices[1:]:
        candidate = current + (index,)
        if candidate in table:
            current = candidate
            continue
        emit(table[current])
        if next_code < 4096:
            table[candidate] = next_code
            next_code += 1
            if next_code > (1 << code_size) and code_size < 12:
                code_size += 1
        else:
            emit(clear)
            table = {(i,): i for i in range(clear)}
            next_code = end + 1
            code_size = min_code_size + 1
        current = (index,)
    emit(table[current])
    emit(end)
    if bit_count:
        out.append(bit_buffer & 0xFF)
    return bytes(out)


def write_gif(path, frames, palette, delay_cs):
    """frames: lists of rows of palette indices; index 0 is transparent."""
    height = len(frames[0])
    width = len(frames[0][0])
    bits = max(2, (len(palette) - 1).bit_length())
    palette = palette + [(0, 0, 0)] * ((1 << bits) - len(palette))
    data = bytearray(b"GIF89a")
    data += struct.pack("<HHBBB", width, height, 0x80 | (bits - 1), 0, 0)
    for r, g, b in palette:
        data += bytes((r, g, b))
    # Loop for ever (NETSCAPE2.0 application extension).
    data += b"\x21\xFF\x0BNETSCAPE2.0\x03\x01\x00\x00\x00"
    for frame in frames:
        # Graphic control: dispose to background, transparent index 0.
        data += b"\x21\xF9\x04" + bytes((0x09,)) + struct.pack("<H", delay_cs) + b"\x00\x00"
        data += b"\x2C" + struct.pack("<HHHHB", 0, 0, width, height, 0)
        data.append(bits)
        encoded = lzw_encode([i for row in frame for i in row], bits)
        for pos in range(0, len(encoded), 255):
            block = encoded[pos:pos + 255]
            data.append(len(block))
            data += block
        data.append(0)
    data.append(0x3B)
    with open(path, "wb") as f:
        f.write(bytes(data))


BLUE = (38, 110, 200, 255)
WHITE = (255, 255, 255, 255)
GREEN = (40, 150, 60, 255)
AMBER = (240, 180, 20, 255)
DARK = (50, 40, 10, 255)


def info_big():
    s = 32
    return render(s, [
        (circle(16, 16, 15), BLUE),
        (circle(16, 9, 2.4), WHITE),
        (rounded_rect(13.8, 13, 18.2, 25, 1.2), WHITE),
    ])


def tick():
    return render(16, [(thick_polyline([(2.5, 8.5), (6.5, 12.5), (13.5, 3.5)], 2.6), GREEN)])


def warning():
    return render(16, [
        (polygon([(8, 0.8), (15.5, 14.8), (0.5, 14.8)]), AMBER),
        (rounded_rect(7.1, 4.8, 8.9, 9.6, 0.8), DARK),
        (circle(8, 12.6, 1.1), DARK),
    ])


def category(colour):
    return render(16, [
        (rounded_rect(1.5, 1.5, 14.5, 14.5, 3), (colour[0] // 2, colour[1] // 2, colour[2] // 2, 255)),
        (rounded_rect(2.5, 2.5, 13.5, 13.5, 2.2), colour),
    ])


def progress_frames():
    """Eight dots on a ring; the bright dot walks round, the others fade."""
    size = 16
    greys = [(200, 200, 200), (170, 170, 170), (140, 140, 140), (110, 110, 110),
             (80, 80, 80), (55, 55, 55), (35, 35, 35), (20, 20, 20)]
    palette = [(255, 255, 255)] + greys  # index 0: transparent
    frames = []
    for step in range(8):
        frame = [[0] * size for _ in range(size)]
        for dot in range(8):
            angle = 2 * math.pi * dot / 8 - math.pi / 2
            cx = 8 + 5.2 * math.cos(angle)
            cy = 8 + 5.2 * math.sin(angle)
            shade = 1 + (dot - step) % 8  # the leading dot gets the darkest grey
            for y in range(size):
                for x in range(size):
                    if (x + 0.5 - cx) ** 2 + (y + 0.5 - cy) ** 2 <= 1.8 ** 2:
                        frame[y][x] = shade
        frames.append(frame)
    return frames, palette


def main():
    write_png(os.path.join(HERE, "info-big.png"), info_big())
    write_png(os.path.join(HERE, "tick.png"), tick())
    write_png(os.path.join(HERE, "warning.png"), warning())
    write_png(os.path.join(HERE, "category1.png"), category((70, 130, 230, 255)))
    write_png(os.path.join(HERE, "category2.png"), category((230, 110, 60, 255)))
    frames, palette = progress_frames()
    write_gif(os.path.join(HERE, "progress.gif"), frames, palette, delay_cs=10)


if __name__ == "__main__":
    main()
