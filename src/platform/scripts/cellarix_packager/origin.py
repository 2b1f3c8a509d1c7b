"""Which package a user's bottle was made from, and which of the bottles is the one that follows the package.

A bottle made from a package has ".package/origin.json": {"format", "package", "id", "user", "bottle"}. `id` is of one
bottle, `user` the name of its profile, `bottle` its name when it was made. "packages/PACKAGE.json" beside the bottles
names the one that the package's programs start in: {"bottle", "id"}. So a renamed bottle is found again, and a copy or
a bottle of the same name is left alone. docs/PACKAGES.md tells what others may rely on.
"""

import json
import os
import uuid

from cellarix_launcher.bottle import UNFINISHED, read_file
from cellarix_launcher.origin import FILE, FORMAT, LIMIT, RECORD, SECOND, read

from cellarix_packager import bottlefiles


def write(directory, package, identity, user, name):
    """Returns the id, which is a new one unless `identity` has it."""
    identity = identity or str(uuid.uuid4())
    origin = {"format": FORMAT, "package": package, "id": identity, "user": user, "bottle": name}
    bottlefiles.write(os.path.join(directory, RECORD, FILE), json.dumps(origin) + "\n")
    return identity


def note(data_dir, package, name, identity):
    """Makes the bottle `name` the one of the package."""
    known = {"bottle": name, "id": identity}
    path = _note_path(data_dir, package)
    if _object(path) != known:
        bottlefiles.write(path, json.dumps(known) + "\n")


def own_bottle(data_dir, package):
    """The name of the bottle that follows the package, also a renamed one; empty if there is none. Of several copies of
    a renamed one none is chosen."""
    bottles = os.path.join(data_dir, "bottles")
    known = _object(_note_path(data_dir, package))
    if known.get("id"):
        def is_it(name):
            return (read(os.path.join(bottles, name)) or {}).get("id") == known["id"]
        name = known.get("bottle")
        if isinstance(name, str) and name in _names(bottles) and is_it(name):
            return name
        found = [name for name in _names(bottles) if is_it(name)]
        return found[0] if len(found) == 1 else ""
    for name in (package, package + SECOND):
        found = read(os.path.join(bottles, name))
        if found and found["bottle"] == name and (not found["id"] or found["package"] == package):
            return name
    return ""


def _names(bottles):
    try:
        with os.scandir(bottles) as items:
            return sorted(item.name for item in items if item.is_dir(follow_symlinks=False) and not item.name.startswith(UNFINISHED))
    except OSError:
        return []


def _note_path(data_dir, package):
    return os.path.join(data_dir, "packages", package + ".json")


def _object(path):
    """Empty if the file is missing or no object."""
    try:
        value = json.loads(read_file(path, LIMIT))
    except (OSError, ValueError, RecursionError):
        return {}
    return value if isinstance(value, dict) else {}
