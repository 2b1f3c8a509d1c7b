"""The places of a package that the packer and the installed program both know.

/opt/apps/PACKAGE/files has "run" (what the menu starts), "package.json" (FORMAT, name, version, programs), "files.json"
(what a bottle consists of) and "bottle", the shared files themselves.
"""

import re

FORMAT = 2  # since 2 the files of Wine are named only
FORMATS = (1, 2)
USER = "packaged-user"  # stands for the user's name in paths and registry files of a package
PROFILE = f"drive_c/users/{USER}"
REGISTRIES = ("system.reg", "user.reg", "userdef.reg")
SETTINGS = "bottle.yml"
NO_UPDATE = (".update-timestamp", b"disable\n")  # Wine must not update a prefix with links into its own directory
APPLICATION = "cellarix"  # the package that runs packages
SINCE = "3.3.4.008"  # its first version that reads FORMAT
STARTER = "/opt/apps/cellarix/files/share/cellarix/service/packaged_program.py"
PROGRAM_ID = re.compile(r"[0-9a-fA-F]{8}(-[0-9a-fA-F]{4}){3}-[0-9a-fA-F]{12}")


def program_root(package):
    return f"opt/apps/{package}/files"
