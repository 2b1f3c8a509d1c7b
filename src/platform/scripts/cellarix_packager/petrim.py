"""Wine's own programs and libraries without what only a debugger reads, which is most of their size where a distribution
does not strip them. The bottle service trims the files of bottles by the same rule, with the same result."""

import os
import struct

MARK = b"Wine "
MARK_AT = 0x40
HEAD = 4096  # bytes that have all headers
DEBUG_DIRECTORY = 6


def trimmed(path):
    """The bytes of a file of Wine's own without its debug information; None for a file that is none, has none or is laid
    out in another way. OSError if it cannot be read."""
    with open(path, "rb") as file:
        head = bytearray(file.read(HEAD))
        try:
            end = _trim(head, os.fstat(file.fileno()).st_size) if head[MARK_AT:MARK_AT + len(MARK)] == MARK else 0
        except struct.error:
            return None
        return bytes(head[:end]) + file.read(max(end - len(head), 0)) if end else None


def trimmed_size(path):
    """How many bytes the file has without its debug information."""
    size = os.path.getsize(path)
    with open(path, "rb") as file:
        head = bytearray(file.read(HEAD))
    try:
        return _trim(head, size) or size if head[MARK_AT:MARK_AT + len(MARK)] == MARK else size
    except struct.error:
        return size


def _trim(head, size):
    """Changes the headers; returns where the file ends, 0 if it cannot be trimmed."""
    coff = struct.unpack_from("<I", head, 0x3c)[0] + 4
    count, optional_bytes = struct.unpack_from("<H", head, coff + 2)[0], struct.unpack_from("<H", head, coff + 16)[0]
    optional = coff + 20
    magic = struct.unpack_from("<H", head, optional)[0]
    if magic not in (0x10b, 0x20b):
        return 0
    sections = [struct.unpack_from("<8sIIII", head, optional + optional_bytes + 40 * number) for number in range(count)]
    kept = count
    while kept and sections[kept - 1][0].startswith((b"/", b".debug")):
        kept -= 1
    image_end = max((address + max(memory, raw) for _, memory, address, raw, _ in sections[:kept]), default=0)
    file_end = max([struct.unpack_from("<I", head, optional + 60)[0]] + [at + raw for *_, raw, at in sections[:kept]])
    directories = optional + (112 if magic == 0x20b else 96)
    known = struct.unpack_from("<I", head, directories - 4)[0]
    places = [struct.unpack_from("<I", head, directories + 8 * number)[0] for number in range(min(known, 16))]
    if kept in (0, count) or file_end >= size or not image_end or any(section[2] < image_end for section in sections[kept:]) or \
            any(place >= image_end for number, place in enumerate(places) if number != DEBUG_DIRECTORY):
        return 0
    struct.pack_into("<H", head, coff + 2, kept)
    struct.pack_into("<II", head, coff + 8, 0, 0)  # symbols
    alignment = max(struct.unpack_from("<I", head, optional + 32)[0], 1)
    struct.pack_into("<I", head, optional + 56, -(-image_end // alignment) * alignment)
    return file_end
