"""What the user wants packed: pkgcfg/pkginfo.json and pkgcfg/pkgsrc.json of the bottle, checked."""

import json
import os
import re
import subprocess
from dataclasses import dataclass, field

from cellarix_launcher.bottle import read_file
from cellarix_launcher.origin import PACKAGE

from cellarix_packager import layout
from cellarix_packager.errors import PackageError

RECORD_LIMIT = 16 << 20
NAME_LIMIT = 255  # bytes of a file name
VERSION = re.compile(r"[0-9][a-zA-Z0-9]*(\.[a-zA-Z0-9]+)*")
ARCHITECTURES = ("amd64", "arm64")
CATEGORIES = ("Internet", "Chat", "Music", "Video", "Graphics", "Game", "Office", "Reading", "Development", "System",
              "Other")


@dataclass
class Source:
    """A chosen program. `directory` goes along if it is not empty; a program outside of the bottle without one goes
    along alone. `target` is where the file lies in the package's bottle, relative to it; empty if not chosen."""

    uuid: str
    path: str
    target: str = ""
    directory: str = ""
    in_bottle: bool = False


@dataclass
class Request:
    name: str
    package: str
    version: str
    description: str
    category: str
    architectures: list
    sources: list = field(default_factory=list)

    @property
    def architecture(self):
        """Windows programs run on every machine that has Wine for them, so that one package serves several."""
        return self.architectures[0] if len(self.architectures) == 1 else "all"

    @property
    def file_name(self):
        return f"{self.package}_{self.version}_{self.architecture}.deb"


def load(bottle_dir):
    info = _read_object(bottle_dir, "pkginfo.json")
    chosen = _read_object(bottle_dir, "pkgsrc.json")
    text = {key: _one_line(info.get(key)) for key in ("appname", "pkgname", "pkgversion", "category")}
    if len(text["pkgname"]) < 2 or len(text["pkgname"]) > 200 or not PACKAGE.fullmatch(text["pkgname"]):
        raise PackageError(f"\"{text['pkgname']}\" is not a valid package name.", "bad-name", text["pkgname"])
    check_owner(text["pkgname"])
    if len(text["pkgversion"]) > 200 or not VERSION.fullmatch(text["pkgversion"]):
        raise PackageError(f"\"{text['pkgversion']}\" is not a valid package version.", "bad-version", text["pkgversion"])
    words = info.get("arch") if isinstance(info.get("arch"), list) else []
    architectures = [word for word in ARCHITECTURES if word in words]
    if not architectures:
        raise PackageError("No architecture is chosen for the package.", "no-architecture")
    description = info.get("pkgdesc") if isinstance(info.get("pkgdesc"), str) else ""
    category = text["category"] if text["category"] in CATEGORIES else "Other"
    wanted = Request(text["appname"] or text["pkgname"], text["pkgname"], text["pkgversion"], description, category,
                     architectures, sources(bottle_dir, chosen))
    if len(wanted.file_name) > NAME_LIMIT:
        raise PackageError(f"The file name {wanted.file_name} is too long; choose a shorter package name or version.",
                           "long-name", wanted.file_name)
    return wanted


def sources(bottle_dir, chosen):
    """`chosen` is the object of pkgsrc.json."""
    if odd := next((uuid for uuid in chosen if not layout.PROGRAM_ID.fullmatch(uuid)), None):
        raise PackageError(f"{odd!r} is not the id of a program.", "bad-program", repr(odd))
    found = [_source(bottle_dir, uuid, entry) for uuid, entry in sorted(chosen.items()) if isinstance(entry, dict)]
    if not found:
        raise PackageError("No program of the bottle is chosen for the package.", "no-program")
    return found


def check_owner(name):
    """A package that Debian or another maker has given that name would be replaced by this one."""
    is_own = os.path.exists(f"/{layout.program_root(name)}/package.json")
    if name == layout.APPLICATION or not is_own and _is_installed(name):
        raise PackageError(f"Another program's package is named {name}.", "foreign-name", name)


def _is_installed(name):
    try:
        asked = subprocess.run(["dpkg-query", "-W", "-f", "${db:Status-Status}", name], capture_output=True, text=True,
                               check=False)
    except FileNotFoundError:
        return False
    return asked.stdout.startswith(("installed", "half", "unpacked", "triggers"))


def _read_object(bottle_dir, name):
    path = os.path.join(bottle_dir, "pkgcfg", name)
    try:
        value = json.loads(read_file(path, RECORD_LIMIT))
    except FileNotFoundError:
        raise PackageError(f"The package is not described yet: {path} is missing.", "not-described", path) from None
    except (OSError, ValueError, RecursionError) as error:
        raise PackageError(f"{path} cannot be read: {error}", "unreadable", path) from None
    return value if isinstance(value, dict) else {}


def _one_line(value):
    text = value if isinstance(value, str) else ""
    return " ".join("".join(c if c.isprintable() else " " for c in text).split())


def _source(bottle_dir, uuid, entry):
    text = {key: entry[key] if isinstance(entry.get(key), str) else ""
            for key in ("path", "path_packaged", "dir_to_package")}
    source = Source(uuid, text["path"], in_bottle=entry.get("in_bottles") is True)
    if source.in_bottle:
        return source
    if entry.get("only_copy_exe") is not True:
        source.directory = text["dir_to_package"]
    source.target = _inside_drive(bottle_dir, text["path_packaged"])
    return source


def _inside_drive(bottle_dir, path):
    """The path relative to the bottle; empty unless it lies in drive C."""
    relative = os.path.relpath(path, bottle_dir) if path.startswith("/") else ""
    return relative if relative.startswith("drive_c/") and "\0" not in relative else ""
