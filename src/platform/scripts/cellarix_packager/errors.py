"""The error of both programs: its text is a sentence for the user."""


class PackageError(Exception):
    pass
