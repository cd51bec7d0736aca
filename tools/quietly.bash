# Sourced by the project's commands.

# quietly NAME COMMAND...: runs a command with its output in build/NAME.log, and shows that only if
# the command fails, which ends the script.
quietly() {
    local log=build/$1.log
    shift
    mkdir -p build
    "$@" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
}
