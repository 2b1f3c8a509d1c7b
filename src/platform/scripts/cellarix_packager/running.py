"""A bottle without running programs. Wine's server holds a lock as long as it runs, launches another one."""

import fcntl
import os
import sys
import time

from cellarix_launcher import bottlelock, terminal
from cellarix_launcher import running as launches

from cellarix_packager.errors import PackageError

NAME = "Cellarix packager"
PACKING, UPGRADE = "packing", "upgrade"  # kinds of claims


class Alone:
    """The bottle `name` for this process alone, as a context: launches and installations refuse meanwhile. Waits
    `seconds` for programs that are ending, then raises. No program is ended."""

    def __init__(self, name, directory, environ, seconds, kind):
        self.environ = environ
        self.lock = bottlelock.BottleLock()
        try:
            launches.claim(name, "", [NAME], directory, _say, environ, kind)
            self._check(name, directory, seconds)
        except BaseException:
            self.__exit__()
            raise

    def _check(self, name, directory, seconds):
        _check_installation(directory)
        end, is_waiting = time.monotonic() + seconds, False
        while not self.lock.acquire(directory, bottlelock.EXCLUSIVE) or is_running(directory):
            if time.monotonic() >= end:
                _check_installation(directory)
                raise self._refusal(name, directory)
            if not is_waiting:
                print(f"waiting up to {seconds} s until nothing uses the bottle any more", flush=True)
            is_waiting = True
            time.sleep(0.1)
        _check_installation(directory)  # one that was broken off meanwhile

    def _refusal(self, name, directory):
        """Programs share the lock with the work of the bottle service; whoever packs or changes the bottle has it alone."""
        if self.lock.acquire(directory, bottlelock.SHARED) and (
                is_running(directory) or launches.is_claimed(name, self.environ) or terminal.is_open(name)):
            return refusal()
        return PackageError("The bottle is being packed or changed. Try again when that is done.", "bottle-busy")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        launches.release(self.environ)
        self.lock.release()


def _check_installation(directory):
    if os.path.exists(os.path.join(directory, ".before-install", "journal.json")):
        raise PackageError("Something is being installed into the bottle. Try again when that is done.", "installing")


def refusal():
    return PackageError("Programs run in the bottle. Close them and try again.", "running")


def _say(text):
    print(text, file=sys.stderr)


def is_running(bottle_dir):
    try:
        status = os.stat(bottle_dir)
    except OSError:
        return False
    name = f"server-{status.st_dev:x}-{status.st_ino:x}/lock"
    runtime = os.environ.get("XDG_RUNTIME_DIR") or f"/run/user/{os.getuid()}"
    return any(_is_locked(os.path.join(directory, name))
               for directory in (f"/tmp/.wine-{os.getuid()}", os.path.join(runtime, "wine")))


def _is_locked(path):
    try:
        fd = os.open(path, os.O_RDWR | os.O_NOFOLLOW | os.O_CLOEXEC)
    except OSError:
        return False
    try:
        fcntl.lockf(fd, fcntl.LOCK_EX | fcntl.LOCK_NB)
        return False
    except OSError:
        return True
    finally:
        os.close(fd)

