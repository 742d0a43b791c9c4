#!/bin/sh
# Tests the guide. Runs the commands of its console blocks, and checks that the output contains what the blocks show.
#
# usage: run-guide.sh DOCS PROGRAM [EMULATOR...]
# DOCS: the folder of bring-up.md and messages.md; PROGRAM: the console, with the simulated board beside it
#
# In a console block, a line "$ COMMAND" is carried out by sh. There ./run is the console on the simulated board, and
# kova-console the console without it. For "Please Input Command : LINE" the test types LINE. After "kova-sim: TEXT" the
# test types nothing until the output contains that line. The output must contain all lines of the block, one directly
# after the other. "..." stands for any lines. Any lines may follow the end of a block. A command without lines below it
# must print nothing. The blocks leave out empty lines, the usage summary and the echo of what is typed. The source line
# number in "NAME[32](" is not compared.
set -u
docs=$1 CONSOLE=$2
shift 2
EMULATOR=$*
PRELOAD='LD_PRELOAD=$ORIGIN/libkova-sim.so' # $ORIGIN is the console's folder
[ $# -eq 0 ] || PRELOAD="QEMU_SET_ENV=$PRELOAD" # for the emulated program, not for the emulator
export CONSOLE EMULATOR PRELOAD
unset KOVA_SIM_EDID KOVA_SIM_SPEED KOVA_SIM_SCRIPT KOVA_SIM_JOURNAL

. "$(dirname "$0")/../cmake/build.sh"
use_scratch
folder=$scratch
mkdir "$folder/here" && ln -s "$docs" "$folder/here/docs" || exit 1
PATH=$folder:$PATH
printf '#!/bin/sh\n%s\n' 'export "$PRELOAD" KOVA_SIM_SPEED="${KOVA_SIM_SPEED-1000}"' 'exec $EMULATOR "$CONSOLE"' \
    >"$folder/here/run"
printf '#!/bin/sh\nexec $EMULATOR "$CONSOLE"\n' >"$folder/kova-console"
chmod +x "$folder/here/run" "$folder/kova-console"

type_lines() {
    while IFS= read -r line; do
        case $line in
        "Please Input Command : "*) printf '%s\n' "${line#*: }" ;;
        "kova-sim: "*)
            tries=600
            until grep -aqF "$line" "$folder/raw" || [ $((tries -= 1)) -lt 0 ]; do sleep 0.1; done
            ;;
        esac
    done <"$1"
}

squeeze() { sed 's/[[:blank:]]\{1,\}/ /g; s/^ //; s/ $//; s/\([[:alpha:]]\)\[[0-9]*\](/\1[](/; /^$/d'; }

# Most reports begin with a newline and have none at their end. The prompt has no newline. So other text may follow a
# report or a prompt on the same line.
as_shown() {
    tr -d '\r' |
        awk '{ gsub(/Please Input Command : /, ""); gsub(/Your Input Command = \[|kova-sim: /, "\n&"); print }' |
        sed -E 's/^Your Input Command = \[(.*)\]$/Please Input Command : \1/
                /^usage : r /d; /^        (w|d|mru|init|clstart|p|q) .*- /d' | squeeze
}

compare='NR == FNR { want = want $0 "\n"; next }
{ got = got $0 "\n" }
END {
    want = "\n" want
    got = "\n" got
    if (want == "\n" && got != want) { print "nothing"; exit 1 }
    while (gsub(/\n\.\.\.\n/, "\n\f\n", want)) {}
    count = split(want, run, "\f")
    for (i = 1; i <= count; ++i) {
        at = index(got, run[i])
        if (at == 0 || (i == 1 && at > 1)) { print run[i]; exit 1 }
        got = "\n" substr(got, at + length(run[i]))
    }
}'

cd "$docs" || exit 1
awk -v folder="$folder" '
    /^```/ { inside = $0 == "```console"; part = "" }
    inside && /^\$ / { part = sprintf("%s/%s:%05d", folder, FILENAME, FNR) }
    part != "" { print >part }' bring-up.md messages.md
failed=0 status=0
for part in "$folder"/*:*; do
    # The command sees the exit status of the block's command before it.
    { echo "(exit $status)" && sed -n '1s/^\$ //p' "$part"; } >"$folder/command"
    : >"$folder/raw"
    type_lines "$part" | (cd "$folder/here" && sh "$folder/command") >"$folder/raw" 2>&1
    status=$?
    as_shown <"$folder/raw" >"$folder/came"
    sed 1d "$part" | squeeze >"$folder/wanted"
    awk "$compare" "$folder/wanted" - <"$folder/came" >"$folder/missed" && continue
    failed=1
    printf '%s: %s\ndoes not show: %s\nbut:\n' "${part##*/}" "$(head -n 1 "$part")" "$(cat "$folder/missed")"
    head -100 "$folder/came"
done

# Every message that the sources print must be in messages.md.
(cd .. && awk '/printf\(|fputs\(|perror\(|return "/ { prints = 1 } prints; /;$/ { prints = 0 }' app/*.cpp kova/*.cpp hdmitx/*.cpp edid/*.cpp) |
    grep -o '"\([^"\\]\|\\.\)*"' | sed 's/^"//; s/"$//; s/\\[nrt]//g; s/^%s\(.*\)/\1`/; s/^ *//; s/ *$//' | grep '^[^0-9/].\{5\}' |
    while IFS= read -r message; do
        grep -qF -- "$message" messages.md || printf 'messages.md says nothing of: %s\n' "$message"
    done | { ! grep . || exit 1; } || failed=1
exit $failed
