#!/usr/bin/python3
"""Packing of a bottle beside `tar c | xz -T0` of the same files in the same run: time, processor time, size, memory.

    bench/packaging.py [MIB]

The bottle has MIB (100) of programs in it, outside of the folders where those of Wine are known. Memory is the peak of
all processes together, sampled.
"""
import json
import os
import pathlib
import resource
import subprocess
import sys
import tempfile
import time

MIB = int(sys.argv[1]) if len(sys.argv) > 1 else 100
SCRIPT = pathlib.Path(__file__).resolve().parent.parent / "src/platform/scripts/bottles_packager.py"
SOURCES = ("/usr/lib/x86_64-linux-gnu/wine/x86_64-windows", "/usr/lib/x86_64-linux-gnu")
REGISTRY = "WINE REGISTRY Version 2\n\n"
PROGRAM = "0f0e0d0c-0b0a-4908-8706-050403020100"


def make_bottle(home):
    bottle = home / ".local/share/lumora-wine-bottles/bottles/bench"
    drive = bottle / "drive_c/Bench"
    drive.mkdir(parents=True)
    left = MIB << 20
    for source in SOURCES:
        for path in sorted(pathlib.Path(source).iterdir()) if os.path.isdir(source) else ():
            if left > 0 and path.is_file():
                data = path.read_bytes()[:left]
                (drive / path.name).write_bytes(data)
                left -= len(data)
    for name in ("system.reg", "user.reg"):
        (bottle / name).write_text(REGISTRY, encoding="utf-8")
    (bottle / "bottle.yml").write_text(f"External_Programs:\n  {PROGRAM}: {{name: Bench, path: 'C:\\x.exe'}}\n",
                                       encoding="utf-8")
    (bottle / "pkgcfg").mkdir()
    info = {"pkgname": "org.example.bench", "pkgversion": "1", "arch": ["amd64"]}
    (bottle / "pkgcfg/pkginfo.json").write_text(json.dumps(info), encoding="utf-8")
    programs = {PROGRAM: {"path": "C:\\x.exe", "in_bottles": True}}
    (bottle / "pkgcfg/pkgsrc.json").write_text(json.dumps(programs), encoding="utf-8")
    return bottle


def memory(pid):
    """KiB of a process and its children, each shared page counted once."""
    total = 0
    try:
        children = pathlib.Path(f"/proc/{pid}/task/{pid}/children").read_text(encoding="ascii").split()
        total = sum(memory(child) for child in children)
        for line in pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="ascii").splitlines():
            if line.startswith("Pss:"):
                total += int(line.split()[1])
    except OSError:
        pass  # ended meanwhile
    return total


def measure(command, env):
    os.sync()
    before, begin, peak = resource.getrusage(resource.RUSAGE_CHILDREN), time.time(), 0
    with subprocess.Popen(command, env=env, stdout=subprocess.DEVNULL) as process:
        while process.poll() is None:
            peak = max(peak, memory(process.pid))
            time.sleep(0.05)
    if process.returncode != 0:
        sys.exit(f"{command[0]} ended with {process.returncode}")
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return time.time() - begin, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime, peak >> 10


def main():
    with tempfile.TemporaryDirectory(prefix="cellarix-bench-") as directory:
        top = pathlib.Path(directory)
        bottle = make_bottle(top)
        env = {"PATH": "/usr/bin:/bin", "HOME": directory}
        plain = top / "plain.tar.xz"
        base = measure(["sh", "-c", f"tar -C '{bottle}' -c . | xz -T0 -c >'{plain}'"], env)
        rows = [("tar | xz -T0", base, plain.stat().st_size)]
        for method in ("xz", "zstd"):
            figures = measure([SCRIPT, "bench", "--savedir", directory, "--compression", method], env)
            rows.append((method, figures, (top / "org.example.bench_1_amd64.deb").stat().st_size))
        for name, (seconds, processor, peak), size in rows:
            print(f"{name:14} {seconds:7.1f} s ({seconds / base[0]:.2f})   processor {processor:7.1f} s "
                  f"({processor / base[1]:.2f})   {size / 1e6:7.1f} MB ({size / rows[0][2]:.2f})   peak {peak} MiB")


main()
