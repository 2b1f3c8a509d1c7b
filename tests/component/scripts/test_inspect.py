"""What the scanner says of Windows files, and that mere words in a program say nothing."""

import json
import os
import shutil
import struct
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import BUILD, SOURCE
from windows_files import compound, metadata, program

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


RESOURCES = {
    "manifest": lambda text: {(24, 1): text},
    "data": lambda text: {(10, 11111): text},
    "version": lambda text: {(16, 1): wide(text)},
}
EVERY_WORD = b"\0".join((
    NSIS, b"Nullsoft Install System v3.08", b"Inno Setup Setup Data (6.2.0)", INNO, b"ISSetupStream", b"InstallShield\0",
    wide("InstallShield ISInternalVersion") * 3, wide("SquirrelTemp SquirrelSetup"), b"7z\xbc\xaf\x27\x1c\0", b"Rar!\x1a\7",
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
    "Installer: InstallShield": program(overlay=b"ISSetupStream" + bytes(64)),
    "Installer: InstallShield ": program(resources=RESOURCES["version"]("ISInternalVersion")),
    "Installer: WiX Toolset[bundle]": program(section=".wixburn"),
    "Installer: Windows Installer": compound(MSI),
    "Installer: Windows Installer ": compound(MSP, directory=9),
    "Installer: Squirrel": program(wide("%s\\SquirrelSetup.log"), resources={("DATA", 131): ZIP}),
    "Archive: Cabinet[self-extracting]": program(overlay=b"MSCF" + bytes(64)),
    "Archive: 7-Zip[self-extracting]": program(overlay=b"7z\xbc\xaf\x27\x1c\0" + bytes(64)),
    "Archive: 7-Zip[self-extracting] ": program(overlay=b"\xef\xbb\xbf;!@Install@!UTF-8!" + bytes(64)),
    "Archive: RAR[self-extracting]": program(overlay=b"Rar!\x1a\7" + bytes(64)),
    "Archive: ZIP[self-extracting]": program(b"UnZipSFX 6.00", ZIP),
    "Archive: ZIP[self-extracting] ": program(section="_winzip_"),
    "Archive: Archive": ZIP,
}
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
    # Programs that only speak of such tools, or carry an archive of their own.
    ([], program(EVERY_WORD)),
    ([], program(EVERY_WORD, resources={("DATA", 7): EVERY_WORD, (10, 1): b"x" + EVERY_WORD})),
    ([], program(EVERY_WORD, overlay=b"signature" + bytes(0x20000))),
    ([], program(overlay=ZIP)),
    ([], compound(bytes(16), elsewhere=MSI)),
    (["Library: .NET(v4.0.30319)"], net(text=EVERY_WORD.replace(wide(KEY), b""))),
    # So many signs that going through them one by one would take too long.
    ([], program(overlay=b"x" + NSIS * 250000)),
    (["Loader: .NET Core host"], program(overlay=(bytes(8) + BUNDLE) * 120000)),
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

    def test_programs(self):
        for strings, content in PROGRAMS:
            with self.subTest(strings):
                self.assertEqual([value["string"] for value in self.values(content)], strings)

    def test_cut_and_damaged_files_are_answered(self):
        for content in (INSTALLERS["Installer: Squirrel"], PROGRAMS[4][1]):
            for end in range(0, len(content), 97):
                self.assertIsInstance(self.values(content[:end] + b"\xff" * 97), list)


if __name__ == "__main__":
    unittest.main()
