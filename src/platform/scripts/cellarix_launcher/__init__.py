"""The road from a bottle's name and a Windows program to a Linux process.

Modules on the way to Wine's start import little and late, since a user waits for them:
errors (exit codes), words (command lines), bottle (records), windows (paths and file kinds),
environment, logfile, server, running, supervise. logkeeper, family and terminal are loaded when they are needed.
"""
