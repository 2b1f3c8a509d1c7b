"""What the packager tells before it packs."""

import errno
import json
import os
import re
import subprocess
from pathlib import Path

from packages import ID, PACKER, BottleCase
from support import SCRIPTS, SOURCE

from cellarix_packager import main, messages


class Listing(BottleCase):
    def listed(self, **choices):
        choices = {"pkgname": "com.example.sample", "programs": {ID: {"path": "a", "in_bottles": True}}} | choices
        text = json.dumps({key: value for key, value in choices.items() if value is not None})
        return subprocess.run([PACKER, "--list", "t"], env=self.env, input=text, capture_output=True, text=True, timeout=60,
                              check=False)

    def test_tells_what_goes_along_and_what_stays(self):
        self.choose({ID: r"C:\App\a.exe"})
        for name in ("pkginfo.json", "pkgsrc.json"):  # written when the form is closed
            os.unlink(os.path.join(self.directory, "pkgcfg", name))
        del self.env["SOURCE_DATE_EPOCH"]
        template = self.write("home 家/.local/share/lumora-wine-bottles/templates/x/a.dll", "12345")
        os.makedirs(os.path.join(self.directory, "drive_c/windows"))
        for target, name in ((template, "drive_c/windows/a.dll"), ("/usr/bin/ls", "drive_c/windows/wine.dll"), ("/etc", "drive_c/out")):
            os.symlink(target, os.path.join(self.directory, name))
        for name in ("Program Files/App/a.exe", "users/packer/AppData/x.ini", "users/packer/Documents/a", "users/packer/Documents/b",
                     "Game/id_rsa", "users/other/x", "users/packer/AppData/y.log", "top"):
            self.add("drive_c/" + name, "123")
        ended = self.listed()
        self.assertEqual(ended.returncode, 0, ended.stderr)
        told = json.loads(ended.stdout)
        self.assertEqual({group["place"]: (group["bytes"], group["files"]) for group in told["folders"]} | {"App Dir": None},
                         {"Program Files/App": (3, 1), "users/packer": (3, 1), "": (3, 1), "App Dir": None})
        self.assertEqual((told["templates"], told["wineLinks"], told["nameCause"]), ({"bytes": 5, "files": 1}, 1, ""))
        self.assertEqual({(item["place"], item["why"], item["entries"]) for item in told["leftOut"]},
                         {("", "outside", 1), ("Game", "credentials", 1), ("users/other", "other-user", 1),
                          ("users/packer/AppData", "traces", 1), ("users/packer/Documents", "personal", 2)})
        self.assertGreater(told["bytes"], 14)

    def test_each_cause_has_a_sentence_in_the_application(self):
        known = re.findall(r'\{"([a-z-]+)",', Path(SOURCE, "src/frontend/packaging/driver/PackagingFailure.cpp").read_text())
        packing = ("archive", "contents", "listing", "main", "registry", "request", "running", "savefile", "settings")
        for texts, names in ((known, packing), (messages.CHINESE, ("package", "start", "upgrade", "userbottle"))):
            for name in names:
                text = Path(SCRIPTS, f"cellarix_packager/{name}.py").read_text()
                for cause in re.findall(r'PackageError\((?:[^()]|\([^()]*\))*?,\s+"([a-z-]+)"', text):
                    self.assertIn(cause, texts, name)

    def test_what_cannot_be_packed_is_told(self):
        for error, cause in ((OSError(errno.ENOSPC, "", "/x"), "compressor"), (FileNotFoundError(errno.ENOENT, "", "/out"), "not-writable"),
                             (FileNotFoundError(errno.ENOENT, "", "/x"), "changed"), (PermissionError(errno.EACCES, "", "/x"), "file-error")):
            self.assertEqual(main.cause_of(error, "/out"), cause)
        self.choose({ID: r"C:\App\a.exe"})
        self.assertEqual(json.loads(self.listed(pkgname="cellarix", programs=None).stdout), {"nameCause": "foreign-name"})
        for choices in ({"programs": {}}, {"programs": 7}, {"programs": {"../x": {}}}):
            ended = self.listed(**choices)
            self.assertEqual((ended.returncode, "Traceback" in ended.stderr), (1, False))
