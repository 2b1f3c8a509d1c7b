"""A file that has its name only when it is complete: whatever ends the process before leaves nothing behind."""

import errno
import hashlib
import os

from cellarix_packager.errors import PackageError

UNNAMED_UNSUPPORTED = (errno.EOPNOTSUPP, errno.EISDIR, errno.ENOENT, errno.EINVAL)


class SaveFile:
    """Owns the descriptor `fd`. Where the file system knows no unnamed files, a hidden one is used, which only a kill
    can leave; the next run removes it."""

    def __init__(self, directory, name):
        self.path = os.path.join(directory, name)
        self.hidden = os.path.join(directory, _hidden_name(name))
        self.is_hidden = False
        _remove(self.hidden)
        try:
            self.fd = os.open(directory, os.O_TMPFILE | os.O_RDWR | os.O_CLOEXEC, 0o644)
        except OSError as error:
            if error.errno not in UNNAMED_UNSUPPORTED or not os.path.isdir(directory):
                raise PackageError(f"{directory} cannot be written to: {error.strerror}", "not-writable",
                                   directory) from None
            self.fd = os.open(self.hidden, os.O_CREAT | os.O_EXCL | os.O_RDWR | os.O_CLOEXEC, 0o644)
            self.is_hidden = True

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.close(self.fd)
        if self.is_hidden:
            _remove(self.hidden)

    def commit(self):
        """Gives the file its name, in the place of an older one."""
        os.fsync(self.fd)
        if self.is_hidden:
            os.rename(self.hidden, self.path)
            self.is_hidden = False
            return
        try:
            self._link(self.path)
        except FileExistsError:
            self._link(self.hidden)
            os.rename(self.hidden, self.path)

    def _link(self, path):
        # With a directory descriptor Python follows the link of /proc, as it must for an unnamed file.
        here = os.open("/proc/self/fd", os.O_RDONLY | os.O_DIRECTORY | os.O_CLOEXEC)
        try:
            os.link(str(self.fd), path, src_dir_fd=here, follow_symlinks=True)
        finally:
            os.close(here)


def _hidden_name(name):
    """The name itself may be too long for another one."""
    return f".cellarix-{hashlib.md5(name.encode(), usedforsecurity=False).hexdigest()}.part"


def _remove(path):
    try:
        os.unlink(path)
    except FileNotFoundError:
        pass
