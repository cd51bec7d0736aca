# Sourced by the commands that build or use the Qt that is built with the thread sanitizer: its
# location. Races between the threads of a program are only seen exactly if Qt's locks and queues are
# visible to the sanitizer.

# It is built here if RALLYVANE_QT_TSAN is not set.
tsan_qt_cache=${XDG_CACHE_HOME:-$HOME/.cache}/rallyvane/qt-tsan
tsan_qt_is_ready() {
    [ -e "$1/lib/cmake/Qt6/Qt6Config.cmake" ]
}
if [ -z "${RALLYVANE_QT_TSAN:-}" ] && tsan_qt_is_ready "$tsan_qt_cache"; then
    RALLYVANE_QT_TSAN=$tsan_qt_cache
fi
export RALLYVANE_QT_TSAN=${RALLYVANE_QT_TSAN:-}
