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

build_preset() {
    case $PWD in
    *[\;\"\\#]*)
        echo "CMake cannot build in a path with one of ; \" \\ # in it: $PWD" >&2
        return 1
        ;;
    esac
    preset=$1 folder=build/$1$KOVA_BUILD_SUFFIX options= targets=
    shift
    while [ $# -gt 0 ] && [ "$1" != -- ]; do
        options="$options $1"
        shift
    done
    [ $# -gt 1 ] && shift && targets="--target $*"

    mkdir -p "$folder" || return 1
    [ -w "$folder" ] || {
        echo "Nothing can be built: $PWD/$folder is not yours to write" >&2
        return 1
    }
    (
        if command -v flock >/dev/null 2>&1; then
            flock -n 9 || {
                echo "Waiting for another build in $folder to end ..." >&2
                flock 9
            }
        fi
        # Targets and options are plain words. What is started here must not keep the lock.
        # "built" is as old as the sources that went in, and there when nobody builds.
        rm -f "$folder/built"
        [ "$preset" = powerpc ] || unset CMAKE_TOOLCHAIN_FILE # the board's
        {
            touch "$folder/building" && cmake --preset "$preset" $options &&
                cmake --build --preset "$preset" $targets && mv "$folder/building" "$folder/built"
        } 2>&1 9>&-
    ) 9>"$folder/lock"
}
