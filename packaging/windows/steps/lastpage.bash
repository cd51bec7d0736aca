# Sourced by packaging/windows/try: the step of the installer's last page.

# setup_shows TEXT: whether the setup's window shows a line with that text.
setup_shows() {
    wine "$output/bin/controls.exe" "Laser Rallyvane Setup" >"$stage/page.out" 2>/dev/null
    tr -d '\r' <"$stage/page.out" | grep -qF -- "$1"
}

# go_through_setup: confirms the folder and waits for the last page.
go_through_setup() {
    local setup
    setup=$(stage_window "^Laser Rallyvane Setup")
    stage_until 60 setup_shows "Destination Folder" || stage_fail "Setup does not ask for its folder."
    xdotool windowfocus --sync "$setup" key Return
    stage_until 60 setup_shows "The game needs BEYOND's library" || stage_fail "Setup did not finish."
}

# expect_page TEXT...: the last page shows these texts.
expect_page() {
    local text
    for text in "$@"; do
        setup_shows "$text" || stage_fail "The last page does not show \"$text\"."
    done
}

# press KEY...: in the setup's window.
press() {
    xdotool windowfocus --sync "$(stage_window "^Laser Rallyvane Setup")" key "$@"
}

setup_ended() {
    ! xdotool search --onlyvisible --name "^Laser Rallyvane Setup" >/dev/null 2>&1
}

# close_started_game: closes the game by a message, because Wine may send keys to another window yet.
close_started_game() {
    wine taskkill /im rallyvane.exe >>"$stage/wine.out" 2>&1 || true
    await_end
}

without_library() {
    stage_start setup wine "$installer"
    go_through_setup
    picture last-page-without-library
    expect_page "It was not found" "[ ] Start Laser Rallyvane" "[x] Rehearse without a laser"
    press Return
    stage_window "Rehearsal host" >/dev/null
    stage_window "^Laser Rallyvane - " >/dev/null
    stage_until 60 stage_logged "] 1700" || stage_fail "The rehearsal did not begin."
    close_started_game
}

# with_library FOLDER PAGE-FOLDER: with the library in FOLDER, which Windows calls PAGE-FOLDER.
with_library() {
    cp "$home/rehearsal/BEYONDIOx64.dll" "$1"
    stage_start setup wine "$installer"
    go_through_setup
    picture last-page-with-library
    expect_page "It was found" "$2\\BEYONDIOx64.dll" \
        "[x] Start Laser Rallyvane" "[ ] Rehearse without a laser"
}

step_last_page() {
    say "Setup's last page says whether the host's library was found, and starts what can run"
    after install
    rm -f "$home/rallyvane.log"
    ln -sf "$home/rallyvane.log" "$stage/rallyvane.log"
    without_library
    with_library "$drive/windows/system32" 'C:\windows\system32'
    press space                                     # nothing is ticked
    expect_page "[ ] Start Laser Rallyvane" "[ ] Rehearse without a laser"
    press space Tab space                           # the other one
    expect_page "[ ] Start Laser Rallyvane" "[x] Rehearse without a laser"
    press space Return                              # neither
    stage_until 60 setup_ended || stage_fail "Setup did not end."
    await_end
    rm "$drive/windows/system32/BEYONDIOx64.dll"
    mkdir -p "$drive/host"
    WINEPATH='C:\host' with_library "$drive/host" 'C:\host'
    press space Return
    stage_until 60 setup_ended || stage_fail "Setup did not end."
    rm -r "$drive/host"
    with_library "$home" 'Programs\Laser Rallyvane'
    press Return
    stage_until 60 stage_logged "Beyond not started or Incorrect Beyond Version" \
        || stage_fail "The game did not start."
    expect "The game did not find the library beside it." \
        test -z "$(xdotool search --onlyvisible --name "BEYOND DLL" 2>/dev/null || true)"
    close_started_game
    rm "$home/BEYONDIOx64.dll"
}
