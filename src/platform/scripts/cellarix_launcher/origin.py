"""Which package a bottle was made from, by the rules of docs/PACKAGES.md."""

import json
import os
import re

from cellarix_launcher import bottle

RECORD = ".package"  # of a bottle that was made from a package
FILE = "origin.json"
VERSION = "version"
FORMAT = 1
LIMIT = 65536
SECOND = ".package"  # ends the name of a package's bottle if another bottle has that of the package
PACKAGES = "/opt/apps"
PACKAGE = re.compile(r"[a-z0-9]+(\.[a-z0-9]+)*")
PROFILE = re.compile(r"(?!\.{1,2}\Z)[^/\\\0]+")


def read(directory):
    """The origin of a bottle, as texts; None for one that is not made from a package, or not known to be. Bottles of the
    first format have neither `id` nor `user`."""
    record = os.path.join(directory, RECORD)
    try:
        origin = json.loads(bottle.read_file(os.path.join(record, FILE), LIMIT))
    except FileNotFoundError:
        name = os.path.basename(directory)
        origin = {"format": FORMAT, "package": name.removesuffix(SECOND), "bottle": name}
        if not os.path.isfile(os.path.join(record, VERSION)):
            return None
    except (OSError, ValueError, RecursionError):
        return None
    if not isinstance(origin, dict) or origin.get("format") != FORMAT:
        return None
    texts = {key: origin[key] if isinstance(origin.get(key), str) else "" for key in ("package", "id", "user", "bottle")}
    if not PROFILE.fullmatch(texts["user"]):
        texts["user"] = ""
    return texts if PACKAGE.fullmatch(texts["package"]) else None


def removed_package(directory):
    """The name of the package that the bottle was made from, if it is known not to be installed any more; else empty."""
    package = (read(directory) or {"package": ""})["package"]
    try:
        os.stat(os.path.join(PACKAGES, package, "files", "package.json"))
    except (FileNotFoundError, NotADirectoryError):
        return package
    except OSError:
        pass
    return ""
