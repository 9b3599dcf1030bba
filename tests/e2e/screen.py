"""Pixels of a private Xvfb, read from the framebuffer that it keeps in a file (xwd format, big endian header)."""

import mmap
import struct

HEADER_WORDS = 25


class Screen:
    def __init__(self, path):
        with open(path, "rb") as file:
            self.memory = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        header = struct.unpack(f">{HEADER_WORDS}I", self.memory[: 4 * HEADER_WORDS])
        assert header[11] == 32, "32 bits per pixel"
        self.bytes_per_line = header[12]
        colours = header[19]
        self.start = header[0] + 12 * colours

    def pixel(self, x, y):
        """(red, green, blue)"""
        at = self.start + y * self.bytes_per_line + 4 * x
        blue, green, red = self.memory[at : at + 3]
        return red, green, blue

    def area(self, x, y, width, height):
        """The bytes of a rectangle, for comparing."""
        lines = []
        for line in range(y, y + height):
            at = self.start + line * self.bytes_per_line + 4 * x
            lines.append(self.memory[at : at + 4 * width])
        return b"".join(lines)

    def close(self):
        self.memory.close()
