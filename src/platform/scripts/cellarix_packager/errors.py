"""The error of both programs: its text is a sentence for the user. A caller that translates uses `cause`, a keyword that
does not change (docs/PACKAGES.md), and `subject`, the path or number that the error is about."""


class PackageError(Exception):
    def __init__(self, text, cause, subject=""):
        super().__init__(text)
        self.cause = cause
        self.subject = subject
