"""The environment of a launch, and the Wine that it uses."""

import os

from cellarix_launcher import characters, errors

OVERRIDES = "WINEDLLOVERRIDES"
MENU_BUILDER_OFF = "winemenubuilder.exe="
UUID_VARIABLE = "_CXB_WINE_PROGRAM_UUID"
FILE_VARIABLE = "_CXB_WINE_PROGRAM_FILE"  # for a program that is started without an id
# Set by a Wine that the caller may run under; they would mislead the bottle's own Wine.
FOREIGN = ("WINELOADER", "WINEARCH", "WINEDLLPATH", "WINESERVER", "WINEPREFIX", "WINELOADERNOEXEC", "WINESERVERSOCKET")


def wine_environment(bottle, caller, uuid, program_envs, file=""):
    """The caller's variables with a UTF-8 locale, overridden by the bottle's, then by the program's. A WINEDEBUG of
    the caller takes precedence, since the caller reads the log and has chosen its channels."""
    env = characters.with_utf8({name: value for name, value in caller.items() if name not in FOREIGN})
    # The overrides of all layers are joined; the last one for a DLL counts. winemenubuilder is off by default.
    overrides = [MENU_BUILDER_OFF, env.get(OVERRIDES, "")]
    for layer in (bottle.env, program_envs):
        for name, value in layer.items() if isinstance(layer, dict) else ():
            if name == OVERRIDES and _usable(name, value):
                overrides.append(_text(value))
            elif _usable(name, value):
                env[name] = _text(value)
    env[OVERRIDES] = ";".join(part for part in overrides if part)
    env["WINEPREFIX"] = bottle.directory
    env["WINEDEBUG"] = caller.get("WINEDEBUG") or env.get("WINEDEBUG") or "fixme-all"
    if bottle.wineserver:
        env["WINESERVER"] = bottle.wineserver
    env.pop(FILE_VARIABLE, None)
    if uuid:
        env[UUID_VARIABLE] = uuid
    elif file:
        env[FILE_VARIABLE] = file
    return env


def _usable(name, value):
    if not isinstance(name, str) or not name or "=" in name or "\0" in name:
        return False
    return isinstance(value, (str, int, float)) and "\0" not in str(value)


def _text(value):
    return str(int(value)) if isinstance(value, bool) else str(value)


def loader_for(wine, bottle_dir, is_32bit):
    """The 64-bit loader of the same Wine, except for 32-bit programs in a 64-bit bottle.

    If both are installed, `wine` is the 32-bit loader: it starts a 64-bit program through a second loader, and does
    not find Wine's programs that exist only in 64 bits, such as winemenubuilder.exe.
    """
    real = os.path.realpath(wine)
    wow64 = os.path.join(bottle_dir, "drive_c", "windows", "syswow64")
    if is_32bit or os.path.basename(real) not in ("wine", "wine-stable") or not os.path.isdir(wow64):
        return wine
    root = os.path.dirname(os.path.dirname(real))
    paths = (os.path.join(root, "bin", "wine64"), os.path.join(root, "lib", "wine", "wine64"))
    return next((path for path in paths if os.path.isfile(path) and os.access(path, os.X_OK)), wine)


def server_beside(wine):
    server = os.path.join(os.path.dirname(wine), "wineserver")
    return server if os.access(server, os.X_OK) else ""


def find_wine(bottle, caller):
    """The bottle's Wine; the system's if the record names none."""
    if bottle.wine:
        if os.path.isfile(bottle.wine) and os.access(bottle.wine, os.X_OK):
            return bottle.wine
        raise errors.LaunchError(
            errors.NO_WINE, f"the Wine of bottle \"{bottle.name}\" is missing: {bottle.wine} is not a program",
            "no-own-wine", bottle.wine)
    for directory in (caller.get("PATH") or "/usr/bin:/bin").split(":"):
        path = os.path.join(directory, "wine")
        if directory.startswith("/") and os.path.isfile(path) and os.access(path, os.X_OK):
            return path
    raise errors.LaunchError(errors.NO_WINE, "Wine is not installed; install the package wine", "no-wine")
