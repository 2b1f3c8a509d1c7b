#!/usr/bin/python3 -IXutf8
"""Extracts the icon of a Windows executable.

usage: icon_extractor.py [--no-convert] EXE NAME DIRECTORY

Writes DIRECTORY/NAME: with --no-convert the icon group as an .ico file, otherwise its best image as PNG. The exit
code is 1 if there is no icon or it cannot be written; no file remains then.
"""

import mmap
import os
import resource
import stat
import struct
import subprocess
import sys
import tempfile

IMAGE_LIMIT = 4 << 20  # bytes of one image; an uncompressed image of 256 pixels has 270 KB
IMAGES_LIMIT = 64
MEMORY_LIMIT = 512 << 20
PNG_MAGIC = b"\x89PNG\r\n\x1a\n"
RT_ICON, RT_GROUP_ICON = 3, 14
SECONDS = 20


class Image:
    """One image of a group: the 12 header bytes common to .ico files and icon groups, and its data."""

    def __init__(self, head, data):
        self.head = head
        self.data = data
        width, _, colours, _, _, bits = struct.unpack_from("<BBBBHH", head)
        self.rank = (width or 256, bits or colours)


def open_pe(path):
    import pefile

    with open(os.open(path, os.O_RDONLY | os.O_NONBLOCK), "rb") as file:
        if not stat.S_ISREG(os.fstat(file.fileno()).st_mode):
            raise OSError(f"{path} is not a file")
        pe = pefile.PE(data=mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ), fast_load=True)
    pe.parse_data_directories(directories=[pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_RESOURCE"]])
    return pe


def _leaves(pe, kind):
    """Yields (id, data entry) of all resources of a kind, in their first language."""
    for entry in getattr(getattr(pe, "DIRECTORY_ENTRY_RESOURCE", None), "entries", ()):
        if entry.id != kind or not hasattr(entry, "directory"):
            continue
        for named in entry.directory.entries:
            languages = named.directory.entries if hasattr(named, "directory") else ()
            if languages and hasattr(languages[0], "data"):
                yield named.id, languages[0].data.struct


def read_images(pe):
    """The images of the first group, which is the icon shown by file managers. Empty without a group."""
    group = next((data for _, data in _leaves(pe, RT_GROUP_ICON)), None)
    if group is None:
        return []
    table = pe.get_data(group.OffsetToData, min(group.Size, 6 + 14 * IMAGES_LIMIT))
    count = min(struct.unpack_from("<H", table, 4)[0], (len(table) - 6) // 14)
    stored = dict(_leaves(pe, RT_ICON))
    images = []
    for index in range(count):
        head, number = table[6 + 14 * index:18 + 14 * index], struct.unpack_from("<H", table, 18 + 14 * index)[0]
        place = stored.get(number)
        if place is None or not 0 < place.Size <= IMAGE_LIMIT:
            continue
        data = pe.get_data(place.OffsetToData, place.Size)
        if len(data) == place.Size:
            images.append(Image(head, data))
    return images


def ico_file(images):
    offset = 6 + 16 * len(images)
    head = struct.pack("<HHH", 0, 1, len(images))
    for image in images:
        head += image.head[:8] + struct.pack("<II", len(image.data), offset)
        offset += len(image.data)
    return head + b"".join(image.data for image in images)


def png_file(images):
    """The largest image with the highest colour depth, as PNG."""
    best = max(images, key=lambda image: image.rank)
    if best.data.startswith(PNG_MAGIC):
        return best.data
    with tempfile.TemporaryDirectory(prefix="cellarix-icon-") as folder:
        source, target = os.path.join(folder, "icon.ico"), os.path.join(folder, "icon.png")
        with open(source, "wb") as file:
            file.write(ico_file([best]))
        subprocess.run(["icotool", "-x", "-o", target, source], check=True, timeout=SECONDS,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        with open(target, "rb") as file:
            return file.read()


def write_file(directory, name, data):
    """Writes the file atomically and replaces a link instead of following it."""
    os.makedirs(directory, mode=0o700, exist_ok=True)
    handle, fresh = tempfile.mkstemp(dir=directory)
    try:
        with os.fdopen(handle, "wb") as file:
            file.write(data)
        os.replace(fresh, os.path.join(directory, name))
    except BaseException:
        os.unlink(fresh)
        raise


def extract(path, name, directory, convert):
    """Writes the icon to directory/name; returns whether that worked."""
    if not name or name in (".", "..") or "/" in name or "\0" in name:
        return False
    try:
        pe = open_pe(path)
        try:
            images = read_images(pe)
        finally:
            pe.close()
        if not images:
            return False
        write_file(directory, name, png_file(images) if convert else ico_file(images))
        return True
    except Exception as error:  # untrusted input: any error of the parser has the same result
        print(f"icon_extractor: {path}: {error}", file=sys.stderr)
        return False


def main(argv):
    convert = "--no-convert" not in argv[:1]
    words = argv if convert else argv[1:]
    if len(words) != 3:
        print("usage: icon_extractor.py [--no-convert] EXE NAME DIRECTORY", file=sys.stderr)
        return 64
    resource.setrlimit(resource.RLIMIT_DATA, (MEMORY_LIMIT, MEMORY_LIMIT))
    resource.setrlimit(resource.RLIMIT_CPU, (SECONDS, SECONDS + 1))
    return 0 if extract(words[0], words[1], words[2], convert) else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
