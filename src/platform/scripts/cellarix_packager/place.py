"""How a file of a package gets into a user's bottle: as a link to the shared, read-only file, or as a copy.

Programs write beside themselves: settings, saved games, databases. Those need files of their own. What is only read
and large, or code, is shared. A clone of a file system that shares blocks is both, and preferred.
"""

import fcntl
import os

from cellarix_packager import bottlefiles, petrim

FICLONE = 0x40049409
CHUNK = 8 << 20
PER_FILE = 4096  # bytes: an inode, a link
LARGE = 64 << 20  # programs seldom write files of this size beside themselves
CODE = frozenset((".exe", ".dll", ".ocx", ".drv", ".sys", ".cpl", ".ax", ".acm", ".com", ".scr", ".tlb", ".nls", ".mui"))
READ_ONLY = CODE | frozenset((".ttf", ".ttc", ".otf", ".fon", ".chm", ".hlp", ".pdf", ".png", ".jpg", ".jpeg", ".bmp",
                              ".ico", ".cur", ".wav", ".mp3", ".ogg", ".avi", ".mp4", ".wmv", ".bik", ".pak", ".cab",
                              ".msi", ".jar", ".zip", ".qm"))
WRITTEN = frozenset((".db", ".sqlite", ".sqlite3", ".mdb", ".accdb", ".ldb", ".ini", ".cfg", ".conf", ".xml", ".json",
                     ".log", ".txt", ".sav", ".save", ".reg", ".tmp", ".edb", ".fdb", ".gdb", ".dbf"))
# Installers and components replace these, and Wine opens a link's target for writing.
REPLACED = ("drive_c/windows/system32/", "drive_c/windows/syswow64/")
OWN = ("drive_c/users/", "drive_c/programdata/")


def is_shared(path, size):
    """Whether a file of the bottle is a link into the package; `path` is relative to the bottle."""
    lower = path.lower()
    suffix = os.path.splitext(lower)[1]
    if not lower.startswith("drive_c/") or lower.startswith(OWN) or suffix in WRITTEN:
        return False
    if lower.startswith(REPLACED) and lower.count("/") == 3:
        return False
    return suffix in READ_ONLY or size >= LARGE


class _Fresh:
    """The path of a file that gets the place `target` at the end of the context, or goes if that fails."""

    def __init__(self, target):
        self.target = target
        self.path = bottlefiles.unfinished(target)

    def __enter__(self):
        bottlefiles.remove(self.path)
        return self.path

    def __exit__(self, kind, *_):
        try:
            if not kind:
                os.rename(self.path, self.target)
        finally:
            bottlefiles.remove(self.path)


class Placer:
    """Puts files of `shared` into a bottle, each in one step. Remembers whether the file systems can clone. `progress`
    is called with the bytes that were written."""

    def __init__(self, shared):
        self.shared = shared
        self.can_clone = True
        self.progress = lambda amount: None

    def room(self, files):
        """An upper limit of the bytes that `files`, {path: (size, ...)}, take in a bottle."""
        return sum(self.work(path, known[0]) for path, known in files.items())

    def work(self, path, size):
        return PER_FILE + (0 if is_shared(path, size) else size)

    def try_clone(self, path, directory):
        """Whether files can be clones in `directory`, which take no room, found out with the file `path`."""
        target = os.path.join(directory, bottlefiles.UNFINISHED)
        cloned = self._clone(os.path.join(self.shared, path), target)
        bottlefiles.remove(target)
        return cloned

    def put(self, path, size, target):
        """`path` is relative to the shared bottle, `target` the absolute place."""
        source = os.path.join(self.shared, path)
        with _Fresh(target) as fresh:
            self._put(source, path, size, fresh)

    def _put(self, source, path, size, fresh):
        if self._clone(source, fresh):
            self.progress(self.work(path, size))
        elif is_shared(path, size):
            os.symlink(source, fresh)
            self.progress(PER_FILE)
        else:
            self._copy(source, fresh)

    def put_wine_file(self, source, path, target, as_link):
        """A file of the machine's Wine, without debug information; `path` is relative to the bottle."""
        with _Fresh(target) as fresh:
            if as_link or is_shared(path, 0):
                os.symlink(source, fresh)
                self.progress(PER_FILE)
            elif (data := petrim.trimmed(source)) is None:
                self._copy(source, fresh)
            else:
                with open(fresh, "wb") as file:
                    self.progress(PER_FILE + file.write(data))

    def wine_work(self, source, path, as_link):
        return PER_FILE + (0 if as_link or is_shared(path, 0) else petrim.trimmed_size(source))

    def _copy(self, source, target):
        with open(source, "rb") as old, open(target, "wb") as new:
            self.progress(PER_FILE)
            while sent := os.sendfile(new.fileno(), old.fileno(), None, CHUNK):
                self.progress(sent)

    def _clone(self, source, target):
        if not self.can_clone:
            return False
        try:
            with open(source, "rb") as old, open(target, "wb") as new:
                fcntl.ioctl(new.fileno(), FICLONE, old.fileno())
            return True
        except OSError:
            self.can_clone = False
            bottlefiles.remove(target)
            return False

    def is_link(self, path, target):
        """Whether the file at `target` is a link to the package's file `path`."""
        try:
            return os.readlink(target) == os.path.join(self.shared, path)
        except OSError:
            return False
