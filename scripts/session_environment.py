"""The environment of a session: what exists already, and the directories that it uses."""

import os
import pathlib
import re
import shutil
import stat
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
SERVICE = "com.lumora.LumoraWineLauncher"
TEMPORARY = re.compile(r"cellarix-session-(\d+)-\w+")
# Variables of the desktop that the process was started from.
DESKTOP_VARIABLES = (
    "DISPLAY WAYLAND_DISPLAY XAUTHORITY DBUS_SESSION_BUS_ADDRESS DBUS_STARTER_ADDRESS DBUS_STARTER_BUS_TYPE "
    "SESSION_MANAGER DESKTOP_SESSION XDG_CURRENT_DESKTOP XDG_SESSION_DESKTOP XDG_SESSION_ID XDG_SESSION_TYPE XDG_SEAT "
    "XDG_CONFIG_DIRS QT_QPA_PLATFORM QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE QT_SCALE_FACTOR WINEPREFIX WINEARCH "
    "WINEDEBUG WINEDLLOVERRIDES"
).split()


class SessionError(Exception):
    """The session cannot be set up; the text is the reason."""


# --- existing display, bus and prefix --------------------------------------------------------------------------


def answers(command, env):
    try:
        done = subprocess.run(command, env=env, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, timeout=10, check=True)
        return done.stdout.decode(errors="replace")
    except (OSError, subprocess.SubprocessError):
        return None


def display_works(env):
    return bool(env.get("DISPLAY")) and answers(["xdpyinfo"], env) is not None


def bus_names(env, method):
    """The names that the bus returns; None without a bus."""
    reply = answers(["dbus-send", "--session", "--dest=org.freedesktop.DBus", "--print-reply", "/org/freedesktop/DBus",
                     "org.freedesktop.DBus." + method], env)
    return None if reply is None else re.findall(r'string "([^"]*)"', reply)


def has_bus_address(env):
    # Without an address libdbus would start a bus that nothing stops.
    return bool(env.get("DBUS_SESSION_BUS_ADDRESS")) or os.path.exists(os.path.join(env["XDG_RUNTIME_DIR"], "bus"))


def installed_prefix():
    if os.environ.get("CELLARIX_PREFIX"):
        return os.path.abspath(os.environ["CELLARIX_PREFIX"])
    build = pathlib.Path(os.environ.get("CELLARIX_BUILD") or ROOT / "build/dev")
    try:
        found = re.search(r"^CELLARIX_PREFIX:\w+=(.+)$", (build / "CMakeCache.txt").read_text(), re.M)
    except OSError:
        found = None
    return found[1] if found else str(ROOT / "build/prefix")


def service_command(prefix):
    """The command in the installed activation file; empty if that is not installed."""
    for file in sorted(pathlib.Path(prefix, "files/share/dbus-1/services").glob("*.service")):
        text = file.read_text(errors="replace")
        if re.search(rf"^Name={re.escape(SERVICE)}\s*$", text, re.M):
            line = re.search(r"^Exec=(.+)$", text, re.M)
            return line[1].split() if line else []
    return []


# --- directories -----------------------------------------------------------------------------------------------


def runtime_directory(env):
    """A directory of this user that is the same on every call, so that a second start finds the first."""
    for name in (env.get("XDG_RUNTIME_DIR"), f"/run/user/{os.getuid()}"):
        if name and os.path.isdir(name) and os.access(name, os.W_OK):
            return name
    name = os.path.join("/tmp", f"cellarix-runtime-{os.getuid()}")
    try:
        os.mkdir(name, 0o700)
    except FileExistsError:
        pass
    about = os.lstat(name)
    if not stat.S_ISDIR(about.st_mode) or about.st_uid != os.getuid():
        raise SessionError(f"{name} belongs to somebody else; set XDG_RUNTIME_DIR")
    if stat.S_IMODE(about.st_mode) != 0o700:
        os.chmod(name, 0o700)
    return name


def remove_leftovers():
    """Removes the directories of killed sessions."""
    for entry in os.scandir(tempfile.gettempdir()):
        found = TEMPORARY.fullmatch(entry.name)
        if not found or entry.is_symlink() or entry.stat(follow_symlinks=False).st_uid != os.getuid():
            continue
        if not os.path.exists(f"/proc/{found[1]}"):
            shutil.rmtree(entry.path, ignore_errors=True)


def private_environment(env, directory):
    for name in DESKTOP_VARIABLES:
        env.pop(name, None)
    home = os.path.join(directory, "home")
    places = {"HOME": home, "XDG_CONFIG_HOME": home + "/.config", "XDG_DATA_HOME": home + "/.local/share",
              "XDG_CACHE_HOME": home + "/.cache", "XDG_STATE_HOME": home + "/.local/state",
              "XDG_RUNTIME_DIR": os.path.join(directory, "runtime")}
    for place in places.values():
        os.makedirs(place, mode=0o700)
    env.update(places)
    env["XDG_DATA_DIRS"] = "/usr/local/share:/usr/share"
    env.setdefault("CELLARIX_PREPARE_SECONDS", "-1")  # most temporary homes never have a bottle


def template_directories(env):
    """The session's own templates, and those shared by sessions with the same build of the service."""
    try:
        build = str(os.stat(service_command(env["CELLARIX_PREFIX"])[0]).st_mtime_ns)
    except (KeyError, IndexError, OSError):
        return None
    shared = pathlib.Path(env["CELLARIX_TEMPLATES"])
    for old in shared.glob("*"):
        if old.name != build:
            shutil.rmtree(old, ignore_errors=True)
    places = (pathlib.Path(env["XDG_DATA_HOME"], "lumora-wine-bottles/templates"), shared / build)
    for place in places:
        place.mkdir(parents=True, exist_ok=True)
    return places


def copy_templates(source, target):
    for template in source.glob("[!.]*"):
        if (target / template.name).exists():
            continue
        with tempfile.TemporaryDirectory(prefix=".", dir=target) as work:
            try:
                subprocess.run(["cp", "-a", template, work], check=True)
                os.rename(os.path.join(work, template.name), target / template.name)
            except (OSError, subprocess.SubprocessError):
                pass  # the disk is full, or another session has copied it


def take_templates(env):
    own, shared = template_directories(env) or (None, None)
    if not own:
        return
    copy_templates(shared, own)
    # Wine has made some of the user's folders links to the home directory.
    for link in own.glob("*/drive_c/users/*/*"):
        if link.is_symlink():
            link.unlink()
            link.symlink_to(env["HOME"])


def leave_templates(env):
    own, shared = template_directories(env) or (None, None)
    if own:
        copy_templates(own, shared)
