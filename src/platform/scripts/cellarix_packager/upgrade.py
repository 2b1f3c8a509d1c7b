"""Brings a user's bottle to another version of the package that it was made from."""

import hashlib
import json
import os
import stat
import sys

from cellarix_launcher.bottle import read_file
from cellarix_launcher.origin import RECORD

from cellarix_packager import bottlefiles, layout, package, place, registry, running, settings, winefiles
from cellarix_packager import progress as progresses
from cellarix_packager.errors import PackageError

PENDING = "pending.json"  # the lists of versions whose upgrade has begun and not ended


class Upgrade:
    """Carries the changes between two versions of a package into a bottle. Files that the user's programs have changed
    or made, and settings that they have written, stay. May be interrupted anywhere and done again, also with a version
    after that."""

    def __init__(self, bottle):
        self.bottle = bottle
        self.record = os.path.join(bottle.directory, RECORD)

    def run(self):
        try:
            self.bottle.settled(self._carry_all)
            if running.is_running(self.bottle.directory):
                raise running.refusal()  # Wine would write its own registry over this; the next start goes on
            for name in layout.REGISTRIES:
                if name in self.bottle.package.texts:
                    self._merge_registry(name)
            self._merge_settings()
            self.bottle.write_record(self.bottle.directory)
            bottlefiles.remove(os.path.join(self.record, PENDING))
        except OSError as error:
            raise PackageError(f"The bottle {self.bottle.name} cannot be upgraded: {error}", "not-upgraded",
                               str(error)) from None

    def _carry_all(self):
        new = self.bottle.package.file_list()
        pending = self._lists(PENDING)
        old = _joined(self._lists(package.FILES) + pending)
        changed = {path: item for path, item in new[1].items() if [item] != old[1].get(path)}
        self.bottle.check_room(changed, self.bottle.directory)
        if new not in pending:
            lists = [dict(zip(("directories", "files", "links"), item, strict=True)) for item in (*pending, new)]
            os.makedirs(self.record, exist_ok=True)
            bottlefiles.write(os.path.join(self.record, PENDING), json.dumps(lists))
        with self.bottle.shown(progresses.UPDATE, changed, self.bottle.directory):
            self._carry(old, *new)

    def _lists(self, name):
        """The lists of files in a record of the bottle. A damaged one is none: what it has told is the user's then."""
        path = os.path.join(self.record, name)
        try:
            value = package.parsed(read_file(path, package.LIMIT), path)
            return [package.file_list(item, path) for item in (value if name == PENDING and isinstance(value, list) else [value])]
        except FileNotFoundError:
            return []
        except (OSError, ValueError, PackageError) as error:
            print(f"without its record: {error}", file=sys.stderr)
            return []

    def _carry(self, old, directories, files, links):
        """Directories, files and links. May be cancelled by the progress."""
        # First what goes: a file of that name may become a directory, and the other way round.
        self._remove_dropped(old, set(directories) | files.keys() | links.keys(), files.keys(), links.keys())
        for path in directories:
            bottlefiles.made_directory(self._own(path))
        for path, new in sorted(files.items()):
            if path not in package.BESIDE_DRIVE:
                self._upgrade_file(path, old[1].get(path, []), new)
        for path, target in links.items():
            self._upgrade_link(path, old[2].get(path, []), target)
        self.bottle.link_system_files(self.bottle.directory)

    def _own(self, path):
        return os.path.join(self.bottle.directory, self.bottle.own_path(path))

    def _is_any(self, path, known):
        """Whether the file has one of the contents."""
        return any(_is_same(self._own(path), item, self.bottle.placer.progress) for item in known)

    def _remove_dropped(self, old, kept, files, links):
        directories, old_files, old_links = old
        for path in old_files.keys() - files - set(package.BESIDE_DRIVE):
            if self.bottle.placer.is_link(path, self._own(path)) or self._is_any(path, old_files[path]):
                os.unlink(self._own(path))
        for path in old_links.keys() - links:
            if self._leads_to_any(path, old_links[path]):
                os.unlink(self._own(path))
        changed = (files | links) & directories
        for path in sorted(directories - kept | changed, key=len, reverse=True):
            if not os.path.islink(self._own(path)):
                _remove_empty(self._own(path))

    def _leads_to_any(self, path, targets):
        return any(_leads_to(self._own(path), self.bottle.own_target(path, target)) for target in targets)

    def _upgrade_link(self, path, known, new):
        """`known` has the targets in older versions. A link that the user or a program has made stays."""
        own = self._own(path)
        is_free = not os.path.lexists(own) or os.path.islink(own) and (
            self.bottle.placer.is_link(path, own) or winefiles.is_builtin(own) or
            self._leads_to_any(path, known))
        if known != [new] and is_free and bottlefiles.made_directory(os.path.dirname(own)):
            bottlefiles.put_link(self.bottle.own_target(path, new), own)

    def _upgrade_file(self, path, known, new):
        """`known` has the contents of older versions, each [size, md5] as `new`. A file of Wine's own is none of the
        user's."""
        own = self._own(path)
        is_link = self.bottle.placer.is_link(path, own)
        if is_link and place.is_shared(path, new[0]):
            pass
        elif known == [new] and not is_link:
            pass  # what the user has changed or removed stays so
        elif is_link or not os.path.lexists(own) or (self._is_any(path, known) if known else winefiles.is_builtin(own)):
            if bottlefiles.made_directory(os.path.dirname(own)):
                self.bottle.placer.put(path, new[0], own)

    def _merge_registry(self, name):
        own = os.path.join(self.bottle.directory, name)
        before, now = self._before(name), self.bottle.package.texts[name]
        if before != now:
            user = self.bottle.user
            bottlefiles.write(own, registry.merged(bottlefiles.text(own), registry.personal(before, user), registry.personal(now, user)))

    def _before(self, name):
        """Empty for a record that is missing or damaged."""
        try:
            return read_file(os.path.join(self.record, name), package.LIMIT).decode("utf-8", "surrogateescape")
        except (OSError, ValueError):
            return ""

    def _merge_settings(self):
        """Programs come and go with the package, and what of them the user has not changed follows it; all other
        settings are the user's."""
        own_path = os.path.join(self.bottle.directory, layout.SETTINGS)
        own = settings.read(own_path)
        try:
            record = settings.parsed(self._before(layout.SETTINGS), self.record)
        except PackageError:
            record = {}
        before, now = (_programs(self.bottle.own_settings(item)) for item in (record, self.bottle.package.settings))
        programs = {key: value for key, value in _programs(own).items() if key in now or key not in before}
        for key, program in now.items():
            own_program, old = programs.get(key), before.get(key, {})
            programs[key] = program if own_program is None else own_program | {
                field: value for field, value in program.items()
                if value != old.get(field) and own_program.get(field) == old.get(field)}
        bottlefiles.write(own_path, settings.dump(own | {settings.PROGRAMS: programs}))


def _joined(lists):
    """The directories, and what each file and link may be, of several versions of a package."""
    directories, files, links = set(), {}, {}
    for some, *others in lists:
        directories.update(some)
        for known, found in zip((files, links), others, strict=True):
            for path, item in found.items():
                if item not in known.setdefault(path, []):
                    known[path].append(item)
    return directories, files, links


def _programs(record):
    value = record.get(settings.PROGRAMS)
    return {key: item for key, item in value.items() if isinstance(item, dict)} if isinstance(value, dict) else {}


def _is_same(path, known, progress):
    size, digest = known
    try:
        with open(os.open(path, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC), "rb") as file:
            status = os.fstat(file.fileno())
            if not stat.S_ISREG(status.st_mode) or status.st_size != size:
                return False
            found = hashlib.md5(usedforsecurity=False)
            while data := file.read(1 << 20):
                found.update(data)
                progress(0)  # it may be cancelled
    except OSError:
        return False
    return found.hexdigest() == digest


def _leads_to(path, target):
    try:
        return os.readlink(path) == target
    except OSError:
        return False


def _remove_empty(directory):
    try:
        os.rmdir(directory)
    except OSError:
        pass  # it has files of the user
