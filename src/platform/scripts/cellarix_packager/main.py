"""The steps of packing: arguments, request, list of contents, limits and free room, archive.

usage: bottles_packager.py BOTTLE --savedir DIRECTORY [--compression xz|zstd]
       bottles_packager.py --list BOTTLE   (see listing; these are two words, while packing needs more)

Prints what it does; lines "::progress:: N" tell the progress in percent, and "packager: cause WORD: SUBJECT" the reason
of a failure for callers that translate it. Exits with 0 when DIRECTORY has the package
PACKAGE_VERSION_ARCHITECTURE.deb, else with 1 after a sentence on stderr. An interrupted run leaves nothing.
"""

import argparse
import errno
import json
import os
import pwd
import re
import signal
import sys

from cellarix_launcher.bottle import bottle_directory, data_directory, read_file

from cellarix_packager import (archive, contents, debian, icons, layout, listing, menu, private, registry,
                               request, running, savefile, settings, winefiles)
from cellarix_packager.driveplaces import DrivePlaces
from cellarix_packager.errors import PackageError
from cellarix_packager.estimate import compressed_size

IDLE_SECONDS = 10
REGISTRY_LIMIT = 256 << 20


def main(argv):
    if len(argv) == 2 and argv[0] == "--list":
        return _ended(lambda: listing.main(argv[1:], Packing), "the bottle")
    parser = argparse.ArgumentParser(prog="bottles_packager.py", allow_abbrev=False,
                                     usage="bottles_packager.py BOTTLE --savedir DIRECTORY [--compression xz|zstd]")
    parser.add_argument("--savedir", required=True)
    parser.add_argument("--compression", choices=tuple(archive.SUFFIXES), default="xz")
    if argv in ([], ["-h"], ["--help"]):
        parser.parse_args(argv)
    options = parser.parse_args(argv[1:])
    options.bottle = argv[0]  # its name may begin as an option does
    sys.stdout.reconfigure(line_buffering=True)
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, _interrupt)
    return _ended(lambda: print("packed:", pack(options), flush=True), options.savedir)


def _ended(work, place):
    """The exit code of `work`, whose errors are told."""
    try:
        return work() or 0
    except PackageError as error:
        _tell(error)
    except OSError as error:
        name = error.filename or place
        _tell(PackageError(f"{name}: {error.strerror}", cause_of(error, place), name))
    return 1


def cause_of(error, place):
    if error.errno in (errno.ENOSPC, errno.EDQUOT):
        return "compressor"
    if error.filename in (None, place):
        return "not-writable"
    return "changed" if error.errno == errno.ENOENT else "file-error"


def _tell(error):
    if error.cause:
        print(_line(f"packager: cause {error.cause}: {error.subject}"), flush=True)
    print(error, file=sys.stderr)


def _interrupt(number, _frame):
    sys.exit(128 + number)


def pack(options):
    """Returns the path of the package."""
    bottle_dir = bottle_directory(options.bottle, os.environ)
    if bottle_dir is None:
        raise PackageError(f"There is no bottle named \"{options.bottle}\".", "no-bottle", options.bottle)
    archive.check_tools(options.compression)
    wanted = request.load(bottle_dir)
    with running.Alone(options.bottle, bottle_dir, os.environ, IDLE_SECONDS, running.PACKING):
        return _packed(options, wanted, bottle_dir)


def _packed(options, wanted, bottle_dir):
    print(f"listing the files of {options.bottle}", flush=True)
    packing = Packing(wanted, bottle_dir)
    entries = packing.entries()
    total = archive.check_limits(entries)
    _check_room(options.savedir, entries, total)
    print(f"packing {len(entries)} files and directories, {total >> 20} MiB", flush=True)
    with savefile.SaveFile(options.savedir, wanted.file_name) as file:
        archive.write(file.fd, entries, packing.file_list, packing.control_files, options.compression, packing.time,
                      Progress(total))
        if running.is_running(bottle_dir):  # by other means than those that the lock holds off
            raise running.refusal()
        file.commit()
        menu.note_plain(bottle_dir, packing.plain)
        print("::progress:: 100", flush=True)
        return file.path


def _check_room(directory, entries, total):
    """Compressed, it takes less; how much is known exactly only afterwards."""
    disk = os.statvfs(directory)
    free = disk.f_bavail * disk.f_frsize
    needed = total if total <= free else compressed_size(entries, total) * 11 // 10
    if needed > free:
        raise PackageError(f"{directory} has not enough room: the package may need {needed >> 20} MiB, "
                           f"{free >> 20} MiB are free.", "no-room", f"{needed >> 20}")


class Progress:
    """Prints a line for each half percent, up to 99."""

    def __init__(self, total):
        self.total = max(total, 1)
        self.halves = -1

    def __call__(self, written):
        halves = min(198 * written // self.total, 198)
        if halves > self.halves:
            self.halves = halves
            print(f"::progress:: {halves / 2:.1f}", flush=True)


class Packing:
    """Puts the contents of one package together. `time` is that of the newest file, for a package must not depend on
    when it is made; SOURCE_DATE_EPOCH overrides it."""

    def __init__(self, wanted, bottle_dir):
        self.request = wanted
        self.bottle_dir = bottle_dir
        self.user = self._wine_user()
        self.places = private.Places(os.environ.get("USER") or pwd.getpwuid(os.getuid()).pw_name, self.user,
                                     os.path.expanduser("~"))
        self.contents = contents.Contents()
        self.root = layout.program_root(wanted.package)
        self.prefix = self.root + "/bottle"
        self.places_in_drive = None
        self.runner = ""  # one that is not the machine's Wine
        self.time = 0
        self.size = 0
        self.who = debian.packer(os.environ)
        self.with_all_icons = True
        self.plain = ""  # the program whose menu entry is named as the package

    def entries(self):
        """Everything but the list of files, which is the last."""
        own_settings = settings.read(os.path.join(self.bottle_dir, layout.SETTINGS))
        data_dir = data_directory(os.environ)
        walk = contents.BottleWalk(self.contents, self.bottle_dir, data_dir, self.user,
                                   winefiles.WineFiles(data_dir, own_settings.get("Runner")))
        if winefiles.runner_directory(data_dir, own_settings.get("Runner")):
            self.runner = own_settings["Runner"]
        walk.add_drive(self.prefix)
        self.places_in_drive = DrivePlaces(self.contents.entries, self.prefix)
        for source in self.request.sources:
            self._add_source(walk, source)
        self._add_registry()
        record = settings.for_package(own_settings, self.request, self.bottle_dir, self.places, self.user)
        self.plain = menu.plain_program(self.bottle_dir, record[settings.PROGRAMS])
        menu.add(self.request, record[settings.PROGRAMS], self.bottle_dir, self.contents.add)
        if self.with_all_icons:
            icons.add_smaller(self.request.sources, record[settings.PROGRAMS], self.contents)
        self.contents.add(settings.entry(record, self.prefix))
        self.time = self._newest()
        made = [debian.run_script(self.request), self._package_record()]
        made += debian.documents(self.request, self.who, self.time)
        for entry in made:
            self.contents.add(entry)
        entries = self.contents.in_order()
        self.size = sum(-(-entry.size // 4096) * 4096 or 4096 for entry in entries)
        self._report()
        return entries

    def _wine_user(self):
        """The name of the profile in the bottle, which Wine takes from the user's."""
        text = self._read_text("system.reg")
        match = re.search(r'"ProfileImagePath"="C:\\\\users\\\\((?:[^"\\]|\\x[0-9a-f]+)+)"', text)
        name = re.sub(r"\\x([0-9a-f]{1,4})", lambda sign: chr(int(sign[1], 16)), match[1]) if match else ""
        return name or os.environ.get("USER") or pwd.getpwuid(os.getuid()).pw_name

    def _read_text(self, name):
        path = os.path.join(self.bottle_dir, name)
        try:
            return read_file(path, REGISTRY_LIMIT).decode("utf-8", "surrogateescape")
        except (OSError, ValueError) as error:
            raise PackageError(f"{path} cannot be read: {error}", "unreadable", path) from None

    def _add_registry(self):
        for name in layout.REGISTRIES:
            if name != "userdef.reg" or os.path.exists(os.path.join(self.bottle_dir, name)):
                text, left = registry.cleaned(self._read_text(name), self.user, self.places)
                if left:
                    self.contents.left_out.append((name, f"{left} private keys and values"))
                self.contents.add(contents.text_entry(f"{self.prefix}/{name}", text.encode("utf-8", "surrogateescape")))

    def _add_source(self, walk, source):
        """Copies a program from outside of the bottle into drive C."""
        if source.in_bottle:
            return
        path, directory = os.path.realpath(source.path), os.path.realpath(source.directory) if source.directory else ""
        inside = path.startswith(directory.rstrip("/") + "/") if directory else False
        relative = os.path.relpath(path, directory) if inside else os.path.basename(source.path)
        wanted = source.target[:-len(relative)].rstrip("/") if source.target.endswith("/" + relative) else ""
        if directory:
            folder = self.places_in_drive.of(directory, wanted if inside else "")
            walk.add_tree(directory, folder, self.prefix)
        if not inside:
            folder = self.places_in_drive.of(path, wanted)
            walk.add_file(path, f"{folder}/{relative}", self.prefix)
        source.target = f"{folder}/{relative}"

    def _newest(self):
        if os.environ.get("SOURCE_DATE_EPOCH", "").isdecimal():
            return int(os.environ["SOURCE_DATE_EPOCH"])
        paths = [entry.source for entry in self.contents.entries.values() if entry.source]
        paths += [os.path.join(self.bottle_dir, name) for name in
                  ("system.reg", "user.reg", layout.SETTINGS, "pkgcfg/pkginfo.json", "pkgcfg/pkgsrc.json")]
        return max(archive.EARLIEST, *(int(os.stat(path).st_mtime) for path in paths))

    def _package_record(self):
        record = {"format": layout.FORMAT, "package": self.request.package, "version": self.request.version,
                  "name": self.request.name, "user": "steamuser" if self.user == "steamuser" else "",
                  "runner": self.runner, "systemLinks": self.contents.system_links,
                  "wineLinks": self.contents.wine_links, "wineCopies": self.contents.wine_copies, "folders": self.contents.folders}
        return contents.text_entry(self.root + "/package.json", _json(record))

    def file_list(self, sums):
        """Of the bottle: the directories, and the files with size and MD5 sum."""
        start = len(self.prefix) + 1
        directories, files, found_links = [], {}, {}
        for entry in self.contents.in_order():
            if not entry.path.startswith(self.prefix + "/"):
                continue
            if entry.kind == contents.FILE:
                files[entry.path[start:]] = [entry.size, sums[entry.path]]
            elif entry.kind == contents.LINK:
                found_links[entry.path[start:]] = entry.target
            else:
                directories.append(entry.path[start:])
        return contents.text_entry(self.root + "/files.json", _json(
            {"format": layout.FORMAT, "directories": directories, "files": files, "links": found_links}))

    def control_files(self, sums):
        return {"control": debian.control(self.request, self.size, self.who), "md5sums": debian.md5sums(sums)}

    def _report(self):
        """Tells what stays at home, a line for each directory, and how much of each folder goes along."""
        groups = {}
        for path, reason in self.contents.left_out:
            groups.setdefault((os.path.dirname(path), reason), []).append(path)
        for (directory, reason), paths in sorted(groups.items()):
            what = paths[0] if len(paths) == 1 else f"{len(paths)} entries of {directory}"
            print(_line(f"left out ({reason}): {what}"))
        if named := len(self.contents.wine_links) + len(self.contents.wine_copies):
            print(f"stays: {named} files of Wine, which each machine has")
        sizes = {}
        for entry in self.contents.entries.values():
            folder = "/".join(entry.path[len(self.prefix) + 1:].split("/")[:2])
            if entry.path.startswith(self.prefix + "/drive_c/"):
                sizes[folder] = sizes.get(folder, 0) + entry.size
        for folder, size in sorted(sizes.items()):
            print(_line(f"goes along: {folder}, {-(-size // (1 << 20))} MiB"))


def _line(text):
    """A name from a bottle cannot begin a line of its own, which callers would take for progress."""
    return "".join("?" if c in "\n\r\v\f\x1b\x85\u2028\u2029" else c for c in text)


def _json(value):
    return json.dumps(value, indent=0, sort_keys=True, ensure_ascii=True) + "\n"
