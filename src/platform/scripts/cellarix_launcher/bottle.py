"""The data of a bottle that a launch needs: its directory, its Wine, its environment and its programs.

The bottle service writes launch.json beside bottle.yml, so that the launcher need not call the service or load a YAML
parser. If launch.json is missing, invalid or outdated, bottle.yml is read instead.
"""

import json
import os
import stat

from cellarix_launcher import errors

RECORD_LIMIT = 16 << 20
UNFINISHED = (".creating-", ".deleting-")  # bottles that the service is creating or deleting


class Bottle:
    """`directory` is absolute; `wine`, `wineserver` and `emulator` may be empty; `programs` maps an id to a record."""

    def __init__(self, name, directory):
        self.name = name
        self.directory = directory
        self.wine = ""
        self.wineserver = ""
        self.emulator = ""  # runs x86 code on another processor
        self.env = {}
        self.programs = {}
        self.record_error = ""  # error text if the records could not be read

    def program(self, uuid):
        record = self.programs.get(uuid)
        return record if isinstance(record, dict) else None


def data_directory(environ):
    """Of the bottle service; has "bottles", "runners" and others."""
    data = environ.get("XDG_DATA_HOME", "")
    if not data.startswith("/"):
        data = os.path.join(environ.get("HOME") or "/", ".local/share")
    return os.path.join(data, "lumora-wine-bottles")


def bottles_root(environ):
    return os.path.join(data_directory(environ), "bottles")


def bottle_directory(name, environ):
    """The directory of a bottle; None for an unknown one. Names may contain "/" but never lead out of the bottles'
    directory."""
    if not name or "\0" in name or any(part in ("", ".", "..") for part in name.split("/")):
        return None
    parts = name.split("/")
    if len(parts) > 2 or (len(parts) == 2 and parts[0] != "public") or parts[-1].startswith(UNFINISHED):
        return None
    directory = os.path.join(bottles_root(environ), name)
    if os.path.islink(directory):
        return None
    known = any(_is_file(os.path.join(directory, record)) for record in ("launch.json", "bottle.yml"))
    return directory if known else None


def _is_file(path):
    try:
        return stat.S_ISREG(os.lstat(path).st_mode)
    except OSError:
        return False


def load_bottle(name, environ):
    directory = bottle_directory(name, environ)
    if directory is None:
        raise errors.LaunchError(errors.NO_BOTTLE, f"there is no bottle named \"{name}\"", "no-bottle", name)
    bottle = Bottle(name, directory)
    quick = os.path.join(directory, "launch.json")
    slow = os.path.join(directory, "bottle.yml")
    record = _read_launch_record(quick)
    if record is None or record.get("source") != _stamp(slow):
        parsed = _read_yaml(slow)
        if parsed is not None:
            _fill_from_yaml(bottle, parsed, record, environ)
            return bottle
        bottle.record_error = f"the records of bottle \"{name}\" cannot be read or are out of date"
    if record is not None:
        _fill(bottle, record)
    return bottle


def _stamp(path):
    """The "source" that launch.json has if it was made from the current bottle.yml."""
    try:
        status = os.lstat(path)
    except OSError:
        return {}
    return {"size": str(status.st_size), "mtime_ns": str(status.st_mtime_ns)}


def read_file(path, limit):
    """The bytes of a regular file. Follows no link, waits for no pipe; ValueError if it is none or larger."""
    with open(os.open(path, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC), "rb") as file:
        if not stat.S_ISREG(os.fstat(file.fileno()).st_mode):
            raise ValueError("not a regular file")
        data = file.read(limit + 1)
    if len(data) > limit:
        raise ValueError("too large")
    return data


def _read_launch_record(path):
    try:
        record = json.loads(read_file(path, RECORD_LIMIT))
    except (OSError, ValueError, RecursionError):
        return None
    return record if isinstance(record, dict) and record.get("version") == 1 else None


def _read_yaml(path):
    try:
        data = read_file(path, RECORD_LIMIT)
        import site
        site.main()  # python -S leaves out the directory of the parser
        import yaml
    except (OSError, ValueError, ImportError):
        return None
    try:
        parsed = yaml.load(data, Loader=getattr(yaml, "CSafeLoader", yaml.SafeLoader))
    except (yaml.YAMLError, ValueError, RecursionError):
        return None
    return parsed if isinstance(parsed, dict) else None


def _fill(bottle, record):
    for key in ("wine", "wineserver", "emulator"):
        if isinstance(record.get(key), str):
            setattr(bottle, key, record[key])
    for key in ("env", "programs"):
        if isinstance(record.get(key), dict):
            setattr(bottle, key, record[key])


def _fill_from_yaml(bottle, parsed, outdated, environ):
    """bottle.yml takes precedence; an outdated launch.json still has the Wine of the same runner. A runner without a
    directory of its own is the system's Wine."""
    runner = parsed.get("Runner")
    if outdated and runner and outdated.get("runner") == runner:
        _fill(bottle, outdated)
    elif isinstance(runner, str) and runner and "/" not in runner and "\0" not in runner and runner not in (".", ".."):
        wine = os.path.join(data_directory(environ), "runners", runner, "bin", "wine")
        bottle.wine = wine if os.path.isfile(wine) else ""
    programs = parsed.get("External_Programs")
    bottle.programs = programs if isinstance(programs, dict) else {}
