#!/usr/bin/python3
"""Backups of whole bottles beside tar and zstd on the same tree in the same run: time, processor time, and size.

    scripts/session --private bench/backup.py [RUNS]

Two bottles: one as the service makes it, with a small program, and one with a large program, half of it code and half of it
data that cannot be compressed. Each time is the median of RUNS (5), with warm caches, up to the moment when all is on the disk.
The processor time tells more than the other where the machine has other work.
"""
import json
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import time

RUNS = int(sys.argv[1]) if len(sys.argv) > 1 else 5
DATA = pathlib.Path(os.environ["XDG_DATA_HOME"], "lumora-wine-bottles")
WORK = DATA.parent / "bench-backup"
SERVICE = "com.lumora.LumoraWineLauncher"
SIZES = (("small", 4), ("large", 256)) if RUNS > 1 else (("small", 1),)


def call(part, method, *arguments):
    output = subprocess.run(
        ["dbus-send", "--session", "--print-reply=literal", "--reply-timeout=600000", f"--dest={SERVICE}",
         f"/com/lumora/Manager/{part}", f"com.lumora.Manager.{part}.{method}",
         *[f"string:{argument}" for argument in arguments]], capture_output=True, text=True, check=True).stdout
    return json.loads(re.search(r"\{.*\}", output, re.S).group()) if "{" in output else {}


def good(result):
    if not result.get("ok"):
        sys.exit(f"failed: {result}")
    return result


def processor_seconds():
    """Of this script's children and of the service so far."""
    reply = subprocess.run(
        ["dbus-send", "--session", "--print-reply=literal", "--dest=org.freedesktop.DBus", "/",
         "org.freedesktop.DBus.GetConnectionUnixProcessID", f"string:{SERVICE}"], capture_output=True, text=True, check=True)
    stat = pathlib.Path(f"/proc/{int(reply.stdout.split()[-1])}/stat").read_text(encoding="utf-8").rsplit(")", 1)[1].split()
    own = os.times()
    return (int(stat[11]) + int(stat[12])) / os.sysconf("SC_CLK_TCK") + own.children_user + own.children_system


def timed(function, *arguments):
    """Seconds, and processor seconds."""
    os.sync()  # what was written before is not to be paid for here
    begin, used = time.time(), processor_seconds()
    function(*arguments)
    os.sync()
    return time.time() - begin, processor_seconds() - used


def shell(command):
    subprocess.run(["bash", "-o", "pipefail", "-c", command], check=True)


def fill(bottle, mebibytes):
    """A program of that size: libraries of this machine as its code, random bytes as its data."""
    folder = bottle / "drive_c/Program Files/Bench"
    folder.mkdir(parents=True)
    left = mebibytes * 1024 * 1024 // 2
    (folder / "data.bin").write_bytes(os.urandom(left))
    for library in sorted(pathlib.Path("/usr/lib/x86_64-linux-gnu").glob("*.so.*")):
        if library.is_file() and not library.is_symlink() and left > 0:
            content = library.read_bytes()[:left]
            (folder / library.name).write_bytes(content)
            left -= len(content)


def main():
    WORK.mkdir(parents=True)
    rows = []
    for name, mebibytes in SIZES:
        good(call("Bottles", "createBottles", name, ""))
        bottle = DATA / "bottles" / name
        fill(bottle, mebibytes)
        ours, theirs, unpacked = WORK / f"{name}.backup", WORK / f"{name}.tar.zst", WORK / "unpacked"

        def restore():
            good(call("Backup", "importBottle", ours, "restored"))

        times = {key: [] for key in ("export", "tar", "import", "untar")}
        for _ in range(RUNS):
            times["tar"].append(timed(shell, f"tar -C '{bottle.parent}' -c '{name}' | zstd -qf -o '{theirs}'"))
            times["export"].append(timed(lambda: good(call("Backup", "exportBottle", name, ours))))
            unpacked.mkdir()
            times["untar"].append(timed(shell, f"zstd -qdc '{theirs}' | tar -C '{unpacked}' -x"))
            shutil.rmtree(unpacked)
            times["import"].append(timed(restore))
            call("Bottles", "delete", "restored")
        median, used = ({key: statistics.median(pair[which] for pair in pairs) for key, pairs in times.items()}
                        for which in (0, 1))
        size = {key: path.stat().st_size / 1e6 for key, path in (("ours", ours), ("theirs", theirs))}
        rows += [(f"{name}: back up", median["export"], median["tar"], "s"),
                 (f"{name}: restore", median["import"], median["untar"], "s"),
                 (f"{name}: back up, processor", used["export"], used["tar"], "s"),
                 (f"{name}: restore, processor", used["import"], used["untar"], "s"),
                 (f"{name}: size of the file", size["ours"], size["theirs"], "MB")]
    print("| what | backup | tar and zstd | ratio |\n|---|---|---|---|")
    for what, ours, theirs, unit in rows:
        ratio = f"{ours / theirs:.2f}" if theirs else "-"  # too short for the clock of processor times
        print(f"| {what} | {ours:.2f} {unit} | {theirs:.2f} {unit} | {ratio} |")
    shutil.rmtree(WORK)


if __name__ == "__main__":
    main()
