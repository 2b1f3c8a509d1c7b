"""How a launch that never reached the program ends: one sentence and one exit code for each cause."""

USAGE = 64
NO_PROGRAM = 66
NO_BOTTLE = 67
NO_WINE = 69
INTERNAL = 70
BUSY = 75
NEEDS_WINE32 = 78


class LaunchError(Exception):
    """Carries the sentence for the user and the exit code. Who has words of their own, in another language, goes by
    the cause, a word, and the subject, a name that belongs into them."""

    def __init__(self, code, sentence, cause="", subject=""):
        super().__init__(sentence)
        self.code = code
        self.cause = cause
        self.subject = subject
