# Sourced by the scripts of this project: need_packages NAME... installs the Debian packages that are missing. A package
# counts as missing when its program is not found. The program may also come from elsewhere than from a package.

is_missing() {
    case $1 in
    g++) set -- ${CXX:-g++} ;;
    g++-powerpc-linux-gnu) [ -z "${CMAKE_TOOLCHAIN_FILE:-}" ] && set -- ${CXX:-powerpc-linux-gnu-g++} || return 1 ;;
    ninja-build) set -- ninja ;;
    qemu-user) set -- qemu-ppc ;;
    debhelper) set -- dh ;;
    build-essential | googletest | lib*) # No program to look for. Without dpkg they count as installed.
        command -v dpkg-query >/dev/null && ! dpkg-query -W -f '${Status}\n' "$1" 2>/dev/null | grep -q ' installed$'
        return
        ;;
    esac
    ! command -v "$1" >/dev/null
}

may_install() {
    as_root=$([ "$(id -u)" -eq 0 ] || echo sudo)
    command -v apt-get >/dev/null && { [ -z "$as_root" ] || { command -v sudo >/dev/null && sudo -v; }; }
}

need_packages() {
    missing=
    for package; do
        case $package:${CXX:-} in
        g++:clang++ | g++:clang++\ *) package=clang ;;
        g++*:?*) is_missing "$package" && echo "CXX names a compiler that is not there: $CXX" >&2 && return 1 ;;
        esac
        ! is_missing "$package" || missing="$missing $package"
    done
    # An old CMake is reported before anything is installed.
    ! command -v cmake >/dev/null || cmake --version | awk '/version/ { split($3, v, "."); exit v[1] * 100 + v[2] < 321 }' || {
        echo "CMake 3.21 or later is needed, this is $(cmake --version | head -n 1). Put a later one into PATH." >&2
        return 1
    }
    [ -n "$missing" ] || return 0
    may_install || {
        echo "These Debian packages are missing. Install them by the names that this machine has for them:$missing" >&2
        return 1
    }
    echo "Installing with apt-get:$missing" >&2
    $as_root apt-get update -qq >&2
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >&2
}
