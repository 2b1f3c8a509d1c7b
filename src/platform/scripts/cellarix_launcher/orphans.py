"""Ends what a wineserver that was killed has left behind.

Wine's processes can do nothing without their server, and many of them wait for it for ever. Each thread of theirs has a
pipe to the server: a process that shares no pipe with a living server of its bottle is an orphan.
"""

import _thread
import math
import os
import select
import signal
import time

from cellarix_launcher import running

GRACE = 2  # seconds after the server's end; most end by themselves, and one that just starts finds a new server
START = 30  # seconds until a program without a server is not starting any more
INTERVAL = 0.2


def watch(prefix, cleaned_up=lambda: None):
    """Follows the bottle's server, and the next one, in a thread of its own, which calls cleaned_up after each end."""
    _thread.start_new_thread(_watch, (_real(prefix), cleaned_up))


def end(prefix):
    """At the end of a launch: what is left without any server."""
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
    """Of a program that is just starting. On a busy machine that takes its time."""
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
    """As start times of processes are told: in clock ticks since the machine started."""
    return time.clock_gettime(time.CLOCK_BOOTTIME) * os.sysconf("SC_CLK_TCK")


def _has_ended(pid, limit):
    """Waits for the end of a process, or for so many seconds."""
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
    """Of the processes that started before the given time. More of them may be in the midst of an exec.

    While a server lives, a process that has never reached one may just be slow to start and is left alone.
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
    """True as well for what cannot be looked into."""
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
