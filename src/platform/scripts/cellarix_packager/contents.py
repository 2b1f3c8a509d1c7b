"""The list of everything in a package, in the order of the archive; reads names and sizes, no contents."""

import os
import stat
from dataclasses import dataclass

from cellarix_packager import layout, links, private
from cellarix_packager.errors import PackageError

DIRECTORY, FILE, LINK = "directory", "file", "link"
SUFFIXES = (".exe", ".msi", ".bat", ".cmd", ".com", ".lnk")
NEAR_ROOT = 3  # slashes: a directory of the user's with fewer is the root, the home directory or a neighbour


@dataclass
class Entry:
    """`path` is relative to the root of the package. A FILE has a `source`, with a `stamp` that changes with it, or `data`;
    a LINK has a `target`."""

    path: str
    kind: str
    size: int = 0
    source: str = ""
    data: bytes = None
    target: str = ""
    executable: bool = False
    stamp: tuple = ()


def stamp(status):
    return status.st_ino, status.st_mtime_ns


def text_entry(path, text, executable=False):
    data = text.encode() if isinstance(text, str) else text
    return Entry(path, FILE, len(data), data=data, executable=executable)


class Contents:
    """Collects entries by path, so that each is there once, and the bottle's links that are made anew on the other
    machine. `left_out` has pairs of a path and the reason, for the log."""

    def __init__(self):
        self.entries = {}
        self.system_links = {}
        self.wine_links = {}  # names of Wine's own files by path: see winefiles
        self.wine_copies = {}
        self.folders = {}
        self.left_out = []

    def add(self, entry):
        known = self.entries.setdefault(entry.path, entry)
        if known != entry and DIRECTORY not in (known.kind, entry.kind):
            raise PackageError(f"Two files of the package have the same place: {entry.path}", "same-place", entry.path)
        for parent in _parents(entry.path):
            if self.entries.setdefault(parent, Entry(parent, DIRECTORY)).kind != DIRECTORY:
                raise PackageError(f"A file and a directory of the package have the same place: {parent}", "same-place", parent)

    def in_order(self):
        return [self.entries[path] for path in sorted(self.entries, key=os.fsencode)]


def _parents(path):
    while path := os.path.dirname(path):
        yield path


class BottleWalk:
    """Adds what lies below directories of a bottle, or beside it, to the contents."""

    def __init__(self, contents, bottle_dir, data_dir, user, wine):
        self.contents = contents
        self.wine = wine
        self.bottle_dir = os.path.realpath(bottle_dir)
        self.data_dir = os.path.realpath(data_dir)
        self.user = user
        self.trees = set()
        # Directories, where their contents lie in the bottle of the package, and what of them stays at home.
        self.moved = [(self.bottle_dir, "", self._is_left_out)]

    def add_drive(self, prefix):
        """The drive C of the bottle below `prefix`."""
        self._walk(os.path.join(self.bottle_dir, "drive_c"), "drive_c", prefix, self._is_left_out)

    def add_tree(self, source, target, prefix):
        """A directory outside of the bottle, which the user has chosen, to `target`."""
        source = os.path.realpath(source)
        if (source, target) in self.trees:
            return  # of another program
        self.trees.add((source, target))
        if self.bottle_dir.startswith(source.rstrip("/") + "/"):
            raise PackageError(f"{source} contains the bottle itself and cannot go into the package.",
                               "contains-bottle", source)
        if private.is_secret_directory(source):
            raise PackageError(f"{source} has keys or settings of yours and cannot go into the package.",
                               "secret-folder", source)
        if source.count("/") < NEAR_ROOT:
            raise PackageError(f"{source} is too close to the root to be packed whole.", "wide-folder", source)

        def is_left_out(relative):
            return private.is_private_outside(relative[len(target) + 1:])

        self.moved.append((source, target, is_left_out))
        self._walk(source, target, prefix, is_left_out)

    def add_file(self, source, target, prefix):
        """A program outside of the bottle. The bottle tells its place, so that it must be one."""
        if not _is_program(source):
            raise PackageError(f"{source} is not a Windows program.", "no-windows-program", source)
        self._add(source, target, prefix)

    def _is_left_out(self, relative):
        inside = relative[len("drive_c/"):]
        parts = inside.split("/")
        if parts[0].lower() == "users" and len(parts) > 1 and parts[1] not in (self.user, "Public"):
            return True
        return private.is_private(inside)

    def _walk(self, source, relative, prefix, is_left_out):
        if not os.path.isdir(source):
            raise PackageError(f"{source} is not a directory.", "unreadable", source)
        self.contents.add(Entry(self._place(relative, prefix), DIRECTORY))
        pending = [(source, relative)]
        while pending:
            directory, below = pending.pop()
            for item in _scan(directory):
                inside = f"{below}/{item.name}"
                _check_name(inside)
                is_real_directory = item.is_dir(follow_symlinks=False)
                if is_left_out(inside):
                    self.contents.left_out.append((inside, "private"))
                elif is_real_directory:
                    self.contents.add(Entry(self._place(inside, prefix), DIRECTORY))
                    pending.append((item.path, inside))
                else:
                    self._add(item.path, inside, prefix)

    def _place(self, relative, prefix):
        """The path in the package. The user's name does not go along."""
        profile = f"drive_c/users/{self.user}"
        if relative == profile or relative.startswith(profile + "/"):
            relative = layout.PROFILE + relative[len(profile):]
        return f"{prefix}/{relative}"

    def _add(self, path, relative, prefix):
        _check_name(relative)
        status = os.lstat(path)
        place = self._place(relative, prefix)
        if stat.S_ISREG(status.st_mode):
            if name := self.wine.name_of_copy(relative, path):
                self.contents.wine_copies[place[len(prefix) + 1:]] = name
                return
            self.contents.add(Entry(place, FILE, status.st_size, source=path, stamp=stamp(status)))
        elif stat.S_ISLNK(status.st_mode):
            self._add_link(path, relative, prefix)
        else:
            self.contents.left_out.append((relative, "not a file"))

    def _add_link(self, path, relative, prefix):
        target = os.path.realpath(path)
        place = self._place(relative, prefix)
        kind = links.kind(self.bottle_dir, self.data_dir, relative, target)
        in_bottle = place[len(prefix) + 1:]
        if there := self._moved_place(target):
            there = self._place(there, prefix)
            self.contents.add(Entry(place, LINK, target=os.path.relpath(there, os.path.dirname(place))))
        elif kind in (links.SYSTEM_FILE, links.FULL) and (
                name := self.wine.name_of_link(target) or self.wine.name_of_copy(relative, target)):
            self.contents.wine_links[in_bottle] = name
        elif kind == links.SYSTEM_FILE:
            self.contents.system_links[in_bottle] = target
        elif kind == links.FOLDER:
            self.contents.folders[in_bottle] = links.FOLDERS[os.path.basename(relative).lower()]
        elif kind == links.FULL:
            status = os.stat(target)
            self.contents.add(Entry(place, FILE, status.st_size, source=target, stamp=stamp(status)))
        else:
            self.contents.left_out.append((relative, "a link that leads out of the bottle"))

    def _moved_place(self, target):
        """Where the target of a link lies in the bottle of the package; empty if it does not go along."""
        for source, moved, is_left_out in reversed(self.moved):
            if target.startswith(source + "/"):
                relative = os.path.join(moved, target[len(source) + 1:])
                return "" if is_left_out(relative) else relative
        return ""


def _is_program(path):
    try:
        if not stat.S_ISREG(os.stat(path).st_mode) or path.lower().endswith(SUFFIXES):
            return os.path.isfile(path)
        with open(os.open(path, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC), "rb") as file:
            return file.read(2) == b"MZ"
    except OSError as error:
        raise PackageError(f"{path} cannot be read: {error.strerror}", "unreadable", path) from None


def _check_name(path):
    if any(sign in path for sign in "\n\r"):
        raise PackageError(f"A file name with a line break cannot go into a package: {path!r}", "line-break", repr(path))


def _scan(directory):
    try:
        with os.scandir(directory) as items:
            return sorted(items, key=lambda item: os.fsencode(item.name))
    except OSError as error:
        raise PackageError(f"{directory} cannot be read: {error.strerror}", "unreadable", directory) from None
