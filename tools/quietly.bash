# Sourced by the project's commands.

# quietly NAME COMMAND...: runs a command with its output in $logs/NAME.log. A terminal shows the last
# line of the output and the time so far, in one line; otherwise one line names the step. If the
# command fails, shows the output and exits.
logs=build
quietly() {
    local name=$1 log=$logs/$1.log start=$SECONDS failed=no progress
    shift
    mkdir -p "$logs"
    : >"$log"
    if [ -t 2 ] && [ "${TERM:-dumb}" != dumb ]; then
        # Closed when this shell ends, in whatever way, which ends the progress too.
        exec {progress}> >(show_progress "$name" "$log")
        local shown=$!
        "$@" >"$log" 2>&1 {progress}>&- || failed=yes
        exec {progress}>&-
        wait "$shown" || true
        [ $failed = yes ] || echo "$name: $((SECONDS - start)) s" >&2
    else
        echo "$name: output in $log" >&2
        "$@" >"$log" 2>&1 || failed=yes
    fi
    [ $failed = yes ] || return 0
    { echo "$name failed:"; cat "$log"; } >&2
    exit 1
}

# show_progress NAME LOG: shows the step and its time until standard input is closed, then clears the
# line. Ignores Ctrl+C, which ends the step and so closes standard input.
show_progress() {
    trap '' INT
    local start=$SECONDS status=142
    while [ "$status" -gt 128 ]; do # the read timed out
        local line
        line=$(tail -n 1 "$2")
        # Without automatic line breaks, so that the terminal cuts a long line off.
        printf '\r\e[?7l%s, %d s: %s\e[?7h\e[K' \
            "$1" $((SECONDS - start)) "${line//[^[:print:]]/}" >&2
        status=0
        read -r -t 0.5 || status=$?
    done
    printf '\r\e[K' >&2
}
