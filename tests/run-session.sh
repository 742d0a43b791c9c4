#!/bin/sh
# Runs one console session and compares everything that it shows with the recorded one.
#
# usage: run-session.sh NAME CONSOLE SIMULATED-BOARD [EMULATOR...]
#
# sessions/NAME.in   what the person types
# sessions/NAME.out  standard output and standard error as they come, then the exit status
# sessions/NAME.env  optional: variables, a line each; "NO_BOARD=1" leaves the simulated board out
#
# UPDATE_SESSIONS=1 records instead of comparing.
set -u
name=$1 console=$2 board=$3
shift 3
cd "$(dirname "$0")/sessions" || exit 1

[ -f "$name.env" ] && set -a && . "./$name.env" && set +a

actual=$(mktemp) || exit 1
trap 'rm -f "$actual"' EXIT
# The emulator takes the library to preload as an option: only the emulated program may get it.
if [ -n "${NO_BOARD:-}" ]; then
    "$@" "$console" <"$name.in" >"$actual" 2>&1
elif [ $# -gt 0 ]; then
    "$@" -E "LD_PRELOAD=$board" "$console" <"$name.in" >"$actual" 2>&1
else
    env "LD_PRELOAD=$board" "$console" <"$name.in" >"$actual" 2>&1
fi
echo "[exit status $?]" >>"$actual"

if [ -n "${UPDATE_SESSIONS:-}" ]; then
    cp "$actual" "$name.out"
else
    diff -u "$name.out" "$actual"
fi
