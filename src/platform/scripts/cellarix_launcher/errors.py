"""How a launch that never reached the program ends: one sentence and one exit code for each cause."""

USAGE = 64
NO_PROGRAM = 66
NO_BOTTLE = 67
NO_WINE = 69
INTERNAL = 70
BUSY = 75
NEEDS_WINE32 = 78


class LaunchError(Exception):
    """Carries the sentence for the user and the exit code."""

    def __init__(self, code, sentence):
        super().__init__(sentence)
        self.code = code
