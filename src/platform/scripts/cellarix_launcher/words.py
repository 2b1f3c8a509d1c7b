"""Command lines: the launcher's own options, a program's stored arguments, and one-word commands."""

from cellarix_launcher import errors, windows

USAGE = """usage: launcher.py BOTTLE [--log-path FILE] [--cli] [--show-logs] [--wait] (--uuid UUID | EXE) [ARGS...]
       launcher.py BOTTLE COMMAND-LINE
       launcher.py terminal BOTTLE"""


class Request:
    """The parsed command line. `words` is the program with its arguments, or with `uuid` only the arguments."""

    def __init__(self, bottle):
        self.bottle = bottle
        self.log_path = ""
        self.cli = False
        self.show_logs = False
        self.wait = False
        self.uuid = ""
        self.report = ""  # in the inner launcher of a terminal: the FIFO to report to
        self.words = []
        self.is_log_emptied = False


def parse_request(argv):
    """Options come before the program; everything after it is passed to the program."""
    if not argv:
        raise errors.LaunchError(errors.USAGE, "no bottle was named\n" + USAGE)
    request = Request(argv[0])
    rest = list(argv[1:])
    flags = {"--cli": "cli", "--show-logs": "show_logs", "--wait": "wait"}
    values = {"--log-path": "log_path", "--uuid": "uuid", "--in-terminal": "report"}
    while rest and rest[0].startswith("--"):
        word = rest.pop(0)
        if word == "--":
            break
        if word in flags:
            setattr(request, flags[word], True)
        elif word in values:
            if not rest:
                raise errors.LaunchError(errors.USAGE, f"{word} needs a value\n{USAGE}")
            setattr(request, values[word], rest.pop(0))
        else:
            raise errors.LaunchError(errors.USAGE, f"unknown option {word}\n{USAGE}")
    request.words = rest
    if not request.uuid and not any(rest[:1]):
        raise errors.LaunchError(errors.USAGE, f"no program was named\n{USAGE}")
    return request


def split_arguments(text):
    """Splits a Windows command line: blanks separate, double quotes group, a backslash escapes only a quote.

    A word may also be in single quotes; an apostrophe inside a word is an ordinary character. A missing closing quote
    is assumed at the end.
    """
    words, word, at, inside = [], None, 0, False
    while at < len(text):
        char = text[at]
        if char == "\\":
            run = len(text) - at - len(text[at:].lstrip("\\"))
            at += run
            quoted = text[at:at + 1] == '"'
            word = (word or "") + "\\" * (run // 2 if quoted else run)
            if quoted and run % 2:
                word += '"'
                at += 1
            continue
        if char == '"':
            inside = not inside
            word = word or ""
        elif char in " \t\r\n" and not inside:
            if word is not None:
                words.append(word)
            word = None
        elif char == "'" and word is None and not inside and text.find("'", at + 1) > 0:
            end = text.index("'", at + 1)
            word = text[at + 1:end]
            at = end
        else:
            word = (word or "") + char
        at += 1
    return words if word is None else words + [word]


def split_command(word, is_file):
    """Splits a command given as one word: the whole word if it is a file, else after the longest prefix that is a
    file."""
    if is_file(word) or not word.strip():
        return [word]
    if not word.lstrip().startswith(('"', "'")):
        end = len(word)
        while (end := word.rfind(" ", 0, end)) > 0:
            if is_file(word[:end]):
                return [word[:end]] + split_arguments(word[end:])
        if word.startswith("/") or windows.is_windows_path(word):
            return [word]  # reported as a whole as not existing
    return split_arguments(word) or [word]


def one_line(words):
    """The words as one line for a log; words with blanks and empty words are quoted."""
    def quoted(word):
        word = "".join(c if c.isprintable() else "?" for c in word)
        return f'"{word}"' if not word or " " in word else word
    return " ".join(quoted(word) for word in words)
