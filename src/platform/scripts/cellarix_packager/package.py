"""An installed package as its programs see it."""

import hashlib
import json
import os

from cellarix_packager import layout
from cellarix_packager.errors import PackageError


class Package:
    """`root` is the directory with package.json; `shared` the files that all users share."""

    def __init__(self, root):
        self.root = root
        self.shared = os.path.join(root, "bottle")
        record = _read(os.path.join(root, "package.json"))
        self.name = str(record.get("package", ""))
        if record.get("format") not in layout.FORMATS or not layout.PACKAGE.fullmatch(self.name):
            raise PackageError(f"{root} was packed by another version of Cellarix.", "other-version", root)
        self.title = str(record.get("name") or self.name)
        self.version = str(record.get("version", ""))
        self.build = f"{self.version} {_digest(root)}"
        self.user = str(record.get("user", ""))
        self.runner = str(record.get("runner") or "")
        self.system_links = _texts(record.get("systemLinks"))
        self.wine_links = _texts(record.get("wineLinks"))
        self.wine_copies = _texts(record.get("wineCopies"))
        self.folders = _texts(record.get("folders"))

    def file_list(self):
        """(directories, {path: [size, md5]}, {path: target}), relative to the bottle."""
        return file_list(os.path.join(self.root, "files.json"))


def _digest(root):
    """Tells packages of one version apart whose contents differ."""
    found = hashlib.md5(usedforsecurity=False)
    for name in ("package.json", "files.json"):
        path = os.path.join(root, name)
        try:
            with open(path, "rb") as file:
                found.update(file.read())
        except OSError as error:
            raise PackageError(f"{path} cannot be read: {error}", "broken-package", path) from None
    return found.hexdigest()


def file_list(path):
    record = _read(path)
    return record.get("directories", []), record.get("files", {}), record.get("links", {})


def _read(path):
    try:
        with open(path, "rb") as file:
            record = json.load(file)
    except (OSError, ValueError) as error:
        raise PackageError(f"{path} cannot be read: {error}", "broken-package", path) from None
    return record if isinstance(record, dict) else {}


def _texts(value):
    return {str(key): str(text) for key, text in value.items()} if isinstance(value, dict) else {}
