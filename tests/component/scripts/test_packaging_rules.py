"""The rules of packing: what is private, where files lie, and what their records become."""

import os
import tarfile
import unittest
from unittest import mock

from packages import ID, REGISTRY

from cellarix_packager import archive, contents, debian, driveplaces, estimate, links, private, registry, request, settings
from cellarix_packager.errors import PackageError


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
            ("Program Files/Chat/tdata/x", True), ("Games/WeChat Files/a/Msg.db", True), ("Games/config/config.vdf", True),
            ("Games/config.vdf", False), ("users/a/AppData/Roaming/Chat/tdata/x", True), ("Program Files/A/SessionStore.dll", False),
            ("Program Files/A/Login Data Helper.exe", False), ("Program Files/A/Web Database", False), ("Games/Wallets/x", False),
            ("users/a/AppData/Roaming/Coin/wallets/x", True), ("Games/A/Web Data-journal", True), ("Games/id_rsa_me@a.com", True),
            ("Games/A/sessionstore.jsonlz4", True), ("Games/A/Login Data For Account", True),
        ):
            with self.subTest(path):
                self.assertEqual(private.is_private(path), wanted)
        for path, wanted in (("Cache/x", False), ("logs/a.log", False), ("tokens.json", False), (".env", True), ("a/.git/x", True),
                             ("a/Login Data", True), ("tdata/x", True)):
            with self.subTest(path):
                self.assertEqual(private.is_private_outside(path), wanted)

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
        self.assertEqual([line for line in text.splitlines() if line.startswith("Depends")], ["Depends: cellarix (>= 3.3.4.008)"])
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
