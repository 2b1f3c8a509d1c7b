"""Files, links and directories of a user's bottle, each made in one step."""

import os
import stat

UNFINISHED = ".cellarix-new"


def unfinished(path):
    """Where a file is made that gets the place `path`: in its directory, one at a time, as a longer name of its own might
    be too long."""
    return os.path.join(os.path.dirname(path), UNFINISHED)


def made_directory(path):
    """Whether there is such a directory now; where a file of the user has its place, there is none."""
    try:
        os.makedirs(path, exist_ok=True)
    except (FileExistsError, NotADirectoryError):
        return False
    return True


def put_link(target, path):
    fresh = unfinished(path)
    if os.path.lexists(fresh):
        os.unlink(fresh)
    if os.path.isdir(path) and not os.path.islink(path):
        os.rmdir(path)
    os.symlink(target, fresh)
    os.rename(fresh, path)


def write(path, content):
    fresh = unfinished(path)
    with open(fresh, "w", encoding="utf-8", errors="surrogateescape", newline="") as file:
        file.write(content)
        file.flush()
        os.fsync(file.fileno())
    os.rename(fresh, path)


def text(path):
    """Empty if the file is missing."""
    try:
        with open(path, encoding="utf-8", errors="surrogateescape", newline="") as file:
            return file.read()
    except FileNotFoundError:
        return ""


def regular(path, limit):
    """The bytes of a file. Follows no link, waits for no pipe; ValueError if it is none or is larger than `limit`."""
    with open(os.open(path, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC), "rb") as file:
        if not stat.S_ISREG(os.fstat(file.fileno()).st_mode):
            raise ValueError("not a regular file")
        data = file.read(limit + 1)
    if len(data) > limit:
        raise ValueError("too large")
    return data
