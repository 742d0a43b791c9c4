# Sourced by the scripts of this project, in its top folder.

# build_preset PRESET [CMAKE-OPTION...] [-- TARGET...] builds in build/PRESET, all targets if none is named.
build_preset() {
    preset=$1 folder=build/$1 options= targets=
    shift
    while [ $# -gt 0 ] && [ "$1" != -- ]; do
        options="$options $1"
        shift
    done
    [ $# -lt 2 ] || { shift && targets="--target $*"; }
    case $PWD in
    *[\;\"\\#]*)
        echo "CMake cannot build in a folder that has one of the characters ; \" \\ # in its path: $PWD" >&2
        return 1
        ;;
    esac
    mkdir -p "$folder" || return 1
    (
        # Two builds in one folder disturb each other, so a lock protects the folder, if flock exists.
        ! command -v flock >/dev/null || flock -n 9 || {
            echo "Waiting until another build in $folder has ended ..." >&2
            flock 9
        }
        # Only the board's preset uses a toolchain file.
        [ "$preset" = powerpc ] || unset CMAKE_TOOLCHAIN_FILE
        # CMake keeps the compiler and the source folder of its first run. When the compiler or the source folder has
        # changed, the folder is configured again.
        program=$(command -v ${CXX:-c++} || true)
        setting="$PWD|${CC:-}|${CXX:-}|$program|${CMAKE_TOOLCHAIN_FILE:-}"
        if [ "$setting" != "$(cat "$folder/setting" 2>/dev/null)" ]; then
            rm -rf "$folder/CMakeCache.txt" "$folder/CMakeFiles"
            echo "$setting" >"$folder/setting"
        fi
        # The programs that are started here must not inherit the lock.
        { cmake --preset "$preset" $options && cmake --build --preset "$preset" $targets; } 2>&1 9>&-
    ) 9>"$folder/lock"
}

# use_scratch makes the folder $scratch, which is removed at the end of the script, also after Ctrl-C.
use_scratch() {
    scratch=$(mktemp -d)
    trap 'rm -rf "$scratch"' EXIT
    trap 'exit 1' INT TERM HUP
}
