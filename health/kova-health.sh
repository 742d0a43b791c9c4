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

share=1 hand=0 watch= only=
while [ $# -gt 0 ]; do
    case $1 in
    --quick) share=10 ;;
    --hand) hand=1 ;;
    --watch) [ $# -gt 1 ] && watch=$2 && shift || usage 2 ;;
    --only) [ $# -gt 1 ] && only=$2 && shift || usage 2 ;;
    --help) usage 0 ;;
    -*) usage 2 ;;
    *) break ;;
    esac
    shift
done
[ -n "$watch" ] || { [ $share -gt 1 ] && watch=2 || watch=120; }
case $watch in *[!0-9]*) usage 2 ;; esac

here=$(dirname "$(readlink -f "$0")")
table=$here/../share/kova-console/health.txt
[ -f "$table" ] || table=$here/health.txt
[ -r "$table" ] || cannot "cannot read $table"
if [ $# -eq 0 ]; then
    [ -x "$here/kova-console" ] && set -- "$here/kova-console" || set -- kova-console
fi
command -v "$1" >/dev/null || cannot "no program $1"
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
trap 'exit 2' HUP INT TERM
exec 3<&0 4>&1

# ---- From the table to the plan of one link ----
# A line each, with the fields divided by "|": its line in the table, the way (see "or"), what is typed, what must come.

plan='
function out(number) {
    text = line[number]
    if (text == "or") { ++way; return }
    if (text ~ /^ .*:/) { kind = "hint"; sub(/^ */, "", text) }
    else if (text ~ /^ /) { kind = "row"; sub(/^ */, "", text) }
    else if (text ~ /^ask /) { kind = "ask"; sub(/^ask /, "", text) }
    else if (match(text, / !?= /)) {
        kind = substr(text, 1, RSTART - 1)
        text = substr(text, RSTART + 1)
    } else { kind = text; text = "" }
    printf "%d|%d|%s|%s\n", number, way, kind, text
}
{ sub(/ *$/, "") }
/^#/ || /^$/ { next }
/^(link|hand)/ { inside = $0 ~ /^link / && substr($0, 6, index($0, " | ") - 6) == link; next }
!inside || /^(after|keep) / { next }
/^repeat / { times = int($2 / share) > 0 ? int($2 / share) : 1; first = NR + 1; seconds = 0; next }
/^watch$/ { times = watch + 1; first = NR + 1; seconds = 1; next }
/^end$/ {
    for (round = 1; round <= times; ++round) {
        if (seconds && round > 1) { print NR "|" way + 0 "|wait|" }
        for (i = first; i < NR; ++i) { if (i in line) { out(i) } }
    }
    first = 0
    next
}
{ line[NR] = $0 }
!first { out(NR) }'

# ---- From the plan and the output of the console to what differs ----
# The end is 0: good, 1: something differs, 3: requests failed.

compare='
function number(hex, i, n) {
    for (i = 1; i <= length(hex); ++i) { n = n * 16 + index("0123456789abcdef", substr(hex, i, 1)) - 1 }
    return n + 0
}
function masked(value, mask, bit, n) {
    value = number(value); mask = number(mask)
    for (bit = 32768; bit >= 1; bit /= 2) {
        if (mask >= bit && value >= bit) { n += bit }
        mask %= bit; value %= bit
    }
    return n + 0
}
function is(value, expected, part) {
    if (expected ~ /\.\./) {
        split(expected, part, /\.\./)
        return number(value) >= number(part[1]) && number(value) <= number(part[2])
    }
    if (expected ~ /\//) {
        split(expected, part, "/")
        return masked(value, part[2]) == masked(part[1], part[2])
    }
    return value == expected || (value ~ /^[0-9a-f]+$/ && expected ~ /^[0-9a-f]+$/ && number(value) == number(expected))
}
function differs(at, way, text) {
    if (!(at in bad)) { order[++kinds] = at; wayOf[at] = way; example[at] = text }
    ++bad[at]; isBad[way] = 1
}
# The command has ended.
function finish(what, expected, good, other, target, rest) {
    what = typed[now]; expected = want[now]; target = what; sub(/^[rw] /, "", target)
    if (what ~ /^w /) {
        split(target, word, " ")
        unsure[word[1] " " word[2]] = failed
        written[word[1] " " word[2]] = word[3]
        return
    }
    if (what == "init") { value = seen }
    if (what ~ /^r /) {
        if (value == "" || unsure[target]) { return }
        value = substr(value, what ~ /kova/ ? 1 : 3)
    }
    ++tries[source[now]]
    good = 1
    if (expected == "= steady") { ++count[source[now], value]; values[source[now]] = values[source[now]] " " value; good = 1 }
    else if (expected == "= same") { good = value == last[target]; expected = "= " last[target] ", as before" }
    else if (expected == "= own") {
        for (other in written) {
            if (other != target && is(value, written[other]) && !is(value, written[target])) {
                good = 0
                expected = "which was written to " other
            }
        }
    } else if (expected ~ /^= /) { good = is(value, substr(expected, 3)) }
    else if (expected ~ /^!= /) { good = !is(value, substr(expected, 4)) }
    last[target] = value
    if (!good) {
        sub(/^= /, "but should be ", expected)
        sub(/^!= .*/, "which it must not be", expected)
        differs(source[now], wayNow[now], (target in written ? "w " target " " written[target] ", " : "") what ": " value ", " expected hint[source[now], number(value)])
    }
}
function rowDiffers(row, address, address16, words, i, n, text, edge) {
    split(rowText[row], words, " ")
    address = number(words[1])
    for (i = 3; i in words; ++i) {
        address16 = sprintf("%03x", address + i - 3)
        if (address16 in changed) {
            differs("dump", 0, "")
            note(address16 ": " dump[address16] " and " changed[address16] " in two dumps")
        }
        good = is(dump[address16], words[i])
        if (!good) {
            differs("dump", 0, "")
            if (start == "") { start = address16; shown = ""; wrong = 0 }
            end = address16
            ++wrong
            if (wrong <= 4) { shown = shown " " address16 ": " dump[address16] " should be " words[i] ";" }
        } else if (masked(words[i], words[i] ~ /\// ? substr(words[i], 6) : "ffff")) { # a zero proves nothing
            closeRange(address16)
            lastGood = address16
        }
    }
}
function closeRange(next_) {
    if (start == "") { return }
    note(sprintf("%s to %s, %d wrong:%s%s good next to them: %s and %s", start, end, wrong, shown,
        wrong > 4 ? " ...;" : "", lastGood == "" ? "none" : lastGood, next_ == "" ? "none" : next_))
    start = ""
}
function note(text) { notes[++noteCount] = text }
BEGIN { FS = "|" }
NR == FNR {
    if ($3 == "hint") { value = $4; sub(/:.*/, "", value); sub(/^[^:]*: */, "", $4); hint[lastSource, number(value)] = ". " $4 }
    else if ($3 == "row") { rowText[++rows] = $4 }
    else if ($3 != "ask" && $3 != "wait") {
        typed[++commands] = $3; want[commands] = $4; source[commands] = lastSource = $1; wayNow[commands] = $2
        if ($2 > ways) { ways = $2 }
    }
    next
}
/Your Input Command = \[/ {
    if (now) { finish() }
    ++now; value = seen = ""; failed = 0
    if (typed[now] ~ /^[rw] /) { kind = substr(typed[now], 1, index(substr(typed[now], 3), " ") + 1); ++made[kind] }
    next
}
/ error *$/ {
    kind = tolower($0) ~ /write/ ? "w" : "r"
    kind = kind " " ($0 ~ /SLV0/ ? "hdmi1" : $0 ~ /SLV1/ ? "hdmi2" : "kova")
    ++errors[kind]; failed = 1
}
/ kova.addr=\(/ && typed[now] ~ /^[rw] hdmi/ {
    address = $0; sub(/.*addr=\(/, "", address); sub(/\).*/, "", address)
    split(typed[now], word, " ")
    if (number(address) != number(word[3])) { ++stray[kind]; straySeen[kind] = address; failed = 1 }
}
/^REG = / && !failed { value = $0; sub(/.*\[0x/, "", value); sub(/\].*/, "", value) }
/^ok/ { seen = "ok" }
/^nID=/ && seen == "" { seen = $0; sub(/ *$/, "", seen) }
/^\[0x/ { row = number(tolower(substr($0, 4, 3))); sub(/^[^\t]*/, "") }
/^\t/ { # the rest of a row, too, behind the error of a read
    words = split(substr($0, 2), word, "\t")
    for (i = 1; i <= words; ++i) {
        at = sprintf("%03x", row++)
        value = tolower(substr(word[i], 1, 4))
        if (at in dump && dump[at] != value) { changed[at] = value } else { dump[at] = value }
    }
}
END {
    if (now) { finish() }
    if (now < commands) { note("the console ended at command " now " of " commands ": " typed[now]); isBad[0] = isBad[ways + 0] = 1 }
    for (i = 1; i <= rows; ++i) { rowDiffers(i) }
    closeRange("")
    for (i = 1; i <= commands; ++i) {
        at = source[i]
        if (want[i] != "= steady" || at in done) { continue }
        done[at] = 1; most = 0; usual = ""
        for (key in count) {
            split(key, word, SUBSEP)
            if (word[1] == at && count[key] > most) { most = count[key]; usual = word[2] }
        }
        if (most < tries[at]) {
            others = ""
            for (key in count) {
                split(key, word, SUBSEP)
                if (word[1] == at && word[2] != usual && length(others) < 60) { others = others " " word[2] " (" count[key] ")" }
            }
            note(typed[i] ": " usual " (" most "), but also" others)
            isBad[wayNow[i]] = 1
        }
    }
    for (i = 1; i <= kinds; ++i) {
        at = order[i]
        if (at == "dump") { continue }
        note(example[at] (tries[at] > 1 ? " (" bad[at] " of " tries[at] " times)" : ""))
    }
    broken = 1
    for (i = 0; i <= ways + 0; ++i) { if (!(i in isBad)) { broken = 0 } }
    for (i = 1; broken && i <= noteCount; ++i) {
        if (i > 6) { print "        and " noteCount - 6 " more"; break }
        print "        " notes[i]
    }
    for (kind in errors) { requests = 1 }
    for (kind in stray) { requests = 1 }
    split("r kova,w kova,r hdmi1,w hdmi1,r hdmi2,w hdmi2", all, ",")
    for (i = 1; requests && i <= 6; ++i) {
        kind = all[i]
        if (errors[kind] || link == "requests") {
            print "        " kind ": " errors[kind] + 0 (made[kind] ? " of " made[kind] : "") " requests failed"
        }
        if (stray[kind]) {
            print "        " kind ": " stray[kind] " of " made[kind] " requests were answered with register " straySeen[kind] \
                ": they did not reach the driver"
        }
    }
    exit requests ? 3 : broken
}'

# Types what the plan in $folder/plan says.
type_plan() {
    while IFS='|' read -r number way command want; do
        case $command in
        hint | row) ;;
        ask)
            echo "        $want, then press Return." >&4
            read -r answer <&3 || : >"$folder/nobody"
            ;;
        wait) sleep 1 ;;
        *) printf '%s\n' "$command" ;;
        esac
    done <"$folder/plan"
}

# ---- All links ----

echo "kova-health writes registers and runs init: the picture is disturbed. No other console may run meanwhile."

broken=
fail() { [ -n "$broken" ] || broken=$1; }

printf 'q\n' | "$@" >"$folder/out" 2>&1
status=$?
[ $status -ne 126 ] && [ $status -ne 127 ] || cannot "$(cat "$folder/out")"
if grep -q 'driver open success' "$folder/out"; then
    echo "ok      program and node"
else
    echo "BROKEN  program and node"
    tail -n 1 "$folder/out" | sed 's/^/        /'
    broken="program and node"
fi

awk -v hand=$hand -v only="$only" '
    /^hand/ { behind = 1 }
    /^after / { sub(/^after /, ""); after = $0 }
    function show() { if (name != "" && name != "program and node" && (only == name || only == "" && (hand || !byHand))) { print name "|" after } }
    /^link / { show(); name = substr($0, 6, index($0, " | ") - 6); after = ""; byHand = behind }
    END { show() }' "$table" >"$folder/links"
[ -s "$folder/links" ] || cannot "no link \"$only\" in $table"

# What init does not restore, as commands that write it back.
restore() {
    sed -n 's/^keep /r /p' "$table" | "$@" 2>/dev/null | awk '
        /Input Command = \[r/ { sub(/.*\[r /, "w "); sub(/\]$/, ""); command = $0 }
        / error *$/ { command = "" }
        /^REG = / && command != "" { sub(/.*\[0x/, ""); sub(/\].*/, ""); print command, $0 }'
}
restore "$@" >"$folder/restore"

good="|"
while [ "$broken" != "program and node" ] && IFS='|' read -r name after; do
    case $good in
    *"|$after|"*) ;;
    *) [ -n "$only" ] || [ -z "$after" ] || { echo "left    $name: needs $after" && continue; } ;;
    esac
    awk -v link="$name" -v share=$share -v watch="$watch" "$plan" "$table" >"$folder/plan"
    type_plan | "$@" 2>/dev/null | awk -v link="$name" "$compare" "$folder/plan" - >"$folder/differs"
    status=$?
    [ ! -f "$folder/nobody" ] || cannot "nobody pressed Return"
    case $status in
    0) echo "ok      $name" && good="$good$name|" ;;
    1 | 3) echo "BROKEN  $name" && cat "$folder/differs" ;;
    *) cannot "awk ended with $status" ;;
    esac
    case $status in
    1) fail "$name" ;;
    3) broken=requests ;;
    esac
done <"$folder/links"

# Leave the board as init leaves it. Without the ID init would wait for 100000 reads.
if echo 'r kova 4' | "$@" 2>/dev/null | grep -q 'ReadData=\[0x0083\]'; then
    (cat "$folder/restore" && echo init) | "$@" >/dev/null 2>&1
fi

[ -n "$broken" ] || { echo "All links are good." && exit 0; }
echo "The first broken link: $broken"
sed -n "s/^link $broken | \(.*\)/Read on: bring-up.md, \"\1\"/p" "$table"
exit 1
