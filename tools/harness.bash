# Sourced by what rehearses without a person: an X server, the two programs on it, real keys.

stage_processes=()

# stage_end: ends every process that was started here, the youngest first.
stage_end() {
    local i
    for ((i = ${#stage_processes[@]} - 1; i >= 0; --i)); do
        kill "${stage_processes[i]}" 2>/dev/null || continue
        # However it ends: a failure here would leave the others running.
        wait "${stage_processes[i]}" 2>/dev/null || true
    done
    stage_processes=()
}

# stage_fail MESSAGE: says why the rehearsal failed, with what the programs said, and ends it.
stage_fail() {
    echo "Failed: $1" >&2
    local file
    for file in "$stage"/*.log "$stage"/*.out; do
        [ -s "$file" ] && { echo "--- $(basename "$file")"; tail -n 20 "$file"; } >&2
    done
    exit 1
}

# stage_start NAME COMMAND...: starts a process in the stage's folder; what it says goes to NAME.out.
# Its number is in $stage_started afterwards.
stage_start() {
    local name=$1
    shift
    (cd "$stage" && exec "$@") >>"$stage/$name.out" 2>&1 </dev/null &
    stage_started=$!
    stage_processes+=("$stage_started")
}

# stage_until SECONDS COMMAND...: waits until a command succeeds; fails when it never does.
stage_until() {
    local tries=$(($1 * 20))
    shift
    while ! "$@" >/dev/null 2>&1; do
        ((tries-- > 0)) || return 1
        sleep 0.05
    done
}

# stage_until_running PROCESS FILE: waits until a rehearsal host says in FILE that it is running;
# fails when it ends before or does not get that far within a minute.
stage_until_running() {
    local tries=1200
    until grep -q '^The rehearsal host is running' "$2" 2>/dev/null; do
        kill -0 "$1" 2>/dev/null && ((tries-- > 0)) || return 1
        sleep 0.05
    done
}

# stage_screen: an X server of our own, on whatever display is free. It does not reset itself when a
# client leaves as the last one: whoever came just then would be turned away.
stage_screen() {
    unset WAYLAND_DISPLAY
    export QT_QPA_PLATFORM=xcb
    : >"$stage/display"
    Xvfb -displayfd 3 -screen 0 1600x1200x24 -nolisten tcp -noreset 3>"$stage/display" \
        >"$stage/screen.out" 2>&1 </dev/null &
    stage_processes+=($!)
    stage_until 20 test -s "$stage/display" || stage_fail "The X server did not start."
    DISPLAY=:$(cat "$stage/display")
    export DISPLAY
}

# stage_window TITLE: the number of the window with that title, once there is one. A look fails when
# some window goes just then, and is repeated.
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

# stage_scores: the score that the game logged last.
stage_scores() {
    grep -o "Score LR = .*" "$stage/rallyvane.log" | tail -n 1
}

# stage_dump RECORDING HOST...: a recording as text, which may still grow. HOST is the command that
# starts the rehearsal host.
stage_dump() {
    "${@:2}" --open "$1" --dump 2>>"$stage/dump.out" || true
}

# stage_pace COUNT: how fast the frames of COUNT points followed each other in a dump.
stage_pace() {
    awk -v count="$1" '
        $1 != "frame" { next }
        $4 == count && last { frames++; time += $2 - last }
        { last = ($4 == count) ? $2 : 0 }
        END { if (time) printf "%d points a frame, %.1f frames per second\n", count, 1000 * frames / time }
    '
}

# stage_keys KEY...: presses and releases real keys, slowly enough for two presses to be two.
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

# stage_keyboard_settings: settings of a game in the stage's folder in which both players use the
# keyboard: d, w, s and the arrow keys right, up, down to start and to move up and down.
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

# stage_brightness PICTURE: its mean brightness, 0 to 65535.
stage_brightness() {
    convert "$1" -colorspace Gray -format '%[fx:round(mean*65535)]' info:
}
