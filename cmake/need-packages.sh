# Sourced by the scripts of this project: need_packages NAME... installs what a Debian machine lacks. What is there
# already, from wherever, will do.

# Whether a package's program is there. Libraries have none.
has_program_of() {
    case $1 in
    g++) set -- ${CXX:-g++} ;;
    ninja-build) set -- ninja ;;
    g++-powerpc-linux-gnu) set -- ${CMAKE_TOOLCHAIN_FILE:+true} ${CXX:-powerpc-linux-gnu-g++} ;;
    qemu-user) set -- qemu-ppc ;;
    dpkg-dev) set -- dpkg-shlibdeps ;;
    man-db) set -- man ;;
    esac
    command -v "$1" >/dev/null 2>&1
}

is_library() {
    case $1 in
    googletest | lib*) true ;;
    *) false ;;
    esac
}

has_package() { dpkg-query -W -f '${Status}\n' "$1" 2>/dev/null | grep -q ' installed$'; }

need_packages() {
    programs= libraries=
    for package; do
        if is_library "$package"; then
            has_package "$package" || libraries="$libraries $package"
        else
            has_program_of "$package" || programs="$programs $package"
        fi
    done
    [ -z "$programs$libraries" ] && return 0

    as_root=
    [ "$(id -u)" -eq 0 ] || as_root=sudo
    if ! command -v apt-get >/dev/null 2>&1 || ! command -v ${as_root:-apt-get} >/dev/null 2>&1; then
        # A library may be where only CMake finds it.
        [ -z "$programs" ] && return 0
        echo "Programs are missing. Install what this machine calls these Debian packages, then try again:$programs$libraries" >&2
        return 1
    fi
    echo "Installing with apt-get:$programs$libraries" >&2
    $as_root apt-get update -qq >&2 &&
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
            $programs$libraries >&2 || {
        echo "Could not install:$programs$libraries" >&2
        [ -z "$programs" ] # CMake may find a library elsewhere
    }
}

# clang's sanitizers and its fuzzing library come in a package with clang's version in its name.
need_sanitizers() {
    case ${CXX:-} in
    *clang*) need_packages clang && need_packages "libclang-rt-$(${CXX} -dumpversion | cut -d. -f1)-dev" ;;
    esac
}
