# Sourced by the scripts of this project: need_packages NAME... installs what a Debian machine lacks.

need_packages() {
    if ! command -v apt-get >/dev/null 2>&1; then
        # Not Debian: whoever lacks one of them learns here what it is called there.
        command -v cmake >/dev/null 2>&1 && command -v ninja >/dev/null 2>&1 && return 0
        echo "Install what this machine calls these Debian packages, then try again: $*" >&2
        return 1
    fi
    missing=
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
