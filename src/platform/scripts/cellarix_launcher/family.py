"""Waits for all that a program has started, not only for its first process."""

import os

from cellarix_launcher import environment, supervise

INTERVAL = 0.2
# Wine's own helpers carry the mark of whichever program came first and stay for the others.
HELPERS = ("wineserver", "services.exe", "winedevice.exe", "plugplay.exe", "svchost.exe", "rpcss.exe", "explorer.exe",
           "tabtip.exe")


def members(prefix, uuid):
    """Processes of this prefix that carry the program's mark in their environment."""
    marks = {os.fsencode(f"WINEPREFIX={prefix}"), os.fsencode(f"{environment.UUID_VARIABLE}={uuid}")}
    return [int(entry) for entry in os.listdir("/proc") if entry.isdigit() and _is_member(entry, marks)]


def _is_member(entry, marks):
    try:
        with open(f"/proc/{entry}/environ", "rb") as file:
            if not marks <= set(file.read().split(b"\0")):
                return False
        with open(f"/proc/{entry}/cmdline", "rb") as file:
            name = file.read().split(b"\0")[0].replace(b"\\", b"/").rsplit(b"/", 1)[-1]
    except OSError:
        return False
    return bool(name) and not name.lower().startswith(tuple(helper.encode() for helper in HELPERS))


def wait_for_rest(child, start, uuid, tail, say):
    """Ends when the last one has; signals go to those that are left."""
    uuid = uuid or start.env.get(environment.UUID_VARIABLE, "")
    if not uuid:
        _wait_for_server(child, start, tail, say)
        return
    left = members(start.env["WINEPREFIX"], uuid)
    while left:
        number = supervise.fetch_signal(INTERVAL)
        if tail:
            tail.show()
        for pid in left if number else ():
            try:
                os.kill(pid, number)
            except OSError:
                pass
        left = [pid for pid in left if os.path.exists(f"/proc/{pid}")] or members(start.env["WINEPREFIX"], uuid)


def _wait_for_server(child, start, tail, say):
    """Without a mark the whole prefix is waited for."""
    server = start.env.get("WINESERVER", "wineserver")
    null = os.open(os.devnull, os.O_WRONLY | os.O_CLOEXEC)
    try:
        waiter = supervise.spawn(supervise.Start([server, "-w"], start.env, ""), null, ())
    except OSError as error:
        say(f"cannot wait for the bottle's other programs: {server}: {error.strerror}")
        return
    while waiter.poll() is None:
        number = supervise.fetch_signal(INTERVAL if tail else None)
        if tail:
            tail.show()
        if number:
            child.send(number)
            waiter.send(number)
