#!/bin/sh
# Checks or creates the bottle templates. -c: exits with 1 if they must be recreated, because Wine was updated or one is
# incomplete. -r or --recreate: has the bottle service create them and prints its output.

# Relative to this script, which is in files/share/cellarix/package-scripts.
service=$(readlink -f "$0")
service=${service%/*}/../../../bin/lumora-wine-launcher

if [ ! -x "$service" ]; then
    echo "The bottle service is missing: $service" >&2
    [ "${1-}" = -c ] && exit 0 # nothing that this script could repair
    exit 1
fi

case ${1-} in
    -c)
        "$service" --check-templates
        [ $? -ne 1 ]
        ;;
    -r | --recreate)
        exec "$service" --recreate-templates
        ;;
    *)
        echo "usage: ${0##*/} -c | -r | --recreate" >&2
        exit 2
        ;;
esac
