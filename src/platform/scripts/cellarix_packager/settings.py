"""The bottle.yml of a package: the settings of the bottle, and of its programs those that go along."""

import os
import re

import yaml

from cellarix_launcher.bottle import read_file

from cellarix_packager import contents, layout, private
from cellarix_packager.errors import PackageError

KEYS = ("Runner", "Windows", "Template", "DXVK", "VKD3D", "Emulator", "Parameters", "DLL_Overrides",
        "Font_Replacements", "Installed_Dependencies")
PROGRAM_KEYS = ("name", "path", "folder", "arguments", "envs")
PROGRAMS = "External_Programs"
LIMIT = 16 << 20


def read(path):
    try:
        return parsed(read_file(path, LIMIT), path)
    except (OSError, ValueError) as error:
        raise _unreadable(path, error) from None


def parsed(data, path):
    """The settings in the content of a file; a PackageError names the `path`."""
    try:
        record = yaml.load(data, Loader=getattr(yaml, "CSafeLoader", yaml.SafeLoader))
    except (ValueError, RecursionError, yaml.YAMLError) as error:
        raise _unreadable(path, error) from None
    return record if isinstance(record, dict) else {}


def _unreadable(path, why):
    return PackageError(f"{path} cannot be read: {why}", "unreadable-settings", path)


def dump(record):
    return yaml.dump(record, Dumper=getattr(yaml, "CSafeDumper", yaml.SafeDumper), allow_unicode=True, sort_keys=False)


def windows_path(target):
    return "C:\\" + target.partition("/")[2].replace("/", "\\")


def portable_path(path, bottle_dir):
    """The Windows path of a file on drive C that a record has as a Unix path; other paths are returned as they are."""
    for drive in ("drive_c", "dosdevices/c:"):
        start = os.path.join(bottle_dir, drive) + "/"
        if isinstance(path, str) and path.startswith(start):
            return "C:\\" + path[len(start):].replace("/", "\\")
    return path


def with_profile(value, old, new):
    """The value with another user's profile in all Windows paths."""
    if isinstance(value, dict):
        return {key: with_profile(item, old, new) for key, item in value.items()}
    if isinstance(value, list):
        return [with_profile(item, old, new) for item in value]
    if isinstance(value, str):
        return re.sub(rf'([\\/]users[\\/]){re.escape(old)}(?=[\\/";]|$)', lambda match: match[1] + new, value, flags=re.I)
    return value


def for_package(record, request, bottle_dir, places, user):
    """The record for the package. Texts that name the packer's places do not go along, nor variables for passwords; the
    profile of `user` becomes that of any user."""
    programs = record.get(PROGRAMS) if isinstance(record.get(PROGRAMS), dict) else {}
    kept = {}
    for source in request.sources:
        own = programs.get(source.uuid)
        if not isinstance(own, dict):
            continue
        program = {key: own[key] for key in PROGRAM_KEYS if key in own}
        for key in ("path", "folder"):
            if key in program:
                program[key] = portable_path(program[key], bottle_dir)
        if not source.in_bottle:
            program["path"] = windows_path(source.target)
            program["folder"] = windows_path(os.path.dirname(source.target))
        kept[source.uuid] = with_profile(_without(program, places), user, layout.USER)
    if not kept:
        raise PackageError("None of the chosen programs is in the bottle any more.", "program-gone")
    general = _without({key: record[key] for key in KEYS if key in record}, places)
    return with_profile(general, user, layout.USER) | {PROGRAMS: kept}


def _without(value, places):
    """The name of a program goes along in any case: it is shown in menus."""
    if isinstance(value, dict):
        return {key: _without(item, places) for key, item in value.items() if key == "name" or not (
            isinstance(item, str) and (places.are_in(item) or private.is_secret_variable(str(key))))}
    if isinstance(value, list):
        return [_without(item, places) for item in value if not (isinstance(item, str) and places.are_in(item))]
    return value


def entry(record, prefix):
    return contents.text_entry(f"{prefix}/{layout.SETTINGS}", dump(record))
