"""A user's bottle, made from an installed package and brought to its version after an upgrade.

A bottle has ".package" with its origin, and the version, the list of files and the registry files that it was made from.
It is made outside of the bottles and gets its place when it is complete.
"""

import fcntl
import os
import pwd
import re
import shutil
import sys
import time
from datetime import datetime
from itertools import chain, count

from cellarix_launcher.bottle import data_directory
from cellarix_launcher.origin import RECORD, SECOND, VERSION

from cellarix_packager import bottlefiles, layout, origin, place, registry, running, settings, upgrade, winefiles
from cellarix_packager import progress as progresses
from cellarix_packager.errors import PackageError
from cellarix_packager.package import BESIDE_DRIVE, Package

WAIT_SECONDS = 3
IDLE_SECONDS = 5  # Wine's server stays for 3 s after the last program
TRIES = 3
RESERVE = 64 << 20  # bytes that stay free on the disk


class UserBottle:
    """`window` is the command of the window that shows the progress."""

    def __init__(self, package, environ, window=("cellarix-bottle-progress",)):
        self.window = [*window, package.title]
        self.package = package
        self.environ = environ
        self.home = environ.get("HOME") or pwd.getpwuid(os.getuid()).pw_dir
        self.data_dir = data_directory(environ)
        self.login = package.user or _wine_user(environ)
        self.placer = place.Placer(package.shared)
        self.wine = None
        self.is_new = False
        self._find()

    def _find(self):
        """The profile of a bottle that is there keeps its name, whoever starts the program."""
        self.name = origin.own_bottle(self.data_dir, self.package.name) or self._free_name()
        self.directory = os.path.join(self.data_dir, "bottles", self.name)
        known = origin.read(self.directory)
        self.id = known["id"] if known else ""
        self.user = known["user"] if known and known["user"] else self.login

    def _free_name(self):
        """A bottle of the package's name that is none of it is left alone."""
        second = self.package.name + SECOND
        names = chain((self.package.name, second), (f"{second}-{number}" for number in count(2)))
        return next(name for name in names if not os.path.lexists(os.path.join(self.data_dir, "bottles", name)))

    def notice(self):
        """What a user should know who starts the program for the first time, as an error; None for nothing."""
        runner = self.package.runner
        if not self.is_new or not runner or winefiles.runner_directory(self.data_dir, runner):
            return None
        return PackageError(f"The Wine runner \"{runner}\" is not installed, so that the program starts with the Wine of this "
                            "machine. If it does not work, install the runner in the configuration of its bottle.",
                            "no-runner", runner)

    def provide(self):
        """Makes the bottle, or brings it to the package's version. One process at a time; raises if another one takes
        long. A bottle that cannot be made leaves nothing."""
        work = os.path.join(self.data_dir, "packages")
        os.makedirs(work, mode=0o700, exist_ok=True)
        lock = _locked(os.path.join(work, self.package.name + ".lock"), WAIT_SECONDS)
        if lock < 0:
            raise PackageError(f"{self.package.title} is being set up by another start. Try again in a while.",
                               "being-prepared", self.package.title)
        try:
            self._find()
            _remove_left(work)
            if not os.path.isdir(self.directory):
                self._make(os.path.join(work, self.package.name + ".new"))
            elif not self.is_current():
                self._upgrade()
            elif any(self._missing_wine_files(self.directory)):  # Wine for 32 bits may be new
                self._add_wine_files()
            if not self.id:
                self.id = origin.write(self.directory, self.package.name, "", self.user, self.name)
            origin.note(self.data_dir, self.package.name, self.name, self.id)
        finally:
            os.close(lock)

    def _upgrade(self):
        """The shared files are those of the new version already, so that nothing starts in a bottle of the old one."""
        try:
            with running.Alone(self.name, self.directory, self.environ, IDLE_SECONDS, running.UPGRADE):
                upgrade.Upgrade(self).run()
        except PackageError as error:
            if error.cause != "running":
                raise
            raise PackageError(f"{self.package.title} has been updated. Close it first, then start it again.", "close-first",
                               self.package.title) from None

    def _add_wine_files(self):
        """While programs run, the bottle stays as it is until the next start."""
        try:
            alone = running.Alone(self.name, self.directory, self.environ, 0, running.UPGRADE)
        except PackageError as error:
            print(f"{self.name} gets no files of Wine now: {error}", file=sys.stderr)
            return
        try:
            with alone:
                self.check_room({}, self.directory)
                with self.shown(progresses.UPDATE, {}, self.directory):
                    self.link_system_files(self.directory)
        except OSError as error:
            raise PackageError(f"The bottle {self.name} cannot be upgraded: {error}", "not-upgraded", str(error)) from None

    def is_current(self):
        """Whether the bottle is there and of the package's version."""
        return self._made_from() == self.package.build

    def _made_from(self):
        try:
            return bottlefiles.text(os.path.join(self.directory, RECORD, VERSION))
        except OSError:
            return ""

    def settled(self, work):
        """Does `work` with the package, and again if dpkg has put another version into its place meanwhile."""
        for _ in range(TRIES):
            try:
                work()
                error = None
            except OSError as failure:
                error = failure
            if self.package.is_current():
                if error:
                    raise error
                return
            self.package, self.wine = Package(self.package.root), None
        raise PackageError(f"{self.package.title} is being installed. Try again in a while.", "being-installed",
                           self.package.title)

    def _make(self, fresh):
        try:
            self.settled(lambda: self._make_in(fresh))
            os.makedirs(os.path.dirname(self.directory), exist_ok=True)
            os.rename(fresh, self.directory)
            self.is_new = True
        except OSError as error:
            raise PackageError(f"The bottle of {self.package.name} cannot be made: {error}", "not-made",
                               str(error)) from None
        finally:
            shutil.rmtree(fresh, ignore_errors=True)

    def _make_in(self, fresh):
        shutil.rmtree(fresh, ignore_errors=True)
        os.makedirs(fresh, mode=0o700)
        files = self.package.file_list()[1]
        self.check_room(files, fresh)
        with self.shown(progresses.MAKE, files, fresh):
            self._fill(fresh)

    def check_room(self, files, directory):
        """Raises before any work if `files` do not fit on the disk of `directory`."""
        disk, wine = os.statvfs(directory), self._wine_room(directory)
        free = disk.f_bavail * disk.f_frsize
        needed = self.placer.room(files) + wine + RESERVE
        if files and wine + RESERVE < free < needed and self.placer.try_clone(next(iter(files)), directory):
            return
        if free < needed:
            raise PackageError(f"The disk has not enough room: {self.package.title} needs {needed - free >> 20} MiB more.",
                               "no-room", f"{needed - free >> 20}")

    def _wine_room(self, directory):
        return sum(self.placer.wine_work(source, path, as_link) for path, source, as_link in self._missing_wine_files(directory))

    def shown(self, work, files, directory):
        """Shows the progress of placing `files` and those of Wine, as a context."""
        total = self.placer.room(files) + self._wine_room(directory)
        self.placer.progress = progresses.Progress(self.window, work, total, self.environ)
        return self.placer.progress

    def _fill(self, fresh):
        directories, files, links = self.package.file_list()
        for path in directories:
            os.makedirs(os.path.join(fresh, self.own_path(path)), exist_ok=True)
        os.makedirs(os.path.join(fresh, "dosdevices"))
        os.symlink("../drive_c", os.path.join(fresh, "dosdevices", "c:"))
        os.symlink("/", os.path.join(fresh, "dosdevices", "z:"))
        for path, (size, _) in files.items():
            if path not in BESIDE_DRIVE:
                self.placer.put(path, size, os.path.join(fresh, self.own_path(path)))
        for path, target in links.items():
            bottlefiles.put_link(self.own_target(path, target), os.path.join(fresh, self.own_path(path)))
        self.link_system_files(fresh)
        self._link_folders(fresh)
        for name in layout.REGISTRIES:
            if name in self.package.texts:
                bottlefiles.write(os.path.join(fresh, name), registry.personal(self.package.texts[name], self.user))
        bottlefiles.write(os.path.join(fresh, layout.NO_UPDATE[0]), layout.NO_UPDATE[1].decode())
        record = self.own_settings(self.package.settings)
        created = datetime.now().isoformat(timespec="seconds")
        bottlefiles.write(os.path.join(fresh, layout.SETTINGS), settings.dump({"Name": self.name, "Created": created} | record))
        self.write_record(fresh)

    def own_path(self, path):
        """The place of a package's path in this user's bottle."""
        if path == layout.PROFILE or path.startswith(layout.PROFILE + "/"):
            return f"drive_c/users/{self.user}" + path[len(layout.PROFILE):]
        return path

    def own_target(self, path, target):
        """Where the package's link `path` leads in this user's bottle, relative to it as `target` is."""
        there = os.path.normpath(os.path.join(os.path.dirname(path), target))
        return os.path.relpath(self.own_path(there), os.path.dirname(self.own_path(path)))

    def own_settings(self, record):
        """The package's settings with this user's profile."""
        return settings.with_profile(record, layout.USER, self.user)

    def link_system_files(self, directory):
        """Files of Wine are the machine's own. One that this machine's Wine does not have is left out."""
        for path, target in self.package.system_links.items():
            own = os.path.join(directory, self.own_path(path))
            if os.path.isfile(target) and not os.path.exists(own) and bottlefiles.made_directory(os.path.dirname(own)):
                bottlefiles.put_link(target, own)
        for path, source, as_link in self._missing_wine_files(directory):
            own = os.path.join(directory, self.own_path(path))
            if bottlefiles.made_directory(os.path.dirname(own)):
                self.placer.put_wine_file(source, path, own, as_link)

    def _missing_wine_files(self, directory):
        """(path, file of the machine's Wine, whether it becomes a link) of those that the bottle does not have."""
        if not self.wine:
            self.wine = winefiles.WineFiles(self.data_dir, self.package.settings.get("Runner"))
        for names, as_link in ((self.package.wine_links, True), (self.package.wine_copies, False)):
            for path, name in names.items():
                source = self.wine.find(name)
                if source and not os.path.exists(os.path.join(directory, self.own_path(path))):
                    yield path, source, as_link

    def _link_folders(self, directory):
        for path, kind in self.package.folders.items():
            own = os.path.join(directory, self.own_path(path))
            target = self.home_folder(kind, os.path.basename(path))
            if os.path.isdir(target):
                bottlefiles.put_link(target, own)
            else:
                os.makedirs(own, exist_ok=True)

    def home_folder(self, kind, name):
        config = bottlefiles.text(os.path.join(self.home, ".config", "user-dirs.dirs"))
        match = re.search(rf'^XDG_{kind}_DIR="(.+)"$', config, re.M)
        path = match[1].replace("$HOME", self.home) if match else os.path.join(self.home, name)
        # A folder that is the home itself means that there is none.
        return path if os.path.normpath(path) != os.path.normpath(self.home) else ""

    def write_record(self, directory):
        """The version comes last, so that an interrupted upgrade is done again."""
        record = os.path.join(directory, RECORD)
        os.makedirs(record, exist_ok=True)
        self.id = origin.write(directory, self.package.name, self.id, self.user, self.name)
        for name, text in self.package.texts.items():
            bottlefiles.write(os.path.join(record, name), text)
        bottlefiles.write(os.path.join(record, VERSION), self.package.build)


def _locked(path, seconds):
    """The descriptor of the locked file; -1 if another process has the lock for longer."""
    lock = os.open(path, os.O_CREAT | os.O_RDWR | os.O_CLOEXEC, 0o600)
    end = time.monotonic() + seconds
    while True:
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
            return lock
        except BlockingIOError:
            if time.monotonic() >= end:
                os.close(lock)
                return -1
            time.sleep(0.05)


def _remove_left(work):
    """Removes what killed processes have left of the bottles of any package."""
    for name in os.listdir(work):
        if name.endswith(".new") and os.path.isdir(os.path.join(work, name)):
            lock = _locked(os.path.join(work, name[:-len("new")] + "lock"), 0)
            if lock >= 0:
                shutil.rmtree(os.path.join(work, name), ignore_errors=True)
                os.close(lock)


def _wine_user(environ):
    """As Wine names the user's profile."""
    name = environ.get("USER") or pwd.getpwuid(os.getuid()).pw_name
    return re.split(r"[/\\]", name)[-1]
