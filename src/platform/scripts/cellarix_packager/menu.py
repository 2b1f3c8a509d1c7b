"""The menu entries of a package and their icons."""

import json
import os
import re
import struct
import textwrap

from cellarix_launcher.bottle import read_file

from cellarix_packager import bottlefiles, contents, layout

ICON_LIMIT = 4 << 20
COMMENT_LENGTH = 120
THEME_SIZES = (16, 22, 24, 32, 36, 48, 64, 72, 96, 128, 192, 256, 512)
SUFFIX = "-cellarix"
NOTE, NOTE_LIMIT = "pkgcfg/menu.json", 65536
FALLBACK_ICON = "application-x-executable"
CATEGORIES = {
    "Internet": "Network;", "Chat": "Network;InstantMessaging;", "Music": "AudioVideo;Audio;",
    "Video": "AudioVideo;Video;", "Graphics": "Graphics;", "Game": "Game;", "Office": "Office;", "Reading": "Office;",
    "Development": "Development;", "System": "System;",
}


def add(request, programs, bottle_dir, add_entry):
    """A desktop entry for each program, and the icon of each that has one, whose place goes into the program's record.
    `programs` maps ids to records."""
    names = _names(request.package, programs, plain_program(bottle_dir, programs))
    for uuid, program in sorted(programs.items()):
        name = names[uuid]
        icon = _icon(bottle_dir, uuid)
        if icon:
            width, data = icon
            add_entry(contents.text_entry(_icon_path(width, name), data))
            program["icon"] = "/" + _icon_path(width, name)
        title = request.name if len(programs) == 1 else str(program.get("name") or request.name)
        add_entry(contents.text_entry(f"usr/share/applications/{name}.desktop",
                                      _desktop_entry(request, title, name if icon else FALLBACK_ICON, uuid)))


def plain_program(bottle_dir, programs):
    """The id of the program whose entry is named as the package: the one of the first package. May be none of `programs`;
    empty if the first package has several."""
    try:
        record = json.loads(read_file(os.path.join(bottle_dir, NOTE), NOTE_LIMIT))
    except (OSError, ValueError, RecursionError):
        record = None
    known = record.get("plain") if isinstance(record, dict) else None
    return known if isinstance(known, str) else next(iter(programs)) if len(programs) == 1 else ""


def note_plain(bottle_dir, uuid):
    """For the packages to come: a name that a user has put into a panel stays that of one program. An empty id tells that
    no entry is named as the package."""
    try:
        bottlefiles.write(os.path.join(bottle_dir, NOTE), json.dumps({"plain": uuid}) + "\n")
    except OSError as error:
        print(f"the menu entries of the next package may have other names: {error}")


def _names(package, programs, plain):
    """Names of files that no other package has, and that stay when programs are added."""
    short = {uuid: uuid[:8].lower() for uuid in programs}
    unique = short if len(set(short.values())) == len(short) else {uuid: uuid.lower() for uuid in programs}
    return {uuid: package + SUFFIX + ("" if uuid == plain else f"-{word}") for uuid, word in unique.items()}


def _icon(bottle_dir, uuid):
    """(width, bytes) of the picture that the bottle has for the program."""
    try:
        data = read_file(os.path.join(bottle_dir, "icons", uuid + ".png"), ICON_LIMIT)
    except (OSError, ValueError):
        return None
    if len(data) < 24 or data[:8] != b"\x89PNG\r\n\x1a\n":
        return None
    width, height = struct.unpack(">II", data[16:24])
    return (width, data) if width == height else (0, data)


def _icon_path(width, name):
    place = f"icons/hicolor/{width}x{width}/apps" if width in THEME_SIZES else "pixmaps"
    return f"usr/share/{place}/{name}.png"


def _desktop_entry(request, title, icon, uuid):
    lines = ("[Desktop Entry]", "Type=Application", "Version=1.1", f"Name={_value(title)}",
             f"Icon={icon}", f"Exec=/{layout.program_root(request.package)}/run {uuid}",
             f"Categories={CATEGORIES.get(request.category, 'Utility;')}", "StartupNotify=true")
    comment = _value(textwrap.shorten(request.description, COMMENT_LENGTH, placeholder="..."))
    window = _value(_program_file(request, uuid))
    more = (f"Comment={comment}",) if comment and comment != _value(title) else ()
    more += (f"StartupWMClass={window}",) if window else ()
    return "\n".join(lines + more) + "\n"


def _program_file(request, uuid):
    """The class that Wine gives to the program's windows; empty where that is not known, as for shortcuts."""
    path = next((source.path for source in request.sources if source.uuid == uuid), "")
    name = re.split(r"[/\\]", path)[-1].lower()
    return name if name.endswith(".exe") else ""


def _value(text):
    return "".join(c if c.isprintable() else " " for c in text).replace("\\", "\\\\").strip()
