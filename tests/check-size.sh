#!/bin/sh
# Fails when a program has more bytes of code and data than it may. With a second program, what it has more than that
# one.
#
# usage: check-size.sh READELF LIMIT PROGRAM [BASE]
size() {
    sum=0
    for bytes in $("$readelf" -lW "$1" | awk '$1 == "LOAD" { print $5 }'); do
        sum=$((sum + bytes))
    done
    [ $sum -gt 0 ] && echo $sum
}
readelf=$1
size=$(size "$3") && base=$([ $# -lt 4 ] && echo 0 || size "$4") || exit 1
echo "$((size - base)) bytes, at most $2"
[ $((size - base)) -le "$2" ]
