"""A home with bottles, and a fake Wine that records how it was called and then runs a piece of Python."""

import json
import os
import shutil
import stat
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

SOURCE = os.environ.get("CELLARIX_SOURCE") or os.path.abspath(os.path.join(os.path.dirname(__file__), "../../.."))
BUILD = os.environ.get("CELLARIX_BUILD") or os.path.join(SOURCE, "build", "dev")
SCRIPTS = os.path.join(SOURCE, "src", "platform", "scripts")
LAUNCHER = os.path.join(SCRIPTS, "launcher.py")
UUID = "0c1d2e3f-1111-4222-8333-444455556666"
sys.path.insert(0, SCRIPTS)

FAKE_WINE = r'''#!/usr/bin/python3 -ISXutf8
import json, os, signal, sys, time
record = {"argv": sys.argv, "env": dict(os.environ), "cwd": os.getcwd(), "pgid": os.getpgrp(), "pid": os.getpid(),
          "stdin_tty": os.isatty(0)}
out = os.environ["FAKE_OUT"]
with open(out + ".new", "w", encoding="utf-8", errors="surrogateescape") as file:
    json.dump(record, file)
os.rename(out + ".new", out)
exec(os.environ.get("FAKE_DO", ""))
'''


def wait_until(condition, seconds=20):
    end = time.monotonic() + seconds
    while not (value := condition()):
        if time.monotonic() > end:
            raise AssertionError("waited in vain")
        time.sleep(0.01)
    return value


class HomeCase(unittest.TestCase):
    """One home for each test; every path in it holds a blank and Chinese letters."""

    def setUp(self):
        self.top = tempfile.mkdtemp(prefix="cellarix-test-")
        self.addCleanup(shutil.rmtree, self.top, ignore_errors=True)
        self.home = self.path("home 家")
        self.out = self.path("record.json")
        self.wine = self.write("wine/bin/wine", FAKE_WINE, executable=True)
        self.env = {"PATH": "/usr/bin:/bin", "HOME": self.home, "FAKE_OUT": self.out, "LANG": "C.UTF-8"}

    def path(self, name):
        return os.path.join(self.top, name)

    def write(self, name, text, executable=False):
        path = self.path(name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        Path(path).write_bytes(text if isinstance(text, bytes) else text.encode())
        if executable:
            os.chmod(path, os.stat(path).st_mode | stat.S_IXUSR)
        return path

    def read(self, path):
        with open(path, encoding="utf-8", errors="surrogateescape", newline="") as file:
            return file.read()

    def bottle(self, name="t", programs=None, **record):
        """A bottle whose launch.json names the fake Wine. Returns its directory."""
        where = f"home 家/.local/share/lumora-wine-bottles/bottles/{name}"
        self.write(f"{where}/bottle.yml", "Name: t\n")
        self.write(f"{where}/drive_c/App Dir/程序.exe", "MZ")
        os.makedirs(self.path(f"{where}/dosdevices"))
        os.symlink("../drive_c", self.path(f"{where}/dosdevices/c:"))
        os.symlink("/", self.path(f"{where}/dosdevices/z:"))
        state = os.stat(self.path(f"{where}/bottle.yml"))
        source = {"size": str(state.st_size), "mtime_ns": str(state.st_mtime_ns)}
        record = {"version": 1, "source": source, "path": "", "runner": "r", "wine": self.wine, "wineserver": "", "env": {},
                  "programs": programs or {}} | record
        self.write(f"{where}/launch.json", json.dumps(record))
        return self.path(where)

    def start(self, *words, do="", env=None, **options):
        streams = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE} | options
        return subprocess.Popen([LAUNCHER, *words], env=self.env | {"FAKE_DO": do} | (env or {}), cwd=self.top, **streams)

    def launch(self, *words, do="", env=None, **options):
        """(exit code, stdout, stderr) of a whole run."""
        process = self.start(*words, do=do, env=env, **options)
        out, err = process.communicate(timeout=60)
        return process.returncode, (out or b"").decode(), (err or b"").decode()

    def record(self):
        return json.loads(Path(self.out).read_bytes())

    def wait_for_record(self):
        wait_until(lambda: os.path.exists(self.out))
        return self.record()
