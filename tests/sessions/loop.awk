# Leaves out a transfer that is the same as the transfer before the last. While the EDID reads fail, the loop repeats
# two such writes every 32 passes.
/^ *[0-9.]+ [kh]/ {
    text = $2 $3 $4 $5
    if (text != before) { print }
    before = last
    last = text
    next
}
{ before = last = ""; print }
