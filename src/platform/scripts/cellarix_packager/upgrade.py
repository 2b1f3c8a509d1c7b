"""Brings a user's bottle to another version of the package that it was made from."""

import hashlib
import os

from cellarix_packager import bottlefiles, layout, place, registry, running, settings, winefiles
from cellarix_packager import progress as progresses
from cellarix_packager.errors import PackageError
from cellarix_packager.package import file_list


class Upgrade:
    """Carries the changes between two versions of a package into a bottle. Files that the user's programs have changed
    or made, and settings that they have written, stay. May be interrupted anywhere and done again."""

    def __init__(self, bottle):
        self.bottle = bottle
        self.record = os.path.join(bottle.directory, layout.RECORD)

    def run(self):
        try:
            old = file_list(os.path.join(self.record, "files.json"))
            directories, files, links = self.bottle.package.file_list()
            changed = {path: new for path, new in files.items() if new != old[1].get(path)}
            self.bottle.check_room(changed, self.bottle.directory)
            with self.bottle.shown(progresses.UPDATE, changed, self.bottle.directory):
                self._carry(old, directories, files, links)
            if running.is_running(self.bottle.directory):
                return  # Wine would write its own registry over this; the next start goes on
            for name in layout.REGISTRIES:
                if name in files:
                    self._merge_registry(name)
            self._merge_settings()
            self.bottle.write_record(self.bottle.directory)
        except OSError as error:
            raise PackageError(f"The bottle {self.bottle.name} cannot be upgraded: {error}", "not-upgraded",
                               str(error)) from None

    def _carry(self, old, directories, files, links):
        """Directories, files and links. May be cancelled by the progress."""
        # First what goes: a file of that name may become a directory, and the other way round.
        self._remove_dropped(old, set(directories) | files.keys() | links.keys(), files.keys(), links.keys())
        for path in directories:
            bottlefiles.made_directory(self._own(path))
        for path, new in sorted(files.items()):
            if path not in layout.REGISTRIES and path != layout.SETTINGS:
                self._upgrade_file(path, old[1].get(path), new)
        for path, target in links.items():
            self._upgrade_link(path, old[2].get(path), target)
        self.bottle.link_system_files(self.bottle.directory)

    def _own(self, path):
        return os.path.join(self.bottle.directory, self.bottle.own_path(path))

    def _remove_dropped(self, old, kept, files, links):
        directories, old_files, old_links = old
        for path in old_files.keys() - files - {*layout.REGISTRIES, layout.SETTINGS}:
            if self.bottle.placer.is_link(path, self._own(path)) or _is_same(self._own(path), old_files[path]):
                os.unlink(self._own(path))
        for path in old_links.keys() - links:
            if _leads_to(self._own(path), self.bottle.own_target(path, old_links[path])):
                os.unlink(self._own(path))
        changed = (files | links) & set(directories)
        for path in sorted(set(directories) - kept | changed, key=len, reverse=True):
            if not os.path.islink(self._own(path)):
                _remove_empty(self._own(path))

    def _upgrade_link(self, path, old, new):
        own = self._own(path)
        is_free = not os.path.lexists(own) or os.path.islink(own)
        if old != new and is_free and bottlefiles.made_directory(os.path.dirname(own)):
            bottlefiles.put_link(self.bottle.own_target(path, new), own)

    def _upgrade_file(self, path, old, new):
        """`old` and `new` are [size, md5]; `old` may be None. A file of Wine's own is none of the user's."""
        own = self._own(path)
        is_link = self.bottle.placer.is_link(path, own)
        if is_link and place.is_shared(path, new[0]):
            pass
        elif old == new and not is_link:
            pass  # what the user has changed or removed stays so
        elif is_link or not os.path.lexists(own) or (_is_same(own, old) if old else winefiles.is_builtin(own)):
            if bottlefiles.made_directory(os.path.dirname(own)):
                self.bottle.placer.put(path, new[0], own)

    def _merge_registry(self, name):
        own = os.path.join(self.bottle.directory, name)
        before, now = bottlefiles.text(os.path.join(self.record, name)), self.bottle.shared_text(name)
        if before != now:
            user = self.bottle.user
            bottlefiles.write(own, registry.merged(bottlefiles.text(own), registry.personal(before, user), registry.personal(now, user)))

    def _merge_settings(self):
        """Programs come and go with the package, and what of them the user has not changed follows it; all other
        settings are the user's."""
        own_path = os.path.join(self.bottle.directory, layout.SETTINGS)
        own = settings.read(own_path)
        before = _programs(self.bottle.own_settings(os.path.join(self.record, layout.SETTINGS)))
        now = _programs(self.bottle.own_settings(os.path.join(self.bottle.package.shared, layout.SETTINGS)))
        programs = {key: value for key, value in _programs(own).items() if key in now or key not in before}
        for key, program in now.items():
            own_program, old = programs.get(key), before.get(key, {})
            programs[key] = program if own_program is None else own_program | {
                field: value for field, value in program.items()
                if value != old.get(field) and own_program.get(field) == old.get(field)}
        bottlefiles.write(own_path, settings.dump(own | {settings.PROGRAMS: programs}))


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
