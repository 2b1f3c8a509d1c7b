"""Waits for all processes of a program, not only for the first one."""

import os
import time

from cellarix_launcher import environment, supervise

INTERVAL = 0.2
RETRY_DELAY = 0.02
# Wine's own processes inherit the marks of the first program, but serve all of them.
HELPERS = ("wineserver", "services.exe", "winedevice.exe", "plugplay.exe", "svchost.exe", "rpcss.exe", "explorer.exe",
           "tabtip.exe")


def _marks(prefix, uuid):
    return {os.fsencode(f"WINEPREFIX={prefix}"), os.fsencode(f"{environment.UUID_VARIABLE}={uuid}")}


def _members(marks):
    """Ids of the processes that have the program's marks in their environment. During an exec a process has no
    environment, so the list is empty only if a second search finds nothing either."""
    for pause in (0, RETRY_DELAY):
        time.sleep(pause)
        found = [int(entry) for entry in os.listdir("/proc") if entry.isdigit() and _is_member(entry, marks)]
        if found:
            break
    return found


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
    """Returns when the last process has exited; passes signals on to those that still run."""
    uuid = uuid or start.env.get(environment.UUID_VARIABLE, "")
    if not uuid:
        _wait_for_server(child, start, tail, say)
        return
    marks = _marks(start.env["WINEPREFIX"], uuid)
    left = _members(marks)
    while left:
        number = supervise.fetch_signal(INTERVAL)
        if tail:
            tail.show()
        for pid in left if number else ():
            try:
                os.kill(pid, number)
            except OSError:
                pass
        # Checked again each time: a process seen between fork and exec may have become one of Wine's own.
        left = [pid for pid in left if _is_member(pid, marks)] or _members(marks)


def _wait_for_server(child, start, tail, say):
    """Without an id, waits for all programs of the prefix."""
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
