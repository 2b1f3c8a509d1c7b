"""Writes a .deb in one pass: an ar archive of debian-binary, control.tar.gz and data.tar.xz or data.tar.zst.

The checksums of all files are in control.tar, which comes first, so that its place is kept free until the data are
written: it is stored uncompressed in gzip's format, whose size depends only on the sizes of its files. The bytes of a
package depend on its files alone: names are sorted, owners and modes are fixed, and the compressors cut blocks of fixed
size, with whatever number of threads.
"""

import gzip
import hashlib
import io
import os
import shutil
import stat
import subprocess
import tarfile

from cellarix_packager import contents
from cellarix_packager.errors import PackageError
from cellarix_packager.estimate import compressed_size

MEMBER_LIMIT = 10**10 - 1  # of ar: ten decimal digits
SURE = MEMBER_LIMIT // 1001 * 1000  # what cannot be compressed grows a little
CHUNK = 1 << 20
EARLIEST = 315532800  # 1980: older times are mistakes
MEMORY = 200 << 20  # for all threads of xz; zstd takes 100 MiB for each of its own
# A thread of xz needs 94 MiB for -6 and twice the block. Smaller windows let it use more processors in that memory.
XZ_THREAD = 66 << 20
XZ = ["xz", "-c", "--block-size=8MiB", "--lzma2=preset=6,dict=4MiB"]
ZSTD = ["zstd", "-c", "-q", "-12"]
SUFFIXES = {"xz": "xz", "zstd": "zst"}


def check_limits(entries, estimate=compressed_size):
    """Returns the size of data.tar, without compression. Raises before any work if the package would be larger than the
    format can hold: that limits the compressed size, which is estimated where it matters. A single file may have any
    size: tar has numbers for those above 8 GiB that dpkg knows."""
    total = tar_size(entries)
    packed = total if total <= SURE else estimate(entries, total)
    if packed > MEMBER_LIMIT:
        raise PackageError(f"The package would take {packed / 10**9:.1f} GB; a .deb can hold at most 10 GB.", "too-large",
                           f"{packed / 10**9:.1f}")
    return total


def tar_size(entries):
    """Of data.tar with these entries, in bytes. A name that is too long for a header has one of its own."""
    def blocks(size):
        return -(-size // tarfile.BLOCKSIZE) * tarfile.BLOCKSIZE

    def name_size(name):
        length = len(os.fsencode(name))
        return tarfile.BLOCKSIZE + blocks(length + 1) if length > tarfile.LENGTH_NAME else 0
    return 2 * tarfile.BLOCKSIZE + sum(
        tarfile.BLOCKSIZE + name_size("./" + entry.path + ("/" if entry.kind == contents.DIRECTORY else "")) +
        name_size(entry.target) + blocks(entry.size) for entry in entries)


def check_tools(compression):
    """Raises if a program that is needed is not installed."""
    if missing := next((name for name in ("setpriv", compression) if not shutil.which(name)), ""):
        raise PackageError(f"The program {missing} is not installed, without which no package can be made.", "no-tool", missing)


def _threads(compression):
    count = len(os.sched_getaffinity(0))
    return max(2, min(count, MEMORY // XZ_THREAD)) if compression == "xz" else min(count, 2)


def _compressor(compression):
    """Ends with this process, also when that is killed. With a single thread xz would make other bytes."""
    command = XZ + [f"-T{_threads('xz')}"] if compression == "xz" else ZSTD + [f"-T{_threads('zstd')}"]
    return ["setpriv", "--pdeathsig", "KILL", *command]


def _info(entry, time):
    info = tarfile.TarInfo("./" + entry.path)
    info.mtime = time
    info.uname = info.gname = "root"
    info.mode = 0o755 if entry.executable or entry.kind == contents.DIRECTORY else 0o644
    if entry.kind == contents.DIRECTORY:
        info.type = tarfile.DIRTYPE
    elif entry.kind == contents.LINK:
        info.type, info.linkname, info.mode = tarfile.SYMTYPE, entry.target, 0o777
    else:
        info.size = entry.size
    return info.tobuf(tarfile.GNU_FORMAT, "utf-8", "surrogateescape")


def _changed(entry):
    return PackageError(f"{entry.source} has changed while it was packed. Close the programs of the bottle.", "changed",
                        entry.source)


class DataTar:
    """Streams entries into a compressor that writes to `fd`; keeps the MD5 sum of each file."""

    def __init__(self, fd, compression, latest, progress):
        self.sums = {}
        self.written = 0
        self.latest = latest
        self.progress = progress
        self.process = subprocess.Popen(_compressor(compression), stdin=subprocess.PIPE, stdout=fd)
        self.out = self.process.stdin

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        if kind is not None:
            self.process.kill()
        try:
            self._close()
        except PackageError:
            if kind is None:
                raise
        self.process.wait()

    def _close(self):
        """What is left in the buffer is written here."""
        try:
            self.out.close()
        except BrokenPipeError:
            raise self._failure() from None

    def _failure(self):
        return PackageError("The package could not be compressed; is the disk full?", "compressor")

    def add(self, entry):
        if entry.source:
            with open(os.open(entry.source, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC), "rb",
                      buffering=0) as file:
                status = os.fstat(file.fileno())
                if not stat.S_ISREG(status.st_mode) or contents.stamp(status) != entry.stamp:
                    raise _changed(entry)
                self._put(_info(entry, max(EARLIEST, min(int(status.st_mtime), self.latest))))
                self._copy(entry, file)
                if contents.stamp(os.fstat(file.fileno())) != entry.stamp:
                    raise _changed(entry)
        else:
            self._put(_info(entry, self.latest))
            if entry.kind == contents.FILE:
                self._copy(entry, io.BytesIO(entry.data))

    def finish(self):
        self._put(bytes(2 * tarfile.BLOCKSIZE))
        self._close()
        if self.process.wait() != 0:
            raise self._failure()

    def _copy(self, entry, file):
        digest = hashlib.md5(usedforsecurity=False)
        left = entry.size
        while left and (data := file.read(min(left, CHUNK))):
            digest.update(data)
            self._put(data)
            left -= len(data)
        if left or file.read(1):
            raise _changed(entry)
        self._put(bytes(-entry.size % tarfile.BLOCKSIZE))
        self.sums[entry.path] = digest.hexdigest()

    def _put(self, data):
        try:
            self.out.write(data)
        except BrokenPipeError:
            raise self._failure() from None
        self.written += len(data)
        self.progress(self.written)


def control_tar(files, time):
    """`files` maps names to bytes."""
    out = io.BytesIO()
    with tarfile.open(fileobj=out, mode="w", format=tarfile.GNU_FORMAT) as tar:
        for name, data in files.items():
            info = tarfile.TarInfo("./" + name)
            info.size, info.mtime, info.mode, info.uname, info.gname = len(data), time, 0o644, "root", "root"
            tar.addfile(info, io.BytesIO(data))
    return gzip.compress(out.getvalue(), compresslevel=0, mtime=0)


def _member(name, size, time):
    return f"{name:<16}{time:<12}{0:<6}{0:<6}{100644:<8}{size:<10}`\n".encode()


def write(fd, entries, last, control, compression, latest, progress):
    """Writes the package to `fd`. `last(sums)` makes the entry at the end of the data from the sums of those before it,
    with a size that does not depend on them; `control(sums)` the files of control.tar, likewise."""
    paths = [entry.path for entry in entries if entry.kind == contents.FILE]
    nothing = dict.fromkeys(paths, "0" * 32)
    reserved = len(control_tar(control(nothing | {last(nothing).path: "0" * 32}), latest))
    head = b"!<arch>\n" + _member("debian-binary", 4, latest) + b"2.0\n"
    data_at = len(head) + 60 + reserved + reserved % 2 + 60
    os.lseek(fd, data_at, os.SEEK_SET)
    with DataTar(fd, compression, latest, progress) as tar:
        for entry in entries:
            tar.add(entry)
        tar.add(last(tar.sums))
        tar.finish()
    size = os.lseek(fd, 0, os.SEEK_END) - data_at
    if size > MEMBER_LIMIT:
        raise PackageError("The package is larger than a .deb can hold.", "too-large", f"{size / 10**9:.1f}")
    packed = control_tar(control(tar.sums), latest)
    if len(packed) != reserved:
        raise PackageError("The checksums of the package have an unexpected size.", "internal")
    head += _member("control.tar.gz", reserved, latest) + packed + b"\n" * (reserved % 2)
    os.pwrite(fd, head + _member(f"data.tar.{SUFFIXES[compression]}", size, latest), 0)
    os.pwrite(fd, b"\n" * (size % 2), data_at + size)
