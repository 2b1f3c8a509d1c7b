"""How large a package will be, from samples of its files."""

import lzma
import os

SAMPLES = 48
SAMPLE = 512 << 10  # bytes; with a few more the quick compressor comes close to that of the package


def compressed_size(entries, total):
    """Bytes that `total` uncompressed ones of the entries take at most, within some percent. Takes a second or two."""
    content = sum(entry.size for entry in entries)
    read, packed = 0, 0
    for data in _samples(entries, content):
        read += len(data)
        packed += min(len(lzma.compress(data, preset=1)), len(data))
    return int(total * packed / read) if read else total


def _samples(entries, content):
    """Pieces of the contents, as if those were one file, at equal distances."""
    step = max(content // SAMPLES, SAMPLE)
    at, wanted = 0, 0
    for entry in entries:
        while wanted < at + entry.size:
            if data := _piece(entry, wanted - at):
                yield data
            wanted += step
        at += entry.size


def _piece(entry, start):
    if not entry.source:
        return entry.data[start:start + SAMPLE]
    try:
        fd = os.open(entry.source, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC)
    except OSError:
        return b""  # the packing itself reports it
    try:
        return os.pread(fd, SAMPLE, start)
    finally:
        os.close(fd)
