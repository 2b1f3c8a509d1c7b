"""What the scanner finds in Windows files, and that words inside a program are not mistaken for its kind."""

import json
import os
import shutil
import struct
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import BUILD, SOURCE
from windows_files import compound, metadata, program, version_block

MSI, MSP = (bytes([kind]) + b"\x10\x0c\0\0\0\0\0\xc0\0\0\0\0\0\0\x46" for kind in (0x84, 0x86))
NSIS = b"\xef\xbe\xad\xdeNullsoftInst"
INNO = b"rDlPtS\xcd\xe6\xd7\x7b\x0b\x2a"
BUNDLE = bytes.fromhex("8b1202b96a612038727b930214d7a03213f5b9e6efae3318ee3b2dce24b36aae")
KEY = "{11111-22222-20001-00001}"
ZIP = b"PK\x03\x04" + bytes(64)


def wide(text):
    return text.encode("utf-16-le") + b"\0\0"


def net(version="v4.0.30319", target="", references=(), text=b""):
    value = target.encode()
    return program(text, clr=metadata(version, references, b"\1\0" + bytes([len(value)]) + value if value else b""))


def described(**texts):
    return program(resources={(16, 1): version_block(**texts)})


def cabinet(size):
    return (b"MSCF" + struct.pack("<7I", 0, size, 0, 44, 0, 0x10103, 1)).ljust(size, b"\x5a")


RESOURCES = {
    "manifest": lambda text: {(24, 1): text},
    "data": lambda text: {(10, 11111): text},
    "version": lambda text: {(16, 1): wide(text)},
    "string": lambda text: {(6, 7): wide("\x12" + text)},
}
EVERY_WORD = b"\0".join((
    NSIS, b"Nullsoft Install System v3.08", b"Inno Setup Setup Data (6.2.0)", INNO, b"ISSetupStream", b"InstallShield\0",
    wide("InstallShield ISInternalVersion InstallShield Wizard Setup Launcher") * 3, b"InstallShield.Setup", b"ISc(", wide("SquirrelTemp SquirrelSetup"), b"7z\xbc\xaf\x27\x1c\0", b"Rar!\x1a\7",
    b";!@Install@!UTF-8!", b"MSCF\0\0\0\0", b"wextract.pdb", b".wixburn", ZIP, MSI, b"UnZipSFX",
    b".NETFramework,Version=v3.5", wide(KEY), b".NET Reactor v2.5", b"MSVBVM60.DLL"))

INSTALLERS = {
    "Installer: Nullsoft Scriptable Install System(3.08)":
        program(b"Nullsoft Install System v3.08", b"\0\0\0\0" + NSIS),
    "Installer: Nullsoft Scriptable Install System(2.46)": program(resources=RESOURCES["manifest"](
        b'<assemblyIdentity name="Nullsoft.NSIS.exehead"/><description>Nullsoft Install System v2.46</description>')),
    "Installer: Inno Setup(6.2.0)": program(overlay=b"zlb\x1aInno Setup Setup Data (6.2.0) (u)"),
    "Installer: Inno Setup": program(resources=RESOURCES["data"](INNO)),
    "Installer: Inno Setup ": program(mark=b"Inno"),
    "Installer: Inno Setup  ": program(resources=RESOURCES["version"]("This installation was built with Inno Setup.")),
    "Installer: WiX Toolset[bundle]": program(section=".wixburn"),
    "Installer: Windows Installer": compound(MSI),
    "Installer: Windows Installer ": compound(MSP, directory=9),
    "Installer: Squirrel": program(wide("%s\\SquirrelSetup.log"), resources={("DATA", 131): ZIP}),
    "Installer: Windows Installer[self-extracting]": program(resources={("MSI", 1): compound(MSI)}),
    "Installer: Windows Installer[self-extracting] ": program(overlay=bytes(16) + compound(MSP, directory=9)),
    "Installer: Windows Installer[self-extracting]  ":
        program(wide("msiexec.exe /i"), overlay=compound(MSI, directory=90)[:9000]),
    "Archive: Cabinet[self-extracting]": program(overlay=b"MSCF" + bytes(64)),
    "Archive: Cabinet[self-extracting] ": program(b"x" * 9000, resources={(10, "CABINET"): cabinet(99)}),
    "Archive: Cabinet[self-extracting]  ": program(resources={(10, 1): cabinet(9000)}),
    "Archive: Cabinet[self-extracting]   ": program(overlay=b"GIPEND" + cabinet(99)),
    "Archive: 7-Zip[self-extracting]": program(overlay=b"7z\xbc\xaf\x27\x1c\0" + bytes(64)),
    "Archive: 7-Zip[self-extracting] ": program(overlay=b"\xef\xbb\xbf;!@Install@!UTF-8!" + bytes(64)),
    "Archive: RAR[self-extracting]": program(overlay=b"Rar!\x1a\7" + bytes(64)),
    "Archive: ZIP[self-extracting]": program(b"UnZipSFX 6.00", ZIP),
    "Archive: ZIP[self-extracting] ": program(section="_winzip_"),
    "Archive: Archive": ZIP,
}
# Launchers of different versions; publishers replace some of the texts by their own.
INSTALLSHIELD = [
    described(CompanyName="Stirling Technologies, Inc.", FileDescription="Setup Launcher", ProductName="InstallShield"),
    described(CompanyName="InstallShield Software Corporation", FileDescription="PackageForTheWeb Stub"),
    described(CompanyName="Macrovision Corporation", FileDescription="Setup.exe", OriginalFilename="Setup.exe"),
    described(CompanyName="Contoso", LegalCopyright="Copyright (C) 2009 Acresso Software Inc.",
              FileDescription="Setup Launcher Unicode"),
    described(CompanyName="Contoso", FileDescription="Contoso Writer", OriginalFilename="InstallShield Setup.exe"),
    described(CompanyName="Contoso", ISInternalVersion="20.0.376"),
    described(CompanyName="Contoso", ISInternalDescription="Setup Launcher Unicode"),
    program(resources=RESOURCES["manifest"](b'<assemblyIdentity name="InstallShield.Setup" type="win32"/>')),
    program(resources=RESOURCES["string"]("%s bereitet den InstallShield(R) Wizard vor")),
    program(resources={(5, 101): wide("InstallShield Wizard")}),
    program(overlay=b"ISSetupStream" + bytes(64)),
    program(overlay=b"InstallShield\0" + bytes(64)),
    program(overlay=b"ISc(" + bytes(64)),
    program(overlay=b"\x13\x5d\x65\x8c" + bytes(64)),
    program(overlay=struct.pack("<I", 12) + b"data1.cab\0Disk1\\data1.cab\0\x30\x002048\0" + bytes(2048)),
    program(overlay=b"setup.inx\0Disk1\\setup.inx\0001.0.0.1\0001024\0" + bytes(1024)),
]
PROGRAMS = [
    (["Compiler: Microsoft Visual Basic(6.0)"], program(imports=["KERNEL32.dll", "msvbvm60.dll"])),
    (["Compiler: Microsoft Visual Basic(5.0)"], program(imports=["MSVBVM50.DLL"])),
    (["Library: .NET(v2.0.50727)"], net("v2.0.50727", references=[("mscorlib", 2, 0)])),
    (["Library: .NET Framework(3.0)"], net("v2.0.50727", references=[("mscorlib", 2, 0), ("WindowsBase", 3, 0)])),
    (["Library: .NET Framework(3.5)"], net("v2.0.50727", references=[("WindowsBase", 3, 0), ("System.Core", 3, 5)])),
    (["Library: .NET(v4.0.30319)"], net(references=[("System.Core", 3, 5)], text=b".NETFramework,Version=v3.5")),
    (["Library: .NET Framework(4.5.2)"], net(target=".NETFramework,Version=v4.5.2")),
    (["Library: .NET Framework(4.0)"], net(target=".NETFramework,Version=v4.0,Profile=Client")),
    (["Loader: .NET Core(8.0)"], net(target=".NETCoreApp,Version=v8.0", references=[("System.Runtime", 8, 0)])),
    (["Loader: .NET Core host"], program(wide("hostfxr.dll") + wide("DOTNET_ROOT") + bytes(8) + BUNDLE)),
    (["Loader: .NET Core host[single file]"], program(struct.pack("<Q", 0x2F000) + BUNDLE)),
    (["Protector: .NET Reactor(4.9)", "Library: .NET(v2.0.50727)"],
     net("v2.0.50727", text=b".NET Reactor v4.9\0" + wide(KEY))),
    (["Library: .NET(v4.0.30319)", "Protector: .NET Reactor"], net(text=wide(KEY))),
    (["Library: .NET(v4.0.30319)"], net(text=b"knows .NET Reactor 4.9")),
    # Programs that only mention such tools, or contain an archive of their own.
    ([], program(EVERY_WORD)),
    ([], program(EVERY_WORD, resources={("DATA", 7): EVERY_WORD, (10, 1): b"x" + EVERY_WORD})),
    ([], program(EVERY_WORD, overlay=b"signature" + bytes(0x20000))),
    ([], program(overlay=ZIP)),
    # Other programs of the makers of set-up tools, and libraries of their engines, have the same texts.
    ([], described(CompanyName="InstallShield Software Corporation", FileDescription="InstallShield Uninstaller",
                   OriginalFilename="IsUninst.exe")),
    ([], described(CompanyName="Flexera Software LLC", FileDescription="License Server", OriginalFilename="lmgrd.exe")),
    ([], described(CompanyName="Contoso", FileDescription="Setup Launcher", OriginalFilename="setup.exe")),
    ([], program(resources=RESOURCES["string"]("InstallShield Wizard"), flags=0x2102)),
    ([], program(resources=RESOURCES["string"]("Uninstalls what InstallShield has installed"))),
    # Documents, drivers and packages among what a program needs.
    ([], program(b"x" * 9000, resources={(10, 1): cabinet(99)})),
    ([], program(wide("msiexec"), resources={("DOC", 1): compound(bytes(16), elsewhere=MSI)})),
    ([], program(b"x" * 9000 + wide("msiexec"), resources={("DOC", 1): compound(MSI, directory=90)[:600]})),
    ([], program(b"x" * 9000, resources={("MSI", 1): compound(MSI)})),
    ([], program(overlay=compound(bytes(16), directory=90)[:9000])),
    ([], compound(bytes(16), elsewhere=MSI)),
    (["Library: .NET(v4.0.30319)"], net(text=EVERY_WORD.replace(wide(KEY), b""))),
    # Too many matches to examine one by one.
    ([], program(overlay=b"x" + NSIS * 250000)),
    (["Loader: .NET Core host"], program(overlay=(bytes(8) + BUNDLE) * 120000)),
    ([], program(overlay=b"x" + b"a\0Disk1\\a\0001" * 300000)),
    ([], program(overlay=(b"x" * 200 + b"\0Disk1\\") * 25000)),
    ([], program(overlay=b"x" + compound(bytes(16))[:64] * 80000)),
    ([], b"MZ"),
    ([], b"MZ" + b"\xff" * 100),
    ([], program(section=".wixburn")[:0x150]),
]


class Inspection(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.top = tempfile.mkdtemp(prefix="cellarix-test-")
        cls.addClassCleanup(shutil.rmtree, cls.top)
        cls.tool = shutil.copy(os.path.join(BUILD, "src", "platform", "inspect", "diec"), cls.top)
        os.symlink(os.path.join(SOURCE, "src", "platform", "inspect", "rules"), os.path.join(cls.top, "rules"))

    def values(self, content):
        path = Path(self.top, "程序 a.exe")
        path.write_bytes(content)
        ended = subprocess.run([self.tool, "--json", path], capture_output=True, timeout=60, check=True)
        return json.loads(ended.stdout)["detects"][0]["values"]

    def test_installers(self):
        for name, content in INSTALLERS.items():
            with self.subTest(name):
                found = self.values(content)
                self.assertEqual([value["string"] for value in found][:1], [name.strip()])

    def test_installshield(self):
        for number, content in enumerate(INSTALLSHIELD):
            with self.subTest(number):
                self.assertEqual([value["string"] for value in self.values(content)][:1], ["Installer: InstallShield"])

    def test_programs(self):
        for strings, content in PROGRAMS:
            with self.subTest(strings):
                self.assertEqual([value["string"] for value in self.values(content)], strings)

    def test_wines_own_programs(self):
        for name in ("msiexec", "uninstaller", "wusa", "extrac32", "wineboot", "winemenubuilder", "rundll32"):
            for path in Path("/usr/lib").glob(f"*/wine/*-windows/{name}.exe"):
                kinds = {value["type"] for value in self.values(path.read_bytes())}
                self.assertTrue(kinds.isdisjoint({"Installer", "Archive"}), path)

    def test_cut_and_damaged_files_are_answered(self):
        for content in (INSTALLERS["Installer: Squirrel"], PROGRAMS[4][1]):
            for end in range(0, len(content), 97):
                self.assertIsInstance(self.values(content[:end] + b"\xff" * 97), list)


if __name__ == "__main__":
    unittest.main()
