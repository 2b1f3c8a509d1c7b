"""Starts a Windows program in a bottle as a Linux process.

The modules needed before Wine starts import little, since the user waits for them: errors (exit codes), words (command
lines), bottle (records), windows (paths and file kinds), environment, logfile, server, running, supervise. logkeeper,
boundedlog, family, origin, terminal and screen are imported on demand.
"""
