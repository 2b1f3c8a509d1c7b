"""The files that Debian wants in every package, and the fields of its control file."""

import gzip
import re
import textwrap
from email.utils import formatdate

from cellarix_packager import contents, layout

DEPENDS = f"{layout.APPLICATION} (>= {layout.SINCE})"
SECTIONS = {"Internet": "net", "Chat": "net", "Music": "sound", "Video": "video", "Graphics": "graphics",
            "Game": "games", "Office": "text", "Reading": "text", "Development": "devel", "System": "admin"}
PACKER = "Cellarix packager <packager@cellarix.example>"
WIDTH = 78
ABOUT = ("This package has a Windows program that runs with Wine in a bottle of Cellarix. Each user gets a bottle of "
         "their own when they start it for the first time; its settings and files stay when the package is upgraded "
         "or removed.")


def packer(environ):
    """Who made the package, as Debian's own tools take it from the environment."""
    name, address = (environ.get(key, "") for key in ("DEBFULLNAME", "DEBEMAIL"))
    name, address = (text.encode("utf-8", "ignore").decode().strip() for text in (name, address))
    clean = name.isprintable() and re.fullmatch(r"[^<>]+", name) and re.fullmatch(r"[!-;=?A-~]+@[!-;=?A-~]+", address)
    return f"{name} <{address}>" if clean else PACKER


def _paragraphs(text):
    """The lines of a description's long part: a blank before each, a dot for an empty one."""
    lines = []
    for line in text.splitlines():
        clean = "".join(c if c.isprintable() else " " for c in line).strip()
        lines += [" " + part for part in textwrap.wrap(clean, WIDTH)] or [" ."]
    return lines


def _description(request):
    words = " ".join(request.description.split())
    short = textwrap.shorten(request.name, 60, placeholder="...") + " (Windows program)"
    long = _paragraphs(request.description.strip()) + [" ."] if words else []
    return [f"Description: {short}", *long, *_paragraphs(ABOUT)]


def control(request, size, who):
    lines = [f"Package: {request.package}", f"Version: {request.version}", f"Architecture: {request.architecture}",
             f"Maintainer: {who}", f"Installed-Size: {-(-size // 1024)}", f"Depends: {DEPENDS}",
             f"Section: {SECTIONS.get(request.category, 'misc')}", "Priority: optional"]
    return ("\n".join(lines + _description(request)) + "\n").encode()


def md5sums(sums):
    return b"".join(f"{digest}  {path}\n".encode("utf-8", "surrogateescape") for path, digest in sorted(sums.items()))


def documents(request, who, time):
    place = f"usr/share/doc/{request.package}"
    changelog = (f"{request.package} ({request.version}) stable; urgency=medium\n\n  * Packed from a bottle.\n\n"
                 f" -- {who}  {formatdate(time)}\n")
    year = formatdate(time).split()[3]
    copyright_text = (
        "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n"
        f"Upstream-Name: {request.name}\n"
        "Comment: Packed from a bottle with Cellarix. The licence is that of the program's maker.\n\n"
        f"Files: *\nCopyright: {year} the makers of {request.name}\nLicense: see-program\n"
        " The terms of the program's maker apply; they usually come with the program.\n")
    overrides = "".join(f"{request.package}: {tag}\n" for tag in (
        "dir-or-file-in-opt", "initial-upload-closes-no-bugs"))
    return [contents.text_entry(f"{place}/changelog.gz", gzip.compress(changelog.encode(), 9, mtime=0)),
            contents.text_entry(f"{place}/copyright", copyright_text),
            contents.text_entry(f"usr/share/lintian/overrides/{request.package}",
                                "# Packed programs have their place below /opt/apps.\n" + overrides)]


def run_script(request):
    """What the menu starts, with the script of the installed application, wherever this one is."""
    root = "/" + layout.program_root(request.package)
    text = f"#!/bin/sh\nexec {layout.STARTER} {root} \"$@\"\n"
    return contents.text_entry(layout.program_root(request.package) + "/run", text, executable=True)
