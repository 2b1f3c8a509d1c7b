#!/bin/bash
# package_walk.sh INSTALLED_PREFIX SOURCES DIRECTORY OLD_DEB NEW_DEB PROGRAM
# On a copy of this machine that vanishes with the process: installs a package, starts its program as two ordinary
# users, upgrades and purges it. Prints what it sees as lines "word: text". Needs root. With CELLARIX_PICTURES, a
# directory, it takes a picture of each window.
set -euo pipefail
if [[ $$ != 1 ]]; then
    exec unshare --mount --pid --fork --kill-child --propagation private --mount-proc "$0" "$@"
fi
prefix=$1 sources=$2 directory=$3 old=$4 new=$5 program=$6
package=$(dpkg-deb -f "$old" Package)

mount -t tmpfs walk "$directory/root"
cd "$directory/root"
mkdir upper work new
mount -t overlay walk -o "lowerdir=/,upperdir=$PWD/upper,workdir=$PWD/work" new
root=$PWD/new
mount --rbind /proc "$root/proc"
mount --rbind /dev "$root/dev"
for place in /tmp /run; do
    mount -t tmpfs walk "$root$place"
    chmod 1777 "$root$place"
done
for place in "$prefix" "$sources" "$directory"; do
    mkdir -p "$root$place"
    mount --bind "$place" "$root$place"
done

inside() { chroot "$root" "$@"; }
as_user() {
    local user=$1
    shift
    inside runuser -u "$user" -- env -i PATH=/usr/bin:/bin HOME="/home/$user" USER="$user" LANG=C.UTF-8 \
        XDG_RUNTIME_DIR="/run/$user" CELLARIX_PREFIX="$prefix" CELLARIX_PREPARE_SECONDS=-1 WINEDEBUG=-all "$@"
}
bottle=.local/share/lumora-wine-bottles/bottles/$package
# run USER: starts the program as the menu does, and waits for its window.
run() {
    # shellcheck disable=SC2016  # expanded by the inner shell
    as_user "$1" timeout 240 "$sources/scripts/session" bash -c '
        "$1" "$2" >/dev/null 2>"$HOME/errors" &
        # A window may go while xdotool looks at it, which ends xdotool.
        until found=$(xdotool search --onlyvisible --name "$3" 2>/dev/null) && [[ $found ]]; do
            ((++turn < 200)) || { tail -n 40 "$HOME/errors" >&2; exit 1; }
            sleep 0.5
        done
        echo "window: $USER"
        [[ -z $4 ]] || import -window root "$4"
        export WINEPREFIX=$HOME/$5
        wineserver -k
        wineserver -w
        kill %1 2>/dev/null' \
        walk "$exec_path" "$program" 'Cellarix Sample' "${CELLARIX_PICTURES:+/home/$1/window.png}" "$bottle" || true
    [[ -z ${CELLARIX_PICTURES:-} ]] || cp "$root/home/$1/window.png" "$CELLARIX_PICTURES/$1.png"
}

for user in first second; do
    inside useradd -m "$user"
    mkdir -p "$root/home/$user/.config/lumora/cellarix"
    printf '[basic]\nupdate_log.version=%s\n' "$(sed -n 's/.*"version": *"\([^"]*\)".*/\1/p' "$prefix/info")" \
        >"$root/home/$user/.config/lumora/cellarix/settings.conf"
    inside chown -R "$user:" "/home/$user"
    inside install -d -o "$user" -m 700 "/run/$user"
done
# The application itself is the one in the build tree.
mkdir -p "$root/tmp/stand-in/DEBIAN" "$root/tmp/stand-in/opt/apps"
ln -s "$prefix" "$root/tmp/stand-in/opt/apps/cellarix"
printf '%s\n' 'Package: cellarix' 'Version: 9' 'Architecture: all' 'Maintainer: T <t@example.org>' \
    'Description: stand-in' >"$root/tmp/stand-in/DEBIAN/control"
inside dpkg-deb -b /tmp/stand-in /tmp/stand-in.deb >/dev/null
inside dpkg -i /tmp/stand-in.deb >/dev/null 2>&1
inside find /etc /opt /usr /var/lib | LC_ALL=C sort >"$directory/before"

inside dpkg -i "$old" >/dev/null
menu=$root/usr/share/applications/$package-cellarix.desktop
inside desktop-file-validate "${menu#"$root"}" && echo "menu: $(sed -n 's/^Name=//p' "$menu")"
exec_path=$(sed -n 's/^Exec=\([^ ]*\) .*/\1/p' "$menu")
run first
run second
home=$root/home/first/$bottle
echo "size: $(du -sm "$home" | cut -f1)"
echo "shared: $(readlink "$home/drive_c/Sample/window.exe")"
# shellcheck disable=SC2016  # expanded by the inner shell
as_user first sh -c 'cd "$HOME/$1/drive_c/Sample" && echo mine >settings.ini && echo saved >game.sav' walk "$bottle"

# Shares the lock of the bottle, as a shell in a terminal does, and is named so.
touch "$directory/runs"
drive=/home/first/$bottle/drive_c
# shellcheck disable=SC2016  # expanded by the inner shell
as_user first flock --shared "$drive" sh -c 'touch /tmp/held; while [ -e "$0" ]; do sleep 0.1; done' "$directory/runs" launcher.py terminal "$package" &
until [[ -e $root/tmp/held ]]; do sleep 0.1; done
inside dpkg -i "$new" >/dev/null
echo "open: $(as_user first "$exec_path" "$program" 2>&1 | tail -n 1)"
rm "$directory/runs"
wait
run first
run second
echo "kept: $(cat "$home/drive_c/Sample/settings.ini" "$home/drive_c/Sample/game.sav" | xargs)"
echo "renewed: $(cat "$home/drive_c/Sample/words.txt" "$home/drive_c/Sample/extra.txt" | xargs)"
echo "profile: $(grep -o 'users.\{2\}second' "$root/home/second/$bottle/user.reg" | sort -u) $(cd "$root/home/second/$bottle/drive_c/users" && echo *)"
echo "second: $(xargs <"$root/home/second/$bottle/drive_c/Sample/words.txt") $(readlink "$root/home/second/$bottle/drive_c/Sample/window.exe")"
echo "registry: $(grep -c '"Added"="2"' "$home/user.reg")"

inside dpkg --purge "$package" >/dev/null 2>&1
inside find /etc /opt /usr /var/lib | LC_ALL=C sort >"$directory/after"
echo "left: $(comm -13 "$directory/before" "$directory/after" | grep -v -e '/__pycache__' -e '^/var/lib/dpkg/' -e '\.cache$' | xargs)"
echo "own: $(cat "$home/drive_c/Sample/game.sav")"
