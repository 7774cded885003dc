#!/usr/bin/env bash
# Runs a command on a virtual X display with a window manager, and ends both when the command has ended,
# however it ended.
set -uo pipefail

if [[ $# -eq 0 || $1 == -h || $1 == --help ]]; then
    cat <<TEXT
Usage: tools/setup/with-display.sh COMMAND [ARGUMENT ...]

Runs COMMAND with DISPLAY naming a new virtual display (1024 x 768, 24 bits, or what QXTERM_SCREEN says:
WIDTHxHEIGHTxDEPTH) on which openbox manages the windows. Exits with the status of COMMAND.
TEXT
    [[ $# -gt 0 ]] && exit 0 || exit 2
fi

screen=${QXTERM_SCREEN:-1024x768x24}
scratch=$(mktemp -d)
server=
manager=
child=

clean_up() {
    trap - EXIT
    for process in "$child" "$manager" "$server"; do
        [[ -n $process ]] && kill "$process" 2>/dev/null && wait "$process" 2>/dev/null
    done
    rm -rf "$scratch"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# The server chooses a free display number and writes it down once it listens. The death signal ends it even
# when this script is killed outright.
: >"$scratch/display"
setpriv --pdeathsig TERM Xvfb -displayfd 3 -screen 0 "$screen" -nolisten tcp -noreset \
    3>"$scratch/display" >"$scratch/log" 2>&1 &
server=$!
for ((tries = 0; tries < 200; tries++)); do
    [[ -s $scratch/display ]] && break
    kill -0 "$server" 2>/dev/null || break
    sleep 0.05
done
if [[ ! -s $scratch/display ]]; then
    echo "with-display.sh: the virtual display did not start:" >&2
    cat "$scratch/log" >&2
    exit 1
fi
DISPLAY=:$(tr -d '[:space:]' <"$scratch/display")
export DISPLAY
unset WAYLAND_DISPLAY XAUTHORITY

# Without a window manager there are no captions, and windows are not activated as on a desktop. --sm-disable
# and the empty configuration folder keep it from the person's own settings.
XDG_CONFIG_HOME=$scratch setpriv --pdeathsig TERM openbox --sm-disable >"$scratch/openbox.log" 2>&1 &
manager=$!
# It is ready when it has put its name on the root window.
for ((tries = 0; tries < 100; tries++)); do
    xdotool get_desktop >/dev/null 2>&1 && break
    sleep 0.05
done

# In the background, so that a signal to this script is answered at once, with standard input all the same.
"$@" <&0 &
child=$!
wait "$child"
status=$?
child=
exit "$status"
