"""Starts a program of an installed package.

usage: packaged_program.py DIRECTORY PROGRAM

DIRECTORY is that of the package ("files"), PROGRAM an id. Makes the user's bottle at the first start and brings it to
the version of the package afterwards, then hands the program to the application, as the menu entries of bottles do.
"""

import html
import os
import signal
import sys

from cellarix_packager import detached, layout, messages, shortcuts
from cellarix_packager.errors import PackageError
from cellarix_packager.package import Package
from cellarix_packager.userbottle import UserBottle

UNREADY = ("being-prepared", "cancelled")  # another start changes the bottle, or the user wants no program


def main(argv):
    if len(argv) != 2 or not layout.PROGRAM_ID.fullmatch(argv[1]):
        print("usage: packaged_program.py DIRECTORY PROGRAM", file=sys.stderr)
        return 64
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, _interrupt)
    try:
        bottle = _provided(argv[0])
    except PackageError as error:
        _tell(error)
        return 1
    application = _beside("cellarix")
    try:
        shortcuts.provide(bottle)
        os.execv(application, [application, f"lumorawine://{bottle.name}/{argv[1]}"])
    except OSError as error:
        _tell(PackageError(f"{application}: {error.strerror}", "no-application", application))
    return 1


def _interrupt(number, _frame):
    sys.exit(128 + number)


def _provided(root):
    """The bottle to start in. One of the package's version that only lacks files of Wine is started as it is; one whose
    upgrade has not ended, or not begun, would have files of two versions."""
    bottle = UserBottle(Package(os.path.realpath(root)), os.environ, [_beside("cellarix-bottle-progress")])
    try:
        bottle.provide()
    except PackageError as error:
        if error.cause in UNREADY or not bottle.is_current():
            raise
        _tell(error)
    except OSError as error:
        raise PackageError(f"{error.filename}: {error.strerror}", "not-made", str(error)) from None
    if notice := bottle.notice():
        _tell(notice)
    return bottle


def _tell(error):
    """A menu shows no messages: the sentence goes to the notifications of the desktop, which take markup. A user who has
    cancelled knows."""
    text = messages.text(error, os.environ)
    print(text, file=sys.stderr)
    if error.cause == "cancelled":
        return
    place = ("org.freedesktop.Notifications", "/org/freedesktop/Notifications", "org.freedesktop.Notifications", "Notify")
    content = ("Cellarix", "0", "cellarix", "Cellarix", html.escape(text, quote=False), "0", "0", "-1")
    detached.run("busctl", "--user", "--quiet", "--", "call", *place, "susssasa{sv}i", *content)


def _beside(program):
    """A program of the application: files/bin beside files/share/cellarix/service."""
    service = os.path.dirname(os.path.dirname(os.path.realpath(__file__)))
    return os.path.join(os.path.dirname(os.path.dirname(os.path.dirname(service))), "bin", program)
