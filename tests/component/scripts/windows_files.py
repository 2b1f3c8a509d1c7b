"""Makes Windows programs byte by byte: one section, with the contents that the caller asks for."""

import struct

SECTION_RVA, FILE_ALIGNMENT, HEADERS = 0x1000, 0x200, 0x200


def _padded(data, to):
    return data + b"\0" * (-len(data) % to)


class _Body:
    def __init__(self, text):
        self.data = b""
        self.add(text)

    def add(self, data):
        """The address of the data once the program is loaded."""
        rva = SECTION_RVA + len(self.data)
        self.data += _padded(data, 16)
        return rva

    def next(self):
        return SECTION_RVA + len(self.data)


def _imports(body, names):
    """The import table: one function of each library, by its ordinal."""
    descriptors = b""
    for name in names:
        thunks = body.add(struct.pack("<II", 0x80000064, 0))
        descriptors += struct.pack("<5I", thunks, 0, 0, body.add(name.encode() + b"\0"), thunks)
    return body.add(descriptors + bytes(20)), len(descriptors) + 20


def _resources(body, resources):
    """{(type, id): data}; type and id may be names."""
    base, count = body.next(), len(resources)
    size = 16 + 8 * count + count * (24 + 24 + 16)
    names, tail = {}, b""
    for name in {part for key in resources for part in key if isinstance(part, str)}:
        names[name] = 0x80000000 | size + len(tail)
        tail += _padded(struct.pack("<H", len(name)) + name.encode("utf-16-le"), 4)
    first, rest, blobs = b"", b"", b""
    for (kind, number), data in sorted(resources.items(), key=lambda item: item[0][0] not in names):
        at = 16 + 8 * count + len(rest)
        first += struct.pack("<II", names.get(kind, kind), 0x80000000 | at)
        named = number in names
        rest += struct.pack("<IIHHHH", 0, 0, 0, 0, named, not named)
        rest += struct.pack("<II", names.get(number, number), 0x80000000 | at + 24)
        rest += struct.pack("<IIHHHH", 0, 0, 0, 0, 0, 1) + struct.pack("<II", 1033, at + 48)
        rest += struct.pack("<IIII", base + size + len(tail) + len(blobs), len(data), 0, 0)
        blobs += _padded(data, 4)
    named = sum(kind in names for kind, _ in resources)
    root = struct.pack("<IIHHHH", 0, 0, 0, 0, named, count - named)
    return body.add(root + first + rest + tail + blobs), size


def _version_node(key, value=b"", children=b"", text=False):
    head = _padded(struct.pack("<HHH", 0, len(value) // 2 if text else len(value), text) + key.encode("utf-16-le") + b"\0\0", 4)
    node = _padded(head + value, 4) + children
    return struct.pack("<H", len(node)) + node[2:]


def version_block(**texts):
    """A version resource with these texts."""
    lines = b"".join(_version_node(key, (text + "\0").encode("utf-16-le"), text=True) for key, text in texts.items())
    fixed = struct.pack("<13I", 0xFEEF04BD, 0x10000, *[0] * 7, 1, 0, 0, 0)
    return _version_node("VS_VERSION_INFO", fixed, _version_node("StringFileInfo", b"", _version_node("040904b0", b"", lines)))


def metadata(version, references=(), blobs=b""):
    """The metadata of a .NET program. References are (library, major, minor)."""
    strings, rows = b"\0", b""
    for name, major, minor in references:
        rows += struct.pack("<4HI4H", major, minor, 0, 0, 0, 0, len(strings), 0, 0)
        strings += name.encode() + b"\0"
    tables = struct.pack("<IBBBBQQ", 0, 2, 0, 0, 1, bool(rows) << 0x23, 0)
    tables += struct.pack("<I", len(references)) + rows if rows else b""
    streams = {"#~": _padded(tables, 4), "#Strings": _padded(strings, 4), "#Blob": _padded(b"\0" + blobs, 4)}
    text = _padded(version.encode() + b"\0", 4)
    root = b"BSJB" + struct.pack("<HHII", 1, 1, 0, len(text)) + text + struct.pack("<HH", 0, len(streams))
    at = len(root) + sum(8 + len(_padded(name.encode() + b"\0", 4)) for name in streams)
    content = b""
    for name, data in streams.items():
        root += struct.pack("<II", at + len(content), len(data)) + _padded(name.encode() + b"\0", 4)
        content += data
    return root + content


def program(text=b"", overlay=b"", section=".text", imports=(), resources=None, clr=b"", mark=b"", flags=0x102):
    """A PE32 file. The text lies in the section, the overlay behind it, the mark in the DOS header at 0x30."""
    # A managed program begins with a jump into its runtime.
    body = _Body((b"\xff\x25\0\x20\x40\0" if clr else b"") + text)
    directories = [(0, 0)] * 16
    if imports:
        directories[1] = _imports(body, imports)
    if resources:
        directories[2] = _resources(body, resources)
    if clr:
        directories[14] = body.add(struct.pack("<IHHIII", 72, 2, 5, body.add(clr), len(clr), 1) + bytes(52)), 72
    content = _padded(body.data or b"\xc3", FILE_ALIGNMENT)
    dos = (b"MZ" + bytes(46) + mark).ljust(60, b"\0") + struct.pack("<I", 64)
    file_header = struct.pack("<HHIIIHH", 0x14C, 1, 0, 0, 0, 224, flags)
    optional = struct.pack("<HBBIIIIIIIII", 0x10B, 2, 0, len(content), 0, 0, SECTION_RVA, SECTION_RVA, 0, 0x400000,
                           0x1000, FILE_ALIGNMENT)
    optional += struct.pack("<6HIIIIHH", 4, 0, 0, 0, 4, 0, 0, SECTION_RVA + len(content) + 0x1000, HEADERS, 0, 2, 0)
    optional += struct.pack("<6I", 0x100000, 0x1000, 0x100000, 0x1000, 0, 16)
    optional += b"".join(struct.pack("<II", *entry) for entry in directories)
    table = struct.pack("<8sIIIIIIHHI", section.encode(), len(content), SECTION_RVA, len(content), HEADERS, 0, 0, 0, 0,
                        0x60000020)
    return (dos + b"PE\0\0" + file_header + optional + table).ljust(HEADERS, b"\0") + content + overlay


def compound(class_id, directory=2, elsewhere=b""):
    """A compound file whose root entry, in the given sector, is of the given class."""
    header = bytearray(512)
    header[:8] = b"\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"
    struct.pack_into("<H", header, 0x1E, 9)
    struct.pack_into("<I", header, 0x30, directory)
    return bytes(header) + elsewhere.ljust(512 * directory, b"\0") + bytes(0x50) + class_id + bytes(512)
