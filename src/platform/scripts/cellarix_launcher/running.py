"""Reports running programs to the bottle service by small files: <pid>.start while the script runs, and <pid>.json
for a program with an id, which the service reads and removes.

The service need not run: it reads the files when it starts.
"""

import glob
import json
import os
import re

from cellarix_launcher import bottle as bottles
from cellarix_launcher import environment, windows

CLAIM_LIMIT = 32768


def announce(bottle_name, env, say):
    """Reports the launcher's process as the program, until that has processes. Does nothing for a program without an
    id."""
    program = env.get(environment.UUID_VARIABLE, "")
    if not program:
        return
    _write("json", {"bottle": bottle_name, "program": program}, say)


def claim(bottle_name, uuid, program, directory, say, environ=os.environ, kind=""):
    """Prevents installations into the bottle until release(environ). `program` is empty for a program with an id, else its
    first word: a command or a Windows or Unix path. `kind` tells work on the bottle, which nobody stops, from programs."""
    record = {"bottle": bottle_name, "name": uuid or re.split(r"[\\/]", program[0])[-1]}
    if not uuid:
        record["file"] = windows.find_file(directory, program[0]) or ""
    _write("start", record | ({"kind": kind} if kind else {}), say, environ)


def release(environ=os.environ):
    try:
        os.remove(_path("start", environ))
    except OSError:
        pass


def is_claimed(bottle_name, environ):
    """Whether a running launch has a claim on the bottle."""
    return any(_is_launch_of(bottle_name, path) for path in glob.iglob(glob.escape(_directory(environ)) + "/*.start"))


def _is_launch_of(bottle_name, path):
    try:
        record = json.loads(bottles.read_file(path, CLAIM_LIMIT))
        return record["bottle"] == bottle_name and not record.get("kind") and start_time(int(record["pid"])) == record["start"]
    except (OSError, ValueError, TypeError, LookupError, AttributeError, RecursionError):
        return False  # it has ended, or is damaged


def _directory(environ):
    return os.path.join(bottles.data_directory(environ), "running")


def _path(suffix, environ):
    return os.path.join(_directory(environ), f"{os.getpid()}.{suffix}")


def _write(suffix, record, say, environ=os.environ):
    path = _path(suffix, environ)
    try:
        os.makedirs(os.path.dirname(path), 0o700, exist_ok=True)
        with open(path + ".new", "w", encoding="ascii") as file:
            json.dump(record | {"pid": os.getpid(), "start": start_time("self")}, file)
        os.rename(path + ".new", path)
    except OSError as error:
        say(f"the bottle service will not hear of this program: {error}")


def start_time(pid):
    """Start time in clock ticks since boot, as text. Together with the id it identifies a process."""
    with open(f"/proc/{pid}/stat", "rb") as file:
        return file.read().rsplit(b")", 1)[1].split()[19].decode()
