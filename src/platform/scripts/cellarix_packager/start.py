"""Starts a program of an installed package.

usage: packaged_program.py DIRECTORY PROGRAM

DIRECTORY is that of the package ("files"), PROGRAM an id. Makes the user's bottle at the first start and brings it to
the version of the package afterwards, then hands the program to the application, as the menu entries of bottles do.
"""

import os
import sys

from cellarix_packager import layout
from cellarix_packager.errors import PackageError
from cellarix_packager.package import Package
from cellarix_packager.userbottle import UserBottle


def main(argv):
    if len(argv) != 2 or not layout.PROGRAM_ID.fullmatch(argv[1]):
        print("usage: packaged_program.py DIRECTORY PROGRAM", file=sys.stderr)
        return 64
    try:
        package = Package(os.path.realpath(argv[0]))
        bottle = UserBottle(package, os.environ)
        _provide(bottle)
    except PackageError as error:
        print(error, file=sys.stderr)
        return 1
    application = _application()
    try:
        os.execv(application, [application, f"lumorawine://{bottle.name}/{argv[1]}"])
    except OSError as error:
        print(f"{application}: {error.strerror}", file=sys.stderr)
    return 1


def _provide(bottle):
    """A bottle that cannot be upgraded is started as it is; one that cannot be made is refused by the application in a
    window, since a menu shows no messages."""
    try:
        bottle.provide()
    except (PackageError, OSError) as error:
        print(error, file=sys.stderr)


def _application():
    """files/bin/cellarix beside files/share/cellarix/service."""
    service = os.path.dirname(os.path.dirname(os.path.realpath(__file__)))
    return os.path.join(os.path.dirname(os.path.dirname(os.path.dirname(service))), "bin", "cellarix")
