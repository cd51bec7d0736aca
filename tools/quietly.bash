# Sourced by the project's commands.

# quietly NAME COMMAND...: runs a command with its output in $logs/NAME.log. If the command fails,
# shows the output and exits.
logs=build
quietly() {
    local log=$logs/$1.log
    shift
    mkdir -p "$logs"
    "$@" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
}
