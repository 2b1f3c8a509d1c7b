#!/bin/sh
# Stands for the Wine of a runner: does what installers do, as far as files go - adds and changes, runs on in the
# background, fails.
cd "$WINEPREFIX" || exit 1
for word in "$@"; do
    case "$word" in
        write) echo new > drive_c/windows/system32/made.dll
               echo new > drive_c/windows/system32/old.dll
               echo new > system.reg;;
        -u) echo updated > system.reg;;
        wait) sleep 60;;
        restart) exit 194;;
        fail) exit 3;;
    esac
done
