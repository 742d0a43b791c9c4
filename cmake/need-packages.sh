# Sourced by the scripts of this project: need_packages NAME... installs what a Debian machine lacks, and says so before
# it does. What is there already, from wherever, will do.

has_program() { command -v "$1" >/dev/null 2>&1; }

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
    has_program "$1"
}

is_library() {
    case $1 in
    googletest | lib*) true ;;
    *) false ;;
    esac
}

has_package() { dpkg-query -W -f '${Status}\n' "$1" 2>/dev/null | grep -q ' installed$'; }

# What the caller names as the compiler is the caller's to install; only clang has a package of its name.
need_named_compilers() {
    for compiler in "${CC:-}" "${CXX:-}"; do
        set -- $compiler
        case ${1:-} in
        '' | clang | clang++) continue ;;
        esac
        has_program "$1" || {
            echo "No such compiler: CC or CXX names $1" >&2
            return 1
        }
    done
}

# Whether $1 will do, the version of the CMake that is there or would be installed.
need_cmake_version() {
    echo "${1:-3.21}" | awk -F. '{ exit !($1 > 3 || $1 == 3 && $2 >= 21) }' || {
        echo "CMake 3.21 or later is needed; this machine's is $1. Put a later one into PATH, then try again." >&2
        return 1
    }
}

may_install() {
    has_program apt-get || return 1
    [ "$(id -u)" -ne 0 ] || return 0
    # Without a terminal nobody can give sudo a password.
    has_program sudo && { sudo -n true 2>/dev/null || (: </dev/tty) 2>/dev/null; }
}

need_packages() {
    need_named_compilers || return 1
    programs= libraries=
    for package; do
        if is_library "$package"; then
            has_package "$package" || libraries="$libraries $package"
        elif ! has_program_of "$package"; then
            case $package:${CXX:-} in
            g++:clang++*) package=clang ;;
            esac
            programs="$programs $package"
        elif [ "$package" = cmake ]; then
            need_cmake_version "$(cmake --version | sed -n '1s/.* //p')" || return 1
        fi
    done
    [ -z "$programs$libraries" ] && return 0

    may_install || {
        # A library may be where only CMake finds it.
        [ -z "$programs" ] && return 0
        echo "Programs are missing. Install what this machine calls these Debian packages, then try again:$programs$libraries" >&2
        return 1
    }
    as_root=
    [ "$(id -u)" -eq 0 ] || as_root=sudo
    echo "Installing with apt-get:$programs$libraries" >&2
    $as_root apt-get update -qq >&2 || true # the install says what is missing
    case "$programs " in
    *" cmake "*)
        need_cmake_version "$(LC_ALL=C apt-cache policy cmake | sed -n 's/^ *Candidate: \([0-9.]*\).*/\1/p')" || return 1
        ;;
    esac
    set -- install --no-install-recommends $programs$libraries
    # With what they need in turn: how many, how much.
    LC_ALL=C apt-get -s "$@" 2>/dev/null | grep ' newly installed' >&2 || true
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get -y -qq "$@" >&2 || {
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
