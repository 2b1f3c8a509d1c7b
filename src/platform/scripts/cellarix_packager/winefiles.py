"""Wine's own programs and libraries in a bottle, which each machine has in its Wine.

A file of that kind works only with the Wine that it belongs to, so that a package names it and the user's bottle gets
that of the machine's Wine, or of the same runner if that is installed.
"""

import glob
import os
import shutil

from cellarix_packager import petrim

KINDS = ("x86_64-windows", "i386-windows", "aarch64-windows")
MARK = b"Wine builtin DLL"
MARK_AT = 0x40
PE_LIMIT = 64 << 20  # no file of Wine's is larger
SYSTEM = ("/usr/lib/*/wine", "/usr/lib/wine", "/usr/lib64/wine", "/usr/lib32/wine", "/opt/wine*/lib*/wine")
BELOW = ("lib/wine", "lib64/wine", "lib32/wine", "lib/*/wine", "files/lib/wine", "files/lib64/wine")
PLACES = ("drive_c/windows/", "drive_c/program files")


class WineFiles:
    """The files of the runner, if it has any, before those of the machine's Wine. A name is "KIND/FILE" in lower case,
    such as "x86_64-windows/kernel32.dll"."""

    def __init__(self, data_dir, runner):
        own = runner_directory(data_dir, runner)
        roots = [own] if own else []
        if wine := shutil.which("wine"):
            roots.append(os.path.dirname(os.path.dirname(os.path.realpath(wine))))
        patterns = [os.path.join(glob.escape(root), below) for root in roots for below in BELOW]
        self.paths = {}
        for pattern in (*patterns, *SYSTEM):
            for directory in sorted(glob.glob(pattern)):
                for kind in KINDS:
                    self._add(os.path.join(directory, kind), kind)

    def _add(self, directory, kind):
        try:
            names = os.listdir(directory)
        except OSError:
            return
        for name in names:
            self.paths.setdefault(f"{kind}/{name.lower()}", os.path.join(directory, name))

    def find(self, name):
        """The path of the file; empty if no Wine has it."""
        return self.paths.get(name, "")

    def name_of_link(self, target):
        """The name of the file that a link of a bottle leads to; empty for another one."""
        directory, file = os.path.split(target)
        name = f"{os.path.basename(directory)}/{file.lower()}"
        return name if os.path.basename(directory) in KINDS and is_builtin(target) else ""

    def name_of_copy(self, relative, path):
        """The name of the file that a bottle has a copy of at `relative`, also without its debug information."""
        if not relative.lower().startswith(PLACES) or not is_builtin(path):
            return ""
        file = os.path.basename(path).lower()
        try:
            return next((f"{kind}/{file}" for kind in KINDS
                         if (own := self.find(f"{kind}/{file}")) and _is_copy(path, own)), "")
        except OSError:
            return ""  # the packing itself reports it


def runner_directory(data_dir, runner):
    """Where the runner is installed; empty if it is not, or is the machine's Wine, which has a name without a directory."""
    if not isinstance(runner, str) or not runner or "/" in runner or "\0" in runner or runner in (".", ".."):
        return ""
    directory = os.path.join(data_dir, "runners", runner)
    return directory if os.path.isdir(directory) else ""


def is_builtin(path):
    """Whether a file has the mark of Wine's own. Follows links."""
    try:
        fd = os.open(path, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC)
    except OSError:
        return False
    try:
        return os.pread(fd, len(MARK), MARK_AT) == MARK
    except OSError:
        return False
    finally:
        os.close(fd)


def _is_copy(path, own):
    """Whether a file has the bytes of `own`, with or without its debug information."""
    size, full = os.path.getsize(path), os.path.getsize(own)
    if size > full:
        return False
    with open(path, "rb") as file:
        content = file.read(PE_LIMIT)
    if size < full:
        return content == petrim.trimmed(own)
    with open(own, "rb") as file:
        return content == file.read(PE_LIMIT)
