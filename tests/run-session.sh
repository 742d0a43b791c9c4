#!/bin/sh
# Runs one console session and compares everything that it shows with the recorded one.
#
# usage: run-session.sh NAME PROGRAM [EMULATOR...]     PROGRAM: the console, or an example
#
# The simulated board lies beside the console. In sessions/:
# NAME.in    what is typed. A line "@wait TEXT" waits until the console has shown TEXT, and "@often LINE" types LINE a
#            thousand times.
# NAME.out   standard output and standard error together, then the input that was not read, then the exit status
# NAME.env   optional: variables, one in each line. NO_BOARD=1 leaves the simulated board out, ARGUMENTS go to the program.
# NAME.keep  optional: an extended regular expression. Only the lines that match it are compared.
# NAME.awk   optional: an awk program that shortens the lines to compare
#
# UPDATE_SESSIONS=1 records instead of comparing.
set -u
name=$1 console=$2
shift 2
cd "$(dirname "$0")/sessions" || exit 1

unset KOVA_SIM_EDID KOVA_SIM_SPEED KOVA_SIM_SCRIPT KOVA_SIM_JOURNAL NO_BOARD ARGUMENTS
[ -f "$name.env" ] && set -a && . "./$name.env" && set +a

. ../../cmake/build.sh
use_scratch
folder=$scratch
shown=$folder/shown
: >"$shown"

type_lines() {
    while IFS= read -r line || [ -n "$line" ]; do
        case $line in
        "@wait "*)
            tries=600
            until grep -aqF "${line#@wait }" "$shown" || [ $tries -eq 0 ]; do
                sleep 0.1
                tries=$((tries - 1))
            done
            [ $tries -gt 0 ] || printf '@wait timed out\n'
            ;;
        "@often "*) yes "${line#@often }" | head -1000 ;;
        *) printf '%s\n' "$line" ;;
        esac
    done <"$name.in"
}

input=$name.in
if grep -aq "^@wait " "$name.in"; then
    input=$folder/input
    mkfifo "$input" || exit 1
    type_lines >"$input" &
fi

preload='LD_PRELOAD=$ORIGIN/libkova-sim.so' # $ORIGIN is the console's folder
[ $# -eq 0 ] || preload="QEMU_SET_ENV=$preload" # for the emulated program, not for the emulator
exec <"$input"
([ -n "${NO_BOARD:-}" ] || export "$preload" && exec "$@" "$console" ${ARGUMENTS:-}) >"$shown" 2>&1
status=$?
cat >>"$shown"
echo "[exit status $status]" >>"$shown"

actual=$shown
if [ -f "$name.keep" ]; then
    actual=$folder/kept
    # The prompt is left out, since another thread can print text behind the prompt. Journal lines and the exit status
    # get lines of their own.
    sed -e 's/Please Input Command : //' -e 's/ *[0-9]*\.[0-9]\{6\} [kh][a-z0-9]* [rw] /\
&/' -e 's/\[exit status/\
&/' "$shown" | grep -aE "$(cat "$name.keep")|^\[exit status|Sanitizer:" >"$actual"
    [ -f "$name.awk" ] && mv "$actual" "$shown" && awk -f "$name.awk" "$shown" >"$actual"
fi
if [ -n "${UPDATE_SESSIONS:-}" ]; then
    cp "$actual" "$name.out"
else
    diff -au "$name.out" "$actual"
fi
