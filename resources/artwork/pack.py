#!/usr/bin/env -S python3 -B
"""Writes a picture as the PNG that is read at the least expense, of the same pixels.

Usage: pack.py WIDTH HEIGHT FILE <PIXELS   (four bytes each: red, green, blue, alpha)

What has few colours states each of them once, and no line is stored as the difference to another, which would have to
be undone for every pixel.
"""

import struct
import sys
import zlib

NO_FILTER = b"\0"
TRUE_COLOUR, INDEXED = 6, 3  # with alpha; by a palette


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png(width, height, pixels):
    colours = sorted(set(pixels), key=lambda pixel: (pixel[3], pixel))  # the opaque ones last: they need no alpha
    indexed = len(colours) <= 256
    if indexed:
        places = {colour: bytes([place]) for place, colour in enumerate(colours)}
        pixels = [places[pixel] for pixel in pixels]
    lines = (b"".join(pixels[y * width:(y + 1) * width]) for y in range(height))
    yield b"\x89PNG\r\n\x1a\n"
    yield chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, INDEXED if indexed else TRUE_COLOUR, 0, 0, 0))
    if indexed:
        yield chunk(b"PLTE", b"".join(colour[:3] for colour in colours))
        yield chunk(b"tRNS", bytes(colour[3] for colour in colours if colour[3] < 255))
    yield chunk(b"IDAT", zlib.compress(b"".join(NO_FILTER + line for line in lines), 9))
    yield chunk(b"IEND", b"")


def main():
    width, height = int(sys.argv[1]), int(sys.argv[2])
    data = sys.stdin.buffer.read()
    if len(data) != 4 * width * height:
        sys.exit(f"pack: {len(data)} bytes are not {width} x {height} pixels")
    pixels = [data[place:place + 4] for place in range(0, len(data), 4)]
    with open(sys.argv[3], "wb") as file:
        file.writelines(png(width, height, pixels))


main()
