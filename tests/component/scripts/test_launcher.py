"""One launch with a fake Wine: arguments, environment, records, exit codes, signals."""

import json
import os
import signal
import struct
import unittest
from unittest import mock

from support import UUID, HomeCase, wait_until

from cellarix_launcher import bottlelock, errors, main, origin
from cellarix_packager.errors import PackageError
from cellarix_packager.running import Alone


def pe_head(machine, magic, clr=0):
    optional = struct.pack("<H", magic) + bytes(90) + struct.pack("<I", 16) + bytes(14 * 8) + struct.pack("<I", clr)
    head = b"MZ" + bytes(58) + struct.pack("<I", 64) + b"PE\0\0" + struct.pack("<H", machine) + bytes(18)
    return head + optional + bytes(64)


class LaunchCase(HomeCase):
    def argv(self, *words, **options):
        """How Wine was called in a launch that went well."""
        self.assertEqual(self.launch(*words, **options)[0], 0)
        return self.record()["argv"]


class Commands(LaunchCase):
    def test_each_kind_of_file_reaches_wine_in_its_way(self):
        bottle = self.bottle()
        long_name = "长" * 83 + "ab.exe"  # 255 bytes
        names = ["it's `q` $x.exe", "-dash.exe", "包.MSI", "fix.msp", "run.bat", "a.lnk", long_name]
        files = {name: self.write(f"files/{name}", "MZ") for name in names}
        at = "Z:" + self.top.replace("/", "\\") + "\\files\\"
        cases = [([file], [file]) for name, file in files.items() if name.endswith(("exe", "bat"))] + [
            ([files["包.MSI"], "/qn"], ["msiexec", "/i", at + "包.MSI", "/qn"]),
            ([files["fix.msp"]], ["msiexec", "/p", at + "fix.msp"]),
            ([files["a.lnk"], "x"], ["start", "/wait", "/unix", files["a.lnk"], "x"]),
            (["start.exe", "/ProgIDOpen", "-x \"", "/a.cxt"], ["start.exe", "/ProgIDOpen", "-x \"", "/a.cxt"]),
            (["start.exe", "/ProgIDOpen", "note", "note:a b"], ["start.exe", "note:a b"]),
            ([r"regedit.exe C:\x.reg"], ["regedit.exe", r"C:\x.reg"]),
            ([r"C:\App Dir\程序.exe", "--cli", "", "a b"], [r"C:\App Dir\程序.exe", "--cli", "", "a b"]),
        ]
        for words, wanted in cases:
            with self.subTest(words):
                self.assertEqual(self.argv("t", *words), [self.wine] + wanted)
        self.launch("t", files["run.bat"])
        self.assertEqual(self.record()["cwd"], self.path("files"))
        self.launch("t", "winecfg.exe")
        self.assertEqual((self.record()["cwd"], self.record()["env"]["WINEPREFIX"]), (self.top, bottle))

    def test_names_that_are_not_text_pass_through(self):
        self.bottle()
        file = self.write("x", "MZ").encode() + b"\xff\xfe.exe"
        os.rename(self.path("x"), file)
        self.assertEqual(os.fsencode(self.argv("t", file)[1]), file)

    def test_a_stored_program_brings_its_words_variables_and_folder(self):
        record = {"name": "P", "path": r"c:\app dir\程序.exe", "folder": "C:\\", "arguments": '-x "a b"',
                  "envs": {"MINE": "1", "WINEDEBUG": "+all", "LAYER": "program", "N": 5, "": "x", "A=B": "x", "Z": "a\0b",
                           "WINEPREFIX": "/elsewhere"}}
        bottle = self.bottle(programs={UUID: record}, env={"LAYER": "bottle", "BOTTLE": "b", "FROM": "bottle"})
        argv = self.argv("t", "--uuid", UUID, env={"FROM": "caller", "WINEARCH": "win32"})
        self.assertEqual(argv[1:], [r"c:\app dir\程序.exe", "-x", "a b"])
        got = self.record()
        self.assertEqual(got["cwd"], os.path.realpath(bottle + "/drive_c"))
        wanted = {"MINE": "1", "WINEDEBUG": "+all", "LAYER": "program", "BOTTLE": "b", "FROM": "bottle", "N": "5",
                  "WINEPREFIX": bottle, "_CXB_WINE_PROGRAM_UUID": UUID}
        self.assertEqual({name: got["env"].get(name) for name in wanted}, wanted)
        self.assertFalse({"", "A", "Z", "WINEARCH"} & set(got["env"]))

        self.launch("t", "--uuid", UUID, env={"WINEDEBUG": "err+all"})
        self.assertEqual(self.record()["env"]["WINEDEBUG"], "err+all")
        self.launch("t", "x.exe", env={"_CXB_WINE_PROGRAM_UUID": "__open__1"})
        self.assertEqual(self.record()["env"]["_CXB_WINE_PROGRAM_UUID"], "__open__1")
        self.assertEqual(self.record()["env"]["WINEDEBUG"], "fixme-all")

    def test_wine_gets_a_utf8_locale_and_keeps_the_other_categories(self):
        self.bottle()
        for given, wanted in (({"LANG": "C.UTF-8"}, {"LANG": "C.UTF-8"}), ({"LANG": "xx_YY.UTF-8"}, {"LANG": "xx_YY.UTF-8"}),
                              ({"LC_CTYPE": "POSIX", "LC_TIME": "C"}, {"LC_TIME": "C"}),
                              ({"LC_ALL": "C", "LC_TIME": "C.UTF-8"}, {"LC_TIME": "C", "LC_MESSAGES": "C", "LC_NUMERIC": "C"})):
            self.launch("t", "x.exe", env={"LANG": ""} | given)
            got = self.record()["env"]
            self.assertEqual(wanted, {name: got.get(name) for name in wanted})
            self.assertEqual((got.get("LC_CTYPE") or got["LANG"], "LC_ALL" in got), ("C.UTF-8", False))

    def test_what_cannot_be_launched_is_told_in_a_sentence(self):
        self.bottle(programs={UUID: {"path": r"C:\gone.exe"}, "odd": "text", "empty": {}})
        self.bottle("nowine", wine="/nowhere/wine")
        self.bottle("public/p")
        self.write("home 家/.local/share/lumora-wine-bottles/secret/bottle.yml", "Name: x\n")
        os.symlink("t", self.path("home 家/.local/share/lumora-wine-bottles/bottles/linked"))
        self.bottle(".creating-t")
        for bottle in ("linked", ".creating-t", "none", "../secret", "public", "", "t/"):
            with self.subTest(bottle):
                self.assert_refused([bottle, "x.exe"], 67, f'there is no bottle named "{bottle}"')
        for words, code, text in (
            (["t", "/no/x.exe"], 66, 'the program "/no/x.exe" does not exist'),
            (["t", self.top + "/"], 66, "does not exist"), (["t", r"C:\no.exe"], 66, "does not exist"),
            (["t", self.write('a "b".exe', "MZ")], 66, "Windows knows no paths with the sign"),
            (["t", "--uuid", "none"], 66, 'there is no program none in bottle "t"'),
            (["t", "--uuid", "odd"], 66, "there is no program odd"), (["t", "--uuid", "empty"], 66, "does not exist"),
            (["t", "--uuid", UUID], 66, "C:\\gone.exe"),
            (["nowine", "x.exe"], 69, "/nowhere/wine is not a program"), (["t", "--nope"], 64, "unknown option --nope"),
            (["terminal", "none"], 67, "there is no bottle"),
        ):
            with self.subTest(words):
                self.assert_refused(words, code, text)
        self.assertEqual(self.launch("public/p", "x.exe")[0], 0)
        gone = self.bottle("gone", programs={UUID: {"path": r"C:\gone.exe"}})
        self.write("home 家/.local/share/lumora-wine-bottles/bottles/gone/.package/origin.json",
                   '{"format": 1, "package": "com.example.gone"}')
        self.assert_refused(["gone", "--uuid", UUID], 66, "the package com.example.gone, which has been removed")
        os.symlink("loop", self.path("loop"))
        with mock.patch.object(origin, "PACKAGES", self.path("loop")):  # cannot be looked at
            self.assertEqual(origin.removed_package(gone), "")

        log = self.path("new/dir/l.txt")
        out = self.launch("t", "--log-path", log, "--uuid", UUID)[1]
        self.assertRegex(out, r"\Alauncher: log\nlauncher: cause no-file: C:\\gone.exe\nlauncher: failed with 66: .*does not exist.*\n\Z")
        self.assertEqual(self.read(log), out.split("\n", 2)[2])
        out = self.launch("no\nne", "--log-path", self.path("none/l.txt"), "x.exe")[1]
        self.assertEqual(out, 'launcher: cause no-bottle: no?ne\nlauncher: failed with 67: there is no bottle named "no?ne"\n')
        self.assertFalse(os.path.exists(self.path("none")))

    def assert_refused(self, words, code, text):
        got, _, err = self.launch(*words)
        self.assertEqual((got, text in err, "Traceback" in err), (code, True, False), err)

    def test_a_32_bit_program_needs_32_bit_wine(self):
        self.bottle()
        native = self.write("native.exe", pe_head(0x14C, 0x10B))
        self.assertEqual(self.launch("t", native)[0], 0, "a Wine of unknown build is not judged")
        for library in ("x86_64-windows/ntdll.dll", "i386-windows/zlib1.dll"):
            self.write(f"wine/lib/wine/{library}", "")
        for content, code in ((pe_head(0x14C, 0x10B), 78), (pe_head(0x8664, 0x20B), 0),
                              (pe_head(0x14C, 0x10B, clr=0x2000), 0), (pe_head(0x14C, 0x10B)[:100], 0)):
            got, _, err = self.launch("t", self.write("a.exe", content))
            self.assertEqual((got, "sudo apt-get install wine32:i386" in err), (code, code == 78))
        self.write("wine/lib/wine/i386-windows/ntdll.dll", "")
        self.assertEqual(self.launch("t", native)[0], 0)

    def test_the_loader_fits_the_program(self):
        directory = self.bottle()
        os.makedirs(self.path("wine/lib/wine"))
        wine64 = self.path("wine/lib/wine/wine64")
        os.symlink(self.wine, wine64)
        native = self.write("native.exe", pe_head(0x14C, 0x10B))
        wide = self.write("wide.exe", pe_head(0x8664, 0x20B))
        self.assertEqual(self.argv("t", wide)[0], self.wine, "a 32-bit bottle")
        os.makedirs(os.path.join(directory, "drive_c/windows/syswow64"))
        for program, wine in ((wide, wine64), (native, self.wine), ("winemenubuilder.exe", wine64)):
            self.assertEqual(self.argv("t", program)[0], wine, program)


class Records(LaunchCase):
    def setUp(self):
        super().setUp()
        os.makedirs(self.path("path"))
        os.symlink(self.wine, self.path("path/wine"))
        self.env["PATH"] = self.path("path") + ":/usr/bin:/bin"
        self.directory = self.bottle(programs={UUID: {"path": r"C:\old.exe"}})

    def test_the_bottle_file_stands_in_for_a_bad_or_old_record(self):
        yml = f"External_Programs:\n  {UUID}:\n    path: C:\\App Dir\\程序.exe\n    arguments: 手 edited\n"
        self.write(os.path.join(self.directory, "bottle.yml"), yml)
        quick = os.path.join(self.directory, "launch.json")
        old = self.read(quick)
        for text in (old, b"", b"{", b"[]", b'{"version": 2}', b"[" * 100000, b"\xff\xfe", None):
            with self.subTest((text or b"none")[:20]):
                os.unlink(quick)
                if text is not None:
                    self.write(quick, text)
                self.assertEqual(self.argv("t", "--uuid", UUID),
                                 [self.path("path/wine"), r"C:\App Dir\程序.exe", "手", "edited"])

    def test_the_bottle_file_names_the_runner(self):
        runner = self.write("home 家/.local/share/lumora-wine-bottles/runners/own 10/bin/wine", self.read(self.wine), True)
        machine = self.path("path/wine")
        for name, wine in (("own 10", runner), ("r", self.wine), ("../x", machine), ("", machine)):
            with self.subTest(name):
                self.write(os.path.join(self.directory, "bottle.yml"), f"Runner: '{name}'\n")
                self.assertEqual(self.argv("t", "x.exe")[0], wine)

    def test_a_newer_but_broken_bottle_file_leaves_the_old_record_in_force(self):
        settings = os.path.join(self.directory, "bottle.yml")
        for damage in (lambda: self.write(settings, "a: [\n"), lambda: os.mkfifo(settings), lambda: os.mkdir(settings),
                       lambda: os.symlink(self.write("outside", "Runner: ''\n"), settings)):
            if os.path.isdir(settings):
                os.rmdir(settings)
            else:
                os.unlink(settings)
            damage()
            code, _, err = self.launch("t", "x.exe")
            self.assertEqual((code, self.record()["argv"][0]), (0, self.wine))
            self.assertIn("out of date", err)

    def test_odd_values_in_a_record_are_passed_over(self):
        for record in ({"env": [1], "programs": 5}, {"wine": None, "wineserver": 7}, {"env": {"A": {}, "B": None}}):
            with self.subTest(record):
                quick = os.path.join(self.directory, "launch.json")
                self.write(quick, json.dumps(json.loads(self.read(quick)) | {"wine": self.wine} | record))
                self.assertEqual(self.launch("t", "x.exe")[0], 0)


class Life(HomeCase):
    def setUp(self):
        super().setUp()
        self.directory = self.bottle()

    def start_one_that_lasts(self, do="time.sleep(60)", **options):
        process = self.start("t", "x.exe", do="print('up', flush=True); " + do, **options)
        self.assertEqual(process.stdout.readline(), b"up\n")
        return process

    def assert_ends(self, process, code):
        process.communicate(timeout=20)
        self.assertEqual(process.returncode, code)

    def test_exit_codes_and_streams_are_passed_on(self):
        self.assertEqual(self.launch("t", "x.exe", do="print('out'); sys.exit(42)")[:2], (42, "out\n"))
        self.assertEqual(self.launch("t", "x.exe", do="os.kill(os.getpid(), 9)")[0], 137)

    def test_a_start_claims_its_bottle_as_long_as_the_script_lives(self):
        running = self.path("home 家/.local/share/lumora-wine-bottles/running")
        journal = self.write(os.path.join(self.directory, ".before-install/journal.json"), "{}")
        do = f"print(os.path.exists({journal!r})); print(open({running!r} + '/' + os.listdir({running!r})[0]).read())"
        log = self.write("old.txt", "of an older start")
        process = self.start("t", "--log-path", log, r"C:\App Dir\程序.exe", do=do)
        self.assertEqual([process.stdout.readline() for _ in range(2)], [b"launcher: log\n", b"launcher: waiting\n"])
        self.assertEqual(self.read(log), "")
        self.assertFalse(os.path.exists(running) and os.listdir(running), "claimed while something is installed")
        os.unlink(journal)
        self.assertEqual(process.communicate(timeout=60)[0], b"launcher: going on\n")
        installing, claim = self.read(log).splitlines()[1:]
        self.assertEqual(installing, "False")
        self.assertEqual({"bottle": "t", "name": "程序.exe", "pid": process.pid} | json.loads(claim), json.loads(claim))
        self.assertEqual(os.listdir(running), [])

    def test_a_bottle_that_is_packed_is_waited_for(self):
        lock = bottlelock.BottleLock()
        self.assertTrue(lock.acquire(self.directory, bottlelock.EXCLUSIVE))
        process = self.start("t", "--log-path", self.path("log"), r"C:\App Dir\程序.exe", do="time.sleep(60)")
        self.assertEqual([process.stdout.readline() for _ in range(2)], [b"launcher: log\n", b"launcher: waiting\n"])
        lock.release()
        self.assertEqual(process.stdout.readline(), b"launcher: going on\n")
        self.wait_for_record()
        with self.assertRaisesRegex(PackageError, "Programs run"):
            Alone("t", self.directory, self.env, 0, "packing")
        process.terminate()
        process.communicate(timeout=20)
        with Alone("t", self.directory, self.env, 0, "packing"), mock.patch.dict(os.environ, self.env), \
                mock.patch.object(main, "UPGRADE_SECONDS", 0), mock.patch.object(main, "say") as said:
            claims = os.listdir(self.path("home 家/.local/share/lumora-wine-bottles/running"))
            self.assertEqual((main.main(["t", "x.exe"]), claims), (errors.BUSY, [f"{os.getpid()}.start"]))
        self.assertIn("being packed", said.call_args[0][0])

    def test_signals_reach_the_whole_group(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGQUIT):
            with self.subTest(number):
                process = self.start_one_that_lasts()
                self.assertEqual(self.record()["pgid"], self.record()["pid"])
                process.send_signal(number)
                self.assert_ends(process, 128 + number)

    def test_what_the_caller_ignores_stays_ignored(self):
        def ignore():
            for number in (signal.SIGHUP, signal.SIGCHLD):
                signal.signal(number, signal.SIG_IGN)
        process = self.start_one_that_lasts("time.sleep(0.5); sys.exit(6)", preexec_fn=ignore)
        process.send_signal(signal.SIGHUP)
        self.assert_ends(process, 6)

    def test_a_killed_launcher_leaves_the_program_alone(self):
        process = self.start_one_that_lasts()
        process.kill()
        process.wait(20)
        os.kill(self.record()["pid"], signal.SIGKILL)  # fails if it has gone
        process.communicate()

    def test_wait_lasts_until_all_that_carries_the_mark_has_ended(self):
        done = self.path("done")
        child = f"import time; time.sleep(0.7); open({done!r}, 'w')"
        do = f"os.spawnve(os.P_NOWAIT, '/usr/bin/python3', ['app.exe', '-c', {child!r}], os.environ)"
        code = self.launch("t", "--wait", "x.exe", do=do + "; sys.exit(3)", env={"_CXB_WINE_PROGRAM_UUID": UUID})[0]
        self.assertEqual((code, os.path.exists(done)), (3, True))

        pidfile = self.path("pid")
        # It takes the helper's name only after a while, as between fork and exec.
        helper = (f"import os, time; open({pidfile!r}, 'w').write(str(os.getpid())); time.sleep(0.5);"
                  "os.execv('/usr/bin/sleep', ['C:/windows/services.exe', '600'])")
        do = f"os.spawnve(os.P_NOWAIT, '/usr/bin/python3', ['app.exe', '-c', {helper!r}], os.environ)"
        self.launch("t", "--wait", "x.exe", do=do, env={"_CXB_WINE_PROGRAM_UUID": UUID}, stdout=None, stderr=None)
        os.kill(int(self.read(pidfile)), signal.SIGKILL)  # fails if it has been waited for

    def test_wait_without_a_mark_asks_the_wine_server(self):
        self.write("wine/bin/wineserver", f"#!/bin/sh\necho \"$1\" \"$WINEPREFIX\" > '{self.path('asked')}'\n", True)
        self.assertEqual(self.launch("t", "--wait", "x.exe")[0], 0)
        self.assertEqual(self.read(self.path("asked")), f"-w {self.directory}\n")
        os.unlink(self.path("wine/bin/wineserver"))
        self.assertIn("cannot wait", self.launch("t", "--wait", "x.exe")[2])

    def test_a_signal_ends_the_waiting_too(self):
        do = "os.spawnve(os.P_NOWAIT, '/usr/bin/sleep', ['app.exe', '60'], os.environ)"
        process = self.start("t", "--wait", "x.exe", do=do, env={"_CXB_WINE_PROGRAM_UUID": UUID})
        pid = self.wait_for_record()["pid"]
        wait_until(lambda: not os.path.exists(f"/proc/{pid}"))
        process.terminate()
        self.assert_ends(process, 0)


if __name__ == "__main__":
    unittest.main()
