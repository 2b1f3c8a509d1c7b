#!/usr/bin/python3
"""scripts/run-app without a display, with a stand-in for the program."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(sys.argv.pop(1) if len(sys.argv) > 1 else __file__ + "/../../../..").resolve()
STAND_IN = r"""#!/bin/bash
exec 9>"$XDG_RUNTIME_DIR/one"
flock -n 9 || { echo "$PWD $*" >"$OUT/second"; exit 1; }
[[ ${1:-} == --end ]] && exit 3
cp "$XDG_CONFIG_HOME/lumora/cellarix/settings.conf" "$OUT/settings.conf"
exec xmessage -xrm '*international: false' -title 'Sample window' hello
"""


class RunWithoutDisplay(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.tmp = pathlib.Path(directory.name)
        for name in ("scripts", "runtime", "prefix/files/bin", "home/.config/lumora/cellarix", "sub"):
            (self.tmp / name).mkdir(parents=True, mode=0o700)
        for name in ("session", "session_environment.py", "run-app"):
            shutil.copy(ROOT / "scripts" / name, self.tmp / "scripts")
        program = self.tmp / "prefix/files/bin/cellarix"
        program.write_text(STAND_IN, encoding="utf-8")
        program.chmod(0o755)
        self.settings = self.tmp / "home/.config/lumora/cellarix/settings.conf"
        self.settings.write_text("[client]\nbase_url.=http://localhost\n", encoding="utf-8")
        self.env = {**os.environ, "CELLARIX_PREFIX": str(self.tmp / "prefix"), "OUT": str(self.tmp),
                    "HOME": str(self.tmp / "home"), "XDG_RUNTIME_DIR": str(self.tmp / "runtime"), "LANG": "C.UTF-8"}
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_CONFIG_HOME", "CELLARIX_BUILD"):
            self.env.pop(name, None)
        self.command = [str(self.tmp / "scripts/run-app")]

    def run_app(self, *words):
        return subprocess.run([*self.command, *words], env=self.env, cwd=self.tmp / "sub", timeout=60, check=False,
                              stderr=subprocess.PIPE, text=True)

    def test_an_early_end_is_told(self):
        result = self.run_app("--end")
        self.assertEqual(result.returncode, 3)
        self.assertIn("status 3 before it showed a window", result.stderr)

    def test_picture_agreement_and_second_call(self):
        first = subprocess.Popen([*self.command, "a.exe"], env=self.env, stderr=subprocess.PIPE, text=True)
        self.addCleanup(first.stderr.close)
        self.addCleanup(first.wait)
        self.addCleanup(first.terminate)
        told = ""
        while "screenshot:" not in told:
            line = first.stderr.readline()
            self.assertTrue(line, told)
            told += line
        self.assertIn("Xvfb", told)
        self.assertIn("agreement", told)
        self.assertIn("Sample window", told)
        picture = self.tmp / "build/run/screenshot.png"
        self.assertIn(str(picture), told)
        self.assertEqual(picture.read_bytes()[:4], b"\x89PNG")
        before = self.settings.read_text(encoding="utf-8")
        self.assertEqual((self.tmp / "settings.conf").read_text(encoding="utf-8"),
                         before + "\n[basic]\nupdate_log.version=3.3.4.008\n")
        self.assertNotIn("update_log", before)

        second = self.run_app("b.exe")
        self.assertEqual(second.returncode, 1)
        self.assertEqual((self.tmp / "second").read_text(encoding="utf-8"), f"{self.tmp}/sub b.exe\n")

        first.terminate()
        self.assertEqual(first.wait(30), 143)
        self.assertFalse((self.tmp / "build/run/session.json").exists())


if __name__ == "__main__":
    unittest.main()
