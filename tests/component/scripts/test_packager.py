"""What goes into a package, what stays at home, which packages are refused, and what an interrupted run leaves."""

import fcntl
import hashlib
import io
import json
import os
import shutil
import signal
import struct
import subprocess
import tarfile
import unittest
from pathlib import Path
from unittest import mock

from packages import ID, PACKER, REGISTRY, BottleCase

from cellarix_packager import (archive, contents, debian, driveplaces, estimate, links, messages, origin, place, private,
                               progress, registry, request, settings, userbottle)
from cellarix_packager.errors import PackageError
from cellarix_packager.package import Package

ROOT = "./opt/apps/com.example.sample/files/"


def builtin(code, debug=b"", trimmed=False):
    """A library of Wine's own with debug information, or as it is without."""
    optional = struct.pack("<H30xI20xII44xI", 0x20B, 0x1000, 0x2000 if trimmed else 0x3000, 1024, 16) + bytes(128)
    sections = [(b".text", len(code), 0x1000, len(code), 1024), (b"/4", len(debug), 0x2000, len(debug), 1024 + len(code))]
    head = b"MZ".ljust(0x3C, b"\0") + struct.pack("<I", 0x80) + b"Wine builtin DLL".ljust(64, b"\0") + b"PE\0\0" + \
        struct.pack("<HHIIIHH", 0x8664, 1 if trimmed else 2, 1, 0, 0, len(optional), 0) + \
        optional + b"".join(struct.pack("<8sIIII16x", *section) for section in sections)
    return head.ljust(1024, b"\0") + code + (b"" if trimmed else debug)


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
        for name in (".git/config", "data/cookies", "data/Cache/x"):
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
            (good, {"pkgname": "cellarix"}, None, "has no dot"),
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
                process.send_signal(number)
                process.communicate(timeout=30)
                self.assertNotEqual(process.returncode, 0)
                self.assertEqual(os.listdir(self.path("out")), [])


class UsersBottle(BottleCase):
    """The bottle of a user, made from an unpacked package and upgraded."""

    def unpack(self, version, files):
        for name, text in files.items():
            self.add("drive_c/App/" + name, text)
        self.choose({ID: r"C:\users\packer\AppData\a.exe"}, pkgversion=version)
        ended = self.pack("--compression", "zstd")
        self.assertEqual(ended.returncode, 0, ended.stderr)
        shutil.rmtree(self.path("root"), ignore_errors=True)
        subprocess.run(["dpkg-deb", "-x", ended.stdout.rpartition("packed: ")[2].strip(), self.path("root")], check=True)
        return Package(self.path("root/opt/apps/com.example.sample/files"))

    def provide(self, package):
        bottle = userbottle.UserBottle(package, {"HOME": self.path("user"), "USER": "me"})
        bottle.provide()
        return bottle, Path(bottle.directory, "drive_c", "App")

    def test_an_upgrade_changes_what_nobody_has_changed(self):
        os.makedirs(os.path.join(self.directory, "drive_c", "windows"), exist_ok=True)
        os.symlink("/usr/bin/ls", os.path.join(self.directory, "drive_c", "windows", "wine.dll"))
        self.add("drive_c/users/packer/AppData/x.ini", "profile")
        self.add("user.reg", REGISTRY.format("User") + '[A] 1\n"Path"="C:\\\\users\\\\packer"\n"New"="1"\n')
        old = {"a.exe": "MZ 1", "same.ini": "1", "mine.ini": "1", "gone.txt": "1", "gone.dll": "1", "deleted.txt": "1"}
        self.add("drive_c/App/turned", "1")
        self.add("drive_c/App/taken", "1")
        os.symlink("a.exe", os.path.join(self.directory, "drive_c/App/link"))
        os.symlink("users/packer/AppData", os.path.join(self.directory, "drive_c/profile"))
        package = self.unpack("1.0", old)
        bottle, app = self.provide(package)
        drive = app.parent
        self.assertEqual(os.readlink(app / "a.exe"), package.shared + "/drive_c/App/a.exe")
        self.assertFalse((app / "same.ini").is_symlink())
        self.assertEqual(os.readlink(drive / "windows/wine.dll"), "/usr/bin/ls")
        self.assertIn(r"C:\users\me\AppData\a.exe", Path(bottle.directory, "bottle.yml").read_text())
        self.assertNotIn("packer", Path(package.shared, "bottle.yml").read_text())
        self.assertEqual((drive / "users/me/AppData/x.ini").read_text(), "profile")
        self.assertIn(r"users\\me", Path(bottle.directory, "user.reg").read_text())
        self.assertEqual((drive / "profile/x.ini").read_text(), "profile")
        (app / "mine.ini").write_text("user")
        (app / "taken").write_text("user")
        (app / "own.sav").write_text("user")
        (app / "deleted.txt").unlink()
        for name in ("gone.txt", "gone.dll", "turned", "taken", "link"):
            os.unlink(os.path.join(self.directory, "drive_c/App", name))
        self.add("user.reg", REGISTRY.format("User") + '[A] 1\n"Path"="C:\\\\users\\\\packer"\n"New"="2"\n')
        for name in ("turned/x", "taken/y"):
            self.add("drive_c/App/" + name, "2")
        package = self.unpack("1.0", {"a.exe": "MZ 2", "same.ini": "2", "mine.ini": "2", "new.txt": "2"})
        for _ in range(2):  # the second time nothing is left to do
            self.provide(package)
            self.assertEqual({path.name: path.read_text() for path in app.rglob("*") if path.is_file()},
                             {"a.exe": "MZ 2", "x": "2", "taken": "user", "same.ini": "2", "mine.ini": "user", "own.sav": "user", "new.txt": "2"})
            self.assertIn('"New"="2"', Path(bottle.directory, "user.reg").read_text())
            Path(bottle.directory, ".package/version").write_text("interrupted")

    def test_files_of_wine_are_those_of_the_machine(self):
        runner, windows = "home 家/.local/share/lumora-wine-bottles/runners/r/lib/wine/x86_64-windows/", "drive_c/windows/system32/"
        own = os.path.join(self.directory, windows)
        for name in ("link.dll", "same.dll", "trimmed.dll", "other.dll"):
            self.write(runner + name, builtin(b"code", b"debug"))
        trimmed = builtin(b"code", b"debug", True)
        for name, content in (("same.dll", builtin(b"code", b"debug")), ("trimmed.dll", trimmed),
                              ("other.dll", builtin(b"edoc", b"debug"))):
            self.add(windows + name, content)
        os.symlink(self.path(runner + "link.dll"), own + "link.dll")
        package = self.unpack("1.0", {})
        self.assertEqual(os.listdir(package.shared + "/" + windows), ["other.dll"])
        machine = self.path("user/.local/share/lumora-wine-bottles/runners/r/lib/wine/x86_64-windows")
        bottle = self.provide(package)[0]
        self.assertIn('"r" is not installed', str(bottle.notice()))
        shutil.rmtree(bottle.directory)
        shutil.copytree(self.path(runner), machine)
        os.unlink(machine + "/same.dll")
        bottle = self.provide(package)[0]
        self.assertIsNone(bottle.notice())
        mine = Path(bottle.directory, windows)
        self.assertEqual(((mine / "link.dll").readlink(), (mine / "trimmed.dll").read_bytes()),
                         (Path(machine, "link.dll"), trimmed))
        self.assertEqual(sorted(os.listdir(mine)), ["link.dll", "other.dll", "trimmed.dll"])
        shutil.copy(self.path(runner + "same.dll"), machine)
        self.provide(package)
        self.assertEqual((mine / "same.dll").read_bytes(), trimmed)
        for name in ("link.dll", "trimmed.dll"):  # the packer has installed a component
            os.unlink(own + name)
            self.add(windows + name, "native")
        self.provide(self.unpack("2.0", {}))
        self.assertEqual({name: (mine / name).read_bytes() for name in ("link.dll", "trimmed.dll", "other.dll")},
                         {"link.dll": b"native", "trimmed.dll": b"native", "other.dll": builtin(b"edoc", b"debug")})

    def test_only_the_bottle_of_the_package_follows_it(self):
        package = self.unpack("1.0", {"a.exe": "MZ"})
        data = Path(self.path("user/.local/share/lumora-wine-bottles"))
        other = data / "bottles/com.example.sample"
        other.mkdir(parents=True)
        first = self.provide(package)[0]
        self.assertEqual((first.name, os.listdir(other)), ("com.example.sample.package", []))
        os.rename(first.directory, data / "bottles/mine")
        shutil.copytree(data / "bottles/mine", data / "bottles/zcopy", symlinks=True)
        shutil.rmtree(other)
        self.assertEqual(self.provide(package)[0].name, "com.example.sample")  # of two copies none is taken
        shutil.rmtree(other)
        origin.note(data, "com.example.sample", "gone", first.id)
        shutil.rmtree(data / "bottles/zcopy")
        package = self.unpack("2.0", {"a.exe": "MZ 2"})
        bottle = userbottle.UserBottle(package, {"HOME": self.path("user"), "USER": "renamed"})
        bottle.provide()
        self.assertEqual((bottle.name, bottle.user, bottle.id), ("mine", "me", first.id))
        shutil.copytree(data / "bottles/mine", other, symlinks=True)
        self.assertEqual(self.provide(package)[0].name, "mine")
        Path(other, ".package/origin.json").unlink()  # as the first version made them
        names = [("com.example.sample", "com.example.sample"), ("mine", "com.example.sample")]
        self.assertEqual((origin.orphans(data, self.path("root")), origin.orphans(data, self.top)), ([], names))
        os.unlink(data / "packages/com.example.sample.json")
        self.assertEqual(self.provide(package)[0].name, "com.example.sample")
        shutil.rmtree(other)
        os.unlink(data / "packages/com.example.sample.json")
        for name in ("com.example.sample", "com.example.sample.package"):
            os.mkdir(data / "bottles" / name)
        with self.assertRaises(PackageError):
            self.provide(package)

    def test_a_long_first_start_shows_its_progress_and_can_be_cancelled(self):
        package = self.unpack("1.0", {"a.txt": "x", "n" * 251 + ".txt": "longest name"})
        window = self.write("window", f"#!/bin/sh\nprintf '%s ' \"$@\" >'{self.path('told')}'\nhead -n 1 >>'{self.path('told')}'\n"
                            "exit 3\n", executable=True)
        for display, texts in (("", ("", "16 %")), (":0", ("Sample make ::progress:: ", ""))):
            with self.subTest(display), mock.patch.multiple(progress, QUIET_SECONDS=0, INTERVAL=0, LINE_STEP=0), \
                    mock.patch("sys.stderr", io.StringIO()) as printed:
                bottle = userbottle.UserBottle(package, {"HOME": self.path("user"), "DISPLAY": display}, [window])
                if display:
                    bottle.link_system_files = lambda _: (bottle.placer.progress.process.wait(), bottle.placer.progress(1))
                    with self.assertRaisesRegex(PackageError, "cancelled"):
                        bottle.provide()
                    self.assertFalse(os.path.lexists(bottle.directory))
                else:
                    bottle.provide()
                    self.assertTrue(os.path.isfile(bottle.directory + "/drive_c/App/" + "n" * 251 + ".txt"))
                    shutil.rmtree(bottle.directory)
                self.assertEqual([name for name in os.listdir(bottle.data_dir + "/packages") if name.endswith(".new")], [])
                self.assertIn(texts[0], Path(self.path("told")).read_text() if display else "")
                self.assertIn(texts[1], printed.getvalue())

    def test_a_start_that_cannot_go_on_says_so(self):
        package = self.unpack("1.0", {"a.txt": "x"})
        bottle = userbottle.UserBottle(package, {"HOME": self.path("user")})
        full = os.statvfs_result((4096, 4096, 9, 1, 1, 1, 1, 1, 0, 255))
        with mock.patch("os.statvfs", return_value=full), mock.patch.object(bottle.placer, "try_clone", return_value=False), \
                self.assertRaises(PackageError) as caught:
            bottle.provide()
        self.assertEqual((caught.exception.cause, os.path.exists(bottle.directory)), ("no-room", False))
        self.assertEqual((messages.text(caught.exception, {"LANG": "zh_CN.UTF-8"}), messages.text(caught.exception, {"LC_ALL": "C"})),
                         ("磁盘空间不足，还需要 64 MiB。", "The disk has not enough room: Sample needs 64 MiB more."))
        left = Path(bottle.data_dir, "packages/org.other.new")
        left.mkdir()
        with open(bottle.data_dir + "/packages/com.example.sample.lock", "w", encoding="ascii") as lock, \
                mock.patch.object(userbottle, "WAIT_SECONDS", 0):
            fcntl.flock(lock, fcntl.LOCK_EX)
            with self.assertRaisesRegex(PackageError, "another start"):
                bottle.provide()
        bottle.provide()
        self.assertEqual((left.exists(), os.path.isdir(bottle.directory)), (False, True))

    def test_a_menu_entry_that_fails_notifies(self):
        os.chmod(self.write("bin/busctl", '#!/bin/sh\necho "$*" >"$HOME/told"\n'), 0o755)
        env = self.env | {"PATH": self.path("bin") + ":" + os.environ["PATH"], "HOME": self.home}
        starter = os.path.join(os.path.dirname(PACKER), "packaged_program.py")
        ended = subprocess.run([starter, self.path("<none>"), ID], env=env, capture_output=True, text=True, check=False)
        told = Path(self.home, "told").read_text()
        self.assertEqual((ended.returncode, "call org.freedesktop.Notifications" in told), (1, True))
        self.assertIn(f"{self.top}/&lt;none&gt;/package.json cannot be read", told)

    def test_what_is_shared(self):
        for path, size, wanted in (
            ("drive_c/App/a.EXE", 1, True), ("drive_c/App/data.bin", 64 << 20, True), ("drive_c/App/data.bin", 2 << 20, False),
            ("drive_c/App/large.sqlite", 2 << 20, False), ("drive_c/users/me/a.exe", 1, False), ("user.reg", 2 << 20, False),
            ("drive_c/windows/system32/x.dll", 1, False), ("drive_c/windows/system32/spool/x.dll", 1, True),
        ):
            with self.subTest(path):
                self.assertEqual(place.is_shared(path, size), wanted)


class Rules(unittest.TestCase):
    def test_a_full_disk_is_told(self):
        with open("/dev/full", "wb") as full, mock.patch.object(archive, "_compressor", return_value=["/bin/false"]), \
                self.assertRaisesRegex(PackageError, "disk full"):
            with archive.DataTar(full.fileno(), "xz", 0, lambda _: None) as tar:
                tar.process.wait()
                tar.add(contents.text_entry("a", "x" * 9))
                tar.finish()

    def test_paths_in_records_become_portable(self):
        programs = {ID: {"name": "/home/me", "path": "C:\\x.exe", "arguments": "/e Z:\\run\\media\\me\\x", "envs": {
            "A": "C:\\media\\x", "B": "/mnt/x", "API_KEY": "1", "C": "Z:\\home\\ME\\x"}}}
        record = settings.for_package({"External_Programs": programs, "Parameters": {"x": ["/media/me/x", 1]}}, mock.Mock(
            sources=[request.Source(ID, "", in_bottle=True)]), "/b/t", private.Places("me", "me", "/home/me"), "me")
        self.assertEqual(record, {"Parameters": {"x": [1]}, "External_Programs": {
            ID: {"name": "/home/me", "path": "C:\\x.exe", "envs": {"A": "C:\\media\\x"}}}})
        for path, wanted in (("/b/t/drive_c/A/a.exe", r"C:\A\a.exe"), ("/b/t/dosdevices/c:/a.exe", r"C:\a.exe"),
                             (r"D:\a.exe", r"D:\a.exe"), ("/b/t2/drive_c/a.exe", "/b/t2/drive_c/a.exe"), (7, 7)):
            with self.subTest(path):
                self.assertEqual(settings.portable_path(path, "/b/t"), wanted)

    def test_private_places(self):
        for path, wanted in (
            ("users/a/Temp/x", True), ("users/a/Temp", False), ("windows/temp/x/y", True), ("windows/system32/temp.dll", False),
            ("users/a/AppData/Local/Microsoft/Credentials/x", True), ("users/a/AppData/Local/Chat/Code Cache/js/1", True),
            ("users/a/AppData/Roaming/App/app.log", True), ("Program Files/App/app.log", False), ("windows/setup.log", True),
            ("users/a/AppData/Roaming/App/config.xml", False), ("Games/Cache/level", False), ("users/a/Cache", False),
            ("users/a/Saved Games/x", True), ("Program Files/Mail/key4.db", True), ("Games/Chat/Local Storage/x", False),
            ("users/a/AppData/Roaming/Chat/Local Storage/x", True), ("windows/system32/cookies", False),
            ("users/a/AppData/Local/Google/Chrome/User Data/Default/Preferences", True), ("Program Files/A/old.pst", True),
            ("users/a/Local Settings/Application Data/Chromium/x", True), ("users/a/Application Data/App/x.ini", False),
            ("users/a/.docker/config.json", True), ("users/a/.npmrc", True), ("users/a/AppData/Roaming/App/tokens.json", True),
            ("users/a/AppData/Roaming/Microsoft/SystemCertificates/My/x", True), ("Program Files/A/office.RDP", True),
            ("$Recycle.Bin/S-1/x", True), ("Program Files/A/cacert.pem", False), ("Program Files/A/token.dll", False),
        ):
            with self.subTest(path):
                self.assertEqual(private.is_private(path), wanted)

    def test_registry_files_lose_what_is_private_and_get_another_user(self):
        text = REGISTRY.format("User") + (
            '[Software\\\\App] 1\n#time=1\n"Dir"="C:\\\\users\\\\Packer\\\\x"\n"Doc"="Z:\\\\home\\\\packer\\\\letter"\n'
            '"Raw"=hex:2f,00,68,00,6f,00,6d,00,65,00,2f,00,70,00,61,00,63,00,\\\n  6b,00,65,00,72,00\n@="p"\n\n'
            '"a:b"=hex:5c,68,6f,6d,65,5c,70,61,63,6b,65,72\n"Disk"="/run/media/packer/x"\n"Url"="C:/users/packer/y"\n'
            '"Stick"="Z:\\\\mnt\\\\usb\\\\x"\n"Disk2"=str(2):"/mnt/x"\n"Own"="C:\\\\App\\\\mnt\\\\x"\n'
            '[Software\\\\App\\\\Recent File List] 1\n"File1"="C:\\\\x"\n'
            '[Software\\\\Wow6432Node\\\\Microsoft\\\\Windows NT\\\\CurrentVersion] 1\n"RegisteredOwner"="me"\n"x"="1"\n[Software\\\\App] 1\n'
            '"MachineGuid"="0c1d2e3f"\n'
            '[Software\\\\App\\\\Z:/home/packer/x] 1\n@="x"\n'
            '[System\\\\ControlSet001\\\\Services\\\\Tcpip\\\\Parameters] 1\n"Hostname"="mine"\n'
            '[Software\\\\Microsoft\\\\Windows\\\\CurrentVersion\\\\Explorer\\\\RunMRU] 1\n"a"="x"\n')
        clean, left = registry.cleaned(text, "packer", private.Places("packer", "packer", "/home/packer"))
        self.assertEqual((clean, left), (REGISTRY.format("User") + (
            '[Software\\\\App] 1\n#time=1\n"Dir"="C:\\\\users\\\\packaged-user\\\\x"\n@="p"\n'
            '"Url"="C:/users/packaged-user/y"\n"Own"="C:\\\\App\\\\mnt\\\\x"\n'
            f'"MachineGuid"="{registry.NO_ID}"\n\n'
            '[Software\\\\Wow6432Node\\\\Microsoft\\\\Windows NT\\\\CurrentVersion] 1\n"x"="1"\n\n'
            '[System\\\\ControlSet001\\\\Services\\\\Tcpip\\\\Parameters] 1\n\n'), 14))
        self.assertIn(r"users\\me\\x", registry.personal(clean, "me"))
        self.assertIn(r"users\\\x5f20\\x", registry.personal(clean, "张"))
        for name in ("\\x5f20", "张"):
            clean = registry.cleaned(f'W\n\n[A] 1\n"D"="C:\\\\users\\\\{name}\\\\x"\n', "张", private.Places("z", "张", "/home/z"))[0]
            self.assertIn(r"users\\packaged-user\\x", clean)

    def test_registry_files_are_merged_by_value(self):
        def file(**values):
            return "WINE\n\n[A] 1\n" + "".join(f'"{k}"="{v}"\n' for k, v in values.items()) + "\n"
        own = file(same="1", mine="user", old="1", gone="1", extra="u")
        merged = registry.merged(own, file(same="1", mine="1", old="1", gone="1"),
                                 file(same="1", mine="2", old="2", new="n"))
        self.assertEqual(merged, file(same="1", mine="user", old="2", extra="u", new="n"))

    def test_links(self):
        for path, target, wanted in (
            ("drive_c/x", "/d/bottles/t/drive_c/y", links.INSIDE), ("drive_c/x", "/usr/bin/ls", links.OUTSIDE),
            ("drive_c/windows/x", "/usr/bin/ls", links.SYSTEM_FILE), ("drive_c/x", "/opt/apps/p/files/bottle/y", links.FULL),
            ("drive_c/x", "/opt/wine-9/lib/wine/x86_64-windows/y", links.SYSTEM_FILE), ("drive_c/x", "/opt/y", links.OUTSIDE),
            ("drive_c/x", "/usr/bin/none", links.OUTSIDE), ("drive_c/x", "/d/runners/r/none.dll", links.OUTSIDE),
            ("drive_c/users/a/Music", "/home/a/m", links.FOLDER), ("drive_c/Music", "/home/a/m", links.OUTSIDE),
        ):
            is_file = target.endswith(("/y", "/ls"))
            with self.subTest(path=path, target=target), mock.patch("os.path.isfile", return_value=is_file):
                self.assertEqual(links.kind("/d/bottles/t", "/d", path, target), wanted)

    def test_texts_of_users_do_not_become_fields(self):
        wanted = request.Request("A\\B", "a.b", "1", "One\n\nDepends: evil\n" + "w " * 60, "Game", ["amd64", "arm64"])
        text = debian.control(wanted, 1, "x").decode()
        self.assertIn("Architecture: all\n", text)
        self.assertEqual([line for line in text.splitlines() if line.startswith("Depends")], ["Depends: cellarix"])
        self.assertTrue(all(len(line) < 81 for line in text.splitlines()))
        for name, address, who in (("A\nB", "a@b.c", debian.PACKER), (" ", "a@b.c", debian.PACKER), ("\udcff", "a@b.c", debian.PACKER),
                                   ("A\u2028B", "a@b.c", debian.PACKER), ("A \udcff", "a@b.c", "A <a@b.c>")):
            with self.subTest(name):
                self.assertEqual(debian.packer({"DEBFULLNAME": name, "DEBEMAIL": address}), who)

    def test_two_files_in_one_place_are_refused(self):
        files = contents.Contents()
        files.add(contents.text_entry("a/b", "1"))
        for path in ("a/b", "a/b/c"):
            with self.subTest(path), self.assertRaises(PackageError):
                files.add(contents.text_entry(path, "2"))
        self.assertEqual([entry.path for entry in files.in_order()][:2], ["a", "a/b"])

    def test_sizes_and_limits_are_known_before(self):
        files = contents.Contents()
        for name in ("a/b", "n" * 98, "n" * 99, "目" * 80 + "/" + "x" * 200):
            files.add(contents.text_entry(name, "1" * 513))
        files.add(contents.Entry("link", contents.LINK, target="t" * 101))
        with open(os.devnull, "wb") as null, archive.DataTar(null.fileno(), "zstd", 0, lambda _: None) as tar:
            for entry in files.in_order():
                tar.add(entry)
            tar.finish()
        self.assertEqual(archive.tar_size(files.in_order()), tar.written)
        large = [contents.Entry(f"x{n}", contents.FILE, 7 << 30, source="/dev/null") for n in range(2)]
        header = archive._info(contents.Entry("x", contents.FILE, 9 << 30), 0)
        self.assertEqual(tarfile.TarInfo.frombuf(header, "utf-8", "").size, 9 << 30)
        self.assertGreater(archive.check_limits(large, lambda _, total: total // 2), 14 << 30)
        with self.assertRaisesRegex(PackageError, "15.0 GB; a .deb"):
            archive.check_limits(large, lambda _, total: total)
        mixed = [contents.text_entry("a", os.urandom(4 << 20)), contents.text_entry("b", bytes(12 << 20))]
        self.assertAlmostEqual(estimate.compressed_size(mixed, 16 << 20), 4 << 20, delta=1 << 18)

    def test_each_source_has_a_folder_of_its_own(self):
        places = driveplaces.DrivePlaces(["p/drive_c", "p/drive_c/Program Files", "p/drive_c/windows"], "p")
        for source, wanted, folder in (
            ("/a/Game.exe", "", "Game"), ("/b/game.exe", "", "game (2)"), ("/a/Game.exe", "", "Game"), ("/c/Windows", "", "Windows (2)"),
            ("/d", "drive_c/program files/App", "Program Files/App"), ("/e", "drive_c/PROGRAM FILES/APP", "Program Files/APP (2)"),
        ):
            with self.subTest(source):
                self.assertEqual(places.of(source, wanted), "drive_c/" + folder)
