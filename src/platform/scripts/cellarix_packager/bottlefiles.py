"""Files, links and directories of a user's bottle, each made in one step."""

import os

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


def remove(path):
    """Does nothing where there is no file."""
    try:
        os.unlink(path)
    except FileNotFoundError:
        pass


def put_link(target, path):
    fresh = unfinished(path)
    remove(fresh)
    if os.path.isdir(path) and not os.path.islink(path):
        os.rmdir(path)
    os.symlink(target, fresh)
    os.rename(fresh, path)


def write(path, content):
    fresh = unfinished(path)
    remove(fresh)  # it may be a link
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
