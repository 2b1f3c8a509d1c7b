"""The launcher with the machine's Wine, one prefix for all cases, on an X server of its own."""

import contextlib
import glob
import os
import shutil
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import BUILD, UUID, HomeCase, wait_until

WINE = shutil.which("wine", path="/usr/bin:/bin")
KINDS = [kind for kind in ("x64", "x86") if os.path.exists(os.path.join(BUILD, "tests", "programs", kind, "window.exe"))]
ROOT = os.path.dirname(os.path.dirname(os.path.realpath(WINE or "")))
RUNS_32_BIT = any(glob.glob(f"{ROOT}/{lib}/i386-windows/ntdll.dll") for lib in ("lib*/wine", "lib/*/wine"))
RUNNABLE = [kind for kind in KINDS if kind == "x64" or RUNS_32_BIT]
TOOLS = all(shutil.which(tool) for tool in ("Xvfb", "xdotool"))


def sample(kind, name):
    return os.path.join(BUILD, "tests", "programs", kind, name + ".exe")


@unittest.skipUnless(WINE and RUNNABLE and TOOLS, "needs Wine, the sample programs, Xvfb and xdotool")
class RealWine(HomeCase):
    @classmethod
    def setUpClass(cls):
        cls.shared = tempfile.mkdtemp(prefix="cellarix-wine-")
        cls.addClassCleanup(shutil.rmtree, cls.shared, ignore_errors=True)
        read, write = os.pipe()
        # A server that starts anew after its last client now and then drops Wine's first connection.
        server = ["Xvfb", "-displayfd", str(write), "-screen", "0", "800x600x24", "-nolisten", "tcp", "-noreset"]
        cls.display = subprocess.Popen(server, pass_fds=[write], stderr=subprocess.DEVNULL)
        cls.addClassCleanup(cls.display.wait)
        cls.addClassCleanup(cls.display.terminate)
        os.close(write)
        with open(read, encoding="ascii") as number:
            display = ":" + number.readline().strip()
        cls.wine_env = {"PATH": "/usr/bin:/bin", "HOME": cls.shared, "DISPLAY": display, "LANG": "C.UTF-8",
                        "WINEDLLOVERRIDES": "mscoree,mshtml="}
        prefix = {"WINEPREFIX": os.path.join(cls.shared, "bottles/t")}
        os.mkdir(os.path.join(cls.shared, "bottles"))
        cls.addClassCleanup(subprocess.run, ["wineserver", "-k"], env=cls.wine_env | prefix, check=False)
        subprocess.run([WINE, "wineboot", "-i"], env=cls.wine_env | prefix | {"WINEDEBUG": "-all"}, check=True, timeout=150)
        cls.prefix = prefix["WINEPREFIX"]

    def setUp(self):
        super().setUp()
        where = self.bottle(wine=WINE, wineserver=shutil.which("wineserver", path="/usr/bin:/bin") or "",
                            programs={UUID: {"path": "", "name": "P"}})
        shutil.copy(os.path.join(where, "launch.json"), self.prefix)
        shutil.copy2(os.path.join(where, "bottle.yml"), self.prefix)
        # Only the directory of all bottles may be a link.
        shutil.rmtree(os.path.dirname(where))
        os.symlink(os.path.dirname(self.prefix), os.path.dirname(where))
        self.where = where
        self.env = self.wine_env | {"XDG_DATA_HOME": self.path("home 家/.local/share"), "WINEDEBUG": "-all"}
        self.log = self.path("l.txt")

    def tearDown(self):
        # Wine's desktop process ends a while after the last program; a program started meanwhile gets no window.
        self.kill_server()
        super().tearDown()

    def kill_server(self):
        for word in ("-k", "-w"):
            subprocess.run(["wineserver", word], env=self.wine_env | {"WINEPREFIX": self.prefix}, check=False, timeout=60)

    def test_console_programs_get_their_words_and_give_their_code(self):
        for kind in KINDS:
            with self.subTest(kind):
                if kind not in RUNNABLE:
                    self.skipTest("this Wine runs no 32-bit programs")
                words = ["a b", 'q"x', "世界", "--cli", "$HOME"]
                code, out, err = self.launch("t", "--log-path", self.log, sample(kind, "console"), *words, "--exit", "5")
                self.assertEqual((code, out), (5, "launcher: log\n"), err)
                log = self.read(self.log)
                self.assertIn("arguments: [a b] [q\"x] [世界] [--cli] [$HOME]\r\n你好，世界\r\n", log)
                self.assertEqual(self.launch("t", sample(kind, "quit"))[0], 0)

    def test_any_locale_opens_what_lies_below_a_folder_named_in_chinese(self):
        program = self.write("文件夹/quit.exe", Path(sample(RUNNABLE[0], "quit")).read_bytes())
        for variables in ({"LC_ALL": "C"}, {"LC_ALL": "", "LANG": "zh_CN.GBK"}, {"LC_ALL": "xx_YY"}):
            code, out, err = self.launch("t", program, env=variables)
            self.assertEqual(code, 0, err)
            code, out, err = self.launch("t", f'cmd.exe /c if exist "Z:{os.path.dirname(program)}" echo there', env=variables)
            self.assertEqual((code, out.strip()), (0, "there"), err)
            self.kill_server()

    def test_a_batch_file_keeps_its_blanks(self):
        file = self.write("a b/run it.bat", "@echo off\r\necho [%1] [%2]\r\nexit /b 7\r\n")
        windows = "Z:" + file.replace("/", "\\")
        for name in (file, windows):
            code, out, _ = self.launch("t", name, "x y", "z")
            self.assertEqual((code, out.strip()), (7, '["x y"] [z]'))

    def test_an_internal_command_in_one_word(self):
        code, out, _ = self.launch("t", "cmd.exe /c echo hello", env={"WINEDEBUG": "-all"})
        self.assertEqual((code, out.strip()), (0, "hello"))
        # No program may put entries into the user's menu unasked.
        self.assertNotEqual(self.launch("t", "winemenubuilder.exe", "-a", "-r")[0], 0)
        code, out, _ = self.launch("t", "taskkill.exe", "/f", "/im", "none.exe")
        self.assertIn("none.exe", out)

    def test_nothing_stays_when_the_server_was_killed(self):
        for name, stage in (("window", "early"), ("window", "shown"), ("spawn", "handed over")):
            with self.subTest(stage):
                self.kill_server()
                process = self.start("t", "--log-path", self.log, sample(KINDS[0], name), stage, stdout=subprocess.DEVNULL,
                                     stderr=subprocess.DEVNULL)
                if stage == "early":
                    wait_until(lambda: self.in_bottle("services.exe"))
                else:
                    self.find_window(stage)
                if stage == "handed over":
                    self.assert_ends(process, 0)
                for pid in self.in_bottle("wineserver"):
                    os.kill(pid, signal.SIGKILL)
                wait_until(lambda: not self.in_bottle(""), 5)
                process.communicate(timeout=5)
                self.assertEqual(self.launch("t", sample(KINDS[0], "quit"))[0], 0)

    def in_bottle(self, name):
        """Processes with this text in their command, the launcher's among them."""
        found = []
        for path in Path("/proc").glob("[0-9]*"):
            with contextlib.suppress(OSError):
                environment, command = (path / "environ").read_bytes(), (path / "cmdline").read_bytes()
                if name.encode() in command and (self.top.encode() in environment or self.prefix.encode() in environment):
                    found.append(int(path.name))
        return found

    def assert_ends(self, process, code):
        process.communicate(timeout=30)
        self.assertEqual(process.returncode, code)

    def find_window(self, title):
        return wait_until(lambda: self.xdotool("search", "--onlyvisible", "--name", f"^{title}$"), 30)

    def xdotool(self, *words):
        return subprocess.run(["xdotool", *words], env=self.env, capture_output=True, text=True, check=False).stdout.strip()


if __name__ == "__main__":
    unittest.main()
