"""What of a package a desktop shows."""

import os
import shutil
import subprocess
import unittest
from pathlib import Path

from packages import ID, BottleCase
from support import BUILD, SCRIPTS

SAMPLE = os.path.join(BUILD, "tests", "programs", "x64", "window.exe")


class Menu(BottleCase):
    @unittest.skipUnless(os.path.exists(SAMPLE), "no Windows compiler built the samples")
    def test_entries_and_icons(self):
        program = self.add("drive_c/App/Window.exe", "")
        shutil.copy(SAMPLE, program)
        subprocess.run([os.path.join(SCRIPTS, "icon_extractor.py"), program, ID + ".png", os.path.join(self.directory, "icons")], check=True)
        self.choose({ID: r"C:\App\Window.exe"}, {ID: {"path": program}}, pkgdesc="Shows\na \\window.")
        for is_own_icon, sizes in ((True, ["16x16", "32x32", "48x48"]), (False, ["48x48"])):
            ended = self.pack("--compression", "zstd")
            self.assertEqual(ended.returncode, 0, ended.stderr)
            root = self.path(f"root{is_own_icon}")
            subprocess.run(["dpkg-deb", "-x", ended.stdout.rpartition("packed: ")[2].strip(), root], check=True)
            self.assertEqual(sorted(os.listdir(root + "/usr/share/icons/hicolor")), sizes)
            with open(os.path.join(self.directory, "icons", ID + ".png"), "ab") as file:
                file.write(b"another picture")
        entry = next(Path(root, "usr/share/applications").glob("*.desktop"))
        self.assertIn("Comment=Shows a \\\\window.\nStartupWMClass=window.exe\n", entry.read_text())
        subprocess.run(["desktop-file-validate", entry], check=True)
        self.choose({ID: r"C:\App\Window.exe", "00000000" + ID[8:]: r"C:\App\Window.exe"})
        entries = self.entries("two")
        self.assertEqual(set(entries), {entry.name, entry.stem + "-00000000.desktop"})
        self.assertIn("/run " + ID, entries[entry.name])

    def entries(self, root):
        ended = self.pack("--compression", "zstd")
        subprocess.run(["dpkg-deb", "-x", ended.stdout.rpartition("packed: ")[2].strip(), self.path(root)], check=True)
        return {path.name: path.read_text() for path in Path(self.path(root), "usr/share/applications").iterdir()}

    def test_names_stay_when_programs_go(self):
        self.choose({ID: r"C:\App Dir\程序.exe", "00000000" + ID[8:]: r"C:\App Dir\程序.exe"})
        first = self.entries("two")
        self.choose({ID: r"C:\App Dir\程序.exe"})
        self.assertLess(self.entries("one").keys(), first.keys())
