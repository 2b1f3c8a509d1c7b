#!/usr/bin/python3
"""scripts/session: what a command finds in its session, and that no process is left when it ends."""

import json
import os
import pathlib
import select
import signal
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(sys.argv.pop(1) if len(sys.argv) > 1 else __file__ + "/../../../..").resolve()
SESSION = str(ROOT / "scripts/session")


def is_alive(pid):
    try:
        with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as file:
            return file.read().rpartition(")")[2].split()[0] != "Z"
    except OSError:
        return False


class SessionTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.tmp = directory.name
        self.env = {**os.environ, "TMPDIR": self.tmp, "CELLARIX_PREFIX": self.tmp + "/prefix"}
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS"):
            self.env.pop(name, None)
        service = pathlib.Path(self.tmp, "prefix/files/share/dbus-1/services/sample.service")
        service.parent.mkdir(parents=True)
        service.write_text("[D-BUS Service]\nName=com.lumora.LumoraWineLauncher\nExec=/bin/false\n", encoding="utf-8")

    def run_session(self, script, *options, **more):
        return subprocess.run([SESSION, *(options or ("--private",)), "bash", "-c", script], env=self.env, timeout=60,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False, **more)

    def start_session(self, script):
        """A session whose command prints its process ids, one a line, and then stays."""
        child = subprocess.Popen([SESSION, "--private", "bash", "-c", script], env=self.env, stdout=subprocess.PIPE,
                                 text=True)
        self.addCleanup(child.stdout.close)
        return child, [int(word) for word in child.stdout.readline().split()]

    def assert_nothing_left(self):
        self.assertEqual([name for name in os.listdir(self.tmp) if name != "prefix"], [])

    def test_status_is_the_commands(self):
        for script, status in (("exit 0", 0), ("exit 7", 7), ("kill -KILL $$", 137), ("kill -TERM $$", 143)):
            with self.subTest(script=script):
                self.assertEqual(self.run_session(script).returncode, status)
        missing = subprocess.run([SESSION, "--private", "/no/such/program"], env=self.env, stderr=subprocess.PIPE,
                                 check=False)
        self.assertEqual((missing.returncode, b"/no/such/program" in missing.stderr), (127, True))
        self.assert_nothing_left()

    def test_surroundings_are_private_and_ready(self):
        self.env["WINEPREFIX"] = "/somewhere/else"
        result = self.run_session("""
            set -e
            [[ $HOME == "$TMPDIR"/* && $XDG_CONFIG_HOME == "$HOME"/* && -z ${WINEPREFIX:-} && $(stat -c %a "$XDG_RUNTIME_DIR") == 700 ]]
            [[ $PATH == "$CELLARIX_PREFIX/files/bin:"* && $XDG_DATA_DIRS == "$CELLARIX_PREFIX/files/share:"* ]]
            xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'
            dbus-send --session --dest=org.freedesktop.DBus --print-reply / org.freedesktop.DBus.ListActivatableNames |
                grep -q com.lumora.LumoraWineLauncher
        """)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assert_nothing_left()

    def test_orphans_end_with_the_command(self):
        result = self.run_session("(setsid sleep 300 >/dev/null & echo $!)")
        self.assertFalse(is_alive(int(result.stdout)))

    def test_signals_reach_the_command_and_end_everything(self):
        for number, status in ((signal.SIGTERM, 143), (signal.SIGINT, 130), (signal.SIGHUP, 129)):
            with self.subTest(number=number):
                child, pids = self.start_session("setsid sleep 300 & echo $! $$; exec sleep 300")
                child.send_signal(number)
                self.assertEqual(child.wait(30), status)
                self.assertFalse(any(is_alive(pid) for pid in pids))
                self.assert_nothing_left()

    def test_a_killed_session_takes_its_helpers_along(self):
        child, pids = self.start_session('echo $$ $(ps -o pid= --ppid $PPID); exec sleep 300')
        self.assertGreaterEqual(len(pids), 4)  # the command, Xvfb, openbox, dbus-daemon
        handles = [os.pidfd_open(pid) for pid in pids if is_alive(pid)]
        child.kill()
        child.wait()
        limit = time.monotonic() + 20
        for handle in handles:
            self.assertTrue(select.select([handle], [], [], max(0, limit - time.monotonic()))[0])
            os.close(handle)
        self.run_session("true")  # the next one clears away what the killed one could not
        self.assert_nothing_left()

    def test_what_is_there_is_used(self):
        inner = f"""echo $DISPLAY $DBUS_SESSION_BUS_ADDRESS; exec {SESSION} bash -c 'echo $DISPLAY $DBUS_SESSION_BUS_ADDRESS'"""
        outer, nested = self.run_session(inner).stdout.splitlines()
        self.assertEqual(outer, nested)

    def test_state_tells_where_and_is_held_by_one(self):
        name = self.tmp + "/prefix/state.json"
        again = f"exec {SESSION} --state {name} true"
        result = self.run_session(f"cat {name}; echo; {again}", "--private", "--state", name)
        self.assertTrue(json.loads(result.stdout.splitlines()[0])["DISPLAY"].startswith(":"))
        self.assertEqual(result.returncode, 1)
        self.assertIn("another session", result.stderr)
        self.assertFalse(os.path.exists(name))


if __name__ == "__main__":
    unittest.main()
