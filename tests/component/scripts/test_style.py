"""Every script passes the linter, and the programs among them name the system's interpreter and can be run."""

import glob
import os
import subprocess
import unittest

from support import SCRIPTS, SOURCE


class Style(unittest.TestCase):
    def test_scripts_are_clean(self):
        files = [path for folder in (SCRIPTS, SCRIPTS + "/cellarix_launcher", SOURCE + "/tools", SOURCE + "/bench/launcher",
                                     os.path.dirname(__file__)) for path in glob.glob(folder + "/*.py")]
        self.assertGreater(len(files), 20)
        for path in files:
            with self.subTest(path), open(path, encoding="utf-8") as file:
                lines = file.read().split("\n")
                self.assertFalse([line for line in lines if len(line) > 125])
                if os.access(path, os.X_OK):
                    self.assertRegex(lines[0], "^#!/usr/bin/python3( |$)")
        if subprocess.run(["/usr/bin/python3", "-m", "pyflakes", "--version"], capture_output=True, check=False).returncode:
            self.skipTest("pyflakes is not installed")
        ended = subprocess.run(["/usr/bin/python3", "-m", "pyflakes", *files], capture_output=True, text=True, check=False)
        self.assertEqual(ended.stdout, "")


if __name__ == "__main__":
    unittest.main()
