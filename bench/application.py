#!/usr/bin/python3
"""Times the way from the application's exec to the launch script and to Wine, and weighs the resident programs.

    scripts/session --private bench/application.py [RUNS]

Wine is a small stand-in here that only notes when it was reached, so that what is measured is ours. It shows no window,
which is a failed launch: the application then waits for its user, and is ended from here. Each figure stands beside a
baseline of the same run: a Qt program that does nothing (cellarix --version), or a bare process.
"""
import json
import os
import pathlib
import signal
import statistics
import subprocess
import sys
import time

RUNS = int(sys.argv[1]) if len(sys.argv) > 1 else 15
UUID = "00000000-0000-4000-8000-00000000be7c"
BOTTLE = "bench"
SERVICE = ["--session", "--print-reply=literal", "--dest=com.lumora.LumoraWineLauncher"]


def data_dir():
    return pathlib.Path(os.environ["XDG_DATA_HOME"], "lumora-wine-bottles/bottles", BOTTLE)


def accept_agreement():
    settings = pathlib.Path(os.environ["XDG_CONFIG_HOME"], "lumora/cellarix/settings.conf")
    settings.parent.mkdir(parents=True, exist_ok=True)
    settings.write_text("[basic]\nupdate_log.version=3.3.4.008\n", encoding="utf-8")


def make_bottle():
    """A bottle that was made earlier, with one program, whose Wine writes down when it was reached."""
    bottle = data_dir()
    (bottle / "drive_c/windows").mkdir(parents=True)
    (bottle / "dosdevices").mkdir()
    (bottle / "logs").mkdir()
    wine = bottle.parent.parent / "wine-stand-in"
    # The monitor's tool comes here too.
    wine.write_text("#!/bin/sh\ncase \"$*\" in *a.exe*) date +%s.%N > \"$WINEPREFIX/new\"\n"
                    "mv \"$WINEPREFIX/new\" \"$WINEPREFIX/reached\";; esac\n", encoding="utf-8")
    wine.chmod(0o755)
    program = bottle / "drive_c/a.exe"
    program.write_bytes(b"MZ")
    record = {"id": UUID, "name": "Bench", "path": str(program)}
    (bottle / "bottle.yml").write_text(
        "Runner: lumora-wine10-stable\nParameters: {}\nExternal_Programs:\n"
        f"  {UUID}:\n    id: {UUID}\n    name: Bench\n    path: {program}\nInstalled_Dependencies: []\n",
        encoding="utf-8")
    state = (bottle / "bottle.yml").stat()
    source = {"size": str(state.st_size), "mtime_ns": str(state.st_mtime_ns)}
    (bottle / "launch.json").write_text(json.dumps(
        {"version": 1, "path": str(bottle), "runner": "lumora-wine10-stable", "wine": str(wine), "wineserver": "",
         "env": {}, "source": source, "programs": {UUID: record}}), encoding="utf-8")


def launch_once():
    """Seconds from the application's exec to Wine's."""
    reached = data_dir() / "reached"
    reached.unlink(missing_ok=True)
    begin = time.time()
    process = subprocess.Popen(["cellarix", f"lumorawine://{BOTTLE}/{UUID}"], stderr=subprocess.DEVNULL)
    while not reached.exists() and time.time() < begin + 60:
        time.sleep(0.01)
    process.send_signal(signal.SIGTERM)
    process.wait(10)
    return float(reached.read_text(encoding="utf-8")) - begin


def launcher_once():
    reached = data_dir() / "reached"
    reached.unlink(missing_ok=True)
    script = pathlib.Path(os.environ["CELLARIX_PREFIX"], "files/share/cellarix/service/launcher.py")
    begin = time.time()
    subprocess.run([script, BOTTLE, "--uuid", UUID], stderr=subprocess.DEVNULL, check=True)
    return float(reached.read_text(encoding="utf-8")) - begin


def run_once(command):
    begin = time.time()
    subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
    return time.time() - begin


def median(function, *arguments):
    function(*arguments)
    return statistics.median(function(*arguments) for _ in range(RUNS)) * 1000


def memory(pid):
    values = dict(line.split(":", 1) for line in
                  pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="utf-8").splitlines() if ":" in line)
    return tuple(int(values[key].split()[0]) / 1024 for key in ("Rss", "Pss"))


def service_pid():
    reply = subprocess.run(["dbus-send", "--session", "--print-reply=literal", "--dest=org.freedesktop.DBus", "/",
                            "org.freedesktop.DBus.GetConnectionUnixProcessID",
                            "string:com.lumora.LumoraWineLauncher"], capture_output=True, text=True, check=True)
    return int(reply.stdout.split()[-1])


def window_memory():
    process = subprocess.Popen(["cellarix"], stderr=subprocess.DEVNULL)
    subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--name", "Cellarix"], check=True,
                   stdout=subprocess.DEVNULL, timeout=30)
    figures = memory(process.pid)
    process.send_signal(signal.SIGTERM)
    process.wait(10)
    return figures


def main():
    accept_agreement()
    make_bottle()
    subprocess.run(["dbus-send", *SERVICE, "/com/lumora/Manager", "com.lumora.Manager.GetVersion"], check=True,
                   stdout=subprocess.DEVNULL)
    qt = median(run_once, ["cellarix", "--version"])
    python = median(run_once, ["/usr/bin/python3", "-I", "-S", "-c", "pass"])
    launch = median(launch_once)
    launcher = median(launcher_once)
    window, service = window_memory(), memory(service_pid())
    idle = ["/usr/bin/python3", "-I", "-S", "-c", "import sys; print(flush=True); sys.stdin.read()"]
    with subprocess.Popen(idle, stdin=subprocess.PIPE, stdout=subprocess.PIPE) as shell:
        shell.stdout.readline()
        bare = memory(shell.pid)
    print("| what | figure | baseline of the same run | ratio |\n|---|---|---|---|")
    print(f"| launcher exec to Wine's exec | {launcher:.0f} ms | python3 -I -S: {python:.0f} ms "
          f"| {launcher / python:.1f} |")
    print(f"| application exec to Wine's exec, existing bottle | {launch:.0f} ms | cellarix --version: {qt:.0f} ms "
          f"| {launch / qt:.1f} |")
    print(f"| application exec to launcher exec (difference) | {launch - launcher:.0f} ms | cellarix --version: "
          f"{qt:.0f} ms | {(launch - launcher) / qt:.1f} |")
    for name, figures in (("application with its main window", window), ("bottle service", service)):
        print(f"| memory of the {name} | {figures[0]:.0f} MiB RSS, {figures[1]:.0f} MiB PSS | an idle python3: "
              f"{bare[0]:.1f} MiB RSS | {figures[0] / bare[0]:.1f} |")


if __name__ == "__main__":
    main()
