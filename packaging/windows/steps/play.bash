# Sourced by packaging/windows/try: the steps that start and play the installed program.

# shortcut NAME [ARGUMENT]...: opens a shortcut like a double click.
shortcut() {
    local name=$1
    shift
    run_quietly start /unix "$(menu_folder)/$name.lnk" "$@"
}

# close_message: confirms the message about the missing library.
close_message() {
    local box
    box=$(stage_window "BEYOND DLL Not Found")
    xdotool windowfocus --sync "$box" key Return
    await_end
}

step_missing_host() {
    say "Without a host's library the game shows a message and exits"
    after install
    shortcut "Laser Rallyvane"
    stage_window "BEYOND DLL Not Found" >/dev/null
    picture missing-host
    expect "There is no log in the program's folder." test -s "$home/rallyvane.log"
    close_message
}

# Windows programs without stderr log to their debugger.
step_debugger() {
    say "The debug log reaches a debugger"
    after install
    stage_start debugger env -u WINEQT_FORCE_STDERR_LOGGING \
        wine "$output/bin/listen.exe" "$(windows_path "$home/rallyvane.exe")"
    close_message
    stage_until 60 grep -q "DLL Not found" "$stage/debugger.out" \
        || stage_fail "The debugger received nothing."
}

# start_rehearsal RECORDING: starts both programs; the game gets the keyboard focus.
start_rehearsal() {
    rm -f "$home/rallyvane.log" "$stage/$1.rec"
    ln -sf "$home/rallyvane.log" "$stage/rallyvane.log"
    shortcut "Rehearse without a laser" --record "$(windows_path "$stage/$1.rec")"
    local host game
    host=$(stage_window "Rehearsal host")
    game=$(stage_window "Laser Rallyvane")
    stage_until 60 stage_logged "] 1700" || stage_fail "The game did not find the rehearsal host."
    xdotool windowmove --sync "$host" 0 480 windowmove --sync "$game" 0 0
    # Wine sends keys to the window that was clicked last. There is no control in that corner.
    xdotool mousemove --window "$game" 2 2 click 1
    sleep 0.3
}

# close_game: closes the game like Alt+F4.
close_game() {
    xdotool key alt+F4
    await_end
}

# dump RECORDING: prints it as text. The rehearsal host uses the game's libraries.
dump() {
    WINEPATH=$(windows_path "$home") stage_dump "$(windows_path "$stage/$1.rec")" \
        wine "$home/rehearsal/rehearsalhost.exe" | tr -d '\r'
}

# frame_points RECORDING: prints the number of points of each frame.
frame_points() {
    dump "$1" | awk '$1 == "frame" { print $4 }'
}

# lit_frames RECORDING: whether some frame had points.
lit_frames() {
    frame_points "$1" | awk '$1 > 0 { lit = 1 } END { exit !lit }'
}

# tick RECORDING: prints the median tick in ms: a third of the interval between lit frames.
tick() {
    dump "$1" | awk '$1 == "frame" && $4 > 0 { if (last) print ($2 - last) / 3; last = $2 }' \
        | sort -n | awk '{ all[NR] = $1 } END { printf "%.2f", all[int((NR + 1) / 2)] }'
}

# If the host cannot start, the user sees the reason, and the game is not started.
step_refusal() {
    say "If the host cannot start, the rehearsal says so and does not start the game"
    after install
    shortcut "Rehearse without a laser" --zones 99
    local box
    box=$(stage_window "^Rehearsal$")
    picture refusal
    expect "The game was started without its host." \
        test -z "$(xdotool search --onlyvisible --name "Laser Rallyvane" 2>/dev/null || true)"
    xdotool windowfocus --sync "$box" key Return
    await_end
}

step_keys() {
    say "Keys are learnt, and a point is played with them"
    after install
    rm -f "$home/.pong"
    start_rehearsal keys
    picture idle
    stage_show_game
    stage_learn_keys
    stage_play_point picture keys
    close_game
    echo "  median tick: $(tick keys) ms"
}

# devices_send LINE...: makes the fake winmm and XInput libraries play script lines.
devices_send() {
    local line
    for line in "$@"; do
        echo "$line" >>"$RALLYVANE_SCRIPT"
        sleep 0.15
    done
}

setting() {
    sed -n "s/^$1=//p" "$home/.pong" | tr -d '\r'
}

# expect_learnt SETTING VALUE CONTROL
expect_learnt() {
    stage_until 60 has_setting "$1" "$2" || stage_fail "$3 was not learnt."
}

has_setting() {
    [ "$(setting "$1")" = "$2" ]
}

learn_devices() {
    stage_keys Tab Tab Tab Tab space Tab Down       # zone, speed, reset, left: MIDI, its device
    stage_keys Tab Tab space                        # start, move
    devices_send "midi 0 B0 7 40" "midi 0 B0 7 41"
    expect_learnt CC_01 7 "The MIDI fader"
    stage_keys shift+Tab space                      # start
    devices_send "midi 0 90 3C 7F"
    expect_learnt Start_01 60 "The MIDI key"
    stage_keys Tab Tab Tab Tab Down Tab Down        # move, sensitivity, bits, right: XBox, its pad
    stage_keys Tab Tab space                        # start, move
    devices_send "pad 0 0 7FFF 0 0" "pad 0 0 0 0 0"
    expect_learnt XMoveR 1 "The pad's left stick, up and down,"
    stage_keys shift+Tab space                      # start
    devices_send "pad 2000 0 0 0 0" "pad 0 0 0 0 0"
    expect_learnt XStartR 1 "The pad's button B"
}

step_devices() {
    say "A MIDI device and a gamepad are learnt through the system's API, and a point is played"
    after install
    export RALLYVANE_SCRIPT=$stage/script
    rm -f "$home/.pong" "$RALLYVANE_SCRIPT.calls"
    : >"$RALLYVANE_SCRIPT"
    cp "$output"/standins/{winmm,xinput9_1_0}.dll "$home/rehearsal"
    WINEDLLOVERRIDES="$WINEDLLOVERRIDES;winmm,xinput9_1_0=n,b" start_rehearsal devices
    stage_show_game
    learn_devices
    picture learnt-devices
    devices_send "midi 0 90 3C 7F" "midi 0 B0 7 7F" # leave the score display, paddle up
    sleep 1.6
    devices_send "midi 0 B0 7 40" "midi 0 90 3C 7F" # stop the paddle, serve
    sleep 0.6
    picture devices
    stage_until 60 stage_logged "Score LR = 1-0" || stage_fail "No point was scored with devices."
    expect "MIDI was not opened through winmm." grep -qx "midiInOpen 0" "$RALLYVANE_SCRIPT.calls"
    expect "The pads were not read through XInput." \
        grep -qx "XInputGetState 0" "$RALLYVANE_SCRIPT.calls"
    close_game
    expect "MIDI was not closed." grep -qx "midiInClose" "$RALLYVANE_SCRIPT.calls"
    rm "$home"/rehearsal/{winmm,xinput9_1_0}.dll
    unset RALLYVANE_SCRIPT
    echo "  median tick: $(tick devices) ms"
}
