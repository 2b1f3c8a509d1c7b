#!/usr/bin/python3
"""Measures the time from the launcher's exec to Wine's exec.

usage: launcher_start.py LAUNCHER [ROUNDS]

LAUNCHER is an installed launcher.py. Wine is a stub that writes down when it was started. Printed are medians of
ROUNDS (30) launches, and their ratio to a bare interpreter start in the same run, which does not depend on the machine.
"""

import json
import os
import statistics
import subprocess
import sys
import tempfile
import time

STUB = r"""
#include <stdio.h>
#include <stdlib.h>
#include <time.h>
int main(void)
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    FILE* out = fopen(getenv("STUB_OUT"), "w");
    fprintf(out, "%lld", now.tv_sec * 1000000000LL + now.tv_nsec);
    return fclose(out);
}
"""
UUID = "6f1c1f3e-0b1d-4d0e-9a55-2f3c1b8f0a11"


def build_stub(folder):
    source, stub = os.path.join(folder, "stub.c"), os.path.join(folder, "wine")
    with open(source, "w", encoding="utf-8") as file:
        file.write(STUB)
    subprocess.run(["cc", "-O1", "-static", "-o", stub, source], check=True)
    return stub


def make_bottle(folder, stub):
    """A bottle with as many programs as a busy one has."""
    bottle = os.path.join(folder, "lumora-wine-bottles", "bottles", "bench")
    os.makedirs(os.path.join(bottle, "drive_c", "app"))
    program = os.path.join(bottle, "drive_c", "app", "app.exe")
    with open(program, "wb") as file:
        file.write(b"MZ" + bytes(1022))
    record = {"name": "App", "path": "C:\\app\\app.exe", "folder": "C:\\app", "arguments": "-a \"b c\"", "envs": {"K": "v"}}
    programs = {f"{n:08}": record for n in range(100)} | {UUID: record}
    with open(os.path.join(bottle, "bottle.yml"), "w", encoding="utf-8") as file:
        file.write("Name: bench\n")
    state = os.stat(os.path.join(bottle, "bottle.yml"))
    source = {"size": str(state.st_size), "mtime_ns": str(state.st_mtime_ns)}
    with open(os.path.join(bottle, "launch.json"), "w", encoding="utf-8") as file:
        json.dump({"version": 1, "path": bottle, "runner": "bench", "wine": stub, "wineserver": "", "env": {},
                   "source": source, "programs": programs}, file)
    return os.path.join(bottle, "logs", "app.txt")


def time_launch(launcher, log, out):
    env = dict(os.environ, XDG_DATA_HOME=os.path.dirname(out), STUB_OUT=out)
    begin = time.monotonic_ns()
    subprocess.run([launcher, "bench", "--log-path", log, "--uuid", UUID], env=env, check=True)
    with open(out, encoding="ascii") as file:
        return (int(file.read()) - begin) / 1e6


def time_interpreter():
    begin = time.monotonic_ns()
    subprocess.run(["/usr/bin/python3", "-I", "-S", "-c", "pass"], check=True)
    return (time.monotonic_ns() - begin) / 1e6


def main(argv):
    if not argv:
        print(__doc__, file=sys.stderr)
        return 64
    rounds = int(argv[1]) if len(argv) > 1 else 30
    with tempfile.TemporaryDirectory() as folder:
        log = make_bottle(folder, build_stub(folder))
        out = os.path.join(folder, "started")
        time_launch(argv[0], log, out)
        launches, starts = [], []
        for _ in range(rounds):
            launches.append(time_launch(argv[0], log, out))
            starts.append(time_interpreter())
    launch, start = statistics.median(launches), statistics.median(starts)
    print(f"launch to Wine's exec: {launch:.1f} ms (worst {max(launches):.1f}), bare interpreter: {start:.1f} ms, "
          f"ratio {launch / start:.2f}")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
