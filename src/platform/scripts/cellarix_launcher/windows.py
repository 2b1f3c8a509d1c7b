"""Windows paths in a bottle, kinds of Windows files, and the Wine command for each of them."""

import os
import re
import struct

from cellarix_launcher import errors

MACHINE_I386 = 0x14C
PE32_MAGIC = 0x10B
CLR_DIRECTORY = 14
FORBIDDEN = '"*<>?|\\:'  # in names of Windows paths; Wine does not find such files


def is_windows_path(word):
    drive, rest = word[:1], word[1:3]
    return drive.isascii() and drive.isalpha() and rest in (":", ":\\", ":/")


def to_unix(bottle_dir, windows_path):
    """The file or directory of a Windows path, ignoring case; None if it does not exist."""
    drive = windows_path[0].lower()
    here = os.path.join(bottle_dir, "dosdevices", drive + ":")
    if drive == "c" and not os.path.isdir(here):
        here = os.path.join(bottle_dir, "drive_c")
    stack = []
    for part in windows_path[2:].replace("\\", "/").split("/"):
        if part == "..":
            del stack[-1:]
        elif part not in ("", "."):
            stack.append(part)
    for part in stack:
        here = _child(here, part)
        if here is None:
            return None
    return here if os.path.exists(here) else None


def _child(directory, name):
    exact = os.path.join(directory, name)
    try:
        if os.path.lexists(exact):
            return exact
        wanted = name.casefold()
        return next((os.path.join(directory, e) for e in os.listdir(directory) if e.casefold() == wanted), None)
    except (OSError, ValueError):
        return None


def to_windows(bottle_dir, path):
    """The Windows path of a file: on the drive with the longest root, else Wine's form of a Unix path."""
    devices = os.path.join(bottle_dir, "dosdevices")
    best = ("", "")
    for device in _entries(devices):
        if len(device) != 2 or not is_windows_path(device):
            continue
        root = os.path.realpath(os.path.join(devices, device))
        if root != "/" and path != root and not path.startswith(root + "/"):
            continue
        if len(root) > len(best[1]):
            best = (device.upper(), root)
    if not best[0]:
        return "\\\\?\\unix" + path.replace("/", "\\")
    return best[0] + "\\" + path[len(best[1].rstrip("/")):].lstrip("/").replace("/", "\\")


def _entries(directory):
    try:
        return os.listdir(directory)
    except OSError:
        return []


def find_file(bottle_dir, word):
    """The Unix path of a regular file given as a Unix or Windows path, else None."""
    if is_windows_path(word):
        path = to_unix(bottle_dir, word)
    else:
        path = os.path.abspath(word) if "/" in word else None
    return path if path and "\0" not in path and os.path.isfile(path) else None


def find_folder(bottle_dir, word):
    path = to_unix(bottle_dir, word) if is_windows_path(word) else word
    return path if path and path.startswith("/") and os.path.isdir(path) else None


class Program:
    """The command line for Wine, its file ("" for a plain name) and its working directory ("" for the current one)."""

    def __init__(self, command, file, folder):
        self.command = command
        self.file = file
        self.folder = folder


def resolve(bottle_dir, word, arguments, folder=""):
    """The Program for a word and its arguments. Wine resolves plain names such as winecfg.exe; a path must exist."""
    file = find_file(bottle_dir, word)
    if file is None:
        if is_windows_path(word) or "/" in word or not word:
            raise errors.LaunchError(errors.NO_PROGRAM, f"the program \"{word}\" does not exist", "no-file", word)
        return Program([word] + _opening(word, arguments), "", find_folder(bottle_dir, folder) or "")
    forbidden = next((sign for sign in FORBIDDEN if sign in file), None)
    if forbidden and not is_windows_path(word):
        raise errors.LaunchError(
            errors.NO_PROGRAM, f"Windows knows no paths with the sign {forbidden}; rename \"{file}\" without it",
            "forbidden-sign", f"{forbidden} {file}")
    if not os.access(file, os.R_OK):
        raise errors.LaunchError(errors.NO_PROGRAM, f"the program \"{word}\" cannot be read", "unreadable", word)
    start = find_folder(bottle_dir, folder) or os.path.dirname(file)
    return Program(_command(bottle_dir, word, file) + arguments, file, start)


def _opening(word, arguments):
    """With /ProgIDOpen, start.exe treats every argument as a file. For a URL, pass only the URL: the scheme has a
    handler."""
    is_opening = word.lower() in ("start", "start.exe") and len(arguments) == 3 and arguments[0] == "/ProgIDOpen"
    if is_opening and re.match("(?!file:)[A-Za-z][A-Za-z0-9+.-]+:", arguments[2]) and not os.path.exists(arguments[2]):
        return arguments[2:]
    return arguments


def _command(bottle_dir, word, file):
    """Packages and links need a helper program of Wine. Batch files are passed as they are: Wine runs them by `cmd
    /c` and quotes blanks in the path and in the arguments."""
    windows = is_windows_path(word)
    suffix = os.path.splitext(file)[1].lower()
    if suffix in (".msi", ".msp"):
        return ["msiexec", "/i" if suffix == ".msi" else "/p", word if windows else to_windows(bottle_dir, file)]
    if suffix == ".lnk":
        return ["start", "/wait", "/unix", file]
    return [word if windows else file]


def is_pe32(file):
    """Whether the program needs a 32-bit Wine; .NET assemblies do not."""
    try:
        with open(file, "rb") as source:
            head = source.read(64)
            if head[:2] != b"MZ" or len(head) < 64:
                return False
            source.seek(struct.unpack_from("<I", head, 60)[0])
            header = source.read(24 + 96 + 16 * 8)
        if header[:4] != b"PE\0\0":
            return False
        machine, magic = struct.unpack_from("<H", header, 4)[0], struct.unpack_from("<H", header, 24)[0]
        if machine != MACHINE_I386 or magic != PE32_MAGIC:
            return False
        count = struct.unpack_from("<I", header, 24 + 92)[0]
        return count <= CLR_DIRECTORY or struct.unpack_from("<I", header, 24 + 96 + CLR_DIRECTORY * 8)[0] == 0
    except (OSError, struct.error):
        return False


def wine_lacks_32bit(wine):
    """Whether the Wine has 64-bit modules but no 32-bit ones.

    Checks for ntdll.dll, since Debian's 64-bit package has a 32-bit directory with a single other library.
    """
    root = os.path.dirname(os.path.dirname(os.path.realpath(wine)))
    libraries = ("lib/wine", "lib64/wine", "lib32/wine", "lib/x86_64-linux-gnu/wine", "lib/i386-linux-gnu/wine")
    present = {kind for kind in ("x86_64-windows", "i386-windows") for library in libraries
               if os.path.exists(os.path.join(root, library, kind, "ntdll.dll"))}
    return present == {"x86_64-windows"}


def check_bits(program, wine):
    """Whether the program is a 32-bit one; LaunchError if the Wine cannot run those."""
    if not program.file or not is_pe32(program.file):
        return False
    if wine_lacks_32bit(wine):
        raise errors.LaunchError(
            errors.NEEDS_WINE32,
            f"\"{os.path.basename(program.file)}\" is a 32-bit program, and this Wine runs only 64-bit ones. "
            "On Debian, these commands add 32-bit Wine: sudo dpkg --add-architecture i386 && sudo apt-get update; "
            "sudo apt-get install wine32:i386")
    return True
