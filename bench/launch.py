#!/usr/bin/python3
"""Compares launches with bare Wine: from exec to the program's window, from its exit to the verdict, and for a
repair.

scripts/session --private bench/launch.py [RUNS]

Each figure is the median of RUNS (5). Windows are polled every 10 ms. The wineserver is stopped before each start, on
both sides. The one-time cost of the first bottle (the template) is measured by bench/bottles.py. RUNS = 1 only checks
that everything works: there is no warm-up and no bare prefix.
"""
import json
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

RUNS = int(sys.argv[1]) if len(sys.argv) > 1 else 5
BUILD = pathlib.Path(os.environ.get("CELLARIX_BUILD") or pathlib.Path(__file__).resolve().parent.parent / "build/dev")
PROGRAMS = BUILD / "tests/programs/x64"
DATA = pathlib.Path(os.environ["XDG_DATA_HOME"], "lumora-wine-bottles")
TITLE = "Cellarix sample window"
WINE = {**os.environ, "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree,mshtml=;winemenubuilder.exe="}
QUIET = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}


def window():
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", TITLE], capture_output=True,
                          text=True, check=False).stdout.split()


def wait_for_window(limit=120):
    end = time.time() + limit
    while time.time() < end:
        if window():
            return time.time()
        time.sleep(0.01)
    raise SystemExit("no window")


def close_window():
    for number in window():
        subprocess.run(["wmctrl", "-i", "-c", hex(int(number))], **QUIET, check=False)
    while window():
        time.sleep(0.01)


def stop(prefix):
    subprocess.run(["wineserver", "-k"], env={**WINE, "WINEPREFIX": str(prefix)}, **QUIET, check=False)
    subprocess.run(["wineserver", "-w"], env={**WINE, "WINEPREFIX": str(prefix)}, **QUIET, check=False)


def started(command, environment, prefix, is_watched=False):
    """Seconds from exec to the window. Closes the window and stops the wineserver afterwards."""
    os.sync()
    begin = time.time()
    process = subprocess.Popen(command, env=environment, **QUIET)
    seconds = wait_for_window() - begin
    if is_watched:
        time.sleep(1.5)  # until the monitor has seen it too
    close_window()
    try:
        process.wait(30)
    except subprocess.TimeoutExpired:
        process.kill()
    if prefix():
        stop(prefix())
    return seconds


def bottle_of(name):
    found = [path for path in (DATA / "bottles").glob(f"{name}*") if path.is_dir()]
    return found[0] if found else None


def copied(directory, name, sample="window"):
    target = directory / name
    shutil.copy(PROGRAMS / f"{sample}.exe", target)
    return target


def through_application(file):
    return started(["cellarix", str(file)], {**os.environ}, lambda: bottle_of(file.name), True)


def bare(file, prefix):
    return started(["wine", str(file)], {**WINE, "WINEPREFIX": str(prefix)}, lambda: prefix)


def probe(file, *options):
    """The lines of launch-probe with their times in s, and the time when this closed the window."""
    process = subprocess.Popen([str(BUILD / "tools/launch-probe"), *options, str(file)], text=True,
                               env={**os.environ, "QT_QPA_PLATFORM": "offscreen"}, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL)
    begin = time.time()
    lines, closed = [], 0
    for line in process.stdout:
        at, _, text = line.strip().partition(" ")
        lines.append((int(at) / 1000, text))
        if text == "windowPopuped":
            time.sleep(1)
            close_window()
            closed = time.time() - begin
    process.wait()
    return lines, closed


def time_of(lines, text):
    return next(at for at, line in lines if line.startswith(text))


def use_mirror(directory):
    (DATA / "mirror").mkdir(exist_ok=True)
    subprocess.run(["tar", "-C", str(PROGRAMS), "-cf", str(DATA / "mirror/sqlite3.tar"), "sqlite3.dll"], check=True)
    (DATA / "sources.json").write_text(json.dumps({"mirrors": [str(directory)], "allow_unverified": True}),
                                       encoding="utf-8")
    steps = [{"extract": "sqlite3.tar", "files": ["sqlite3.dll"]}]
    (DATA / "dependency.json").write_text(json.dumps({"sqlite3": {"recipe": {"steps": steps}}}), encoding="utf-8")


def main():
    settings = pathlib.Path(os.environ["XDG_CONFIG_HOME"], "lumora/cellarix/settings.conf")
    settings.parent.mkdir(parents=True, exist_ok=True)
    settings.write_text("[basic]\nupdate_log.version=3.3.4.008\n", encoding="utf-8")
    place = pathlib.Path(tempfile.mkdtemp())
    if RUNS > 1:
        through_application(copied(place, "template.exe"))

    firsts, fresh = [], []
    for number in range(RUNS):
        firsts.append(through_application(copied(place, f"first{number}.exe")))
    for number in range(min(RUNS, 3) if RUNS > 1 else 0):
        fresh.append(bare(copied(place, "bare.exe"), place / f"prefix{number}"))
    known = place / "first0.exe"
    ours, theirs = [], []
    for number in range(RUNS):
        ours.append(through_application(known))
        theirs.append(bare(known, bottle_of(known.name)))

    verdicts, rounds, installs = [], [], []
    for number in range(RUNS):
        lines, closed = probe(known)
        verdicts.append(time_of(lines, "runSuccessed") - closed)
        stop(bottle_of(known.name))
    use_mirror(DATA / "mirror")
    for number in range(RUNS):
        lines, _ = probe(copied(place, f"needs{number}.exe", "needs_sqlite3"), "--auto-fix")
        install = time_of(lines, "msg 2 Setup Success") - time_of(lines, "msg 2 Fix: install")
        installs.append(install)
        rounds.append(time_of(lines, "windowPopuped") - time_of(lines, "runFailed 1") - install)
        stop(bottle_of(f"needs{number}.exe"))
    shutil.rmtree(place)

    middle = statistics.median
    print("| what | through us | bare Wine | ratio |\n|---|---|---|---|")
    for name, mine, other in [("existing bottle: exec to window", ours, theirs),
                              ("first launch of a file: exec to window", firsts, fresh)]:
        if other:
            print(f"| {name} | {middle(mine):.2f} s | {middle(other):.2f} s | {middle(mine) / middle(other):.2f} |")
    for name, values in [("end of the program to the verdict", verdicts),
                         ("verdict to the relaunched window, less the install", rounds), ("the install itself", installs)]:
        print(f"| {name} | {middle(values):.2f} s | | |")


if __name__ == "__main__":
    main()
