# Transfers in short: "4a2:0104 0000" for two registers in a row, "u" for a local register update, seconds in brackets
# where the console paused or transfers are left out.
function number(hex,    i, n) {
    for (i = 1; i <= length(hex); ++i) { n = n * 16 + index("0123456789abcdef", substr(hex, i, 1)) - 1 }
    return n
}
function flush() {
    if (line != "") { print line }
    line = ""
}
/^ *[0-9.]+ [kh]/ {
    gap = $1 - time > 0.05 ? sprintf("(%.2f) ", $1 - time) : ""
    time = $1
    kind = $2 " " $3
    word = gap ($4 == "04c4" ? "u" : (number($4) == next_ && gap == "" && kind == last ? "" : $4 ":") $5)
    next_ = number($4) + 1
    if (kind != last || length(line) > 105) {
        flush()
        line = kind
        word = gap ($4 == "04c4" ? "u" : $4 ":" $5)
    }
    last = kind
    line = line " " word
    next
}
{ flush(); last = ""; print }
END { flush() }
