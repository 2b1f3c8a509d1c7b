"""An installed package as its programs see it."""

import hashlib
import json
import os

from cellarix_launcher.bottle import read_file
from cellarix_launcher.origin import PACKAGE

from cellarix_packager import layout, settings
from cellarix_packager.errors import PackageError

RECORD, FILES = "package.json", "files.json"
LIMIT = 256 << 20  # bytes of a record
BESIDE_DRIVE = (*layout.REGISTRIES, layout.SETTINGS)


class Package:
    """`root` is the directory with package.json; `shared` the files that all users share. All records are read at once,
    since dpkg may put those of another version into their place at any time."""

    def __init__(self, root):
        self.root = root
        self.shared = os.path.join(root, "bottle")
        self.digest, data = _records(root)
        record = parsed(data[RECORD], os.path.join(root, RECORD))
        self.name = str(record.get("package", ""))
        if record.get("format") not in layout.FORMATS or not PACKAGE.fullmatch(self.name):
            raise PackageError(f"{root} was packed by another version of Cellarix.", "other-version", root)
        self.title = str(record.get("name") or self.name)
        self.version = str(record.get("version", ""))
        self.build = f"{self.version} {self.digest}"
        self.user = str(record.get("user", ""))
        self.runner = str(record.get("runner") or "")
        self.system_links, self.wine_links, self.wine_copies, self.folders = (
            _texts(record.get(key)) for key in ("systemLinks", "wineLinks", "wineCopies", "folders"))
        self.texts = {FILES: _text(data[FILES])}  # the bottle's record of what it was made from
        for name in BESIDE_DRIVE:
            if os.path.exists(path := os.path.join(self.shared, name)):
                self.texts[name] = _text(_bytes(path))
        self.settings = settings.parsed(self.texts.get(layout.SETTINGS, ""), os.path.join(self.shared, layout.SETTINGS))

    def file_list(self):
        """(directories, {path: [size, md5]}, {path: target}), relative to the bottle."""
        path = os.path.join(self.root, FILES)
        return file_list(parsed(self.texts[FILES], path), path)

    def is_current(self):
        """Whether the installed package is still this one."""
        try:
            return _records(self.root)[0] == self.digest
        except PackageError:
            return False


def _records(root):
    """What tells packages of one version apart whose contents differ, and the bytes of the records."""
    data = {name: _bytes(os.path.join(root, name)) for name in (RECORD, FILES)}
    return hashlib.md5(b"".join(data.values()), usedforsecurity=False).hexdigest(), data


def _bytes(path):
    try:
        return read_file(path, LIMIT)
    except (OSError, ValueError) as error:
        raise _broken(path, error) from None


def _text(data):
    return data.decode("utf-8", "surrogateescape")


def _broken(path, why):
    return PackageError(f"{path} cannot be read: {why}", "broken-package", path)


def parsed(data, path):
    try:
        return json.loads(data)
    except (ValueError, RecursionError) as error:
        raise _broken(path, error) from None


def file_list(record, path):
    """The directories, files and links of a list. Raises if it is damaged, or leads out of the bottle."""
    record = record if isinstance(record, dict) else {"files": None}
    directories, files, links = record.get("directories", []), record.get("files", {}), record.get("links", {})
    if not isinstance(directories, list) or not isinstance(files, dict) or not isinstance(links, dict) or \
            not all(map(_is_place, (*directories, *files, *links))) or not all(map(_is_known, files.values())) or \
            not all(isinstance(target, str) for target in links.values()):
        raise _broken(path, "damaged")
    return directories, files, links


def _is_place(path):
    if not isinstance(path, str) or "\0" in path:
        return False
    parts = path.split("/")
    return path in BESIDE_DRIVE or parts[0] == "drive_c" and not {"", ".", ".."}.intersection(parts)


def _is_known(value):
    return isinstance(value, list) and [type(item) for item in value] == [int, str]


def _texts(value):
    """The texts by places in the bottle."""
    return {path: str(text) for path, text in value.items() if _is_place(path)} if isinstance(value, dict) else {}
