#!/usr/bin/python3
"""Bottles of the service beside bare Wine prefixes of the same run: time to make them, room, first start of a program.

    scripts/session --private bench/bottles.py [RUNS]

Each figure is the median of RUNS (5; at most 3 bare prefixes), but for what can only happen once. Disk is what the tree
itself takes: a link counts as a link.
"""
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time

RUNS = int(sys.argv[1]) if len(sys.argv) > 1 else 5
DATA = pathlib.Path(os.environ["XDG_DATA_HOME"], "lumora-wine-bottles")
BUS = ["dbus-send", "--session", "--print-reply=literal", "--reply-timeout=600000"]
SERVICE = "com.lumora.LumoraWineLauncher"
QUIET = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, "check": True}
WINE = {**os.environ, "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree,mshtml=;winemenubuilder.exe="}


def bottles(method, *arguments):
    subprocess.run([*BUS, f"--dest={SERVICE}", "/com/lumora/Manager/Bottles", f"com.lumora.Manager.Bottles.{method}",
                    *[f"string:{argument}" for argument in arguments]], **QUIET)


def timed(function, *arguments):
    os.sync()  # what was written before is not to be paid for here
    begin = time.time()
    function(*arguments)
    return time.time() - begin


def in_prefix(prefix, *command):
    subprocess.run(command, env={**WINE, "WINEPREFIX": str(prefix)}, **QUIET)


def make_bare(prefix):
    in_prefix(prefix, "wineboot", "-i")
    in_prefix(prefix, "wineserver", "-w")


def first_start(prefix):
    in_prefix(prefix, "wineserver", "-w")
    elapsed = timed(in_prefix, prefix, "wine", "cmd.exe", "/c", "ver")
    in_prefix(prefix, "wineserver", "-k")
    return elapsed


def room(path):
    return int(subprocess.run(["du", "-sk", str(path)], capture_output=True, text=True, check=True).stdout.split()[0]) / 1024


def service_state():
    """CPU seconds and MiB of the service."""
    reply = subprocess.run([*BUS, "--dest=org.freedesktop.DBus", "/", "org.freedesktop.DBus.GetConnectionUnixProcessID",
                            f"string:{SERVICE}"], capture_output=True, text=True, check=True)
    pid = int(reply.stdout.split()[-1])
    times = pathlib.Path(f"/proc/{pid}/stat").read_text(encoding="utf-8").rsplit(")", 1)[1].split()
    memory = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="utf-8").split("Rss:")[1].split()[0]
    return (int(times[11]) + int(times[12])) / os.sysconf("SC_CLK_TCK"), int(memory) / 1024


def main():
    bare_dir = DATA / "bare"
    bare_dir.mkdir(parents=True)
    if RUNS > 1:
        warm = bare_dir / "warm"
        make_bare(warm)  # reads Wine's files into memory for both sides
        shutil.rmtree(warm)
    bare_times, bare_starts = [], []
    for number in range(min(RUNS, 3)):
        prefix = bare_dir / str(number)
        bare_times.append(timed(make_bare, prefix))
        bare_starts.append(first_start(prefix))
    bare_time, bare_start = statistics.median(bare_times), statistics.median(bare_starts)
    bare_room = room(bare_dir / "0")
    shutil.rmtree(bare_dir)
    first = timed(bottles, "createBottles", "first", "")
    later, starts = [], []
    for number in range(RUNS):
        later.append(timed(bottles, "createBottles", f"b{number}", ""))
        starts.append(first_start(DATA / "bottles" / f"b{number}"))
    rows = [("first bottle", first, bare_time, "s", "wineboot"),
            ("later bottle", statistics.median(later), bare_time, "s", "wineboot"),
            ("room of a bottle", room(DATA / "bottles" / "b0"), bare_room, "MiB", "bare prefix"),
            ("first start of a program", statistics.median(starts), bare_start, "s", "in a bare prefix")]
    print("| what | bottle | bare Wine | ratio |\n|---|---|---|---|")
    for name, ours, theirs, unit, what in rows:
        print(f"| {name} | {ours:.2f} {unit} | {what}: {theirs:.2f} {unit} | {ours / theirs:.2f} |")
    idle = 20 if RUNS > 1 else 1
    before = service_state()
    time.sleep(idle)
    after = service_state()
    print(f"| idle service | {(after[0] - before[0]) / idle * 100:.2f} % of a core, {after[1]:.0f} MiB | | |")


if __name__ == "__main__":
    main()
