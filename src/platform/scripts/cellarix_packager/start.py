"""Starts a program of an installed package.

usage: packaged_program.py DIRECTORY PROGRAM
       packaged_program.py --orphans

DIRECTORY is that of the package ("files"), PROGRAM an id. Makes the user's bottle at the first start and brings it to
the version of the package afterwards, then hands the program to the application, as the menu entries of bottles do.
--orphans prints the bottles whose package is not installed any more: [{"bottle", "package"}].
"""

import html
import json
import os
import subprocess
import sys

from cellarix_packager import layout, origin
from cellarix_packager.errors import PackageError
from cellarix_packager.package import Package
from cellarix_packager.userbottle import UserBottle

NOTIFY_SECONDS = 5


def main(argv):
    if argv == ["--orphans"]:
        found = origin.orphans(layout.data_directory(os.environ))
        print(json.dumps([{"bottle": bottle, "package": package} for bottle, package in found]))
        return 0
    if len(argv) != 2 or not layout.PROGRAM_ID.fullmatch(argv[1]):
        print("usage: packaged_program.py DIRECTORY PROGRAM", file=sys.stderr)
        return 64
    try:
        package = Package(os.path.realpath(argv[0]))
        bottle = UserBottle(package, os.environ)
        _provide(bottle)
    except PackageError as error:
        _tell(error)
        return 1
    application = _application()
    try:
        os.execv(application, [application, f"lumorawine://{bottle.name}/{argv[1]}"])
    except OSError as error:
        _tell(f"{application}: {error.strerror}")
    return 1


def _provide(bottle):
    """A bottle that cannot be upgraded is started as it is; one that cannot be made is refused by the application."""
    try:
        bottle.provide()
    except (PackageError, OSError) as error:
        _tell(error)


def _tell(error):
    """A menu shows no messages: the sentence goes to the notifications of the desktop, which take markup."""
    print(error, file=sys.stderr)
    place = ("org.freedesktop.Notifications", "/org/freedesktop/Notifications", "org.freedesktop.Notifications", "Notify")
    content = ("Cellarix", "0", "cellarix", "Cellarix", html.escape(str(error), quote=False), "0", "0", "-1")
    try:
        subprocess.run(["busctl", "--user", "--quiet", "--", "call", *place, "susssasa{sv}i", *content], timeout=NOTIFY_SECONDS,
                       capture_output=True, check=False)
    except (OSError, ValueError, subprocess.TimeoutExpired):
        pass  # there is no desktop


def _application():
    """files/bin/cellarix beside files/share/cellarix/service."""
    service = os.path.dirname(os.path.dirname(os.path.realpath(__file__)))
    return os.path.join(os.path.dirname(os.path.dirname(os.path.dirname(service))), "bin", "cellarix")
