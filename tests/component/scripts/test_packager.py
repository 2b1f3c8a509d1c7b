"""What goes into a package, which packages are refused, and what an interrupted run leaves."""

import hashlib
import io
import json
import os
import signal
import subprocess
import tarfile
from pathlib import Path

from packages import ID, PACKER, BottleCase

ROOT = "./opt/apps/com.example.sample/files/"


class Packer(BottleCase):
    def members(self, deb, part="--fsys-tarfile"):
        data = subprocess.run(["dpkg-deb", part, deb], capture_output=True, check=True).stdout
        with tarfile.open(fileobj=io.BytesIO(data)) as tar:
            return {member.name: (member, tar.extractfile(member).read() if member.isfile() else b"") for member in tar}

    def packed(self, *options):
        ended = self.pack(*options)
        self.assertEqual((ended.returncode, ended.stderr), (0, ""))
        return ended.stdout.rpartition("packed: ")[2].strip(), ended.stdout

    def test_a_package_has_what_was_chosen_and_nothing_private(self):
        self.choose({ID: r"C:\App Dir\程序.exe"})
        for name in ("users/packer/AppData/Roaming/App/settings.ini", "users/Public/Documents/x", "windows/win.ini"):
            self.add("drive_c/" + name, "kept")
        for name in ("users/packer/AppData/Local/Temp/t", "users/packer/Documents/letter", "users/other/x",
                     "users/packer/AppData/Roaming/Browser/Login Data", "windows/Temp/x", "../logs/wine.txt"):
            self.add("drive_c/" + name, "private")
        os.mkfifo(os.path.join(self.directory, "drive_c", "pipe"))
        secret = self.write("home 家/secret", "private")
        for name, target in (("inside", "App Dir"), ("secret", secret), ("windows/ls.exe", "/usr/bin/ls")):
            os.symlink(target, os.path.join(self.directory, "drive_c", name))
        deb, out = self.packed()
        members = self.members(deb)
        self.assertEqual({os.path.relpath(name, ROOT + "bottle/drive_c") for name, (member, _) in members.items()
                          if "/drive_c/" in name and not member.isdir()},
                         {"App Dir/程序.exe", "users/packaged-user/AppData/Roaming/App/settings.ini", "windows/win.ini",
                          "inside"})
        everything = b"".join(data for _, data in members.values()) + "".join(members).encode()
        for word in (b"private", b"packer/", self.home.encode()):
            self.assertNotIn(word, everything)
        self.assertIn("left out (a link that leads out of the bottle): drive_c/secret", out)
        record = json.loads(members[ROOT + "package.json"][1])
        self.assertEqual(record["systemLinks"], {"drive_c/windows/ls.exe": "/usr/bin/ls"})
        self.assertEqual({(m.uid, m.gid, m.mode & 0o7022) for m, _ in members.values() if not m.issym()}, {(0, 0, 0)})
        control = self.members(deb, "--ctrl-tarfile")
        self.assertEqual(set(control), {"./control", "./md5sums"})
        for line in control["./md5sums"][1].decode().splitlines():
            digest, name = line.split("  ", 1)
            self.assertEqual(hashlib.md5(members["./" + name][1]).hexdigest(), digest)

    def test_the_same_bottle_gives_the_same_bytes(self):
        self.choose({ID: r"C:\App Dir\程序.exe"})
        for method in ("xz", "zstd"):
            with self.subTest(method):
                first = Path(self.packed("--compression", method)[0]).read_bytes()
                os.utime(os.path.join(self.directory, "drive_c"), (1, 1))
                self.env["TZ"] = "Asia/Shanghai"
                deb, out = self.packed("--compression", method)
                self.assertEqual(Path(deb).read_bytes(), first)
                told = [float(line.split()[1]) for line in out.splitlines() if line.startswith("::progress:: ")]
                self.assertEqual((told[-1], told), (100, sorted(told)))

    def test_programs_from_outside_move_into_the_drive(self):
        game = self.write("games/Game/bin/game.exe", "MZ game")
        self.write("games/Game/data/level.dat", "level")
        for name in (".git/config", "data/cookies", "data/tdata/x"):
            self.write("games/Game/" + name, "private")
        os.symlink("data", self.path("games/Game/link"))
        alone = self.write("games/alone.exe", "MZ alone")
        other, second, third = ID[:-1] + "7", ID[:-1] + "8", ID[:-1] + "9"
        self.choose({ID: "x", other: "y", second: "z", third: "u"}, {
            third: {"path": self.write("more/ALONE.exe", "MZ third"), "in_bottles": False, "only_copy_exe": True},
            second: {"path": self.write("games/Game/tool.exe", "MZ tool"), "dir_to_package": self.path("games/Game"),
                     "path_packaged": self.directory + "/drive_c/Game/tool.exe", "in_bottles": False},
            ID: {"path": game, "in_bottles": False, "dir_to_package": self.path("games/Game"),
                 "path_packaged": self.directory + "/drive_c/Game/bin/game.exe"},
            other: {"path": alone, "in_bottles": False, "only_copy_exe": True, "dir_to_package": self.path("games"),
                    "path_packaged": "/etc/passwd"}})
        members = self.members(self.packed()[0])
        found = {name.partition("drive_c/")[2]: data for name, (_, data) in members.items() if data}
        self.assertEqual((found["Game/bin/game.exe"], found["Game/data/level.dat"], found["alone/alone.exe"],
                          found["ALONE (2)/ALONE.exe"]), (b"MZ game", b"level", b"MZ alone", b"MZ third"))
        self.assertEqual(len({name for name in members if name.endswith(".desktop")}), 4)
        self.assertNotIn(b"private", found.values())
        self.assertEqual(members[ROOT + "bottle/drive_c/Game/link"][0].linkname, "data")
        settings = members[ROOT + "bottle/bottle.yml"][1].decode()
        for text in (r"path: C:\Game\bin\game.exe", r"folder: C:\Game\bin", r"path: C:\alone\alone.exe"):
            self.assertIn(text, settings)

    def link_to(self, target):
        link = self.path("a/b/c/link")
        os.makedirs(os.path.dirname(link))
        os.symlink(target, link)
        return link

    def know_every_package(self):
        Path(self.directory, ".before-install/journal.json").unlink()
        os.chmod(self.write("bin/dpkg-query", "#!/bin/sh\necho installed\n"), 0o755)
        self.env["PATH"] = self.path("bin") + ":" + os.environ["PATH"]

    def test_what_cannot_be_packed_is_refused_with_a_sentence(self):
        good = {ID: r"C:\App Dir\程序.exe"}
        newline = os.path.join(self.directory, "drive_c", "a\nb")
        for programs, info, prepare, words in (
            (good, {"pkgname": "../x"}, None, "not a valid package name"),
            (good, {"pkgname": "cellarix"}, None, "Another program's package"),
            (good, {"pkgname": "a" * 150, "pkgversion": "1" * 150}, None, ".deb is too long"),
            ({ID: "/"}, {}, lambda: self.add("pkgcfg/pkgsrc.json", json.dumps({ID: {
                "path": "/etc/passwd", "dir_to_package": self.link_to("/etc"), "in_bottles": False}})), "too close to the root"),
            ({ID: "/"}, {}, lambda: self.add("pkgcfg/pkgsrc.json", json.dumps({ID: {
                "path": "/etc/passwd", "only_copy_exe": True, "in_bottles": False}})), "not a Windows program"),
            ({"x\nExec=y": "a"}, {}, None, "not the id of a program"),
            (good, {"pkgversion": "1.0\nEvil: x"}, None, "not a valid package version"),
            (good, {"arch": ["mips"]}, None, "No architecture"),
            ({}, {}, None, "No program"),
            (good, {}, lambda: Path(newline).write_text(""), "line break"),
            (good, {}, lambda: self.add(".before-install/journal.json", ""), "being installed"),
            (good, {}, lambda: (os.unlink(self.directory + "/pkgcfg/pkginfo.json"), os.mkfifo(self.directory + "/pkgcfg/pkginfo.json")),
             "not a regular file"),
            (good, {}, self.know_every_package, "Another program's package"),
        ):
            with self.subTest(words):
                self.choose(programs, **info)
                if prepare:
                    prepare()
                ended = self.pack()
                self.assertEqual(ended.returncode, 1)
                self.assertIn(words, ended.stderr)
                self.assertNotIn("Traceback", ended.stderr)
                self.assertEqual(os.listdir(self.path("out")), [])
                Path(newline).unlink(missing_ok=True)

    def test_an_interrupted_run_leaves_nothing(self):
        self.choose({ID: r"C:\App Dir\程序.exe"})
        with open(self.add("drive_c/noise", ""), "wb") as file:
            for _ in range(16):
                file.write(os.urandom(1 << 20))
        os.makedirs(self.path("out"))
        for number in (signal.SIGTERM, signal.SIGKILL):
            with self.subTest(number):
                process = subprocess.Popen([PACKER, "t", "--savedir", self.path("out")], env=self.env, text=True,
                                           stdout=subprocess.PIPE, stderr=subprocess.PIPE)
                while not process.stdout.readline().startswith("::progress:: 1"):
                    self.assertIsNone(process.poll())
                self.assertEqual([json.loads(claim.read_text())["kind"] for claim in
                                  Path(self.directory, "../../running").glob(f"{process.pid}.start")], ["packing"])
                process.send_signal(number)
                process.communicate(timeout=30)
                self.assertNotEqual(process.returncode, 0)
                self.assertEqual(os.listdir(self.path("out")), [])

    def test_a_bottle_may_be_named_like_an_option(self):
        self.choose({ID: r"C:\App Dir\程序.exe"})
        os.rename(self.directory, os.path.join(os.path.dirname(self.directory), "--list"))
        for words, text in ((["--savedir", self.top], "packed: "), (["--list"], '{"nameCause": ""}')):
            ended = subprocess.run([PACKER, "--list", *words], env=self.env, input="{}", capture_output=True, text=True, check=False)
            self.assertEqual((ended.returncode, text in ended.stdout), (0, True), ended.stderr)
