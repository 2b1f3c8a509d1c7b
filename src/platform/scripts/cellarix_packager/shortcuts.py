"""Icons on the user's desktop for the programs of a package."""

import glob
import os
import re
import subprocess

from cellarix_packager import bottlefiles, layout

MENU = "/usr/share/applications"
MARK = "desktop-icons"  # in the bottle's record: the icons have been made
SECONDS = 5


def provide(bottle):
    """Makes the icons once for each bottle, so that one that the user removes stays away. They start what the menu
    entries start. `ID.desktop` is the name by which the application knows a program's icon."""
    desktop = bottle.home_folder("DESKTOP", "Desktop")
    mark = os.path.join(bottle.directory, layout.RECORD, MARK)
    if os.path.exists(mark) or not os.path.isdir(desktop):
        return
    try:
        for program, text in _menu_entries(bottle.package.name):
            path = os.path.join(desktop, program + ".desktop")
            if not os.path.lexists(path):
                _write(path, text)
        bottlefiles.write(mark, "")
    except OSError:
        pass  # the program starts without an icon


def _menu_entries(package):
    """Pairs of the id of a program and the text of its menu entry."""
    run = f"/{layout.program_root(package)}/run"
    for path in sorted(glob.glob(os.path.join(MENU, glob.escape(package) + "*.desktop"))):
        text = bottlefiles.text(path)
        found = re.search(rf"^Exec={re.escape(run)} (\S+)$", text, re.M)
        if found and layout.PROGRAM_ID.fullmatch(found[1]):
            # Desktops hide an entry whose TryExec is missing: the package may be removed.
            yield found[1], text.rstrip("\n") + f"\nTryExec={run}\n"


def _write(path, text):
    """Desktops start only what is executable, some only what is trusted besides."""
    bottlefiles.write(path, text)
    os.chmod(path, 0o755)
    try:
        subprocess.run(["gio", "set", path, "metadata::trusted", "true"], timeout=SECONDS, stdin=subprocess.DEVNULL,
                       capture_output=True, check=False)
    except (OSError, subprocess.TimeoutExpired):
        pass  # not a desktop that asks for it
