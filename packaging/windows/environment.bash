# Sourced by what builds or runs the Windows program, with the project's folder in $project: where
# its Qt and its Wine are.

. "$project/tools/packages.bash"
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' "$project/CMakeLists.txt")
tools=x86_64-w64-mingw32
output=$project/build/windows
installer=$output/Rallyvane_v${version}_setup.exe
archive=$output/Rallyvane_v${version}_portable.zip
: "${installer}" "${archive}"

# The Qt that a command builds where none is named; a tree is ready once its toolchain file is.
qt_cache=${XDG_CACHE_HOME:-$HOME/.cache}/rallyvane/qt-windows
qt_is_ready() {
    [ -e "$1/lib/cmake/Qt6/qt.toolchain.cmake" ]
}
if [ -z "${RALLYVANE_QT_WINDOWS:-}" ] && qt_is_ready "$qt_cache"; then
    RALLYVANE_QT_WINDOWS=$qt_cache
fi
export RALLYVANE_QT_WINDOWS=${RALLYVANE_QT_WINDOWS:-}

# The libraries of the compiler that the program needs beside it.
runtime_libraries=(libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
runtime_folders() {
    local library
    for library in "${runtime_libraries[@]}"; do
        dirname "$($tools-g++-posix -print-file-name=$library)"
    done | sort -u
}

# windows_path PATH: the same as a Windows program names it.
windows_path() {
    local path=Z:$1
    printf '%s' "${path//\//\\}"
}

# wine_begin: a Wine of the project's own, whose programs find the libraries that they are built
# with. Made at first use; two programs may be first.
wine_begin() {
    export WINEPREFIX=${WINEPREFIX:-$project/build/wine} WINEARCH=win64
    export WINEDEBUG=${WINEDEBUG:--all} QT_FORCE_STDERR_LOGGING=1
    export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
    # Wine keeps the variables of the Unix Qt from its programs; these names hand them on.
    local name
    for name in "${!QT_@}"; do
        export "WINE$name=${!name}"
    done
    if [ -z "${WINEPATH+set}" ]; then
        local folder path
        path=$(windows_path "$RALLYVANE_QT_WINDOWS/bin")
        while read -r folder; do
            path="$path;$(windows_path "$folder")"
        done < <(runtime_folders)
        export WINEPATH=$path
    fi
    [ ! -e "$WINEPREFIX/ready" ] || return 0
    mkdir -p "$WINEPREFIX"
    (
        flock 9
        [ ! -e "$WINEPREFIX/ready" ] || exit 0
        # Without a display: this must not show anybody that Wine is being set up.
        unset DISPLAY
        wine wineboot --init
        wine reg add 'HKCU\Software\Wine' /v Version /d win10 /f
        # What it has started knows no display, and programs that have one would share it.
        wineserver -k
        wineserver -w
        touch "$WINEPREFIX/ready"
    ) 9>"$WINEPREFIX/lock" >"$WINEPREFIX/setup.log" 2>&1 </dev/null
}
