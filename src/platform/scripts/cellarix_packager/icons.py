"""The smaller pictures of a program's icon, as its maker has drawn them: menus look better with them than with a large
picture that the desktop shrinks."""

import os
import re
import subprocess
import tempfile

from cellarix_packager import contents

SIZES = (16, 22, 24, 32, 48, 64, 96, 128)
SECONDS = 30
LIMIT = 1 << 20  # bytes of a picture
PLACE = re.compile(r"usr/share/(?:icons/hicolor/(\d+)x\d+/apps|pixmaps)/([^/]+\.png)")


def add_smaller(sources, programs, found):
    """`programs` maps ids to records that name the icons in the Contents `found`."""
    for source in sources:
        place = str(programs.get(source.uuid, {}).get("icon") or "").lstrip("/")
        match, entry = PLACE.fullmatch(place), found.entries.get(place)
        if not match or entry is None or not source.path.startswith("/"):
            continue
        for width, data in sorted(_pictures(source.path, entry.data).items()):
            smaller = f"usr/share/icons/hicolor/{width}x{width}/apps/{match[2]}"
            if smaller not in found.entries:
                found.add(contents.text_entry(smaller, data))


def _pictures(program, known):
    """PNG files by width. Empty if the picture `known` is not of the program's icon: the user has chosen another."""
    with tempfile.TemporaryDirectory(prefix="cellarix-icons-") as folder:
        ico = os.path.join(folder, "icon.ico")
        if not _run(_extractor(), "--no-convert", program, "icon.ico", folder) or not _run("icotool", "-x", "-o", folder, ico):
            return {}
        depths, pictures, is_known = {}, {}, False
        for name in sorted(os.listdir(folder)):
            match = re.fullmatch(r"icon_\d+_(\d+)x(\d+)x(\d+)\.png", name)
            if not match:
                continue
            with open(os.path.join(folder, name), "rb") as file:
                data = file.read(LIMIT)
            is_known = is_known or data == known
            width, height, depth = (int(group) for group in match.groups())
            if width == height and width in SIZES and len(data) < LIMIT and depth > depths.get(width, 0):
                depths[width], pictures[width] = depth, data
    return pictures if is_known else {}


def _run(*command):
    try:
        return subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, timeout=SECONDS, check=False).returncode == 0
    except (OSError, ValueError, subprocess.TimeoutExpired):
        return False


def _extractor():
    """It lies beside the directory of this program's script, or in it."""
    service = os.path.dirname(os.path.dirname(os.path.realpath(__file__)))
    installed = os.path.join(os.path.dirname(service), "scripts", "icon_extractor.py")
    return installed if os.path.exists(installed) else os.path.join(service, "icon_extractor.py")
