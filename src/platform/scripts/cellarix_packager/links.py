"""What becomes of a bottle's symbolic links in a package."""

import os

# Where the packages of the system have their files: another machine has its own there.
SYSTEM = ("/usr/", "/opt/")
FOLDERS = {"desktop": "DESKTOP", "documents": "DOCUMENTS", "downloads": "DOWNLOAD", "music": "MUSIC",
           "pictures": "PICTURES", "videos": "VIDEOS", "templates": "TEMPLATES"}

INSIDE, SYSTEM_FILE, FULL, FOLDER, OUTSIDE = "inside", "system", "full", "folder", "outside"


def kind(bottle_dir, data_dir, relative, target):
    """INSIDE leads to something of the bottle, SYSTEM_FILE to a file of the system, such as Wine's own, which stays a
    link; FULL to a file of a runner or template that only this user has; FOLDER from a profile to a folder of the
    home directory; OUTSIDE to anything else. `target` is an absolute path without links."""
    if target.startswith(bottle_dir + "/"):
        return INSIDE
    if target.startswith(tuple(os.path.join(data_dir, name) + "/" for name in ("runners", "templates", "dxvk", "vkd3d"))):
        return FULL if os.path.isfile(target) else OUTSIDE
    if target.startswith(SYSTEM):
        return SYSTEM_FILE if os.path.isfile(target) else OUTSIDE
    parts = relative.lower().split("/")
    if parts[:2] == ["drive_c", "users"] and len(parts) > 3 and parts[-1] in FOLDERS:
        return FOLDER
    return OUTSIDE
