"""The bottle of a user, made from a package and brought to its next versions."""

import contextlib
import fcntl
import io
import os
import shutil
import struct
import subprocess
from pathlib import Path
from unittest import mock

from packages import ID, PACKER, REGISTRY, BottleCase
from support import wait_until

from cellarix_packager import bottlefiles, messages, origin, place, progress, start, userbottle
from cellarix_packager.errors import PackageError
from cellarix_packager.package import Package


def builtin(code, debug=b"", trimmed=False):
    """A library of Wine's own with debug information, or as it is without."""
    optional = struct.pack("<H30xI20xII44xI", 0x20B, 0x1000, 0x2000 if trimmed else 0x3000, 1024, 16) + bytes(128)
    sections = [(b".text", len(code), 0x1000, len(code), 1024), (b"/4", len(debug), 0x2000, len(debug), 1024 + len(code))]
    head = b"MZ".ljust(0x3C, b"\0") + struct.pack("<I", 0x80) + b"Wine builtin DLL".ljust(64, b"\0") + b"PE\0\0" + \
        struct.pack("<HHIIIHH", 0x8664, 1 if trimmed else 2, 1, 0, 0, len(optional), 0) + \
        optional + b"".join(struct.pack("<8sIIII16x", *section) for section in sections)
    return head.ljust(1024, b"\0") + code + (b"" if trimmed else debug)


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
        for name in ("own", "followed"):
            bottlefiles.put_link("App/a.exe", os.path.join(self.directory, "drive_c", name))
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
        bottlefiles.put_link("App/mine.ini", drive / "own")
        for name in ("own", "followed"):
            bottlefiles.put_link("App/same.ini", os.path.join(self.directory, "drive_c", name))
        for name in ("turned/x", "taken/y"):
            self.add("drive_c/App/" + name, "2")
        package = self.unpack("1.0", {"a.exe": "MZ 2", "same.ini": "2", "mine.ini": "2", "new.txt": "2"})
        for _ in range(2):  # the second time nothing is left to do
            self.provide(package)
            self.assertEqual({path.name: path.read_text() for path in app.rglob("*") if path.is_file()},
                             {"a.exe": "MZ 2", "x": "2", "taken": "user", "same.ini": "2", "mine.ini": "user", "own.sav": "user", "new.txt": "2"})
            self.assertEqual((os.readlink(drive / "own"), os.readlink(drive / "followed")), ("App/mine.ini", "App/same.ini"))
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
        shutil.move(data / "bottles/mine", data / "bottles/.deleting-mine")
        origin.note(data, "com.example.sample", ".deleting-mine", first.id)
        self.assertEqual(origin.own_bottle(data, "com.example.sample"), "com.example.sample")
        for text, known in (("{", None), ('{"format": 1, "package": "a.b", "user": "../x"}', ("a.b", "")), (None, ("com.example.sample", ""))):
            path = Path(other, ".package/origin.json")
            path.unlink() if text is None else path.write_text(text)  # as the first version made them
            found = origin.read(other)
            self.assertEqual(found and (found["package"], found["user"]), known)
        os.unlink(data / "packages/com.example.sample.json")
        self.assertEqual(self.provide(package)[0].name, "com.example.sample")
        shutil.rmtree(other)
        os.unlink(data / "packages/com.example.sample.json")
        for name in ("com.example.sample", "com.example.sample.package"):
            os.mkdir(data / "bottles" / name)
        self.assertEqual(self.provide(package)[0].name, "com.example.sample.package-2")

    def test_nobody_else_uses_a_bottle_that_changes(self):
        bottle = self.provide(self.unpack("1.0", {"a.txt": "1"}))[0]
        package = self.unpack("2.0", {"a.txt": "2"})
        shell = ["/bin/sh", "-c", "echo; read _", "/x/launcher.py", "terminal"]
        for kind, name, cause in ((fcntl.LOCK_SH, bottle.name, "close-first"), (fcntl.LOCK_SH, "other", "bottle-busy"),
                                  (fcntl.LOCK_EX, "other", "bottle-busy")):
            drive = os.open(bottle.directory + "/drive_c", os.O_RDONLY)
            fcntl.flock(drive, kind)
            with self.subTest(cause), mock.patch.object(userbottle, "IDLE_SECONDS", 0), self.assertRaises(PackageError) as caught, \
                    subprocess.Popen([*shell, name], stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
                process.stdout.readline()
                self.provide(package)
            os.close(drive)
            self.assertEqual(caught.exception.cause, cause)
        self.assertEqual((self.provide(package)[1] / "a.txt").read_text(), "2")

    def test_versions_that_follow_quickly_leave_nothing_old(self):
        package = self.unpack("1.0", {"a.txt": "1", "b.txt": "1", "deleted.txt": "1"})
        fill = userbottle.UserBottle._fill
        calls = []

        def meanwhile(bottle, fresh):
            fill(bottle, fresh)
            if not calls:
                calls.append(self.unpack("2.0", {"a.txt": "2", "b.txt": "2"}))
        with mock.patch.object(userbottle.UserBottle, "_fill", meanwhile):
            bottle, app = self.provide(package)
        self.assertEqual(((app / "a.txt").read_text(), bottle._made_from()), ("2", calls[0].build))
        with mock.patch.object(userbottle.UserBottle, "write_record", side_effect=OSError), self.assertRaises(PackageError):
            self.provide(self.unpack("3.0", {"a.txt": "3", "b.txt": "3"}))
        (app / "b.txt").write_text("user")
        (app / "deleted.txt").unlink()
        self.provide(self.unpack("4.0", {"a.txt": "4", "b.txt": "4"}))
        self.assertEqual({path.name: path.read_text() for path in app.iterdir()}, {"a.txt": "4", "b.txt": "user"})

    def test_a_damaged_record_neither_blocks_nor_leads_out(self):
        victim = Path(self.path("user/victim"))
        bottle = self.provide(self.unpack("1.0", {"a.txt": "1"}))[0]
        victim.write_text("x")
        outside = os.path.relpath(victim, bottle.directory)
        record = Path(bottle.directory, ".package/files.json")
        for number, text in enumerate((
                '{"files": {"%s": [1, "9dd4e461268c8034f5c8564e155c67a6"]}}' % outside, '{"links": {"%s": "x"}}' % outside, "[" * 99999,
                '{"directories": 7}', '{"files": {"drive_c/x": "ab"}}', "{", '{"links": {"drive_c/a": 1}}', "")):
            with self.subTest(text[:40]), mock.patch("sys.stderr", io.StringIO()):
                record.write_text(text)
                record.with_name("pending.json").write_text(text)
                record.with_name("bottle.yml").write_text("[" * number)
                record.with_name("version").write_text("older")
                self.provide(bottle.package)
                self.assertEqual((victim.read_text(), record.read_text() == bottle.package.texts["files.json"]), ("x", True))

    def test_a_long_first_start_shows_its_progress_and_can_be_cancelled(self):
        package = self.unpack("1.0", {"a.txt": "x", "n" * 251 + ".txt": "longest name"})
        window = self.write("window", f"#!/bin/sh\nprintf '%s ' \"$@\" >'{self.path('told')}'\nhead -n 1 >>'{self.path('told')}'\n"
                            "exit 3\n", executable=True)
        for display, texts in (("", ("", "16 %")), (":0", ("Sample make ::progress:: ", ""))):
            with self.subTest(display), mock.patch.multiple(progress, QUIET_SECONDS=0, INTERVAL=0, LINE_STEP=0), \
                    mock.patch("sys.stderr", io.StringIO()) as printed:
                bottle = userbottle.UserBottle(package, {"HOME": self.path("user"), "DISPLAY": display}, [window])
                if display:
                    bottle.link_system_files = lambda _: bottle.placer.progress.process.wait()  # in the last moment
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
        for version, cause, is_started in ((package.build, "not-upgraded", True), ("older", "not-upgraded", False),
                                           ("older", "no-room", False), (package.build, "cancelled", False)):
            Path(bottle.directory, ".package/version").write_text(version)
            with self.subTest(version=version, cause=cause), mock.patch.dict(os.environ, {"HOME": self.path("user")}), \
                    mock.patch.object(userbottle.UserBottle, "provide", side_effect=PackageError("x", cause)), \
                    mock.patch.object(start, "_tell"), \
                    contextlib.nullcontext() if is_started else self.assertRaisesRegex(PackageError, "x"):
                self.assertEqual(start._provided(package.root).name, bottle.name)

    def test_a_menu_entry_that_fails_notifies(self):
        os.chmod(self.write("bin/busctl", '#!/bin/sh\necho "$*" >"$HOME/told"\n'), 0o755)
        env = self.env | {"PATH": self.path("bin") + ":" + os.environ["PATH"], "HOME": self.home}
        starter = os.path.join(os.path.dirname(PACKER), "packaged_program.py")
        ended = subprocess.run([starter, self.path("<none>"), ID], env=env, capture_output=True, text=True, check=False)
        told = wait_until(lambda: os.path.exists(os.path.join(self.home, "told")) and Path(self.home, "told").read_text())
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
