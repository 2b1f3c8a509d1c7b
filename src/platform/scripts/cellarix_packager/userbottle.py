"""A user's bottle, made from an installed package and brought to its version after an upgrade.

A bottle has ".package" with the version, the list of files and the registry files that it was made from. It is made
under a hidden name outside of the bottles, and gets its name when it is complete.
"""

import fcntl
import hashlib
import os
import pwd
import re
import shutil
from datetime import datetime

from cellarix_packager import layout, place, registry, running, settings
from cellarix_packager.errors import PackageError
from cellarix_packager.package import file_list

VERSION = "version"


class UserBottle:
    def __init__(self, package, environ):
        self.package = package
        self.home = environ.get("HOME") or pwd.getpwuid(os.getuid()).pw_dir
        self.data_dir = layout.data_directory(environ)
        self.user = package.user or _wine_user(environ)
        self.placer = place.Placer(package.shared)
        self.name = self._own_name()
        self.directory = os.path.join(self.data_dir, "bottles", self.name)

    def _own_name(self):
        """A bottle of the package's name that was not made from it is left alone."""
        for name in (self.package.name, self.package.name + ".package"):
            path = os.path.join(self.data_dir, "bottles", name)
            if not os.path.lexists(path) or os.path.isdir(os.path.join(path, layout.RECORD)):
                return name
        raise PackageError(f"There is another bottle named \"{self.package.name}\"; rename or delete it.")

    def provide(self):
        """Makes the bottle, or brings it to the package's version. One process at a time."""
        work = os.path.join(self.data_dir, "packages")
        os.makedirs(work, mode=0o700, exist_ok=True)
        lock = os.open(os.path.join(work, self.name + ".lock"), os.O_CREAT | os.O_RDWR | os.O_CLOEXEC, 0o600)
        try:
            fcntl.flock(lock, fcntl.LOCK_EX)
            if not os.path.isdir(self.directory):
                self._make(os.path.join(work, self.name + ".new"))
            elif self._made_from() != self.package.version and not running.is_running(self.directory):
                Upgrade(self).run()
        finally:
            os.close(lock)

    def _made_from(self):
        return _text(os.path.join(self.directory, layout.RECORD, VERSION))

    def _make(self, fresh):
        shutil.rmtree(fresh, ignore_errors=True)
        try:
            os.makedirs(fresh, mode=0o700)
            self._fill(fresh)
            os.makedirs(os.path.dirname(self.directory), exist_ok=True)
            os.rename(fresh, self.directory)
        except OSError as error:
            shutil.rmtree(fresh, ignore_errors=True)
            raise PackageError(f"The bottle of {self.package.name} cannot be made: {error}") from None

    def _fill(self, fresh):
        directories, files, links = self.package.file_list()
        for path in directories:
            os.makedirs(os.path.join(fresh, self.own_path(path)), exist_ok=True)
        os.makedirs(os.path.join(fresh, "dosdevices"))
        os.symlink("../drive_c", os.path.join(fresh, "dosdevices", "c:"))
        os.symlink("/", os.path.join(fresh, "dosdevices", "z:"))
        for path, (size, _) in files.items():
            if path not in layout.REGISTRIES and path != layout.SETTINGS:
                self.placer.put(path, size, os.path.join(fresh, self.own_path(path)))
        for path, target in links.items():
            put_link(target, os.path.join(fresh, self.own_path(path)))
        self.link_system_files(fresh)
        self._link_folders(fresh)
        for name in layout.REGISTRIES:
            if name in files:
                write(os.path.join(fresh, name), registry.personal(self.shared_text(name), self.user))
        write(os.path.join(fresh, layout.NO_UPDATE[0]), layout.NO_UPDATE[1].decode())
        record = self.own_settings(os.path.join(self.package.shared, layout.SETTINGS))
        created = datetime.now().isoformat(timespec="seconds")
        write(os.path.join(fresh, layout.SETTINGS), settings.dump({"Name": self.name, "Created": created} | record))
        self.write_record(fresh)

    def own_path(self, path):
        """The place of a package's path in this user's bottle."""
        if path == layout.PROFILE or path.startswith(layout.PROFILE + "/"):
            return f"drive_c/users/{self.user}" + path[len(layout.PROFILE):]
        return path

    def own_settings(self, path):
        """The package's settings with this user's profile."""
        return settings.with_profile(settings.read(path), layout.USER, self.user)

    def shared_text(self, name):
        return _text(os.path.join(self.package.shared, name))

    def link_system_files(self, directory):
        """Files of Wine are the machine's own. One that this machine's Wine does not have is left out."""
        for path, target in self.package.system_links.items():
            own = os.path.join(directory, self.own_path(path))
            if os.path.isfile(target) and not os.path.exists(own):
                os.makedirs(os.path.dirname(own), exist_ok=True)
                put_link(target, own)

    def _link_folders(self, directory):
        for path, kind in self.package.folders.items():
            own = os.path.join(directory, self.own_path(path))
            target = self._home_folder(kind, os.path.basename(path))
            if os.path.isdir(target):
                put_link(target, own)
            else:
                os.makedirs(own, exist_ok=True)

    def _home_folder(self, kind, name):
        config = _text(os.path.join(self.home, ".config", "user-dirs.dirs"))
        match = re.search(rf'^XDG_{kind}_DIR="(.+)"$', config, re.M)
        path = match[1].replace("$HOME", self.home) if match else os.path.join(self.home, name)
        # A folder that is the home itself means that there is none.
        return path if os.path.normpath(path) != os.path.normpath(self.home) else ""

    def write_record(self, directory):
        """The version comes last, so that an interrupted upgrade is done again."""
        record = os.path.join(directory, layout.RECORD)
        os.makedirs(record, exist_ok=True)
        write(os.path.join(record, "files.json"), _text(os.path.join(self.package.root, "files.json")))
        for name in (*layout.REGISTRIES, layout.SETTINGS):
            if os.path.exists(os.path.join(self.package.shared, name)):
                write(os.path.join(record, name), self.shared_text(name))
        write(os.path.join(record, VERSION), self.package.version)


class Upgrade:
    """Carries the changes between two versions of a package into a bottle. Files that the user's programs have changed
    or made, and settings that they have written, stay. May be interrupted anywhere and done again."""

    def __init__(self, bottle):
        self.bottle = bottle
        self.record = os.path.join(bottle.directory, layout.RECORD)

    def run(self):
        try:
            old_files, old_links = file_list(os.path.join(self.record, "files.json"))[1:]
            directories, files, links = self.bottle.package.file_list()
            for path in directories:
                os.makedirs(self._own(path), exist_ok=True)
            for path in sorted(files.keys() | old_files.keys()):
                if path not in layout.REGISTRIES and path != layout.SETTINGS:
                    self._upgrade_file(path, old_files.get(path), files.get(path))
            for path, target in links.items():
                if old_links.get(path) != target and (not os.path.lexists(self._own(path)) or
                                                      os.path.islink(self._own(path))):
                    put_link(target, self._own(path))
            self.bottle.link_system_files(self.bottle.directory)
            for name in layout.REGISTRIES:
                if name in files:
                    self._merge_registry(name)
            self._merge_settings()
            self.bottle.write_record(self.bottle.directory)
        except OSError as error:
            raise PackageError(f"The bottle {self.bottle.name} cannot be upgraded: {error}") from None

    def _own(self, path):
        return os.path.join(self.bottle.directory, self.bottle.own_path(path))

    def _upgrade_file(self, path, old, new):
        """`old` and `new` are [size, md5], or None."""
        own = self._own(path)
        is_link = self.bottle.placer.is_link(path, own)
        if not new:
            if is_link or (old and _is_same(own, old)):
                os.unlink(own)
        elif is_link and place.is_shared(path, new[0]):
            pass
        elif old == new and not is_link:
            pass  # what the user has changed or removed stays so
        elif is_link or not os.path.lexists(own) or (old and _is_same(own, old)):
            os.makedirs(os.path.dirname(own), exist_ok=True)
            self.bottle.placer.put(path, new[0], own)

    def _merge_registry(self, name):
        own = os.path.join(self.bottle.directory, name)
        before, now = _text(os.path.join(self.record, name)), self.bottle.shared_text(name)
        if before != now:
            user = self.bottle.user
            write(own, registry.merged(_text(own), registry.personal(before, user), registry.personal(now, user)))

    def _merge_settings(self):
        """Programs come and go with the package; all other settings are the user's."""
        own_path = os.path.join(self.bottle.directory, layout.SETTINGS)
        own = settings.read(own_path)
        before = _programs(self.bottle.own_settings(os.path.join(self.record, layout.SETTINGS)))
        now = _programs(self.bottle.own_settings(os.path.join(self.bottle.package.shared, layout.SETTINGS)))
        programs = {key: value for key, value in _programs(own).items() if key in now or key not in before}
        for key, program in now.items():
            programs[key] = {**programs.get(key, {}), **program} if program != before.get(key) else \
                programs.get(key, program)
        write(own_path, settings.dump(own | {settings.PROGRAMS: programs}))


def _programs(record):
    value = record.get(settings.PROGRAMS)
    return {key: item for key, item in value.items() if isinstance(item, dict)} if isinstance(value, dict) else {}


def _is_same(path, known):
    size, digest = known
    try:
        with open(os.open(path, os.O_RDONLY | os.O_NOFOLLOW | os.O_CLOEXEC), "rb") as file:
            if os.fstat(file.fileno()).st_size != size:
                return False
            found = hashlib.md5(usedforsecurity=False)
            while data := file.read(1 << 20):
                found.update(data)
    except OSError:
        return False
    return found.hexdigest() == digest


def put_link(target, path):
    fresh = path + ".cellarix-new"
    if os.path.lexists(fresh):
        os.unlink(fresh)
    if os.path.isdir(path) and not os.path.islink(path):
        os.rmdir(path)
    os.symlink(target, fresh)
    os.rename(fresh, path)


def write(path, text):
    fresh = path + ".cellarix-new"
    with open(fresh, "w", encoding="utf-8", errors="surrogateescape", newline="") as file:
        file.write(text)
        file.flush()
        os.fsync(file.fileno())
    os.rename(fresh, path)


def _text(path):
    """Empty if the file is missing."""
    try:
        with open(path, encoding="utf-8", errors="surrogateescape", newline="") as file:
            return file.read()
    except FileNotFoundError:
        return ""


def _wine_user(environ):
    """As Wine names the user's profile."""
    name = environ.get("USER") or pwd.getpwuid(os.getuid()).pw_name
    return re.split(r"[/\\]", name)[-1]
