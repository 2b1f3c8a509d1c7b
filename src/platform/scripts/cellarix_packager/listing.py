"""Tells what would go into a package and what would stay at home, before anything is packed.

usage: bottles_packager.py --list BOTTLE

Standard input has a JSON object with "pkgname" and "programs", the latter as in pkgcfg/pkgsrc.json. Without programs only
"nameCause" is told. Prints one JSON object: "bytes" and "files" of everything; "folders" with "place", "bytes" and "files", and the same for "templates",
the files of runners and templates that are copied; the number of "wineLinks", files that each machine takes from its own Wine; "leftOut"
with "place", "why" and "entries"; and "nameCause", the reason why the package cannot have its name. What cannot be packed
at all ends as for a package.
"""

import contextlib
import json
import os
import sys

from cellarix_launcher.bottle import bottle_directory, data_directory
from cellarix_launcher.origin import PACKAGE

from cellarix_packager import archive, contents, layout, private, request
from cellarix_packager.errors import PackageError

INPUT_LIMIT = 16 << 20
ANY_NAME = "com.example.package"  # no rule of the contents depends on it
SHARED = ("runners", "templates", "dxvk", "vkd3d")  # below the data directory
DEEP = ("program files", "program files (x86)", "users", "programdata")  # have a folder for each program or user
SECRET_PLACES = ("credentials", "protect", "vault", "crypto", ".ssh", ".gnupg", ".aws")
PERSONAL_PLACES = ("documents", "my documents", "desktop", "downloads", "pictures", "my pictures", "music", "my music",
                   "videos", "my videos", "favorites", "saved games", "contacts", "recent")
WORDS = {"a link that leads out of the bottle": "outside", "not a file": "special"}


def main(argv, packing_of):
    """`packing_of(request, bottle_dir)` makes the Packing."""
    if len(argv) != 1:
        print("usage: bottles_packager.py --list BOTTLE", file=sys.stderr)
        return 64
    bottle_dir = bottle_directory(argv[0], os.environ)
    if bottle_dir is None:
        raise PackageError(f"There is no bottle named \"{argv[0]}\".", "no-bottle", argv[0])
    name, programs = _choices()
    if programs is None:
        print(json.dumps({"nameCause": _name_cause(name)}))
        return 0
    wanted = request.Request(ANY_NAME, ANY_NAME, "1", "", "Other", ["amd64"], request.sources(bottle_dir, programs))
    os.environ["SOURCE_DATE_EPOCH"] = "0"  # the time of the package would be that of the newest of all files
    packing = packing_of(wanted, bottle_dir)
    packing.with_all_icons = False  # they are small, and take time
    with contextlib.redirect_stdout(sys.stderr):  # it reports to people
        entries = packing.entries()
    archive.check_limits(entries)
    print(json.dumps(_summary(packing, entries) | {"nameCause": _name_cause(name)}))
    return 0


def _choices():
    try:
        record = json.loads(sys.stdin.buffer.read(INPUT_LIMIT))
    except (ValueError, RecursionError) as error:
        raise PackageError(f"The choices cannot be read: {error}", "internal") from None
    record = record if isinstance(record, dict) else {}
    name, programs = record.get("pkgname"), record.get("programs")
    return name if isinstance(name, str) else "", {} if "programs" in record and not isinstance(programs, dict) else programs


def _name_cause(name):
    try:
        if PACKAGE.fullmatch(name):
            request.check_owner(name)
    except PackageError as error:
        return error.cause
    return ""


class _Group(dict):
    def add(self, size):
        self["bytes"] = self.get("bytes", 0) + size
        self["files"] = self.get("files", 0) + 1


def _summary(packing, entries):
    shared = tuple(os.path.join(os.path.realpath(data_directory(os.environ)), name) + "/" for name in SHARED)
    total, templates, folders = _Group(bytes=0, files=0), _Group(bytes=0, files=0), {}
    for entry in entries:
        if entry.kind != contents.FILE:
            continue
        total.add(entry.size)
        if entry.source.startswith(shared):
            templates.add(entry.size)
        elif entry.path.startswith(packing.prefix + "/drive_c/"):
            place = _folder(_own_place(entry.path[len(packing.prefix) + 1:], packing.user))
            folders.setdefault(place, _Group(place=place)).add(entry.size)
    return total | {"templates": templates, "wineLinks": _machine_files(packing.contents),
                    "folders": sorted(folders.values(), key=lambda group: (-group["bytes"], group["place"])),
                    "leftOut": _left_out(packing)}


def _machine_files(found):
    return sum(map(len, (found.system_links, found.wine_links, found.wine_copies)))


def _own_place(path, user):
    """Relative to drive C of the bottle that is packed."""
    if path.startswith(layout.PROFILE + "/"):
        path = f"drive_c/users/{user}" + path[len(layout.PROFILE):]
    return path[len("drive_c/"):]


def _folder(inside):
    """Of a path on drive C; empty for a file beside all folders."""
    parts = inside.split("/")
    depth = 2 if parts[0].lower() in DEEP else 1
    return "/".join(parts[:min(depth, len(parts) - 1)])


def _left_out(packing):
    groups = {}
    for path, reason in packing.contents.left_out:
        place, why = _place_and_reason(path, reason, packing.user)
        count = int(reason.split(" ")[0]) if why == "registry" else 1
        groups[place, why] = groups.get((place, why), 0) + count
    return [{"place": place, "why": why, "entries": count} for (place, why), count in sorted(groups.items())]


def _place_and_reason(path, reason, user):
    if not path.startswith("drive_c/"):
        return path, "registry"
    inside = path[len("drive_c/"):]
    parts = inside.lower().split("/")
    place = os.path.dirname(inside)
    if reason != "private":
        return place, WORDS.get(reason, "private")
    if parts[0] == "users" and len(parts) > 1 and parts[1] not in (user.lower(), "public"):
        return "/".join(inside.split("/")[:2]), "other-user"
    if private.has_log_in(parts, parts[0] == "users") or not set(SECRET_PLACES).isdisjoint(parts[:-1]):
        return place, "credentials"
    if parts[0] == "users" and not set(PERSONAL_PLACES).isdisjoint(parts[2:-1]):
        return place, "personal"
    return place, "traces"
