#!/usr/bin/python3 -ISXutf8
"""Starts a Windows program in a bottle and runs until the program has exited. See cellarix_launcher."""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.realpath(__file__)))

from cellarix_launcher.main import main  # noqa: E402  (the package is beside this file)

if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
