# Sourced by packaging/windows/try: the steps of the installer.

uninstall_key='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\LaserRallyvane'
menu_entries=("Laser Rallyvane" "Rehearse without a laser" "Operator's guide")

# registered NAME: prints the value in the registry, if any.
registered() {
    { wine reg query "$uninstall_key" /v "$1" 2>/dev/null || true; } | tr -d '\r' \
        | sed -n "s/^ *$1 *REG_[A-Z]* *//p"
}

# expect_registered NAME VALUE
expect_registered() {
    local value
    value=$(registered "$1")
    expect "The registered $1 is \"$value\" instead of \"$2\"." test "$value" = "$2"
}

# menu_folder: prints the program's folder in the start menu.
menu_folder() {
    find "$drive" -type d -path '*/Start Menu/Programs/Laser Rallyvane'
}

expect_installed() {
    local file entry windows_home
    expect "The program is not in $home." test -d "$home"
    while read -r file; do
        expect "The installed $file differs from the built one." cmp -s "$output/stage/$file" "$home/$file"
    done < <(cd "$output/stage" && find . -type f)
    expect "The uninstaller is missing." test -s "$home/uninstall.exe"
    stage_guide "$home/guide"
    windows_home=$(wine winepath -w "$home" 2>/dev/null | tr -d '\r')
    expect_registered DisplayName "Laser Rallyvane"
    expect_registered DisplayVersion "$version"
    expect_registered InstallLocation "$windows_home"
    expect_registered QuietUninstallString "\"$windows_home\\uninstall.exe\" /S"
    for entry in "${menu_entries[@]}"; do
        expect "The shortcut \"$entry\" is missing." test -s "$(menu_folder)/$entry.lnk"
    done
}

step_install() {
    say "A silent install asks no questions and installs every file"
    run_quietly "$installer" /S
    expect_installed
}

# set_class KEY VALUE: sets how Wine opens files.
set_class() {
    run_quietly reg add "HKCR\\$1" /f /ve /d "$2"
}

# A script replaces the browser, because the one that Wine would start does not work.
step_guide() {
    say "The start menu opens the operator's guide in the browser"
    after install
    rm -f "$stage/opened"
    printf '#!/bin/sh\nprintf "%%s\\n" "$1" >"%s"\n' "$stage/opened" >"$stage/browser"
    chmod +x "$stage/browser"
    run_quietly reg add 'HKCU\Software\Wine\WineBrowser' /f /v Browsers /d "$stage/browser"
    set_class .html Browser
    set_class 'Browser\shell\open\command' 'C:\windows\system32\winebrowser.exe "%1"'
    shortcut "Operator's guide"
    stage_until 60 grep -qE 'guide.operator-guide\.html$' "$stage/opened" \
        || stage_fail "The browser was not given the guide."
}

step_update() {
    say "An update closes the running program, which blanks the laser, and keeps the settings"
    after install keys
    start_rehearsal update
    stage_show_game
    stage_until 60 lit_frames update || stage_fail "The laser was not lit."
    echo "not of this version" >"$home/rallyvane.exe.sig"
    run_quietly "$installer" /S
    await_end
    expect_installed
    expect "The settings were lost." grep -q KeyboardUpL "$home/.pong"
    expect "The operator's own file was removed." test -e "$home/rallyvane.exe.sig"
    rm "$home/rallyvane.exe.sig"
    expect "The last frame was lit." test "$(frame_points update | tail -n 1)" = 0
}

is_unregistered() {
    [ -z "$(registered DisplayName)" ]
}

# The uninstaller returns early and continues in a copy of itself.
step_uninstall() {
    say "A silent uninstall removes everything except settings and log"
    after install keys
    local menu left
    menu=$(menu_folder)
    run_quietly "$home/uninstall.exe" /S
    stage_until 60 test ! -e "$home/uninstall.exe" || stage_fail "The uninstaller is still there."
    stage_until 60 test ! -e "$menu" || stage_fail "The start menu folder is still there."
    stage_until 60 is_unregistered || stage_fail "The registry entry is still there."
    left=$(cd "$home" && find . -type f | sort | tr '\n' ' ')
    expect "Left behind: $left" test "$left" = "./.pong ./.rehearsal ./rallyvane.log "
    rm -f "$done_steps"/*
}
