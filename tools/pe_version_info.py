#!/usr/bin/python3 -IXutf8
"""Prints the version block of a Windows executable, or the equivalent properties of an installer package (.msi), as
one JSON object.

usage: pe_version_info.py FILE

Prints {} for a file without a version block, and {} with exit code 1 for an unreadable file. The file is mapped, and
only its resource directory is parsed. Text is escaped to ASCII, so the output is independent of the locale.
"""

import json
import mmap
import os
import resource
import signal
import stat
import sys

PACKAGE_MAGIC = b"\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"  # OLE compound file, the container of Windows Installer packages
PACKAGE_NAMES = {"ProductName": "ProductName", "ProductVersion": "ProductVersion", "Manufacturer": "CompanyName",
                 "ARPCOMMENTS": "Comments"}
VALUE_LIMIT = 4096   # characters of one value
MEMORY_LIMIT = 512 << 20
CPU_SECONDS = 20     # less than the time-out of the callers


def _out_of_time(_number, _frame):
    raise TimeoutError("the file takes too long to parse")


def limit_resources():
    """Limits time and memory for malicious files: parsing fails, or in the worst case the process is killed."""
    signal.signal(signal.SIGXCPU, _out_of_time)
    resource.setrlimit(resource.RLIMIT_DATA, (MEMORY_LIMIT, MEMORY_LIMIT))
    resource.setrlimit(resource.RLIMIT_CPU, (CPU_SECONDS, CPU_SECONDS + 5))


def open_pe(path):
    """The file with its resource directory parsed; pefile.PEFormatError or OSError for anything but a PE file."""
    import pefile

    with open(os.open(path, os.O_RDONLY | os.O_NONBLOCK), "rb") as file:
        if not stat.S_ISREG(os.fstat(file.fileno()).st_mode):
            raise OSError(f"{path} is not a file")
        pe = pefile.PE(data=mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ), fast_load=True)
    try:
        pe.parse_data_directories(directories=[pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_RESOURCE"]])
    except BaseException:
        pe.close()
        raise
    return pe


def version_strings(pe):
    """Names and values of all string tables; if languages differ, the first one is used."""
    strings = {}
    for block in getattr(pe, "FileInfo", None) or []:
        for entry in block:
            for table in getattr(entry, "StringTable", None) or []:
                for name, value in table.entries.items():
                    strings.setdefault(_text(name), _text(value))
    _fill_from_numbers(pe, strings)
    strings.pop("", None)
    return strings


def _text(raw):
    text = raw.decode("utf-8", "replace") if isinstance(raw, bytes) else str(raw)
    return "".join(c for c in text.split("\0")[0] if not 0xD800 <= ord(c) < 0xE000).strip()[:VALUE_LIMIT]


def _fill_from_numbers(pe, strings):
    """Uses the numeric versions if there is no text."""
    for fixed in (getattr(pe, "VS_FIXEDFILEINFO", None) or [])[:1]:
        for name in ("FileVersion", "ProductVersion"):
            high, low = getattr(fixed, name + "MS"), getattr(fixed, name + "LS")
            if not strings.get(name) and (high or low):
                strings[name] = f"{high >> 16}.{high & 0xFFFF}.{low >> 16}.{low & 0xFFFF}"


def is_package(path):
    try:
        with open(os.open(path, os.O_RDONLY | os.O_NONBLOCK), "rb") as file:
            return file.read(len(PACKAGE_MAGIC)) == PACKAGE_MAGIC
    except OSError:
        return False


def package_properties(path):
    """Values of the Property table; empty for other compound files or without msitools."""
    import subprocess

    try:
        ended = subprocess.run(["msiinfo", "export", os.path.abspath(path), "Property"], stdin=subprocess.DEVNULL,
                               capture_output=True, timeout=CPU_SECONDS, check=False)
    except (OSError, subprocess.SubprocessError):
        return {}
    rows = [line.split(b"\t", 1) for line in ended.stdout.splitlines()[3:]]
    values = {_text(row[0]): _text(row[1]) for row in rows if len(row) == 2}
    return {ours: values[theirs] for theirs, ours in PACKAGE_NAMES.items() if values.get(theirs)}


def read_version_info(path):
    """The version block; None if the file is not a readable executable."""
    if is_package(path):
        return package_properties(path)
    try:
        pe = open_pe(path)
    except Exception:  # untrusted input: any error of the parser has the same result
        return None
    try:
        return version_strings(pe)
    except Exception:
        return {}
    finally:
        pe.close()


def main(argv):
    if len(argv) != 1:
        print("{}")
        print("usage: pe_version_info.py FILE", file=sys.stderr)
        return 64
    limit_resources()
    info = read_version_info(argv[0])
    print(json.dumps(info or {}))
    return 1 if info is None else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
