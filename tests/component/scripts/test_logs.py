"""The log of a launch: complete, limited on disk, and without influence on the program."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from support import LAUNCHER, SCRIPTS, HomeCase, wait_until

from cellarix_launcher import boundedlog, logfile, logkeeper, supervise

MIB = 1 << 20
FLOOD = """
left, n = {mib} << 20, 0
while left > 0:
    block = b"".join(b"line %010d %s\\n" % (n + i, b"x" * 47) for i in range(1024))
    n += 1024
    os.write(2, block)
    left -= len(block)
"""
# launcher.py as on a file system without holes.
WITHOUT_HOLES = f"""
import sys
sys.path.insert(0, {SCRIPTS!r})
from cellarix_launcher import logfile, main
logfile.can_punch = lambda fd: False
sys.exit(main.main(sys.argv[1:]))
"""


def disk_use(path):
    try:
        return os.stat(path).st_blocks * 512
    except OSError:
        return 0


class Logs(HomeCase):
    def setUp(self):
        super().setUp()
        self.bottle()
        self.log = self.path("logs dir/记录.txt")

    def peak_while(self, process, path):
        peak = 0
        while process.poll() is None:
            peak = max(peak, disk_use(path))
        process.communicate()
        self.assertEqual(process.returncode, 0)
        return peak

    def assert_tail_whole(self, mib):
        with open(self.log, "rb") as file:
            file.seek(-10 * MIB, os.SEEK_END)
            lines = file.read().split(b"\n")[1:-1]
        numbers = [int(line.split()[1]) for line in lines]
        end = mib * MIB // 64
        self.assertEqual(numbers, list(range(end - len(lines), end)))
        self.assertGreaterEqual(len(lines), 10 * MIB // 64 - 1)

    def test_both_streams_reach_the_log_and_only_this_run_is_in_it(self):
        do = "os.write(1, b'out\\n'); os.write(2, '错误\\n'.encode() + b'\\xff\\n')"
        for _ in range(2):
            code, out, err = self.launch("t", "--log-path", self.log, "x.exe", "a b", do=do)
        self.assertEqual((code, out, err), (0, "launcher: log\n", ""))
        lines = Path(self.log).read_bytes().split(b"\n")
        self.assertEqual(lines, [f'launcher: {self.wine} x.exe "a b"'.encode(), b"out", "错误".encode(), b"\xff", b""])

    def test_show_logs_tells_stderr_the_same(self):
        do = FLOOD.format(mib=2) + "print('last', flush=True)"
        code, out, err = self.launch("t", "--log-path", self.log, "--show-logs", "x.exe", do=do)
        self.assertEqual((code, out), (0, "launcher: log\n"))
        self.assertEqual(err, self.read(self.log))
        process = self.start("t", "--log-path", self.log, "--show-logs", "x.exe", do=do)
        process.stderr.close()
        self.assertEqual(process.wait(30), 0, "nobody listens")
        process.stdout.close()

    def test_a_flood_stays_small_on_disk_and_its_end_whole(self):
        self.need_holes()
        process = self.start("t", "--log-path", self.log, "x.exe", do=FLOOD.format(mib=120))
        self.assertLess(self.peak_while(process, self.log), 40 * MIB)
        self.assert_tail_whole(120)

    def test_the_bound_outlives_the_launcher(self):
        self.need_holes()
        go = self.path("go")
        do = f"while not os.path.exists({go!r}): time.sleep(0.01)\n" + FLOOD.format(mib=100) + "open('done', 'w')"
        process = self.start("t", "--log-path", self.log, "x.exe", do=do, stdout=None, stderr=None)
        self.wait_for_record()
        wait_until(lambda: len(self.children(process.pid)) == 2)  # Wine and the keeper
        process.kill()
        process.wait(20)
        self.write("go", "")
        wait_until(lambda: os.path.exists(self.path("done")), 60)
        wait_until(lambda: disk_use(self.log) < 12 * MIB)
        self.assert_tail_whole(100)

    def test_without_holes_the_log_is_replaced_by_its_end(self):
        for options in ([], ["--show-logs"]):
            process = subprocess.Popen(
                ["/usr/bin/python3", "-c", WITHOUT_HOLES, "t", "--log-path", self.log, *options, "x.exe"], cwd=self.top,
                env=self.env | {"FAKE_DO": FLOOD.format(mib=70)}, stderr=subprocess.DEVNULL)
            self.assertLess(self.peak_while(process, self.log), 21 * MIB)
            wait_until(self.is_complete)
            self.assert_tail_whole(70)
            self.assertEqual(os.listdir(os.path.dirname(self.log)), ["记录.txt"])

    def test_no_log_is_no_reason_not_to_run(self):
        link = self.path("link.txt")
        os.symlink(self.write("victim", "keep"), link)
        os.mkfifo(self.path("pipe"))
        for path in ("/proc/none/l.txt", self.top, link, self.path("pipe"), self.path("victim/l.txt"), "/dev/full"):
            with self.subTest(path):
                code, out, err = self.launch("t", "--log-path", path, "x.exe", do="print('lost'); sys.exit(7)")
                self.assertEqual((code, out), (7, ""))
                self.assertEqual(err.count("\n"), 1, err)
                self.assertIn("the program runs without it", err)
        self.assertEqual(self.read(self.path("victim")), "keep")

    def test_a_disk_that_fills_up_stops_nothing(self):
        small = self.path("small")
        os.mkdir(small)
        mount = ["mount", "-t", "tmpfs", "-o", "size=2m", "tmpfs", small]
        if os.geteuid() != 0 or subprocess.run(mount, capture_output=True, check=False).returncode != 0:
            self.skipTest("cannot mount a small file system here")
        self.addCleanup(subprocess.run, ["umount", "-l", small], check=True)
        do = FLOOD.format(mib=4).replace("    os.write(2, block)", "    try: os.write(2, block)\n    except OSError: pass")
        code, _, err = self.launch("t", "--log-path", small + "/l.txt", "x.exe", do=do + "sys.exit(7)")
        self.assertEqual((code, err), (7, ""))
        log = boundedlog.BoundedLog(small + "/l.txt", os.open(small + "/l.txt", os.O_WRONLY | os.O_APPEND))
        log.write(b"x" * MIB)
        os.close(log.fd)

    def children(self, pid):
        return Path(f"/proc/{pid}/task/{pid}/children").read_text().split()

    def is_complete(self):
        """Whether the last line has arrived in the log."""
        return Path(self.log).read_bytes()[-64:].startswith(b"line %010d " % (70 * MIB // 64 - 1))

    def need_holes(self):
        with open(self.write("probe", "x"), "r+b") as file:
            if not logfile.can_punch(file.fileno()):
                self.skipTest("the file system of the temporary directory has no holes")


class Keeper(unittest.TestCase):
    def test_an_ended_log_is_shortened_and_a_new_run_is_noticed(self):
        with tempfile.NamedTemporaryFile() as file:
            if not logfile.can_punch(file.fileno()):
                self.skipTest("the file system of the temporary directory has no holes")
            keeper = logkeeper.Keeper(os.open(file.name, os.O_RDONLY), os.getpid())
            self.assertTrue(keeper.has_writers())
            data = b"".join(b"%015d\n" % n for n in range(16 * MIB // 16))
            Path(file.name).write_bytes(data)
            keeper.thin(len(data))
            self.assertEqual(keeper.punched, 6 * MIB)
            keeper.shorten()
            self.assertEqual(Path(file.name).read_bytes().lstrip(b"\0"), data[6 * MIB:])
            keeper.thin(5)
            self.assertEqual(keeper.punched, 0)
            file.close()
            self.assertFalse(keeper.has_writers())
            os.close(keeper.fd)

    def test_the_tail_does_not_join_lines_over_freed_space(self):
        with tempfile.NamedTemporaryFile() as file, tempfile.TemporaryFile() as shown:
            if not logfile.can_punch(file.fileno()):
                self.skipTest("the file system of the temporary directory has no holes")
            Path(file.name).write_bytes(b"first\ncut ")
            stderr = os.dup(2)
            os.dup2(shown.fileno(), 2)
            try:
                tail = supervise.Tail(file.fileno())
                tail.show()
                with open(file.name, "ab") as log:
                    log.write(b"x" * (MIB - 14) + b" lost\nlast\n")
                logfile.punch(file.fileno(), 0, MIB - 4096)
                tail.show()
            finally:
                os.dup2(stderr, 2)
                os.close(stderr)
            shown.seek(0)
            self.assertEqual(shown.read(), b"first\ncut \nlast\n")


if __name__ == "__main__":
    sys.exit(unittest.main() if os.path.exists(LAUNCHER) else 77)
