"""The steps of a launch: command line, bottle, program, environment, log, Wine."""

import os
import time

from cellarix_launcher import bottle as bottles
from cellarix_launcher import bottlelock, environment, errors, logfile, running, server, supervise, windows, words

INSTALLATION_SECONDS = 60
UPGRADE_SECONDS = 10


def main(argv):
    request = None
    try:
        if _is_terminal_request(argv):
            from cellarix_launcher import terminal
            return terminal.open_shell(argv[1])
        request = words.parse_request(argv)
        return _launch(request)
    except errors.LaunchError as error:
        return _fail(request, error)
    except Exception as error:  # the exit code must not look like that of the program
        return _fail(request, errors.LaunchError(errors.INTERNAL, f"cannot go on: {error!r}"))


def say(text):
    try:
        os.write(2, f"launcher: {text}\n".encode("utf-8", "surrogateescape"))
    except OSError:
        pass


def tell(request, text):
    """Writes a line to stdout for a caller that has asked for a log. Unlike the log, which may be from an earlier
    launch or may not exist, it always belongs to this one."""
    if not request.log_path or request.report:
        return
    try:
        os.write(1, f"launcher: {text}\n".encode("utf-8", "surrogateescape"))
    except OSError:
        pass


def _fail(request, error):
    say(str(error))
    if request:
        text = _printable(f"{error.code}: {error}")
        if request.report:
            from cellarix_launcher import screen
            screen.report_failure(request.report, text)
        if error.cause:
            tell(request, _printable(f"cause {error.cause}: {error.subject}"))
        tell(request, f"failed with {text}")
        if request.is_log_emptied:
            _record_failure(request.log_path, text)
    return error.code


def _printable(text):
    return "".join(c if c.isprintable() else "?" for c in text)


def _is_terminal_request(argv):
    """If there is a bottle named "terminal", the next argument decides."""
    if len(argv) != 2 or argv[0] != "terminal":
        return False
    known = [bottles.bottle_directory(name, os.environ) for name in (argv[1], "terminal")]
    return known[0] is not None or known[1] is None


def _wait_for_installation(request, journal, end):
    """Waits for an installation, which may be rolled back and ends the programs in the bottle."""
    if not os.path.exists(journal):
        return
    tell(request, "waiting")
    while os.path.exists(journal):
        if time.monotonic() > end:
            raise errors.LaunchError(
                errors.BUSY, "Something is being installed into the bottle. Try again when that is done.")
        time.sleep(0.1)
    tell(request, "going on")


def _claim_bottle(request):
    """The service writes its journal before it checks for claims; the launcher writes its claim before it checks for
    the journal again. So at least one of the two sees the other."""
    directory = bottles.bottle_directory(request.bottle, os.environ)
    if not directory:
        return
    journal = os.path.join(directory, ".before-install", "journal.json")
    end = time.monotonic() + INSTALLATION_SECONDS
    while True:
        _wait_for_installation(request, journal, end)
        running.claim(request.bottle, request.uuid, request.words[:1], directory, say)
        if not os.path.exists(journal):
            return
        running.release()


def _lock_bottle(request, lock):
    """Waits for an upgrade of the bottle to another version of its package, but not for as long as packing takes."""
    directory = bottles.bottle_directory(request.bottle, os.environ)
    if not directory or lock.acquire(directory, bottlelock.SHARED):
        return
    tell(request, "waiting")
    end = time.monotonic() + UPGRADE_SECONDS
    while not lock.acquire(directory, bottlelock.SHARED):
        if time.monotonic() > end:
            raise errors.LaunchError(errors.BUSY, "The bottle is being packed or upgraded. Try again when that is done.",
                                     "bottle-busy")
        time.sleep(0.1)
    tell(request, "going on")


def _launch(request):
    _empty_log(request)
    lock = bottlelock.BottleLock()
    try:
        _claim_bottle(request)
        _lock_bottle(request, lock)
        return _launch_claimed(request)
    finally:
        running.release()
        lock.release()


def _empty_log(request):
    """Truncates the log before any wait, so that no reader takes an earlier launch for this one. Errors are reported
    later."""
    if request.log_path and not request.report and bottles.bottle_directory(request.bottle, os.environ):
        request.is_log_emptied = logfile.empty(request.log_path)
        if request.is_log_emptied:
            tell(request, "log")


def _launch_claimed(request):
    bottle = bottles.load_bottle(request.bottle, os.environ)
    if bottle.record_error:
        say(bottle.record_error)
    program, envs = _program(request, bottle)
    wine = environment.find_wine(bottle, os.environ)
    bottle.wineserver = bottle.wineserver or environment.server_beside(wine)
    wine = environment.loader_for(wine, bottle.directory, windows.check_bits(program, wine))
    if request.cli:
        from cellarix_launcher import terminal
        code = terminal.run_in_terminal(request, say)
        if code is not None:
            return code
    start = supervise.Start(
        ([bottle.emulator] if bottle.emulator else []) + [wine] + program.command,
        environment.wine_environment(bottle, os.environ, request.uuid, envs, program.file),
        program.folder)
    server.start(bottle.wineserver, bottle.directory, start.env, say)
    running.announce(request.bottle, start.env, say)
    if request.report:
        from cellarix_launcher import screen
        return screen.run_inside(request, start, say)
    log = logfile.open_log(request.log_path, words.one_line(start.argv), say) if request.log_path else None
    return supervise.run(start, log, request, say)


def _program(request, bottle):
    """The program to run and the variables that its record adds."""
    if request.uuid:
        record = bottle.program(request.uuid)
        if record is None:
            raise errors.LaunchError(
                errors.NO_PROGRAM, f"there is no program {request.uuid} in bottle \"{bottle.name}\"", "no-entry")
        text = {key: record[key] if isinstance(record.get(key), str) else "" for key in ("path", "folder", "arguments")}
        arguments = words.split_arguments(text["arguments"]) + request.words
        try:
            return windows.resolve(bottle.directory, text["path"], arguments, text["folder"]), record.get("envs")
        except errors.LaunchError as error:
            from cellarix_launcher import origin
            package = origin.removed_package(bottle.directory) if error.cause == "no-file" else ""
            if not package:
                raise
            raise errors.LaunchError(
                errors.NO_PROGRAM, f"its files belonged to the package {package}, which has been removed; install it again",
                "package-removed", package) from None
    command = request.words
    if len(command) == 1:
        command = words.split_command(command[0], lambda word: windows.find_file(bottle.directory, word) is not None)
    return windows.resolve(bottle.directory, command[0], command[1:]), None


def _record_failure(path, text):
    """Writes to the log why the program was not started."""
    log = logfile.open_log(path, f"failed with {text}", lambda _: None)
    if log.fd >= 0:
        os.close(log.fd)
