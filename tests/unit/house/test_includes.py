#!/usr/bin/python3
"""Keeps the arrows between the rooms and between their sub-rooms: nothing includes what lies above it."""

import pathlib
import re
import sys
import unittest

SOURCE = pathlib.Path(sys.argv.pop(1) if len(sys.argv) > 1 else __file__ + "/../../../..").resolve() / "src"
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(["<])([^">]+)[">]', re.M)

# Room to the rooms it may include, from the ground up. A room may always include itself.
BASE = {"core/base", "fenk"}
ARROWS = {"fenk": set(), "core/base": {"fenk"}, "net": BASE, "widgets": BASE, "probes": BASE}
ARROWS["backend"] = BASE | {"probes"}
ARROWS["environment"] = BASE | {"backend", "widgets"}
ARROWS["launch"] = BASE | {"backend", "net", "probes", "widgets"}
ARROWS["programs"] = ARROWS["launch"] | {"launch"}
ARROWS["store"] = ARROWS["feedback"] = ARROWS["programs"] | {"programs"}
ARROWS["packaging"] = ARROWS["store"] | {"store", "feedback"}
ARROWS["shell"] = ARROWS["packaging"] | {"packaging"}
ARROWS["core"] = ARROWS["shell"] | {"shell", "environment"}
ARROWS["manifest"] = set()
ARROWS["bottleservice"] = {"fenk", "manifest"}
ARROWS["storeserver"] = {"fenk", "manifest"}
ARROWS["inspect"] = ARROWS["eventlog"] = set()

# The sub-rooms of a room from the ground up: one includes those before it. "." is the room's own folder.
ORDER = {
    "fenk": "system style controls instance settings log window gallery",
    "launch": ". icons inspection banner bottle monitor script open watch records winelog repair run",
    "feedback": "client widgets dialogs rating .",
    "store": "records client images install view .",
    "packaging": "config driver contents manifest start .",
    "shell": "associations properties configuration library requests portable adding .",
    "storeserver": "data catalogue request reports server wire .",
    "bottleservice": "result files settings bottles wine backup portable components desktop jobs requests wire .",
}
ORDER = {name: order.split() for name, order in ORDER.items()}

# Plumbing apart from meaning: in the services only the wire and the process entry know the bus.
BUS_FREE = re.compile(r"(bottleservice|storeserver)/(?!wire/)[^/]+/")


def room(path):
    """The longest room that a path written from src/frontend or src/platform lies in."""
    return max((name for name in ARROWS if path.startswith(name + "/")), key=len, default=None)


def storey(path, name):
    """Where a file's sub-room stands in the order of its room; -1 where it has no place."""
    sub = path[len(name) + 1:].rpartition("/")[0].partition("/")[0] or "."
    return ORDER[name].index(sub) if sub in ORDER[name] else -1


def faults(path, text):
    """What is wrong with the includes of one file; path is written from src/frontend or src/platform."""
    own, found = room(path), []
    if own in ORDER and storey(path, own) < 0:
        found.append(f"{path}: its folder has no place in the order of {own}")
    for quote, name in INCLUDE.findall(text):
        target = room(name) if "/" in name else None
        if quote == '"' and name.startswith("../"):
            found.append(f"{path} includes {name} by a relative path")
        elif own and target and target != own and target not in ARROWS[own]:
            found.append(f"{path} includes {name}: {own} lies below or beside {target}")
        elif own and target == own in ORDER and storey(name, own) > storey(path, own):
            found.append(f"{path} includes {name}, which lies above it in {own}")
        elif BUS_FREE.match(path) and ("QDBus" in name or name.startswith("QtDBus")):
            found.append(f"{path} includes {name}: only {own}/wire speaks to the bus")
    return found


class Rules(unittest.TestCase):
    TABLE = (
        ("core/main.cpp", '#include "shell/Mainwindow.h"\n#include "core/base/Paths.h"', 0),
        ("core/base/Paths.cpp", '#include "core/CellarixApplication.h"', 1),
        ("fenk/window/Dialog.cpp", '#include "core/base/Paths.h"\n#include "fenk/style/Theme.h"', 1),
        ("fenk/style/Theme.cpp", '#include "fenk/window/Dialog.h"\n#include "fenk/style/Color.h"', 1),
        ("fenk/attic/Dialog.cpp", '', 1),
        ("launch/run/ExeFileRunner.h", '#include "store/StoreView.h"\n  #  include "launch/MsgType.h"', 1),
        ("launch/MsgType.h", '#include "launch/run/ExeFileRunner.h"', 1),
        ("backend/BottlesConfig.h", '#include "launch/LaunchWindows.h"\n#include "probes/GpuInfo.h"', 1),
        ("store/StorePage.cpp", '#include "packaging/PackageConfig.h"', 1),
        ("bottleservice/wire/Manager.cpp", '#include <QDBusMessage>\n#include "bottleservice/bottles/Bottle.h"', 0),
        ("bottleservice/bottles/Bottle.cpp", '#include <QDBusMessage>', 1),
        ("bottleservice/main.cpp", '#include <QDBusConnection>\n#include "core/base/Paths.h"', 1),
        ("shell/Page.cpp", '#include "../core/main.h"', 1),
        ("shell/Page.cpp", '// #include "core/main.h"\n#include <QString>\n#include "Page.h"', 0),
    )

    def test_each_arrow(self):
        for path, text, count in self.TABLE:
            with self.subTest(path=path, text=text):
                self.assertEqual(len(faults(path, text)), count)


class House(unittest.TestCase):
    def test_sources_keep_the_arrows(self):
        files = [file for side in ("frontend", "platform") for kind in ("*.h", "*.cpp", "*.h.in")
                 for file in (SOURCE / side).rglob(kind)]
        self.assertTrue(files, f"no sources under {SOURCE}")
        found = []
        for file in files:
            path = "/".join(file.relative_to(SOURCE).parts[1:])
            found += faults(path, file.read_text(encoding="utf-8"))
        self.assertEqual(found, [], "\n" + "\n".join(found))


if __name__ == "__main__":
    unittest.main()
