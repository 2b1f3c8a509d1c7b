"""Where programs from outside of the bottle go in drive C of a package: each directory has a folder of its own, also in
the eyes of Windows, for which "Game" and "game" are one."""

import os


class DrivePlaces:
    """`entries` are those of the bottle's drive below `prefix`, by path."""

    def __init__(self, entries, prefix):
        self.known = {}  # paths in lower case -> as they are, relative to the bottle
        for path in entries:
            if path.startswith(prefix + "/drive_c/"):
                own = path[len(prefix) + 1:]
                self.known[own.lower()] = own
        self.folders = {}

    def of(self, source, wanted):
        """The folder for `source`, a directory or a lone program: `wanted`, relative to the bottle, or one of its name;
        with a number if that is taken."""
        if source not in self.folders:
            name = os.path.basename(source) if os.path.isdir(source) else os.path.splitext(os.path.basename(source))[0]
            parent, _, leaf = (wanted if wanted.startswith("drive_c/") else f"drive_c/{name or 'Program'}").rpartition("/")
            self.folders[source] = self._free(self._as_known(parent), leaf)
        return self.folders[source]

    def _as_known(self, parent):
        path = "drive_c"
        for part in parent.split("/")[1:]:
            path = self.known.setdefault(f"{path}/{part}".lower(), f"{path}/{part}")
        return path

    def _free(self, parent, leaf):
        folder, number = f"{parent}/{leaf}", 2
        while folder.lower() in self.known:
            folder, number = f"{parent}/{leaf} ({number})", number + 1
        self.known[folder.lower()] = folder
        return folder
