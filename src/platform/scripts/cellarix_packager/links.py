"""What becomes of a bottle's symbolic links in a package."""

import os
import re

# Wine's own files: another machine has its own there.
WINE = re.compile(r"/(usr|opt)/(.+/)?wine[^/]*/")
# What other packages have installed, such as fonts, counts as the system's only in the directory of Windows.
SYSTEM = "/usr/"
# The shared files of a package that the bottle was made from.
PACKAGED = re.compile(r"/opt/apps/[^/]+/files/bottle/")
FOLDERS = {"desktop": "DESKTOP", "documents": "DOCUMENTS", "downloads": "DOWNLOAD", "music": "MUSIC",
           "pictures": "PICTURES", "videos": "VIDEOS", "templates": "TEMPLATES"}

INSIDE, SYSTEM_FILE, FULL, FOLDER, OUTSIDE = "inside", "system", "full", "folder", "outside"


def kind(bottle_dir, data_dir, relative, target):
    """INSIDE leads to something of the bottle, SYSTEM_FILE to a file of the system, such as Wine's own, which stays a
    link; FULL to a file of a runner, template or installed package that another machine may not have; FOLDER from a profile to a folder of the
    home directory; OUTSIDE to anything else. `target` is an absolute path without links."""
    if target.startswith(bottle_dir + "/"):
        return INSIDE
    if target.startswith(tuple(os.path.join(data_dir, name) + "/" for name in ("runners", "templates", "dxvk", "vkd3d"))) or \
            PACKAGED.match(target):
        return FULL if os.path.isfile(target) else OUTSIDE
    parts = relative.lower().split("/")
    if WINE.match(target) or (target.startswith(SYSTEM) and parts[:2] == ["drive_c", "windows"]):
        return SYSTEM_FILE if os.path.isfile(target) else OUTSIDE
    if parts[:2] == ["drive_c", "users"] and len(parts) > 3 and parts[-1] in FOLDERS:
        return FOLDER
    return OUTSIDE
