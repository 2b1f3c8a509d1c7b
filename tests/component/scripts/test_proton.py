"""init-proton-in-client.sh: what it finds, repairs and prints."""

import os
import subprocess

from support import SCRIPTS, HomeCase

SCRIPT = os.path.join(SCRIPTS, "package-scripts", "init-proton-in-client.sh")
WINE = "#!/bin/sh\necho wine-9.0\n"
BROKEN = "#!/bin/sh\necho no libraries >&2\nexit 3\n"


class Proton(HomeCase):
    def run_script(self, *words):
        return subprocess.run([SCRIPT, *words], env=self.env, capture_output=True, text=True, timeout=60, check=False)

    def test_runners_are_made_ready_or_the_reason_is_told(self):
        for number, (runner, files, check, status, words, check_after) in enumerate((
            ("lumora-wine10-stable", {"files/bin/wine64": WINE}, 0, 1, "There is no Proton runner", 0),
            ("ge-proton9", {"files/bin/wine64": WINE, "files/bin/wineserver": WINE}, 1, 0, "Ready: wine-9.0", 0),
            ("lumora-ge-proton10", {"bin/wine": WINE, "bin/wineserver": WINE}, 1, 0, "Ready: wine-9.0", 0),
            ("ge-proton x", {"files/bin/wine64": WINE}, 1, 1, "wine64 or wineserver is missing", 1),
            ("ge-proton9", {"proton": WINE}, 1, 1, "not unpacked completely", 1),
            ("ge-proton9", {"files/bin/wine64": BROKEN, "files/bin/wineserver": WINE}, 1, 1, "no libraries", 0),
        )):
            with self.subTest(number=number):
                self.env["XDG_DATA_HOME"] = self.path(str(number))
                for name, text in files.items():
                    self.write(f"{number}/lumora-wine-bottles/runners/{runner}/{name}", text)
                self.assertEqual(self.run_script("-c").returncode, check)
                ended = self.run_script()
                self.assertEqual((ended.returncode, ended.stderr), (status, ""), ended.stdout)
                self.assertIn(words, ended.stdout)
                self.assertEqual(self.run_script("-c").returncode, check_after)
