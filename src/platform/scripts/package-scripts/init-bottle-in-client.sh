#!/bin/sh
# The templates of bottles. With -c: ends with 1 if they have to be made anew, because Wine was updated or one was left
# half made. With -r or --recreate: lets the bottle service make them and prints what it does.

# The tree may lie anywhere: this is files/share/cellarix/package-scripts.
service=$(readlink -f "$0")
service=${service%/*}/../../../bin/lumora-wine-launcher

if [ ! -x "$service" ]; then
    echo "The bottle service is missing: $service" >&2
    [ "${1-}" = -c ] && exit 0 # nothing that this script could mend
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
