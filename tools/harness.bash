# Sourced by scripts that rehearse unattended: an X server, both programs on it, real key presses.

stage_processes=()

# stage_end: ends every process started here, the newest first.
stage_end() {
    local i
    for ((i = ${#stage_processes[@]} - 1; i >= 0; --i)); do
        kill "${stage_processes[i]}" 2>/dev/null || continue
        # Ignore its status: a failure here would leave the others running.
        wait "${stage_processes[i]}" 2>/dev/null || true
    done
    stage_processes=()
}

# stage_end_last: ends the process that was started last.
stage_end_last() {
    kill "${stage_processes[-1]}"
    wait "${stage_processes[-1]}" 2>/dev/null || true
    unset 'stage_processes[-1]'
}

# stage_fail MESSAGE: prints why the rehearsal failed and the programs' output, and exits.
stage_fail() {
    echo "Failed: $1" >&2
    local file
    for file in "$stage"/*.log "$stage"/*.out; do
        [ -s "$file" ] && { echo "--- $(basename "$file")"; tail -n 20 "$file"; } >&2
    done
    exit 1
}

# stage_start NAME COMMAND...: starts a process in the folder $stage, with its output in NAME.out, and
# sets $stage_started to its process ID.
stage_start() {
    local name=$1
    shift
    (cd "$stage" && exec "$@") >>"$stage/$name.out" 2>&1 </dev/null &
    stage_started=$!
    stage_processes+=("$stage_started")
}

# stage_until SECONDS COMMAND...: waits until a command succeeds; fails after that time.
stage_until() {
    local tries=$(($1 * 20))
    shift
    while ! "$@" >/dev/null 2>&1; do
        ((tries-- > 0)) || return 1
        sleep 0.05
    done
}

# stage_until_running PROCESS FILE: waits until a rehearsal host reports in FILE that it is running;
# fails if it exits first, or after a minute.
stage_until_running() {
    local tries=1200
    until grep -q '^The rehearsal host is running' "$2" 2>/dev/null; do
        kill -0 "$1" 2>/dev/null && ((tries-- > 0)) || return 1
        sleep 0.05
    done
}

# stage_screen: starts an X server on a free display. It must not reset when its last client
# disconnects, because a client that connects at that moment would be refused.
stage_screen() {
    unset WAYLAND_DISPLAY
    export QT_QPA_PLATFORM=xcb
    : >"$stage/display"
    Xvfb -displayfd 3 -screen 0 1600x1200x24 -nolisten tcp -noreset 3>"$stage/display" \
        >"$stage/screen.out" 2>&1 </dev/null &
    stage_processes+=($!)
    stage_until 60 test -s "$stage/display" || stage_fail "The X server did not start."
    DISPLAY=:$(cat "$stage/display")
    export DISPLAY
}

# stage_window TITLE: waits for a window with that title and prints its ID. The search fails if some
# window closes meanwhile, and is repeated.
stage_window() {
    local tries=800 found
    until found=$(xdotool search --onlyvisible --name "$1" 2>/dev/null); do
        ((tries-- > 0)) || stage_fail "No window \"$1\" appeared."
        sleep 0.05
    done
    head -n 1 <<<"$found"
}

# stage_logged TEXT: whether the game has logged a text.
stage_logged() {
    grep -qF -- "$1" "$stage/rallyvane.log"
}

# stage_scores: prints the last score that the game logged.
stage_scores() {
    grep -o "Score LR = .*" "$stage/rallyvane.log" | tail -n 1
}

# stage_dump RECORDING HOST...: prints a recording, possibly still growing, as text. HOST is the
# command that starts the rehearsal host.
stage_dump() {
    "${@:2}" --open "$1" --dump 2>>"$stage/dump.out" || true
}

# stage_pace COUNT: prints the rate of the frames with COUNT points in a dump.
stage_pace() {
    awk -v count="$1" '
        $1 != "frame" { next }
        $4 == count && last { frames++; time += $2 - last }
        { last = ($4 == count) ? $2 : 0 }
        END { if (time) printf "%d points a frame, %.1f frames per second\n", count, 1000 * frames / time }
    '
}

# stage_keys KEY...: presses and releases keys, slowly enough for presses not to merge.
stage_keys() {
    local key
    for key in "$@"; do
        xdotool key "$key"
        sleep 0.15
    done
}

# stage_hold KEY SECONDS
stage_hold() {
    xdotool keydown "$1"
    sleep "$2"
    xdotool keyup "$1"
}

# stage_keyboard_settings: writes the game's settings in $stage, with both players on the keyboard:
# d, w, s and the arrow keys right, up, down to start and to move up and down.
stage_keyboard_settings() {
    cat >"$stage/.pong" <<'EOF'
[General]
ControlModeLeft=KEYBOARD
ControlModeRight=KEYBOARD
KeyboardStartL=68
KeyboardUpL=87
KeyboardDownL=83
KeyboardStartR=16777236
KeyboardUpR=16777235
KeyboardDownR=16777237
EOF
}

# stage_guide FOLDER: fails unless it has the operator's guide and every file that its pages refer to.
stage_guide() {
    local link
    [ -s "$1/operator-guide.html" ] || stage_fail "The operator's guide is missing."
    while read -r link; do
        [ -s "$1/$link" ] || stage_fail "The guide refers to $link, which is missing."
    done < <(sed -n 's/.*\(href\|src\)="\([^"#:]\+\).*/\2/p' "$1"/*.html | sort -u)
}

# stage_brightness PICTURE: prints its mean brightness, 0 to 65535.
stage_brightness() {
    convert "$1" -colorspace Gray -format '%[fx:round(mean*65535)]' info:
}
