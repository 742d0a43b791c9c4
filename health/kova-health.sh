#!/bin/sh
# Checks a board link by link and names the first one that is broken: see kova-health(1). The links are in health.txt.
set -u

usage() {
    echo "usage: kova-health [--quick] [--hand] [--watch SECONDS] [--only LINK] [PROGRAM [ARGUMENT...]]"
    exit "$1"
}

cannot() {
    echo "kova-health: $*" >&2
    exit 2
}

share=1 hand=0 watch='' only=''
while [ $# -gt 0 ]; do
    case $1 in
    --quick) share=10 ;;
    --hand) hand=1 ;;
    --watch | --only)
        [ $# -gt 1 ] || usage 2
        case $1 in --watch) watch=$2 ;; *) only=$2 ;; esac
        shift
        ;;
    --help) usage 0 ;;
    -*) usage 2 ;;
    *) break ;;
    esac
    shift
done
case $share:$watch in
1:) watch=120 ;;
10:) watch=2 ;;
*:*[!0-9]*) usage 2 ;;
esac

here=$(dirname "$(readlink -f "$0")")
table=$here/../share/kova-console/health.txt
[ -f "$table" ] || table=$here/health.txt
[ -r "$table" ] || cannot "cannot read $table"
if [ $# -eq 0 ]; then
    set -- kova-console
    [ ! -x "$here/kova-console" ] || set -- "$here/kova-console"
fi
command -v "$1" >/dev/null || cannot "no program $1"
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
trap 'exit 2' HUP INT TERM
exec 3<&0 4>&1

# ---- From the table to the plan of one link ----
# The plan has one line for each line of the table that is typed or compared. A repeated line stands there once for each
# repetition. The fields are divided by "|": the line's number in the table; the number of "or" before the line; the
# command, or the kind of a line that is no command; the expected answer or the line's text.

plan='
function add(number, text, what) {
    if (text == "or") { ++way; return }
    if (text ~ /^ .*:/) { what = "hint" }
    else if (text ~ /^ /) { what = "registers" }
    else if (text ~ /^ask /) { what = "ask"; sub(/^ask /, "", text) }
    else if (match(text, / !?= /)) { what = substr(text, 1, RSTART - 1); text = substr(text, RSTART + 1) }
    else { what = text; text = "" }
    sub(/^ */, "", text)
    printf "%d|%d|%s|%s\n", number, way, what, text
}
{ sub(/ *$/, "") }
/^#/ || /^$/ { next }
/^(link|hand)/ { inside = $1 == "link" && substr($0, 6, index($0, " | ") - 6) == link; next }
!inside || /^(after|keep) / { next }
/^repeat / { times = int($2 / share); if (times < 1) { times = 1 } }
/^watch$/ { times = watch + 1 }
/^(repeat |watch$)/ { first = NR + 1; watched = $1 == "watch"; next }
/^end$/ {
    for (round = 1; round <= times; ++round) {
        if (watched && round > 1) { print NR "|" way + 0 "|wait|" }
        for (i = first; i < NR; ++i) { if (i in line) { add(i, line[i]) } }
    }
    first = 0
    next
}
first { line[NR] = $0; next }
{ add(NR, $0) }'

# ---- From the plan and the output of the console to what differs ----
# Exit status 0: good, 1: something differs, 3: requests failed.

compare='
# ---- Values ----

function number(hex, i, n) {
    for (i = 1; i <= length(hex); ++i) { n = n * 16 + index("0123456789abcdef", substr(hex, i, 1)) - 1 }
    return n + 0
}
function masked(value, mask, bit, n) {
    for (bit = 32768; bit >= 1; bit /= 2) {
        if (mask >= bit && value >= bit) { n += bit }
        mask %= bit
        value %= bit
    }
    return n + 0
}
# expected is VALUE, VALUE/MASK or FIRST..LAST, or the word "ok" for init.
function is(value, expected, part) {
    if (split(expected, part, "[.][.]") == 2) {
        return number(value) >= number(part[1]) && number(value) <= number(part[2])
    }
    if (split(expected, part, "/") == 2) {
        return masked(number(value), number(part[2])) == masked(number(part[1]), number(part[2]))
    }
    return expected == "ok" ? value == "ok" : number(value) == number(expected)
}

# ---- What differs ----

function note(text) { notes[++noteCount] = text }
# Keeps the text of the first difference of each table line, and counts all its differences.
function differs(text, at) {
    at = source[now]
    if (!(at in differences)) { firstDifference[at] = text; differing[++lines] = at }
    ++differences[at]
    isBad[way[now]] = 1
}

# The output of the command has ended.
function finish(target, expected, hex, other) {
    target = substr(typed[now], 3)
    if (typed[now] ~ /^w /) {
        hex = target
        sub(/.* /, "", hex)
        sub(/ [^ ]*$/, "", target)
        written[target] = hex
        unsure[target] = failed # after a failed write the register may still hold its old value
        return
    }
    if (typed[now] !~ /^r / && typed[now] != "init") { return }
    if (failed || value == "" || typed[now] ~ /^r / && unsure[target]) { return }
    expected = want[now]
    ++tries[source[now]]
    if (expected == "= steady") { ++count[source[now], value] }
    else if (expected == "= same" && value != last[target]) { reportRead(target, ", but before it was " last[target]) }
    else if (expected == "= own") {
        for (other in written) {
            if (other != target && is(value, written[other]) && !is(value, written[target])) {
                reportRead(target, ", which was written to " other)
            }
        }
    }
    else if (expected ~ /^= [^so]|^= ok/ && !is(value, substr(expected, 3))) {
        reportRead(target, ", but should be " substr(expected, 3))
    }
    else if (expected ~ /^!= / && is(value, substr(expected, 4))) { reportRead(target, ", which it must not be") }
    last[target] = value
}
function reportRead(target, text) {
    differs((target in written ? "w " target " " written[target] ", " : "") typed[now] ": " value text \
        hint[source[now], number(value)])
}

# Compares the dumps with a row of the table, "ADDRESS = VALUE ...", and joins wrong registers that follow each other.
function compareRegisters(row, word, words, i, address) {
    words = split(row, word, " ")
    for (i = 3; i <= words; ++i) {
        address = sprintf("%03x", number(word[1]) + i - 3)
        if (address in changed) {
            isBad[0] = 1
            note(address ": " dump[address] " and " changed[address] " in two dumps")
        }
        if (!is(dump[address], word[i])) {
            if (wrong++ == 0) { from = address; shown = "" }
            to = address
            if (wrong <= 4) { shown = shown " " address ": " dump[address] " should be " word[i] ";" }
        } else if (!is("0", word[i])) { # a dead register that reads 0 also passes where 0 is expected
            endRange(address)
            good = address
        }
    }
}
function endRange(next_) {
    if (wrong > 0) {
        isBad[0] = 1
        note(from " to " to ", " wrong " wrong:" shown (wrong > 4 ? " ...;" : "") " good next to them: " \
            (good == "" ? "none" : good) " and " next_)
    }
    wrong = 0
}

# Notes the values of a line that were read less often than its most frequent value.
function compareSteady(at, command, key, part, usual, others) {
    for (key in count) {
        split(key, part, SUBSEP)
        if (part[1] == at && (usual == "" || count[key] > count[at, usual])) { usual = part[2] }
    }
    if (usual == "" || count[at, usual] == tries[at]) { return }
    for (key in count) {
        split(key, part, SUBSEP)
        if (part[1] != at || part[2] == usual || length(others) > 60) { continue }
        others = others " " part[2] " (" count[key] ")"
    }
    note(command ": " usual " (" count[at, usual] "), but also" others)
    isBad[way[now]] = 1
}

# ---- The plan ----

BEGIN { FS = "|" }
NR == FNR && $3 == "hint" {
    sub(/: */, "|", $4)
    split($4, part, "|")
    hint[source[commands], number(part[1])] = ". " part[2]
}
NR == FNR && $3 == "registers" { registers[++rows] = $4 }
NR == FNR && $3 !~ /^(hint|registers|ask|wait)$/ {
    typed[++commands] = $3
    want[commands] = $4
    source[commands] = $1
    way[commands] = $2
}
NR == FNR { next }

# ---- The output ----

/Your Input Command = \[/ {
    if (now > 0) { finish() }
    ++now
    value = ""
    failed = 0
    kind = typed[now]
    sub(/ [^ ]*$/, "", kind)
    if (kind ~ /^w /) { sub(/ [^ ]*$/, "", kind) }
    ++made[kind]
}
/ error *$/ {
    ++errors[($0 ~ /[wW][rR][iI][tT][eE]/ ? "w " : "r ") ($0 ~ /SLV0/ ? "hdmi1" : $0 ~ /SLV1/ ? "hdmi2" : "kova")]
    requests = failed = 1
}
/ kova.addr=\(/ && typed[now] ~ /^[rw] / {
    address = $0
    sub(/.*addr=\(/, "", address)
    sub(/\).*/, "", address)
    split(typed[now], part, " ")
    if (number(address) != number(part[3])) {
        ++strange[kind]
        strangeAddress[kind] = address
        requests = failed = 1
    }
}
/^REG = / { value = substr($0, length($0) - (kind ~ /kova/ ? 4 : 2), kind ~ /kova/ ? 4 : 2) }
/^nID=/ && value == "" { value = $0 }
/^ok/ { value = "ok" }
/^\[0x/ { address = number(tolower(substr($0, 4, 3))); sub(/^[^\t]*/, "") }
/^\t/ { # words of a dump; the error line of a failed read splits the row
    words = split(substr($0, 2), part, "\t")
    for (i = 1; i <= words; ++i) {
        at = sprintf("%03x", address++)
        part[i] = tolower(substr(part[i], 1, 4))
        if (at in dump && dump[at] != part[i]) { changed[at] = part[i] } else { dump[at] = part[i] }
    }
}

# ---- The result ----

END {
    if (now > 0) { finish() }
    if (now < commands) {
        note("The console ended at \"" typed[now] "\", command " now + 0 " of " commands ".")
        for (i = 1; i <= commands; ++i) { isBad[way[i]] = 1 }
    }
    for (i = 1; i <= rows; ++i) { compareRegisters(registers[i]) }
    endRange("none")
    for (now = 1; now <= commands; ++now) {
        if (want[now] == "= steady" && !(source[now] in compared)) {
            compared[source[now]] = 1
            compareSteady(source[now], typed[now])
        }
    }
    for (i = 1; i <= lines; ++i) {
        at = differing[i]
        note(firstDifference[at] (tries[at] > 1 ? " (" differences[at] " of " tries[at] " times)" : ""))
    }
    broken = 1
    for (i = 1; i <= commands; ++i) { if (!(way[i] in isBad)) { broken = 0 } }
    for (i = 1; broken && i <= noteCount && i <= 6; ++i) { print "        " notes[i] }
    if (broken && noteCount > 6) { print "        and " noteCount - 6 " more differences" }
    split("r kova|w kova|r hdmi1|w hdmi1|r hdmi2|w hdmi2", part, "|")
    for (i = 1; requests && i <= 6; ++i) {
        kind = part[i]
        if (errors[kind] > 0 || link == "requests") {
            print "        " kind ": " errors[kind] + 0 (made[kind] >= errors[kind] + 0 ? " of " made[kind] : "") " requests failed"
        }
        if (strange[kind] > 0) {
            print "        " kind ": " strange[kind] " of " made[kind] " requests were answered for register " \
                strangeAddress[kind] ", which was not asked for: they did not reach the driver"
        }
    }
    exit requests ? 3 : broken
}'

# Types what the plan in $folder/plan says.
type_plan() {
    while IFS='|' read -r _ _ command want; do
        case $command in
        hint | registers) ;;
        ask)
            echo "        $want, then press Return." >&4
            read -r _ <&3 || : >"$folder/nobody"
            ;;
        wait) sleep 1 ;;
        *) printf '%s\n' "$command" ;;
        esac
    done <"$folder/plan"
}

# Reads the registers of the "keep" lines, which init does not restore. Prints the "w" commands that restore them.
read_restore() {
    sed -n 's/^keep /r /p' "$table" | "$@" 2>/dev/null | awk '
        /Input Command = \[r/ { sub(/.*\[r /, "w "); sub(/\]$/, ""); command = $0 }
        / error *$/ { command = "" }
        /^REG = / && command != "" { sub(/.*\[0x/, ""); sub(/\].*/, ""); print command, $0 }'
}

# Restores the "keep" registers, then runs init. Does neither without the ID, because init would read it 100000 times.
restore() {
    if echo 'r kova 4' | "$@" 2>/dev/null | grep -q 'ReadData=\[0x0083\]'; then
        (cat "$folder/restore" && echo init) | "$@" >/dev/null 2>&1
    fi
}

# ---- All links ----

awk -v hand=$hand -v only="$only" '
    function show() {
        if (name != "" && (name == only || only == "")) { print name "|" after }
        name = after = ""
    }
    /^hand$/ && only == "" && !hand { exit }
    /^after / { after = substr($0, 7) }
    /^link / { show(); name = substr($0, 6, index($0, " | ") - 6) }
    END { show() }' "$table" >"$folder/links"
[ -s "$folder/links" ] || cannot "no link \"$only\" in $table"

echo "kova-health writes registers and runs init: the picture is disturbed. No other console may run meanwhile."

node="program and node"
broken='' good='|'
printf 'q\n' | "$@" >"$folder/out" 2>&1
status=$?
case $status in 126 | 127) cannot "$(cat "$folder/out")" ;; esac
if grep -q 'driver open success' "$folder/out"; then
    echo "ok      $node"
    read_restore "$@" >"$folder/restore"
    trap 'restore "$@"; rm -rf "$folder"' EXIT
else
    echo "BROKEN  $node"
    tail -n 1 "$folder/out" | sed 's/^/        /'
    broken=$node
    : >"$folder/links"
fi

while IFS='|' read -r name after; do
    [ "$name" != "$node" ] || continue
    case $good:$only in
    *"|$after|"*:* | *:?*) ;;
    *) [ -z "$after" ] || { echo "left    $name: needs $after" && continue; } ;;
    esac
    awk -v link="$name" -v share=$share -v watch="$watch" "$plan" "$table" >"$folder/plan"
    type_plan | "$@" 2>/dev/null | awk -v link="$name" "$compare" "$folder/plan" - >"$folder/differs"
    status=$?
    [ ! -f "$folder/nobody" ] || cannot "nobody pressed Return"
    case $status in
    0)
        echo "ok      $name"
        good="$good$name|"
        continue
        ;;
    1) broken=${broken:-$name} ;;
    3) broken=requests ;;
    *) cannot "awk ended with $status" ;;
    esac
    echo "BROKEN  $name"
    cat "$folder/differs"
done <"$folder/links"

[ $hand = 1 ] || [ -n "$only" ] || sed -n '/^hand$/,$s/^link \(.*\) |.*/left    \1: needs --hand/p' "$table"
[ -n "$broken" ] || { echo "All links that were checked are good." && exit 0; }
[ "$broken" != "$only" ] || echo "Only this link and the link \"$node\" were checked."
echo "The first broken link: $broken"
sed -n "s/^link $broken | \(.*\)/Read on: bring-up.md, \"\1\"/p" "$table"
exit 1
