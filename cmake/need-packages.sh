# Sourced by the scripts of this project: need_packages NAME... installs what a Debian machine lacks.

# Whether a package's program is there, on a machine that has no Debian packages. Libraries are CMake's to find.
has_program_of() {
    case $1 in
    ninja-build) command -v ninja ;;
    g++-powerpc-linux-gnu) command -v powerpc-linux-gnu-g++ ;;
    qemu-user) command -v qemu-ppc ;;
    googletest | lib*) true ;;
    *) command -v "$1" ;;
    esac >/dev/null 2>&1
}

need_packages() {
    missing=
    if ! command -v apt-get >/dev/null 2>&1; then
        for package; do
            has_program_of "$package" || missing="$missing $package"
        done
        [ -z "$missing" ] && return 0
        echo "Install what this machine calls these Debian packages, then try again:$missing" >&2
        return 1
    fi
    for package; do
        dpkg-query -W -f '${Status}\n' "$package" 2>/dev/null | grep -q ' installed$' || missing="$missing $package"
    done
    [ -z "$missing" ] && return 0

    as_root=
    if [ "$(id -u)" -ne 0 ]; then
        as_root=sudo
        command -v sudo >/dev/null 2>&1 || {
            echo "Packages are missing and there is no sudo here. As root: apt-get install$missing" >&2
            return 1
        }
    fi
    echo "Installing with apt-get:$missing" >&2
    $as_root apt-get update -qq >&2 &&
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >&2 || {
        echo "Could not install:$missing" >&2
        return 1
    }
}
