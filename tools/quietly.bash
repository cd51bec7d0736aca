# Sourced by the project's commands.

# quietly NAME COMMAND...: runs a command with its output in NAME.log in the folder $logs, and shows
# the output only if the command fails, which ends the script.
logs=build
quietly() {
    local log=$logs/$1.log
    shift
    mkdir -p "$logs"
    "$@" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
}
