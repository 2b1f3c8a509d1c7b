#!/usr/bin/python3
"""The files of the component catalogue are consistent, and each file that it names has a checksum."""

import json
import pathlib
import re
import sys
import unittest

ROOT = pathlib.Path(sys.argv.pop(1) if len(sys.argv) > 1 else __file__ + "/../../../..").resolve()
CATALOGUE = ROOT / "src/platform/data/catalogue"
STEPS = {"run": {"arguments", "only", "from", "addon"}, "extract": {"files", "to", "register", "only"}, "fonts": {"files"},
         "override": {"mode"}}


def read(name):
    def once(pairs):
        keys = [key for key, _ in pairs]
        assert len(keys) == len(set(keys)), f"{name} has a key twice: {keys}"
        return dict(pairs)
    return json.loads((CATALOGUE / name).read_text(encoding="utf-8"), object_pairs_hook=once)


class Catalogue(unittest.TestCase):
    components, dlls, sources = read("dependency.json"), read("dlls_search.json"), read("sources.json")

    def test_files_agree(self):
        pairs = {(dll, component) for dll, names in self.dlls.items() for component in names}
        self.assertEqual(pairs, {(dll, name) for name, entry in self.components.items() for dll in entry["dlls"]})
        self.assertEqual([d for d in self.dlls if d != d.lower() or d.endswith(".dll") or "/" in d], [])
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
                    self.assertIn(step.get("only", "win64"), ("win32", "win64"))

    def test_sources(self):
        wanted = {name for archives in self.sources["archives"].values() for name in archives.values()}
        for entry in self.components.values():
            for step in entry["recipe"]["steps"]:
                packages = [word for word in step.get("arguments", ()) if word.endswith(".msi")]
                wanted |= {step[key] for key in ("from", "run", "extract", "fonts") if key in step and not (
                    key == "run" and ("from" in step or packages))} | set(packages)
        self.assertEqual(wanted, self.sources["files"].keys())
        for name, entry in self.sources["files"].items():
            with self.subTest(name):
                self.assertRegex(entry["sha256"], r"\A[0-9a-f]{64}\Z")
                self.assertTrue(all(re.match(r"https?://\S+\Z", address) for address in entry["addresses"]))


if __name__ == "__main__":
    unittest.main()
