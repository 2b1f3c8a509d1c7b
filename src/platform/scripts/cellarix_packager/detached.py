"""Helpers of the desktop that a start neither waits for nor depends on."""

import subprocess

SECONDS = 5


def run(*command):
    """Starts the command beside this process, for at most SECONDS. Does nothing where there is no such command."""
    try:
        subprocess.run(["setsid", "--fork", "timeout", str(SECONDS), *command], stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    except (OSError, ValueError):
        pass
