"""A bottle that is about to be packed."""

import json
import os
import subprocess

from support import SCRIPTS, HomeCase

ID = "0c1d2e3f-1111-4222-8333-444455556666"
PACKER = os.path.join(SCRIPTS, "bottles_packager.py")
INFO = {"appname": "Sample", "pkgname": "com.example.sample", "pkgversion": "1.0", "pkgdesc": "Shows a window.",
        "category": "Office", "arch": ["amd64"]}
REGISTRY = "WINE REGISTRY Version 2\n;; All keys relative to REGISTRY\\\\{}\n\n#arch=win64\n\n"


class BottleCase(HomeCase):
    def setUp(self):
        super().setUp()
        self.directory = self.bottle()
        self.env |= {"USER": "packer", "SOURCE_DATE_EPOCH": "1700000000"}
        self.add("system.reg", REGISTRY.format("Machine") +
                 '[Profiles] 1\n"ProfileImagePath"="C:\\\\users\\\\packer"\n')
        self.add("user.reg", REGISTRY.format("User"))

    def add(self, name, text):
        return self.write(os.path.relpath(os.path.join(self.directory, name), self.top), text)

    def choose(self, programs, sources=None, **info):
        """Describes the package: `programs` maps ids to Windows paths, `sources` ids to values of pkgsrc.json."""
        entries = "".join(f"  {key}:\n    name: Window\n    path: '{path}'\n" for key, path in programs.items())
        self.add("bottle.yml", f"Name: t\nRunner: r\nPath: {self.directory}\nExternal_Programs:\n{entries}")
        if os.path.lexists(os.path.join(self.directory, "pkgcfg/pkginfo.json")):  # it may be no file
            os.unlink(os.path.join(self.directory, "pkgcfg/pkginfo.json"))
        self.add("pkgcfg/pkginfo.json", json.dumps(INFO | info))
        self.add("pkgcfg/pkgsrc.json", json.dumps({key: {"path": path, "in_bottles": True} | (sources or {}).get(key, {})
                                                   for key, path in programs.items()}))

    def pack(self, *options):
        os.makedirs(self.path("out"), exist_ok=True)
        return subprocess.run([PACKER, "t", "--savedir", self.path("out"), *options], env=self.env, capture_output=True,
                              text=True, timeout=60, check=False)
