"""The icons that a packaged program puts on the desktop."""

import os
from pathlib import Path
from types import SimpleNamespace
from unittest import mock

from packages import ID
from support import HomeCase

from cellarix_launcher.origin import RECORD

from cellarix_packager import shortcuts

OTHER = ID[:-1] + "7"


class Shortcuts(HomeCase):
    def test_each_program_gets_an_icon_once(self):
        for name, package, program in (("a.b", "a.b", ID), ("a.b-2", "a.b", OTHER), ("a.b.c", "a.b.c", ID[:-1] + "8"), ("a.bad", "a.b", "../x")):
            self.write(f"menu/{name}.desktop", f"[Desktop Entry]\nName={name}\nExec=/opt/apps/{package}/files/run {program}\n")
        desktop = Path(self.path("desk"))
        bottle = SimpleNamespace(package=SimpleNamespace(name="a.b"), directory=self.path("bottle"), home_folder=lambda *_: str(desktop))
        os.makedirs(os.path.join(bottle.directory, RECORD))
        with mock.patch.object(shortcuts, "MENU", self.path("menu")):
            shortcuts.provide(bottle)  # there is no desktop
            desktop.mkdir()
            os.symlink("/proc/none", desktop / f"{OTHER}.desktop")
            shortcuts.provide(bottle)
            self.assertEqual({path.name for path in desktop.iterdir()}, {f"{ID}.desktop", f"{OTHER}.desktop"})
            icon = desktop / f"{ID}.desktop"
            self.assertTrue(os.access(icon, os.X_OK))
            self.assertIn("Name=a.b\nExec=/opt/apps/a.b/files/run " + ID + "\nTryExec=/opt/apps/a.b/files/run\n", icon.read_text())
            self.assertEqual(Path(bottle.directory, RECORD, shortcuts.MARK).read_text(), f"{icon}\n")
            icon.unlink()
            shortcuts.provide(bottle)
            self.assertFalse(icon.exists())
