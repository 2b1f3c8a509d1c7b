#!/usr/bin/python3 -IXutf8
"""Lists the Windows executables below a directory.

usage: exe_scanner.py DIRECTORY OUTPUT

Prints a JSON array of objects with "path", "hasIcon", "iconPath" and "pe_info", the version block. Icons are written
to OUTPUT as PNG. Symbolic links are not followed, so that a bottle's drive links do not lead out of it. Each file is
read by a separate process: a malicious one only loses the details of its own entry.
"""

import hashlib
import json
import os
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

HERE = os.path.dirname(os.path.realpath(__file__))
FILES_LIMIT = 2000
DEPTH_LIMIT = 24
SECONDS = 30


def find_executables(directory):
    """Absolute paths of the regular files named *.exe, sorted by directory, at most FILES_LIMIT."""
    found = []
    root = os.path.abspath(directory)
    for folder, folders, files in os.walk(root):
        if folder.count("/") - root.count("/") >= DEPTH_LIMIT:
            folders.clear()
        folders.sort()
        for name in sorted(files):
            path = os.path.join(folder, name)
            if name.lower().endswith(".exe") and os.path.isfile(path) and not os.path.islink(path):
                found.append(path)
                if len(found) == FILES_LIMIT:
                    return found
    return found


def _version_tool():
    """Path of the tool in the installed tree or in the source tree."""
    places = ("../../../bin", "../tools", "../../../tools")
    paths = [os.path.join(HERE, place, "pe_version_info.py") for place in places]
    return next((path for path in paths if os.path.isfile(path)), paths[0])


def _run(arguments):
    try:
        return subprocess.run([sys.executable, "-IXutf8", *arguments], timeout=SECONDS, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
    except (OSError, subprocess.SubprocessError, ValueError):
        return None


def version_info(path):
    ended = _run([_version_tool(), path])
    try:
        info = json.loads(ended.stdout) if ended else {}
    except ValueError:
        info = {}
    return info if isinstance(info, dict) else {}


def icon_of(path, output):
    """Writes the icon and returns its path; empty without an icon. The name is a hash of the path, so it is unique."""
    digest = hashlib.sha1(os.fsencode(path), usedforsecurity=False).hexdigest()
    name = f"{digest}.png"
    ended = _run([os.path.join(HERE, "icon_extractor.py"), path, name, output])
    icon = os.path.join(output, name)
    return icon if ended and ended.returncode == 0 and os.path.isfile(icon) else ""


def describe(path, output):
    icon = icon_of(path, output)
    return {"path": path, "hasIcon": bool(icon), "iconPath": icon, "pe_info": version_info(path)}


def main(argv):
    if len(argv) != 2 or not os.path.isdir(argv[0]):
        print("[]")
        print("usage: exe_scanner.py DIRECTORY OUTPUT", file=sys.stderr)
        return 64
    output = os.path.abspath(argv[1])
    with ThreadPoolExecutor(max_workers=min(4, os.cpu_count() or 1)) as pool:
        print(json.dumps(list(pool.map(lambda path: describe(path, output), find_executables(argv[0])))))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
