"""The readers of Windows files, with real samples and with damaged and hostile files."""

import json
import os
import random
import shutil
import struct
import subprocess
import unittest
from pathlib import Path

from support import BUILD, SCRIPTS, SOURCE, HomeCase

VERSION = os.path.join(SOURCE, "tools", "pe_version_info.py")
ICON = os.path.join(SCRIPTS, "icon_extractor.py")
SCANNER = os.path.join(SCRIPTS, "exe_scanner.py")
SAMPLES = [path for kind in ("x64", "x86")
           if os.path.exists(path := os.path.join(BUILD, "tests", "programs", kind, "window.exe"))]
needs_samples = unittest.skipUnless(SAMPLES, "no Windows compiler built the samples")


class Tools(HomeCase):
    def run_tool(self, *words):
        ended = subprocess.run(words, capture_output=True, env=self.env, timeout=60, check=False)
        self.assertNotIn(b"Traceback", ended.stderr)
        return ended.returncode, ended.stdout.decode("ascii")

    def version(self, path):
        code, out = self.run_tool(VERSION, path)
        return code, json.loads(out)

    def icon(self, path, *options):
        target = Path(self.path("icons/安装 程序.exe"))
        target.unlink(missing_ok=True)
        self.run_tool(ICON, *options, path, target.name, target.parent)
        return target.read_bytes() if target.exists() else b""

    @needs_samples
    def test_samples_tell_their_version_and_icon(self):
        for sample in SAMPLES:
            code, info = self.version(sample)
            self.assertEqual((code, info["ProductName"], info["ProductVersion"], info["InternalName"]),
                             (0, "Cellarix Sample", "1.4.2", "window"))
            ico = self.icon(sample, "--no-convert")
            self.assertEqual(struct.unpack_from("<HHH", ico), (0, 1, 3))
            self.assertEqual(sorted(ico[6 + 16 * n] for n in range(3)), [16, 32, 48])
            png = self.icon(sample)
            self.assertEqual((png[:8], struct.unpack_from(">II", png, 16)), (b"\x89PNG\r\n\x1a\n", (48, 48)))

    @unittest.skipUnless(shutil.which("msibuild"), "needs msitools")
    def test_packages_tell_their_product(self):
        table = self.write("Property.idt", "Property\tValue\ns72\tl0\nProperty\tProperty\nProductName\tA B\n"
                           "ProductVersion\t1.2.3\nManufacturer\tMaker\n")
        package = self.path("包 a.msi")
        subprocess.run(["msibuild", package, "-i", table], check=True, capture_output=True, cwd=self.top)
        self.assertEqual(self.version(package),
                         (0, {"ProductName": "A B", "ProductVersion": "1.2.3", "CompanyName": "Maker"}))
        os.truncate(package, 600)
        self.assertEqual(self.version(package), (0, {}))

    @needs_samples
    def test_damaged_files_give_an_answer(self):
        data = Path(SAMPLES[0]).read_bytes()
        resources = data.rindex(b".rsrc")
        dice = random.Random(7)
        for round_ in range(25):
            with self.subTest(round_):
                broken = bytearray(data)
                for _ in range(40):
                    broken[dice.randrange(resources if round_ % 2 else 0, len(broken))] = dice.choice((0, 255, 128, 1))
                end = dice.randrange(64, len(broken)) if round_ % 5 == 0 else len(broken)
                path = self.write("broken.exe", bytes(broken[:end]))
                self.assertIsInstance(self.version(path)[1], dict)
                self.icon(path)

    def test_files_that_are_no_programs(self):
        os.mkfifo(self.path("fifo"))
        huge = self.write("huge.exe", "MZ")
        os.truncate(huge, 3 << 30)
        for path in (self.top, self.path("none"), self.path("fifo"), self.write("empty", ""), self.write("t", "text"), huge,
                     self.write("mz", b"MZ" + b"\xff" * 200)):
            with self.subTest(path):
                self.assertEqual(self.version(path), (1, {}))
                self.assertEqual(self.icon(path), b"")
        self.assertEqual(self.run_tool(VERSION), (64, "{}\n"))

    @needs_samples
    def test_a_large_file_is_not_read_whole(self):
        large = self.write("large.exe", Path(SAMPLES[0]).read_bytes())
        os.truncate(large, 3 << 30)
        ended = subprocess.Popen([VERSION, large], stdout=subprocess.PIPE, env=self.env)
        out = ended.stdout.read()
        usage = os.wait4(ended.pid, 0)[2]
        ended.returncode = 0
        ended.stdout.close()
        self.assertEqual(json.loads(out)["ProductName"], "Cellarix Sample")
        self.assertLess(usage.ru_maxrss, 200 << 10)

    @needs_samples
    def test_an_icon_never_leaves_its_directory(self):
        victim = self.write("victim", "keep")
        os.mkdir(self.path("icons"))
        os.symlink(victim, self.path("icons/a.exe"))
        self.assertEqual(self.run_tool(ICON, "--no-convert", SAMPLES[0], "a.exe", self.path("icons"))[0], 0)
        self.assertEqual(self.read(victim), "keep")
        for name in ("../x", "", ".", "a/b"):
            self.assertEqual(self.run_tool(ICON, SAMPLES[0], name, self.path("icons"))[0], 1)
        self.assertEqual(os.listdir(self.path("icons")), ["a.exe"])

    @needs_samples
    def test_the_scanner_lists_what_lies_below(self):
        data = Path(SAMPLES[0]).read_bytes()
        self.write("dir/b/setup.exe", data)
        self.write("dir/a 程序/setup.EXE", data)
        self.write("dir/bad.exe", "MZ")
        self.write("dir/notes.txt", "")
        os.symlink("/", self.path("dir/root"))
        os.symlink("b/setup.exe", self.path("dir/link.exe"))
        code, out = self.run_tool(SCANNER, self.path("dir"), self.path("out"))
        found = json.loads(out)
        self.assertEqual((code, [os.path.relpath(entry["path"], self.path("dir")) for entry in found]),
                         (0, ["bad.exe", "a 程序/setup.EXE", "b/setup.exe"]))
        self.assertEqual(found[0] | {"path": ""}, {"path": "", "hasIcon": False, "iconPath": "", "pe_info": {}})
        self.assertEqual(len({entry["iconPath"] for entry in found}), 3)
        self.assertTrue(os.path.isfile(found[1]["iconPath"]) and found[1]["hasIcon"])
        self.assertEqual(found[2]["pe_info"]["FileDescription"], "Cellarix sample window")
        self.assertEqual(self.run_tool(SCANNER, self.path("none"), "x"), (64, "[]\n"))


if __name__ == "__main__":
    unittest.main()
