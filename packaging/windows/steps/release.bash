# Sourced by packaging/windows/try: the steps that publish the next version and update to it.

release=$stage/release
# These two versions are built in a copy of the sources, with the update server of this step.
sources=$release/sources
next=$(awk -v version="$version" 'BEGIN { printf "%.2f", version + 0.01 }')

# setup_of VERSION
setup_of() {
    printf '%s' "$sources/build/windows/Rallyvane_v$1_setup.exe"
}

# signing: creates a certificate for code, and the command that signs with it.
signing() {
    openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj "/CN=Rallyvane test" \
        -addext keyUsage=digitalSignature -addext extendedKeyUsage=codeSigning \
        -keyout "$release/code-key.pem" -out "$release/code.pem" 2>/dev/null
    cat >"$release/sign" <<END
#!/bin/sh
osslsigncode sign -certs '$release/code.pem' -key '$release/code-key.pem' -in "\$1" -out "\$1.signed" \
    && mv "\$1.signed" "\$1"
END
    chmod +x "$release/sign"
    export RALLYVANE_SIGN="'$release/sign'"
}

# build_release VERSION: follows docs/publishing.md.
build_release() {
    sed -i "s/^\(project(.* VERSION \)[0-9.]*/\1$1/" "$sources/CMakeLists.txt"
    quietly "release-$1" "$sources/packaging/windows/build" --update-host "127.0.0.1:$port"
    grep -qx "Update host:  127.0.0.1:$port" "$logs/release-$1.log" \
        || stage_fail "The build does not name its update host."
}

# add_header FOLDER: puts a response's header before each file in it, for serve_files.
add_header() {
    local file
    while read -r file; do
        { printf 'HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n' "$(stat -c %s "$file")"; cat "$file"; } \
            >"$file.response"
        mv "$file.response" "$file"
    done < <(find "$1" -type f)
}

# is_refused FILE REASON: whether publishing FILE is refused for that reason.
is_refused() {
    ! "$sources/packaging/publish" "$1" "$release/refused" 2>"$release/refused.txt" >&2 \
        && grep -qF -- "$2" "$release/refused.txt" && [ ! -e "$release/refused" ]
}

step_release() {
    say "The next version is built with an update host, signed and published"
    rm -rf "$release"
    mkdir -p "$sources" "$release/server"
    tar -C "$project" --exclude=./build --exclude=./.git -c . | tar -C "$sources" -x
    # Compresses faster, with little effect on the test.
    sed -i 's/^SetCompressor .*/SetCompressor zlib/' "$sources/packaging/windows/setup.nsi"
    local https=$release port
    certificate server
    serve_files "$release/server" 0
    stage_end_last
    echo "$port" >"$release/port"
    signing
    build_release "$version"
    build_release "$next"
    unset RALLYVANE_SIGN
    printf '## %s - 2027-03-01\n\n- Published by a test.\n' "$next" >"$sources/CHANGELOG.md"
    expect "The older version was published as the next." \
        is_refused "$(setup_of "$version")" "installs version \"$version\""
    expect "A program was published as its installer." \
        is_refused "$sources/build/windows/stage/rallyvane.exe" "is not an installer"
    expect "The uninstaller was published." is_refused "$home/uninstall.exe" "it is an uninstaller"
    quietly publish "$sources/packaging/publish" "$(setup_of "$next")" "$release/upload"
    cp -r "$release/upload/." "$release/server"
    add_header "$release/server"
}

step_upgrade() {
    say "The program finds the next version, installs and starts it, and the settings are kept"
    after keys release
    local https=$release port box
    serve_files "$release/server" "$(cat "$release/port")"
    openssl x509 -in "$release/server.pem" -outform DER -out "$release/server.der"
    run_quietly "$output/bin/trust.exe" "$(windows_path "$release/server.der")"
    run_quietly "$(setup_of "$version")" /S
    expect_registered DisplayVersion "$version"
    rm -f "$home/rallyvane.log"
    ln -sf "$home/rallyvane.log" "$stage/rallyvane.log"
    shortcut "Rehearse without a laser"
    box=$(stage_window "New version available")
    picture offered
    xdotool windowfocus --sync "$box" key Return
    stage_window "^Laser Rallyvane Setup" >/dev/null
    await_end
    expect "The installer was not saved." \
        cmp -s "$(setup_of "$next")" "$home/sw_fw/Rallyvane_v${next}_setup.exe"
    go_through_setup
    rm "$home/rallyvane.log"
    press Return
    stage_window "Rehearsal host" >/dev/null
    stage_until 60 stage_logged "Software up to date" || stage_fail "The next version does not run."
    expect_registered DisplayVersion "$next"
    expect "The settings were lost." grep -q KeyboardUpL "$home/.pong"
    picture upgraded
    close_started_game
    rm -r "$home/sw_fw"
}

# is_signed FILE: whether it has a valid signature with the test's certificate.
is_signed() {
    osslsigncode verify -CAfile "$release/code.pem" -in "$1" >"$release/verified.txt" 2>&1
}

is_unsigned() {
    ! is_signed "$1"
}

step_signatures() {
    say "Every program and library of ours is signed, also as installed"
    after upgrade
    local file count=0
    expect "The setup is not signed." is_signed "$(setup_of "$next")"
    while read -r file; do
        expect "$file is not signed." is_signed "$file"
        count=$((count + 1))
    done < <(find "$home" -name '*.exe' -o -name BEYONDIOx64.dll)
    expect "Found $count installed files of ours instead of 6." test "$count" = 6
    expect "Another maker's library was signed." is_unsigned "$home/Qt6Core.dll"
}
