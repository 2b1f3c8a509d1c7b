"""A UTF-8 locale for Wine, which takes the character set of file names from LC_CTYPE.

The bottle service uses the same rule (WineEnvironment.cpp).
"""

import _locale

OTHER_CATEGORIES = ("LC_NUMERIC", "LC_TIME", "LC_COLLATE", "LC_MONETARY", "LC_MESSAGES", "LC_PAPER", "LC_NAME",
                    "LC_ADDRESS", "LC_TELEPHONE", "LC_MEASUREMENT", "LC_IDENTIFICATION")


def with_utf8(env):
    """`env` with a UTF-8 LC_CTYPE and all other categories unchanged; `env` itself if the system has no UTF-8 locale.
    """
    present = env.get("LC_ALL") or env.get("LC_CTYPE") or env.get("LANG") or "C"
    if _is_utf8(present):
        return env
    chosen = next(filter(_is_utf8, _candidates(present)), None)
    if not chosen:
        return env
    env = dict(env, LC_CTYPE=chosen)
    everything = env.pop("LC_ALL", "")
    if everything:
        env.update(dict.fromkeys(OTHER_CATEGORIES, everything))
    return env


def _candidates(present):
    """The same language first: Wine also derives the character set of non-Unicode programs from it."""
    language = present.split("@")[0].split(".")[0]
    return f"{language}.UTF-8", "C.UTF-8", "en_US.UTF-8"


def _is_utf8(name):
    before = _locale.setlocale(_locale.LC_CTYPE)
    try:
        _locale.setlocale(_locale.LC_CTYPE, name)
        return _locale.nl_langinfo(_locale.CODESET) == "UTF-8"
    except (_locale.Error, ValueError):
        return False
    finally:
        _locale.setlocale(_locale.LC_CTYPE, before)
