#!/usr/bin/python3
"""The two files of the component catalogue fit together and hold what the program can name."""

import json
import pathlib
import sys
import unittest

ROOT = pathlib.Path(sys.argv.pop(1) if len(sys.argv) > 1 else __file__ + "/../../../..").resolve()
CATALOGUE = ROOT / "src/platform/data/catalogue"
# What rules of the log, the inspection of a file or a hint may ask for.
NAMED = {"dotnet20", "dotnet35", "dotnet40", "dotnet45", "dotnet452", "dotnet48", "gecko", "jet40", "mdac28", "mono9",
         "vbrun6", "vcredist2022"} | {f"dotnetcoredesktop{n}" for n in (3, 5, 6, 7, 8, 9)}
STEPS = {"run": {"arguments", "only"}, "extract": {"files", "to", "register", "only"}, "fonts": {"files"},
         "override": {"mode"}}


def read(name):
    def once(pairs):
        keys = [key for key, _ in pairs]
        assert len(keys) == len(set(keys)), f"{name} has a key twice: {keys}"
        return dict(pairs)
    return json.loads((CATALOGUE / name).read_text(encoding="utf-8"), object_pairs_hook=once)


class Catalogue(unittest.TestCase):
    components, dlls = read("dependency.json"), read("dlls_search.json")

    def test_files_agree(self):
        pairs = {(dll, component) for dll, names in self.dlls.items() for component in names}
        self.assertEqual(pairs, {(dll, name) for name, entry in self.components.items() for dll in entry["dlls"]})
        self.assertEqual([d for d in self.dlls if d != d.lower() or d.endswith(".dll") or "/" in d], [])
        self.assertLessEqual(NAMED, self.components.keys())
        self.assertEqual(self.dlls["msvcp140"][0], "vcredist2022")

    def test_recipes(self):
        for name, entry in self.components.items():
            with self.subTest(name):
                self.assertTrue(entry["Description"].strip())
                self.assertLessEqual(set(entry.get("needs", ())), self.components.keys() - {name})
                for step in entry["recipe"]["steps"]:
                    kind = STEPS.keys() & step.keys()
                    self.assertEqual(len(kind), 1, step)
                    self.assertLessEqual(step.keys() - kind, STEPS[kind.pop()], step)
                    self.assertNotIn("/", "".join(step.get("files", [])))


if __name__ == "__main__":
    unittest.main()
