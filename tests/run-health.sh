#!/bin/sh
# Plants faults into the simulated board. Checks that kova-health names the broken link of health.txt for each fault.
#
# usage: run-health.sh TOP PROGRAM [EMULATOR...]
# TOP: the folder of health/; PROGRAM: the console, with the simulated board beside it
set -u
top=$1 CONSOLE=$2
shift 2
EMULATOR=$*
PRELOAD='LD_PRELOAD=$ORIGIN/libkova-sim.so' # $ORIGIN is the console's folder
[ $# -eq 0 ] || PRELOAD="QEMU_SET_ENV=$PRELOAD" # for the emulated program, not for the emulator
unset KOVA_SIM_EDID
. "$top/cmake/build.sh"
use_scratch
folder=$scratch
printf '#!/bin/sh\nexport "$PRELOAD"\nexec $EMULATOR "$CONSOLE"\n' >"$folder/board"
chmod +x "$folder/board"
head -c 128 /dev/zero >"$folder/zeros"
cd "$folder" || exit 1
export CONSOLE EMULATOR PRELOAD KOVA_SIM_SPEED KOVA_SIM_SCRIPT="$folder/script" KOVA_SIM_JOURNAL="$folder/journal"

# A row has four cells: the link that kova-health must name (empty: none), the argument of --only, the argument of
# --watch, and the lines of the board's script.
failed=0
while IFS='|' read -r link only watch script; do
    KOVA_SIM_SPEED=1000
    # With speed 0 only transfers of the video processor take time, 0.1 ms each. A small time in a script below
    # therefore means a number of such transfers.
    case $script in *"say end") KOVA_SIM_SPEED=0 ;; esac
    printf '%s\n' "$script" | tr ';' '\n' >"$folder/script"
    yes '' | sh "$top/health/kova-health.sh" --quick --watch "${watch:-0}" ${only:+--only} ${only:+"$only"} \
        "$folder/board" >"$folder/shown" 2>&1
    echo "status $?" >>"$folder/shown"
    case $link in
    "") printf 'All links that were checked are good.\nstatus 0\n' ;;
    *) sed -n "s/^link $link | \(.*\)/The first broken link: $link\nRead on: bring-up.md, \"\1\"\nstatus 1/p" "$top/health/health.txt" ;;
    esac >"$folder/wanted"
    tail -n "$(wc -l <"$folder/wanted")" "$folder/shown" | cmp -s "$folder/wanted" - && [ -s "$folder/wanted" ] && continue
    printf 'wrong verdict: kova-health should name the link "%s" with the script "%s", but it shows:\n' "${link:-none}" "$script"
    cat "$folder/shown"
    failed=1
done <<'END'
|||
register blocks|||0 fault kova w 480-4bf lost
registers after init|||0 fault kova rw 34 clear a
registers after init|||0 fault kova rw 4b0 clear ffff
DDC data port|||0 fault hdmi1 r f4 flip 8 every 30
late writes|||0 fault kova w all late
page hdmi2|||0 fault hdmi2 r all lost
page hdmi2|||0 fault hdmi2 rw all set-address 4
page hdmi1|||0 fault hdmi1 rw all clear-address 1
page hdmi2|||0 fault hdmi2 r all set ff;0 fault hdmi2 w all lost
page order|||0 fault hdmi1 rw all page hdmi2;0 fault hdmi2 rw all page hdmi1
requests|||0 fail every 55
requests|||0 fault hdmi2 w all lost every 60
requests|||0 fault hdmi1 r all kernel
DDC status|||0 fault hdmi1 r f2 set 20
address lines|||0 fault kova rw all clear-address 40
address lines|||0 fault kova rw all set-address 1
address lines|||0 fault kova rw all set-address 400
byte order|||0 fault kova rw all swap
hot plug||1|500 unplug;500 plug;1500 unplug;1500 plug;2500 unplug;2500 plug;3500 unplug;3500 plug
data lines|||0 fault kova rw all clear 80
video processor answers|||0 dead
video processor ID|||0 fault kova r 4 flip 10
page hdmi1|||0 fault hdmi1 w all lost
init|||0 fault hdmi1 rw 8 clear 1
interrupts at rest|||0 fault kova r 10 set 80
receiver sense|||0 receiver off
DDC transfers|||0 ddc 7
DDC data|||0 plug zeros
interrupts|interrupts||0 fault kova r 10 clear 80;0.00025 unplug;900 say end
|interrupts||0.00025 unplug;900 say end
|video input||
audio clock|audio clock||0 audio off
audio rate|audio rate||0 audio 44100
|audio rate||
END

# The last session on the board first restores the registers that init does not write. Then it runs init.
sed 's/ *[0-9.]* //' "$folder/journal" | tr '\n' ';' | grep -q '^kova w 000e 0000;kova w 0024 0000;.*hdmi2 r 1d 48;close;$' ||
    { echo 'the board is not left as init leaves it'; failed=1; }
exit $failed
