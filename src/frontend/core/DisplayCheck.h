#pragma once

/// Without a display, Qt aborts the process while the application object is constructed. As long as an object
/// of this class lives, the process exits instead, with a line on standard error and status 1; --help and
/// --version, which need no display, are answered. Created by main, at most one at a time, before logging is
/// set up.
class DisplayCheck {
public:
    DisplayCheck();
    ~DisplayCheck();
    DisplayCheck(const DisplayCheck&) = delete;
    DisplayCheck& operator=(const DisplayCheck&) = delete;
};
