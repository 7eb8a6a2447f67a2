#!/bin/sh
# check_exports.sh LIBRARY LIST: the library exports exactly the symbols of the list. Weak symbols are instantiated
# templates and differ from compiler to compiler; of them only the id look-up, which hosts may link against, counts.
set -eu
actual=$(mktemp)
trap 'rm -f "$actual"' EXIT
nm -DC --defined-only "$1" | cut -d' ' -f2- | grep -E '^([TBDRV] [^_]|W ReadIDS::)' | cut -c3- | LC_ALL=C sort -u >"$actual"
diff -u "$2" "$actual" || {
    echo "$1: exported symbols differ from $2 (- expected, + exported)" >&2
    exit 1
}
