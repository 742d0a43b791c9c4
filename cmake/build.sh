# Sourced by the scripts of this project, in its top folder: build_preset PRESET [CMAKE-OPTION...] [-- TARGET...].
# One build at a time in each build folder, build/PRESET$KOVA_BUILD_SUFFIX: a compiler in CXX has folders of its own.
KOVA_BUILD_SUFFIX=
for word in ${CXX:-}; do
    case $word in
    -*) break ;; # the compiler's own options
    esac
    KOVA_BUILD_SUFFIX=-${word##*/}
done
export KOVA_BUILD_SUFFIX

# Whether something can be built in the folder $1, which need not be there yet; if not, says why.
need_folder() {
    case $PWD in
    *[\;\"\\#]*)
        echo "CMake cannot build in a path with one of ; \" \\ # in it: $PWD" >&2
        return 1
        ;;
    esac
    nearest=$1
    until [ -e "$nearest" ]; do
        nearest=$(dirname "$nearest")
    done
    [ -d "$nearest" ] && [ -w "$nearest" ] || {
        echo "Nothing can be built: $PWD/$1 is not yours to write" >&2
        return 1
    }
}

# Whether the build folder $1 was configured for the sources where they are now.
is_configured_here() { grep -qsxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$1/CMakeCache.txt"; }

# Configures the preset $1 in the folder $2, with the options that follow; afresh where the sources were moved or copied.
configure() {
    preset=$1 folder=$2
    shift 2
    is_configured_here "$folder" || rm -rf "$folder/CMakeCache.txt" "$folder/CMakeFiles"
    cmake --preset "$preset" -B "$folder" "$@"
}

build_preset() {
    need_folder "build/$1$KOVA_BUILD_SUFFIX" || return 1
    preset=$1 folder=build/$1$KOVA_BUILD_SUFFIX options= targets=
    shift
    while [ $# -gt 0 ] && [ "$1" != -- ]; do
        options="$options $1"
        shift
    done
    [ $# -gt 1 ] && shift && targets="--target $*"

    mkdir -p "$folder" || return 1
    (
        if command -v flock >/dev/null 2>&1; then
            flock -n 9 || {
                echo "Waiting for another build in $folder to end ..." >&2
                flock 9
            }
        fi
        # Targets and options are plain words. What is started here must not keep the lock.
        [ "$preset" = powerpc ] || unset CMAKE_TOOLCHAIN_FILE # the board's
        { configure "$preset" "$folder" $options && cmake --build --preset "$preset" $targets; } 2>&1 9>&-
    ) 9>"$folder/lock"
}
