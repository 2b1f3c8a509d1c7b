"""Wine's registry files: without the packer's traces, with another user's name, and merged for an upgrade.

A file is a head, then keys: a line "[path] time", lines with properties ("#..."), and values ("name"=..., @=...), which
go on in the next line after a backslash. The bottle service merges the files of a new Wine by the same rule.
"""

import re
import uuid

from cellarix_packager import layout, private

_NAME = re.compile(r'@|"(?:[^"\\]|\\.)*"')
_KEY = re.compile(r"\[((?:[^\]\\]|\\.)*)\]")
MACHINE_ID = '"machineguid"'
NO_ID = uuid.UUID(int=0)  # stands for that of the machine


class Key:
    """`path` is in lower case; `head` is the line with the path and those with properties; `values` maps a name in
    lower case to all of the value's lines."""

    def __init__(self, path, head):
        self.path = path
        self.head = head
        self.values = {}


def parse(text):
    """(head, {path: Key})"""
    head, keys, key, name = [], {}, None, None
    for line in text.splitlines(keepends=True):
        if name is not None:
            key.values[name] += line
        elif match := _KEY.match(line):
            path = match[1].lower()
            key = keys.setdefault(path, Key(path, line))
        elif key is None:
            head.append(line)
        elif match := _NAME.match(line):
            name = match[0].lower()
            key.values[name] = line
        elif line.strip():
            key.head += line
        if name is not None and not line.rstrip().endswith("\\"):
            name = None
    return "".join(head), keys


def compose(head, keys):
    return head + "".join(key.head + "".join(key.values.values()) + "\n" for key in keys.values())


def cleaned(text, user, places):
    """The file for a package, and how many keys and values stay at home: private keys, and values with paths of the
    user's own `places`. The user's name is replaced in paths."""
    head, keys = parse(text)
    left = 0
    for path in list(keys):
        if private.is_private_key(path) or places.are_in(path) or places.have_profile(path):
            left += 1 + len(keys.pop(path).values)
            continue
        key = keys[path]
        for name, value in list(key.values.items()):
            known = _bytes_as_text(value) if "hex" in value else ""
            if private.is_private_value(path, name) or places.are_in(value) or places.are_in(known) or places.have_profile(known):
                del key.values[name]
                left += 1
            elif name == MACHINE_ID:
                key.values[name] = f'"MachineGuid"="{NO_ID}"\n'
            else:
                key.values[name] = _with_user(value, user, layout.USER)
    return compose(head, keys), left


def _bytes_as_text(value):
    """The text in a binary value, in lower case."""
    content = value[_NAME.match(value).end():]
    digits = re.sub(r"[^0-9a-f]", "", content.partition(":")[2].lower())
    data = bytes.fromhex(digits[:len(digits) // 2 * 2])
    return (data.decode("utf-16-le", "ignore") + data.decode("latin-1")).lower()


def _with_user(value, old, new):
    """Wine's files have letters beyond ASCII as numbers."""
    name = "".join(c if ord(c) < 128 else rf"\x{ord(c):04x}" for c in new)
    known = "".join(re.escape(c) if ord(c) < 128 else rf"(?:{c}|\\x0*{ord(c):x}(?![0-9a-f]))" for c in old)
    return re.sub(rf'((?:\\\\|/)users(?:\\\\|/)){known}(?=["\\/;])', lambda match: match[1] + name, value, flags=re.I)


def personal(text, user):
    """The file for a user's bottle."""
    text = _with_user(text, layout.USER, user)
    return re.sub(r'(?i)("MachineGuid"=)"[^"]*"', lambda match: f'{match[1]}"{uuid.uuid4()}"', text)


def merged(own, before, now):
    """A user's file with the changes between two versions of a package; what the user's programs have written stays."""
    head, keys = parse(own)
    old_keys, new_keys = parse(before)[1], parse(now)[1]
    for path, new in new_keys.items():
        old = old_keys.get(path)
        if path not in keys:
            if not old:
                keys[path] = new
            continue
        own_values, old_values = keys[path].values, old.values if old else {}
        for name, value in new.values.items():
            if name != MACHINE_ID and own_values.get(name) == old_values.get(name):
                own_values[name] = value
    for path, old in old_keys.items():
        if path in keys:
            _remove_dropped(keys[path].values, old.values, new_keys[path].values if path in new_keys else {})
    return compose(head, keys)


def _remove_dropped(own, old, new):
    for name in old.keys() - new.keys():
        if own.get(name) == old[name]:
            del own[name]
