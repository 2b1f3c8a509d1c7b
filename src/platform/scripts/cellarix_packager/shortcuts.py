"""Icons on the user's desktop for the programs of a package."""

import glob
import os
import re

from cellarix_launcher.origin import RECORD

from cellarix_packager import bottlefiles, detached, layout

MENU = "/usr/share/applications"
MARK = "desktop-icons"  # in the bottle's record: the paths of the icons that have been made, a line each


def provide(bottle):
    """Makes the icons once for each bottle, so that one that the user removes stays away. They start what the menu
    entries start. `ID.desktop` is the name by which the application knows a program's icon."""
    desktop = bottle.home_folder("DESKTOP", "Desktop")
    mark = os.path.join(bottle.directory, RECORD, MARK)
    if os.path.exists(mark) or not os.path.isdir(desktop):
        return
    made = []
    try:
        for program, text in _menu_entries(bottle.package.name):
            path = os.path.join(desktop, program + ".desktop")
            if not os.path.lexists(path):
                _write(path, text)
                made.append(path + "\n")
        bottlefiles.write(mark, "".join(made))
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
    detached.run("gio", "set", path, "metadata::trusted", "true")
