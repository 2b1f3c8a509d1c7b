"""What of a bottle is the packer's own business and stays at home."""

import fnmatch
import os
import re

from cellarix_packager import place

# Relative to drive_c, in lower case; a directory stays, its contents do not go along.
DIRECTORIES = (
    "windows/temp", "windows/logs", "users/*/temp", "users/*/recent", "users/*/cookies",
    "users/*/documents", "users/*/desktop", "users/*/downloads", "users/*/pictures", "users/*/music", "users/*/videos",
    "users/*/my documents", "users/*/my music", "users/*/my pictures", "users/*/my videos", "users/*/favorites",
    "users/*/saved games", "users/*/contacts", "users/*/links", "users/*/searches", "users/*/onedrive", "users/*/.*",
    "windows/prefetch", "windows/minidump", "$recycle.bin", "recycler",
    "programdata/microsoft/crypto", "programdata/microsoft/windows/wer",
    "users/*/appdata/local/temp", "users/*/appdata/local/crashdumps", "users/*/appdata/*/microsoft/windows/recent",
    "users/*/appdata/*/microsoft/windows/inetcache", "users/*/appdata/*/microsoft/windows/inetcookies",
    "users/*/appdata/*/microsoft/windows/history", "users/*/appdata/*/microsoft/windows/webcache",
    "users/*/appdata/*/microsoft/credentials", "users/*/appdata/*/microsoft/protect",
    "users/*/appdata/*/microsoft/vault", "users/*/appdata/*/microsoft/crypto",
    "users/*/appdata/*/microsoft/systemcertificates", "users/*/appdata/*/microsoft/terminal server client",
    "users/*/appdata/*/microsoft/outlook", "users/*/appdata/*/microsoft/signatures",
    "users/*/appdata/*/microsoft/sticky notes", "users/*/appdata/*/microsoft/office/recent",
    "users/*/appdata/*/microsoft/windows/explorer", "users/*/appdata/*/microsoft/windows/powershell/psreadline",
    "users/*/appdata/*/microsoft/cryptneturlcache", "users/*/appdata/*/microsoft/edge*",
    "users/*/appdata/*/mozilla", "users/*/appdata/*/thunderbird", "users/*/appdata/*/google/chrome*",
    "users/*/appdata/*/chromium", "users/*/appdata/*/opera software", "users/*/appdata/*/bravesoftware",
    "users/*/appdata/*/vivaldi", "users/*/appdata/*/gcloud", "users/*/appdata/*/github cli", "users/*/appdata/*/gnupg",
    "users/*/local settings/temp", "users/*/local settings/history", "users/*/local settings/temporary internet files",
)
# As Windows named them before, and Wine in old bottles.
OLD_NAMES = (("local settings/application data", "appdata/local"), ("application data", "appdata/roaming"))
# Names of directories and files below a user's profile, wherever they lie.
CACHES = ("cache", "cache_data", "code cache", "gpucache", "shadercache", "dawncache", "grshadercache", "crashpad",
          "crash reports", "service worker", "sessions", "session storage", "logs", "npm-cache")
# Directories in which chats keep their log-ins and messages, also beside the program.
LOGINS = ("tdata", "wechat files", "xwechat_files", "tencent files")
PROFILE_LOGINS = LOGINS + ("wallets",)
# Log-ins of programs that are made of a browser.
PROFILE_CACHES = CACHES + ("local storage", "indexeddb", "keystore")
# Passwords, keys and log-ins: at home wherever they lie, since programs also keep them beside themselves.
CREDENTIALS = ("cookies", "cookies-journal", "login data", "login data-*", "login data for account*", "web data", "web data-*",
               "cookies.sqlite*", "places.sqlite*", "formhistory.sqlite*", "key3.db", "key4.db", "cert8.db", "cert9.db",
               "logins.json", "logins-backup.json", "signons.sqlite", "sessionstore.*", "sessionstore-*", "recentservers.xml",
               "sitemanager.xml", "winscp.ini", "_netrc", ".netrc", ".git-credentials", "wallet.dat", "ssfn*", "loginusers.vdf",
               "config/config.vdf", "id_rsa*", "id_dsa*", "id_ecdsa*", "id_ed25519*", "*.ppk", "*.kdbx", "*.kdb", "keepass.config.xml", "*.pfx", "*.p12", "*.rdp", "*.pst",
               "*.ost", "rclone.conf", "pgpass.conf", ".pgpass", ".npmrc", ".pypirc")
FILES = ("credentials", "credentials.*", "access_tokens.*", "token", "token.*", "tokens", "tokens.*",
         "consolehost_history.txt", "*.log", "*.dmp", "history", "history-journal", "top sites*", "visited links")
# Directories of the user's own that are never packed, not even when they are chosen.
SECRET_DIRECTORIES = frozenset((".ssh", ".gnupg", ".aws", ".config", ".mozilla", ".thunderbird", ".password-store"))
WINDOWS_FILES = ("windows/*.log",)

# Registry keys, in lower case as the files of Wine have them, with everything below.
KEYS = tuple(key.replace("\\", "\\\\") for key in (
    r"volatile environment",
    r"software\microsoft\windows\currentversion\explorer\recentdocs",
    r"software\microsoft\windows\currentversion\explorer\comdlg32",
    r"software\microsoft\windows\currentversion\explorer\runmru",
    r"software\microsoft\windows\currentversion\explorer\typedpaths",
    r"software\microsoft\windows\currentversion\explorer\userassist",
    r"software\microsoft\windows\currentversion\explorer\wordwheelquery",
    r"software\microsoft\internet explorer\typedurls",
    r"software\microsoft\internet explorer\intelliforms",
    r"software\microsoft\protected storage system provider",
    r"software\microsoft\terminal server client\default",
    r"software\microsoft\terminal server client\servers",
    r"software\martin prikryl\winscp 2\sessions",
    r"software\simontatham\putty\sshhostkeys",
    r"software\simontatham\putty\sessions", r"software\wine\credential manager", r"software\wine\crypto",
    r"software\microsoft\systemcertificates\my",
    r"software\orl\winvnc3", r"software\realvnc\vncserver", r"software\tightvnc\server",
    r"software\wine\wine\config\recent",
    r"network", r"identities", r"software\microsoft\identitycrl", r"software\openssh\agent",
    r"software\microsoft\windows\currentversion\explorer\mountpoints2",
    r"software\microsoft\windows\currentversion\internet settings\passport",
    r"printers", r"software\microsoft\windows nt\currentversion\devices",
    r"software\microsoft\windows nt\currentversion\printerports",
    *(rf"system\{control}\control\print\printers" for control in ("currentcontrolset", "controlset001")),
))
# Values that name the packer's machine; Wine writes them anew.
VALUES = frozenset((key.replace("\\", "\\\\"), f'"{name}"') for key, name in (
    *((rf"system\{control}\control\computername\{key}", "computername")
      for control in ("currentcontrolset", "controlset001") for key in ("computername", "activecomputername")),
    *((rf"system\{control}\services\tcpip\parameters", name)
      for control in ("currentcontrolset", "controlset001") for name in ("hostname", "nv hostname", "domain", "nv domain")),
    (r"software\microsoft\windows nt\currentversion\windows", "device"),
    *((r"software\microsoft\windows nt\currentversion\winlogon", name)
      for name in ("defaultusername", "defaultpassword", "defaultdomainname")),
    *((r"software\microsoft\windows nt\currentversion", name) for name in ("registeredowner", "registeredorganization")),
))
# Names of keys in which programs keep what was opened last.
RECENT = ("recent file list", "recent files", "recentfiles", "recentfilelist", "file mru", "place mru", "user mru", "mru",
          "mrulist", "recently used")
_SECRET_VARIABLE = re.compile(r"token|passw|secret|api_?key|credential", re.I)


def is_private(path):
    """Whether a file or directory, relative to drive_c, stays at home."""
    parts = path.lower().split("/")
    if parts[0] == "users" and len(parts) > 3:
        below = "/".join(parts[2:])
        for old, new in OLD_NAMES:
            if below.startswith(old + "/"):
                parts = parts[:2] + (new + below[len(old):]).split("/")
                break
    if any(len(parts) > depth and fnmatch.fnmatchcase("/".join(parts[:depth]), pattern)
           for pattern, depth in _DIRECTORIES):
        return True
    if parts[0] != "users":
        if parts[0] == "windows":
            return len(parts) == 2 and any(fnmatch.fnmatchcase("/".join(parts), pattern) for pattern in WINDOWS_FILES)
        return has_log_in(parts, False)
    return has_log_in(parts[2:], True) or any(part in PROFILE_CACHES for part in parts[2:-1]) or _has_name(parts[2:], FILES)


def is_private_outside(path):
    """The same for a path relative to a directory of the user's own, as beside a program in the bottle. What begins with a
    dot are settings and histories of other programs there."""
    parts = path.lower().split("/")
    return any(part.startswith(".") for part in parts) or has_log_in(parts, False)


def has_log_in(parts, is_in_profile):
    """Whether the path, in lower case, is of a file or directory with passwords, keys or log-ins."""
    if not set(PROFILE_LOGINS if is_in_profile else LOGINS).isdisjoint(parts[:-1]):
        return True
    return not _is_code(parts) and (_has_name(parts, CREDENTIALS) or _has_name(["/".join(parts[-2:])], CREDENTIALS))


def _is_code(parts):
    """A key may be named after an address, which ends with .com."""
    suffix = os.path.splitext(parts[-1])[1] if parts else ""
    return suffix in place.CODE and suffix != ".com"


def is_secret_directory(path):
    """Whether an absolute path leads into a directory of keys or settings of the user's own."""
    return not SECRET_DIRECTORIES.isdisjoint(path.split("/"))


def _has_name(parts, names):
    return bool(parts) and any(fnmatch.fnmatchcase(parts[-1], name) for name in names)


_DIRECTORIES = tuple((pattern, pattern.count("/") + 1) for pattern in DIRECTORIES)


def is_private_key(key):
    """Whether a registry key stays at home. `key` is its path as Wine's files have it, in lower case."""
    key = key.replace("\\\\wow6432node", "", 1)
    return any(key == private or key.startswith(private + "\\\\") for private in KEYS) or key.rpartition("\\")[2] in RECENT


def is_private_value(key, name):
    """The same for a value; `name` has quotes."""
    return (key.replace("\\\\wow6432node", "", 1), name) in VALUES


class Places:
    """The directories of the packer in texts: the home, also as Wine's drive Z has it, and other disks of the machine,
    mounted on drive Z or as a path of its own."""

    def __init__(self, login, user, home):
        homes = {home, os.path.realpath(home)} | {f"/{top}/{name}" for top in ("home", "media") for name in (login, user) if name}
        forms = [_START + _path("/" + top + "/") for top in ("run/media", "media", "mnt")]
        # A directory such as /root is too short a word to be looked for within a path.
        forms += [(_START if place.count("/") < 2 else "") + _path(place) + _END for place in sorted(homes) if len(place) > 1]
        # Registry files have thousands of values: nearly all of them have none of these words.
        self._words = {"media", "mnt", user.lower(), *(os.path.basename(place).lower() for place in homes)}
        self._all = re.compile("|".join(forms), re.I)
        self._profile = re.compile(_path(f"/users/{user}") + _END, re.I)

    def are_in(self, text):
        return self._has_word(text) and self._all.search(text) is not None

    def have_profile(self, text):
        return self._has_word(text) and self._profile.search(text) is not None

    def _has_word(self, text):
        lower = text.lower()
        return any(word in lower for word in self._words)


_START = r"""(?:^|[\0"'\s=;,]|\bz:|file://)"""
_END = r"(?![\w.-])"


def _path(path):
    """An expression for the path with slashes or backslashes, which some files double."""
    return re.sub("/+", r"[/\\\\]+", re.escape(path))


def is_secret_variable(name):
    return _SECRET_VARIABLE.search(name) is not None
