#pragma once

/// While the application object is being made, Qt ends a program that finds no display with an abort. As long
/// as an object of this class lives, it ends with a line on standard error and status 1 instead; --help and
/// --version, which need no display, are answered. One at a time, before the log is set up.
class DisplayCheck {
public:
    DisplayCheck();
    ~DisplayCheck();
    DisplayCheck(const DisplayCheck&) = delete;
    DisplayCheck& operator=(const DisplayCheck&) = delete;
};
