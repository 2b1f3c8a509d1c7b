"""Kills the Wine processes that a killed wineserver has left behind.

They cannot work without their server, and many of them wait for it for ever. Each thread of a Wine process has a pipe
to the server: a process that shares no pipe with a running server of its bottle is an orphan.
"""

import _thread
import math
import os
import select
import signal
import time

from cellarix_launcher import running

GRACE = 2  # seconds after the server's end; most processes exit by themselves, and a starting one finds a new server
START = 30  # seconds after which a program without a server no longer counts as starting
INTERVAL = 0.2


def watch(prefix, cleaned_up=lambda: None):
    """Monitors the bottle's server and its successors in a new thread, which calls cleaned_up after the end of each.
    """
    _thread.start_new_thread(_watch, (_real(prefix), cleaned_up))


def end(prefix):
    """At the end of a launch: kills the remaining processes if there is no server."""
    servers, others = _processes(_real(prefix))
    if others and not servers:
        _clean_up(_real(prefix))


def _watch(prefix, cleaned_up):
    server = _await_server(prefix)
    if server and not _has_ended(server, GRACE):
        _kill_orphans(prefix, LAUNCH, may_be_starting=True)  # of earlier launches
    while True:
        if server:
            _has_ended(server, None)
        _clean_up(prefix)
        cleaned_up()
        server = _server(prefix)
        if not server:
            return


def _await_server(prefix):
    """Waits for the server of a starting program, which takes a while on a busy machine."""
    end = time.monotonic() + START
    while not (server := _server(prefix)) and time.monotonic() < end:
        time.sleep(INTERVAL)
    return server


def _clean_up(prefix):
    before = _now()
    time.sleep(GRACE)
    _kill_orphans(prefix, before)


def _server(prefix):
    return next(iter(_processes(prefix)[0]), None)


def _real(prefix):
    return os.fsencode(os.path.realpath(prefix))


def _now():
    """The time in the unit of process start times: clock ticks since boot."""
    return time.clock_gettime(time.CLOCK_BOOTTIME) * os.sysconf("SC_CLK_TCK")


def _has_ended(pid, limit):
    """Waits for a process to exit, at most `limit` seconds (None: without a limit). Returns whether it has exited."""
    try:
        fd = os.pidfd_open(pid)
    except ProcessLookupError:
        return True
    except OSError:  # an older kernel
        end = time.monotonic() + (limit or math.inf)
        while os.path.exists(f"/proc/{pid}") and time.monotonic() < end:
            time.sleep(INTERVAL)
        return not os.path.exists(f"/proc/{pid}")
    try:
        return bool(select.select([fd], [], [], limit)[0])
    finally:
        os.close(fd)


def _kill_orphans(prefix, before, may_be_starting=False):
    """Kills the orphans that started before the given time; repeats, since processes are not recognised during an
    exec.

    may_be_starting: spare processes that never connected to a server, since they may just be slow to start.
    """
    while orphans := _orphans(prefix, before, may_be_starting):
        for pid in orphans:
            try:
                os.kill(pid, signal.SIGKILL)
            except OSError:
                pass
        time.sleep(INTERVAL)


def _orphans(prefix, before, may_be_starting):
    servers, others = _processes(prefix)
    return [pid for pid in others if _start_time(pid) <= before and not _is_connected(pid, servers, may_be_starting)]


def _processes(prefix):
    """The pids of the bottle's servers and of its other Wine processes."""
    servers, others = [], []
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            name = os.path.basename(os.readlink(f"/proc/{entry}/exe"))
            if name.startswith("wine") and _prefix_of(entry) == prefix:
                (servers if name.startswith("wineserver") else others).append(int(entry))
        except OSError:
            pass
    return servers, others


def _prefix_of(entry):
    with open(f"/proc/{entry}/environ", "rb") as file:
        for variable in file.read().split(b"\0"):
            if variable.startswith(b"WINEPREFIX="):
                return os.path.realpath(variable[len(b"WINEPREFIX="):])
    return b""


def _is_connected(pid, servers, may_be_starting):
    """Also true for a process that cannot be inspected."""
    try:
        pipes = _pipes(pid)
        return (may_be_starting and not pipes) or any(pipes & _pipes(server) for server in servers)
    except OSError:
        return True


def _pipes(pid):
    directory = f"/proc/{pid}/fd"
    targets = set()
    for entry in os.listdir(directory):
        if entry in ("0", "1", "2"):  # the caller's
            continue
        try:
            targets.add(os.readlink(f"{directory}/{entry}"))
        except FileNotFoundError:
            pass
    return {target for target in targets if target.startswith("pipe:")}


def _start_time(pid):
    try:
        return int(running.start_time(pid))
    except (OSError, IndexError):
        return math.inf


LAUNCH = _start_time("self")  # of the launcher, also in the processes that it forks
