"""What signing and checking need to know of Mach-O files."""

import hashlib
import re
import struct
import subprocess

MAGIC_64 = 0xFEEDFACF
FAT_MAGIC = 0xCAFEBABE
LC_SEGMENT_64 = 0x19
LC_CODE_SIGNATURE = 0x1D
CPU_NAMES = {0x01000007: "x86_64", 0x0100000C: "arm64"}


class Error(Exception):
    """A file is not what it should be."""


class Slice:
    """A program for one architecture."""

    def __init__(self, data):
        self.data = bytearray(data)
        magic, self.cpu, self.subtype, _, self.count, self.size = struct.unpack_from(
            "<IIIIII", self.data)
        if magic != MAGIC_64 or self.cpu not in CPU_NAMES:
            raise Error("no program for a Mac")

    @property
    def name(self):
        return CPU_NAMES[self.cpu]

    def commands(self):
        """The number, place and size of every load command."""
        place = 32
        for _ in range(self.count):
            number, size = struct.unpack_from("<II", self.data, place)
            yield number, place, size
            place += size

    def segment(self, wanted):
        """Where a segment's load command is, and the segment's place and size in the file."""
        for number, place, _ in self.commands():
            if number != LC_SEGMENT_64:
                continue
            name = bytes(self.data[place + 8:place + 24]).rstrip(b"\0").decode()
            if name == wanted:
                offset, size = struct.unpack_from("<QQ", self.data, place + 40)
                return place, offset, size
        raise Error(f"no segment {wanted}")

    def signature(self):
        """Where the signature's load command is, and the signature's place and size."""
        for number, place, _ in self.commands():
            if number == LC_CODE_SIGNATURE:
                return (place, *struct.unpack_from("<II", self.data, place + 8))
        return None

    def code_directory(self):
        """The part of the signature that holds all checksums."""
        _, start, _ = self.signature()
        count, = struct.unpack_from(">I", self.data, start + 8)
        slots = dict(struct.unpack_from(">II", self.data, start + 12 + 8 * i) for i in range(count))
        directory = start + slots[0]
        size, = struct.unpack_from(">I", self.data, directory + 4)
        return bytes(self.data[directory:directory + size])

    def code_hash(self):
        """What the system knows the signed program by."""
        return hashlib.sha256(self.code_directory()).digest()[:20]

    def first_section(self):
        """Where the content behind the load commands starts."""
        starts = []
        for number, place, _ in self.commands():
            if number != LC_SEGMENT_64:
                continue
            sections = struct.unpack_from("<I", self.data, place + 64)[0]
            for i in range(sections):
                offset, = struct.unpack_from("<I", self.data, place + 72 + 80 * i + 48)
                if offset:
                    starts.append(offset)
        return min(starts)


def slices(data):
    """The programs of a universal file."""
    magic, count = struct.unpack_from(">II", data)
    if magic != FAT_MAGIC:
        raise Error("not a universal program")
    parts = []
    for i in range(count):
        _, _, offset, size, _ = struct.unpack_from(">IIIII", data, 8 + 20 * i)
        parts.append(Slice(data[offset:offset + size]))
    return parts


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def bindings(program):
    """The library that each symbol of the system is taken from, as the loader is told and as the
    table of symbols says. Needs llvm-nm and llvm-objdump (Debian package llvm)."""
    found = set()
    for table in ("--bind", "--lazy-bind"):
        text = run("llvm-objdump", "--macho", table, str(program))
        found |= {(symbol, library) for library, symbol in re.findall(
            r"^__\S+ +__\S+ +0x\S+ +(?:pointer +\d+ +)?(\S+) +(\S+)$", text, re.M)}
    text = run("llvm-nm", "-m", "--undefined-only", str(program))
    found |= set(re.findall(r"external (\S+) \(from (\S+)\)$", text, re.M))
    return found
