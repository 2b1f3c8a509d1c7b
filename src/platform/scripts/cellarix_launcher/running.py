"""Tells the bottle service what runs: one small file for each launch, which the service reads and removes.

The service need not be there: it finds the files when it comes.
"""

import json
import os

from cellarix_launcher import bottle as bottles
from cellarix_launcher import environment


def announce(bottle_name, env, say):
    """The launcher's own process stands for the program until there is one. Programs without an id are not followed."""
    program = env.get(environment.UUID_VARIABLE, "")
    if not program:
        return
    directory = os.path.join(os.path.dirname(bottles.bottles_root(os.environ)), "running")
    path = os.path.join(directory, f"{os.getpid()}.json")
    record = {"bottle": bottle_name, "program": program, "pid": os.getpid(), "start": start_time("self")}
    try:
        os.makedirs(directory, 0o700, exist_ok=True)
        with open(path + ".new", "w", encoding="ascii") as file:
            json.dump(record, file)
        os.rename(path + ".new", path)
    except OSError as error:
        say(f"the bottle service will not hear of this program: {error}")


def start_time(pid):
    """In clock ticks since the machine started, as text: with the pid it names one process."""
    with open(f"/proc/{pid}/stat", "rb") as file:
        return file.read().rsplit(b")", 1)[1].split()[19].decode()
