#!/bin/bash
# Prepares the Proton runners of this user. A Proton runner has its Wine in files/bin; it is ready if bin links there.
# -c: exits with 1 if a runner is not ready. Without -c: prepares the runners and prints what is missing.

trap '' PIPE # the work is done even if nobody reads the output
data=${XDG_DATA_HOME:-}
[[ $data == /* ]] || data=$HOME/.local/share
data+=/lumora-wine-bottles
shopt -s nullglob
runners=("$data"/runners/ge-proton*/ "$data"/runners/lumora-ge-proton*/)

# ready DIRECTORY: whether it has a Wine and a wineserver where the service expects them.
ready() {
    [[ -f ${1}bin/wine && -x ${1}bin/wine || -f ${1}bin/wine64 && -x ${1}bin/wine64 ]] && [[ -x ${1}bin/wineserver ]]
}

# repair DIRECTORY: prepares a runner; fails with a line that says why.
repair() {
    local file version wine
    if [[ ! -f ${1}files/bin/wine64 && ! -f ${1}files/bin/wine && ! -d ${1}bin ]]; then
        echo "  It has no files/bin/wine64. Its archive was not unpacked completely."
        return 1
    fi
    for file in "$1"proton "$1"{files/,}bin/{wine{,64}{,-preloader},wineserver}; do
        if [[ -f $file && ! -x $file ]]; then
            echo "  ${file#"$1"} becomes a program."
            chmod u+x -- "$file" || return 1
        fi
    done
    if [[ ! -e ${1}bin && ! -L ${1}bin ]]; then
        echo "  bin leads to files/bin."
        ln -s -- files/bin "${1}bin" || return 1
    fi
    if ! ready "$1"; then
        echo "  wine64 or wineserver is missing, or is no program."
        return 1
    fi
    wine=${1}bin/wine64
    [[ -x $wine ]] || wine=${1}bin/wine
    if ! version=$(timeout 20 "$wine" --version 2>&1 9>&-); then
        echo "  Its Wine does not start: ${version:-no answer}"
        return 1
    fi
    echo "  Ready: ${version%%$'\n'*}"
}

if [[ ${1-} == -c ]]; then
    for runner in "${runners[@]}"; do
        ready "$runner" || exit 1
    done
    exit 0
fi

if ((${#runners[@]} == 0)); then
    echo "There is no Proton runner in $data/runners. Install one from the app store, or unpack one there."
    exit 1
fi
if ! mkdir -p -- "$data/bottles" || ! exec 9>"$data/.proton-lock"; then
    echo "Nothing can be written to $data."
    exit 1
fi
if ! flock -n 9; then
    echo "Another setup of Proton is at work, waiting for it."
    flock 9
fi
status=0
for runner in "${runners[@]}"; do
    name=${runner%/}
    echo "${name##*/}"
    repair "$runner" || status=1
done
exit "$status"
