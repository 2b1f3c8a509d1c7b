"""Console programs in a terminal window, played by an emulator that runs its command on a pseudo terminal."""

import os
import signal
import unittest

from support import HomeCase, wait_until

# Starts like a terminal server's client: in the background and with an environment of its own.
EMULATOR = r'''#!/usr/bin/python3
import os, pty, sys
if sys.argv[1:2] != ["-e"]:
    sys.exit(9)
if os.fork():
    os._exit(0)
shown = open(os.environ["SHOWN"], "wb", buffering=0)
for name in ("WINEDEBUG", "_CXB_WINE_PROGRAM_UUID"):
    os.environ.pop(name, None)
pid, master = pty.fork()
if pid == 0:
    os.execv(sys.argv[2], sys.argv[2:])
open(os.environ["SHOWN"] + ".pid", "w").write(str(os.getpid()))
seen = b""
while True:
    try:
        data = os.read(master, 4096)
    except OSError:
        break
    shown.write(data)
    seen += data
    for text, reply in ((b"name?", "世界\n".encode()), (b"Press any key", b"q")):
        if text in seen:
            os.write(master, reply)
            seen = b""
shown.write(b"[closed]")
'''


class Terminal(HomeCase):
    def setUp(self):
        super().setUp()
        self.directory = self.bottle()
        self.write("path/x-terminal-emulator", EMULATOR, executable=True)
        self.shown = self.path("shown")
        self.env |= {"PATH": self.path("path") + ":/usr/bin:/bin", "SHOWN": self.shown}

    def test_the_window_shows_the_program_and_stays_until_a_key(self):
        log = self.path("l.txt")
        do = "print('[' + input('name?') + ']'); os.write(2, b'err\\n'); sys.exit(23)"
        code, _, err = self.launch("t", "--log-path", log, "--cli", "x.exe", "a b", "--cli", do=do,
                                   env={"WINEDEBUG": "+tid", "_CXB_WINE_PROGRAM_UUID": "u"})
        self.assertEqual((code, err), (23, ""))
        got = self.record()
        self.assertEqual(got["argv"][1:], ["x.exe", "a b", "--cli"])
        self.assertTrue(got["stdin_tty"])
        self.assertEqual((got["env"]["WINEDEBUG"], got["env"]["_CXB_WINE_PROGRAM_UUID"]), ("+tid", "u"))
        wait_until(lambda: "[closed]" in self.read(self.shown))
        screen = self.read(self.shown)
        for text in ("[世界]", "err", "exit code 23. Press any key"):
            self.assertIn(text, screen)
        self.assertIn("[世界]\r\nerr\r\n", self.read(log))

    def test_what_the_launcher_in_the_window_cannot_start_is_told_outside(self):
        self.write("path/x-terminal-emulator", EMULATOR.replace("os.execv(", f"os.rename({self.wine!r}, 'x'); os.execv("), True)
        code, out, _ = self.launch("t", "--log-path", self.path("l.txt"), "--cli", "x.exe")
        self.assertEqual((code, "failed with 69: the Wine of" in out), (69, True), out)

    def test_signals_and_a_closed_window_end_the_program(self):
        for number, stop in ((signal.SIGTERM, lambda process: process.terminate()), (signal.SIGHUP, self.close_window)):
            with self.subTest(number):
                process = self.start("t", "--cli", "x.exe", do="time.sleep(60)")
                pid = self.wait_for_record()["pid"]
                stop(process)
                process.communicate(timeout=20)
                self.assertEqual(process.returncode, 128 + number)
                wait_until(lambda: not os.path.exists(f"/proc/{pid}"))
                os.unlink(self.out)
                os.unlink(self.shown + ".pid")

    def close_window(self, _process):
        file = self.shown + ".pid"
        os.kill(int(wait_until(lambda: os.path.exists(file) and self.read(file))), signal.SIGKILL)

    def test_without_a_terminal_the_program_runs_all_the_same(self):
        self.env["PATH"] = self.path("path")
        os.unlink(self.path("path/x-terminal-emulator"))
        code, out, err = self.launch("t", "--cli", "x.exe", do="print('here'); sys.exit(4)")
        self.assertEqual((code, out), (4, "here\n"))
        self.assertIn("no terminal emulator is installed", err)
        self.write("path/x-terminal-emulator", "#!/bin/sh\nexit 1\n", executable=True)
        code, out, err = self.launch("t", "--cli", "x.exe", do="sys.exit(4)")
        self.assertEqual(code, 4)
        self.assertIn("could not be started", err)

    def test_a_shell_knows_the_bottle(self):
        script = f"#!/bin/sh\necho \"$WINEPREFIX|$(command -v wine)|$PWD|$(flock -n -x . echo free)|$_CXB_TERMINAL_INSIDE\" > '{self.path('told')}'\n"
        shell = self.write("shell", script, executable=True)
        self.assertEqual(self.launch("terminal", "t", env={"SHELL": shell})[0], 0)
        wait_until(lambda: os.path.exists(self.path("told")) and self.read(self.path("told")))
        told = f"{self.directory}|{self.wine}|{self.directory}/drive_c||\n"
        self.assertEqual(self.read(self.path("told")), told)


if __name__ == "__main__":
    unittest.main()
