#!/bin/sh
# check_recorded.sh LIBRARY PROGRAM: every OpenGL entry point that the library calls is caught by the program's recorder.
set -eu
caught=$(nm -D --defined-only "$2" | cut -d' ' -f3)
missed=
for function in $(nm -D --undefined-only "$1" | awk '{print $2}' | sed 's/@.*//' | grep -E '^glu?[A-Z]'); do
    echo "$caught" | grep -qx "$function" || missed="$missed $function"
done
[ -z "$missed" ] || {
    echo "not recorded:$missed" >&2
    exit 1
}
