"""How arguments and paths are read, as tables."""

import os
import unittest

from support import HomeCase

from cellarix_launcher import errors, windows, words


class Words(unittest.TestCase):
    def test_stored_arguments_become_the_words_a_user_meant(self):
        for text, wanted in (
            ("", []), ("   ", []), ("-a  b\tc", ["-a", "b", "c"]),
            ('"a b" c', ["a b", "c"]), ('--x="a b"c', ["--x=a bc"]), ('""', [""]), ('a "" b', ["a", "", "b"]),
            (r'C:\x\y "C:\Program Files\z"', [r"C:\x\y", r"C:\Program Files\z"]),
            (r'say \"hi\"', ["say", '"hi"']), (r'"C:\dir\\" next', ["C:\\dir\\", "next"]),
            ("'a b' it's 'open", ["a b", "it's", "'open"]), ('"never closed', ["never closed"]),
            ("$HOME `id` ; rm *", ["$HOME", "`id`", ";", "rm", "*"]), ("你好 世界", ["你好", "世界"]),
        ):
            with self.subTest(text):
                self.assertEqual(words.split_arguments(text), wanted)

    def test_a_command_in_one_word_is_taken_apart_unless_it_is_a_file(self):
        files = {"/a b/x.exe", r"C:\Program Files\x.exe", "/a"}
        for text, wanted in (
            ("winecfg.exe", ["winecfg.exe"]),
            (r"regedit.exe C:\x.reg", ["regedit.exe", r"C:\x.reg"]),
            ("/a b/x.exe", ["/a b/x.exe"]), ("/a b/x.exe /S -q", ["/a b/x.exe", "/S", "-q"]),
            (r"C:\Program Files\x.exe /S", [r"C:\Program Files\x.exe", "/S"]),
            ("/no such/x.exe /S", ["/no such/x.exe /S"]),
            (r'"C:\Program Files\x.exe" "a b"', [r"C:\Program Files\x.exe", "a b"]),
        ):
            with self.subTest(text):
                self.assertEqual(words.split_command(text, files.__contains__), wanted)

    def test_options_end_where_the_program_begins(self):
        request = words.parse_request(["b", "--cli", "--log-path", "l", "x.exe", "--wait", "--log-path"])
        self.assertEqual((request.cli, request.wait, request.log_path), (True, False, "l"))
        self.assertEqual(request.words, ["x.exe", "--wait", "--log-path"])
        self.assertEqual(words.parse_request(["b", "--", "--odd.exe"]).words, ["--odd.exe"])
        self.assertEqual(words.parse_request(["b", "--uuid", "u", "f"]).words, ["f"])
        for bad in ([], ["b"], ["b", ""], ["b", "--uuid"], ["b", "--nope", "x"], ["b", "--log-path"]):
            with self.subTest(bad), self.assertRaises(errors.LaunchError) as caught:
                words.parse_request(bad)
            self.assertEqual(caught.exception.code, errors.USAGE)


class Paths(HomeCase):
    def test_windows_paths_lead_to_files_whatever_their_case(self):
        bottle = self.bottle()
        program = os.path.join(bottle, "dosdevices/c:/App Dir/程序.exe")
        for text, wanted in (
            (r"C:\App Dir\程序.exe", program), (r"c:\APP dir\程序.EXE", program), ("C:/App Dir/x/../程序.exe", program),
            (r"C:\..\..\App Dir\程序.exe", program), (r"C:\App Dir\none.exe", None), (r"Q:\x.exe", None),
            (r"C:\App Dir\程序.exe\x", None), ("C:", None), ("C:\\App Dir\\\0", None),
        ):
            with self.subTest(text):
                self.assertEqual(windows.find_file(bottle, text), wanted)

    def test_unix_paths_go_below_the_drive_that_reaches_deepest(self):
        bottle = os.path.realpath(self.bottle())
        self.assertEqual(windows.to_windows(bottle, bottle + "/drive_c/a b.msi"), r"C:\a b.msi")
        self.assertEqual(windows.to_windows(bottle, "/opt/x.msi"), r"Z:\opt\x.msi")
        os.unlink(bottle + "/dosdevices/z:")
        self.assertEqual(windows.to_windows(bottle, "/opt/x.msi"), r"\\?\unix\opt\x.msi")


if __name__ == "__main__":
    unittest.main()
