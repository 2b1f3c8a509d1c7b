#!/usr/bin/python3 -IXutf8
"""Starts a program of an installed package in the user's own bottle. See cellarix_packager.userbottle."""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.realpath(__file__)))

from cellarix_packager.start import main  # noqa: E402  (the package is beside this file)

if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
