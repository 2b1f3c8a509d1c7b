"""One package on a machine like new: menu, two users, upgrade, purge, with the machine's Wine."""

import os
import shutil
import subprocess
from pathlib import Path

from packages import ID, BottleCase
from support import BUILD, SOURCE

SAMPLE = os.path.join(BUILD, "tests", "programs", "x64", "window.exe")
PREFIX = os.path.join(os.path.dirname(BUILD), "prefix")
INSTALLED = os.path.join(PREFIX, "files", "share", "cellarix", "service", "bottles_packager.py")
WINE_FILES = {"system32": "/usr/lib/x86_64-linux-gnu/wine/x86_64-windows",
              "syswow64": "/usr/lib/i386-linux-gnu/wine/i386-windows"}
WALK = os.path.join(os.path.dirname(os.path.abspath(__file__)), "package_walk.sh")
TOOLS = all(shutil.which(tool) for tool in ("wine", "unshare", "Xvfb", "openbox", "xdotool", "lintian"))


def can_overlay():
    words = ["unshare", "--mount", "mount", "-t", "overlay", "t", "-o", "lowerdir=/usr:/etc", "/mnt"]
    return os.getuid() == 0 and subprocess.run(words, capture_output=True, check=False).returncode == 0


class Walk(BottleCase):
    def setUp(self):
        super().setUp()
        is_complete = TOOLS and all(map(os.path.exists, (SAMPLE, INSTALLED, WINE_FILES["system32"]))) and can_overlay()
        text = "needs root, overlay mounts, Wine, the sample programs, the installed tree, Xvfb, openbox, xdotool and lintian"
        if not is_complete and os.environ.get("CI") == "true":
            self.fail(text)
        if not is_complete:
            self.skipTest(text)

    def prefix(self):
        """A bottle of Wine's own files, as links, like the service makes it."""
        env = self.env | {"WINEPREFIX": self.directory, "WINEDEBUG": "-all", "USER": "packer", "HOME": self.home,
                          "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe="}
        shutil.rmtree(self.directory)
        subprocess.run(["wine", "wineboot", "-i"], env=env, check=True, timeout=150)
        subprocess.run(["wineserver", "-w"], env=env, check=True, timeout=60)
        windows = os.path.join(self.directory, "drive_c", "windows")
        shutil.rmtree(os.path.join(windows, "winsxs"))
        for name, source in WINE_FILES.items():
            directory = os.path.join(windows, name)
            for item in list(os.scandir(directory)) if os.path.isdir(directory) else ():
                own = os.path.join(source, item.name)
                if item.is_file(follow_symlinks=False) and os.path.isfile(own):
                    os.unlink(item.path)
                    os.symlink(own, item.path)
        Path(self.directory, ".update-timestamp").write_text("disable\n")

    def pack_version(self, version, words):
        sample = Path(self.directory, "drive_c", "Sample")
        sample.mkdir(exist_ok=True)
        shutil.copy(SAMPLE, sample / "window.exe")
        (sample / "words.txt").write_text(words)
        (sample / "settings.ini").write_text("packed\n")
        self.choose({ID: r"C:\Sample\window.exe"}, pkgversion=version)
        packed = subprocess.run([INSTALLED, "t", "--savedir", self.top],
                                env=self.env | {"USER": "packer"}, capture_output=True, text=True, check=False)
        self.assertEqual(packed.returncode, 0, packed.stderr)
        return packed.stdout.rpartition("packed: ")[2].strip()

    def test_install_run_upgrade_and_purge(self):
        self.prefix()
        old = self.pack_version("1.0", "one\n")
        Path(self.directory, "drive_c", "Sample", "extra.txt").write_text("extra\n")
        with open(os.path.join(self.directory, "user.reg"), "a", encoding="utf-8") as file:
            file.write('\n[Software\\\\Sample] 1700000000\n"Added"="2"\n')
        new = self.pack_version("1.1", "two\n")
        checked = subprocess.run(["lintian", "--allow-root", "--fail-on", "error,warning", old], capture_output=True,
                                 text=True, check=False)
        self.assertEqual((checked.returncode, checked.stdout), (0, ""))
        os.makedirs(self.path("walk/root"))
        for deb in (old, new):
            shutil.move(deb, self.path("walk"))
        words = [self.path("walk/" + os.path.basename(deb)) for deb in (old, new)]
        seen = subprocess.run([WALK, PREFIX, SOURCE, self.path("walk"), *words, ID], capture_output=True, text=True,
                              timeout=800, check=False)
        lines = [line for line in seen.stdout.splitlines() if not line.startswith("size: ")]
        self.assertEqual(lines, [
            "menu: Sample", "window: first", "window: second",
            "shared: /opt/apps/com.example.sample/files/bottle/drive_c/Sample/window.exe",
            "open: Sample has been updated. Close it first, then start it again.", "window: first", "window: second",
            "kept: mine saved", "renewed: two extra", r"profile: users\\second Public second",
            "second: two /opt/apps/com.example.sample/files/bottle/drive_c/Sample/window.exe", "registry: 1", "left: ",
            "own: saved"], seen.stderr)
        size = int(seen.stdout.partition("size: ")[2].split()[0])
        self.assertLess(size, 60, "MiB of a user's bottle")
