#!/bin/sh
# Keeps docs/registers.md true: its values after init are the board's, its names, fields and functions the code's.
#
# usage: check-registers.sh TOP PROGRAM [EMULATOR...]
# TOP: the folder of docs and code; PROGRAM: the console, with the simulated board beside it
set -u
cd "$1" || exit 1
console=$2
shift 2
emulator=$*
preload='LD_PRELOAD=$ORIGIN/libkova-sim.so' # $ORIGIN: the console's folder
[ $# -eq 0 ] || preload="QEMU_SET_ENV=$preload"
unset KOVA_SIM_EDID KOVA_SIM_SCRIPT
folder=$(mktemp -d) || exit 1
trap 'rm -rf "$folder"' EXIT

# ---- Values ----

# What init writes last to each register when those of the video processor all hold a value: "ones_kova_2e=0x0010".
after_init() {
    awk -v held="$2" 'BEGIN { for (a = 16; a < 1536; ++a) printf "w kova %x %s\n", a, held; print "init" }' |
        (export "$preload" KOVA_SIM_SPEED=1000 KOVA_SIM_JOURNAL=- && exec $emulator "$console") 2>&1 |
        sed -n '/\[init\]/,$ s/.* \(kova\|hdmi.\) w 0*\([^ ]\{1,\}\) \([^ ]*\)$/'"$1"'_\1_\2=0x\3/p'
}
after_init zeros 0 >"$folder/zeros"
after_init ones ffff >"$folder/ones"
. "$folder/zeros"
. "$folder/ones"

# The map's rows, "| 0x422..0x425 | 15..12 | names | meaning | functions | value |", after a line that names the chip.
# The bits that come out alike, whether all were 0 or 1 before, are those that init writes.
sed -n 's/^## .*`\(.*\)`$/\1/p; /^| 0x/p' docs/registers.md >"$folder/rows"
: >"$folder/fields"
while IFS='|' read -r start address bits _ _ _ value; do
    [ -n "$address" ] || { chip=$start && continue; }
    case $chip$bits in "kova all ") bits=15..0 ;; *" all ") bits=7..0 ;; esac
    register=$((${address%%..*})) low=$((${bits##*..})) width=$((${bits%%..*} - ${bits##*..} + 1)) after=
    printf '{0x%03X,%d,%d}\n' $register $low $width >>"$folder/fields"
    mask=$(((1 << width) - 1)) digits=%0$(((width + 3) / 4))X
    while [ $register -le $((${address##*..})) ]; do
        eval "$(printf 'zeros=${zeros_%s_%x-0} ones=${ones_%s_%x-0xFFFF}' "$chip" $register "$chip" $register)"
        held=$((zeros >> low & mask)) written=$((~(zeros ^ ones) >> low & mask))
        case $written in
        0) after="$after -" ;;
        $mask) after="$after $(printf "$digits" $held)" ;;
        *) after="$after $(printf "$digits/$digits" $held $written)" ;;
        esac
        register=$((register + 1))
    done
    case $after in *[!\ -]*) ;; *) after=" -" ;; esac
    [ "$value" = "$after " ] || echo "$chip$address$bits: after init$after, not$value"
done <"$folder/rows" >"$folder/wrong"

# ---- Names, functions without their prefix, and fields: a field that no test reaches shows here ----

lacks() { # NAME LIST: the words on standard input that are not in the list
    grep -vxF -f "$folder/$2" | sed "s/^/not in the $1: /" >>"$folder/wrong"
}
cat kova/*.h hdmitx/*.h >"$folder/headers"
cat "$folder/headers" kova/*.cpp hdmitx/*.cpp edid/MDDC.cpp >"$folder/code"
tr -cs '[:alnum:]_:' '\n' <"$folder/code" | sed 's/^KOVAAPI_//' >"$folder/words"
cut -d '|' -f 4,6 "$folder/rows" | grep -o '`[^`]*`' | tr -d '`' | lacks code words
grep -o '`[^` ]*`' docs/registers.md | tr -d '`' >"$folder/map"
sed -n 's/^\(std::uint\|void\)[^(]* \([^ (]*\)(.*/\2/p' "$folder/headers" | sed 's/^KOVAAPI_//' | lacks map map
tr -d ' \n' <"$folder/code" | grep -o '{0x[^,]\{3\},[^}]*}' | lacks map fields
! grep . "$folder/wrong"
