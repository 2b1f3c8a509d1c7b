"""Exit codes and errors of launches that do not start the program."""

USAGE = 64
NO_PROGRAM = 66
NO_BOTTLE = 67
NO_WINE = 69
INTERNAL = 70
BUSY = 75
NEEDS_WINE32 = 78


class LaunchError(Exception):
    """`code` is the exit code, the text is for the user. A caller that translates uses `cause`, a keyword, and
    `subject`, the name or path that the error is about."""

    def __init__(self, code, text, cause="", subject=""):
        super().__init__(text)
        self.code = code
        self.cause = cause
        self.subject = subject
