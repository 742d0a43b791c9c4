#!/bin/sh
# Fails when a program without its symbols takes more bytes than it may.
#
# usage: check-size.sh STRIP LIMIT PROGRAM
stripped=$(mktemp) || exit 1
trap 'rm -f "$stripped"' EXIT
"$1" -o "$stripped" "$3" || exit 1
size=$(wc -c <"$stripped")
echo "$size bytes, at most $2"
[ "$size" -le "$2" ]
