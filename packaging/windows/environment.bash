# Sourced by the commands that build or run the Windows program, with the project's folder in
# $project: the locations of Qt, and the setup of Wine.

. "$project/tools/packages.bash"
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' "$project/CMakeLists.txt")
tools=x86_64-w64-mingw32
output=$project/build/windows
installer=$output/Rallyvane_v${version}_setup.exe
archive=$output/Rallyvane_v${version}_portable.zip
: "${installer}" "${archive}"

# Qt is built here if RALLYVANE_QT_WINDOWS is not set. It is complete once its toolchain file exists.
qt_cache=${XDG_CACHE_HOME:-$HOME/.cache}/rallyvane/qt-windows
qt_is_ready() {
    [ -e "$1/lib/cmake/Qt6/qt.toolchain.cmake" ]
}
if [ -z "${RALLYVANE_QT_WINDOWS:-}" ] && qt_is_ready "$qt_cache"; then
    RALLYVANE_QT_WINDOWS=$qt_cache
fi
export RALLYVANE_QT_WINDOWS=${RALLYVANE_QT_WINDOWS:-}

# The folders of the compiler's libraries: its own, and those of MinGW-w64.
runtime_folders() {
    local library
    for library in libstdc++-6.dll libwinpthread-1.dll; do
        dirname "$($tools-g++-posix -print-file-name=$library)"
    done
}

# windows_path PATH: prints the path in Windows notation.
windows_path() {
    local path=Z:$1
    printf '%s' "${path//\//\\}"
}

# Wine has none of the fonts that Windows uses in windows. Without these, it picks one of the machine's;
# text in a font for formulas, with room for tall symbols, is drawn outside a field that is one line high.
wine_fonts() {
    local font
    for font in "MS Shell Dlg" "MS Shell Dlg 2" "MS Sans Serif" "Microsoft Sans Serif" "Segoe UI" Tahoma; do
        wine reg add 'HKCU\Software\Wine\Fonts\Replacements' /v "$font" /d "DejaVu Sans" /f
    done
}

# wine_begin: sets up the project's own Wine prefix, whose programs find the libraries that they are
# built with. Created at first use, by only one process if several start at once.
wine_begin() {
    export WINEPREFIX=${WINEPREFIX:-$project/build/wine} WINEARCH=win64
    export WINEDEBUG=${WINEDEBUG:--all} QT_FORCE_STDERR_LOGGING=1
    export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
    # Wine hides Qt's environment variables from its programs unless they are prefixed.
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
    [ ! -e "$WINEPREFIX/fonts-ready" ] || return 0
    mkdir -p "$WINEPREFIX"
    (
        flock 9
        [ ! -e "$WINEPREFIX/fonts-ready" ] || exit 0
        # Without a display, so that Wine shows no setup window.
        unset DISPLAY
        wine wineboot --init
        wine reg add 'HKCU\Software\Wine' /v Version /d win10 /f
        wine_fonts
        # Later programs with a display would share this server, which has none.
        wineserver -k
        wineserver -w
        touch "$WINEPREFIX/fonts-ready"
    ) 9>"$WINEPREFIX/lock" >"$WINEPREFIX/setup.log" 2>&1 </dev/null
}
