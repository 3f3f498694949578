# Sourced by ./demo and ./test: installs the packages of packages.list that are missing, and says so. Those below a
# line [NAME] are for install_missing_packages NAME alone.

install_missing_packages() {
    local list missing=() package sudo=()
    list=$(awk -v wanted="${1:-}" '/^\[/ { part = substr($0, 2, length($0) - 2); next }
                                   /^[^#]/ && (part == "" || part == wanted)' packages.list)
    for package in $list; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing missing packages: ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { echo "They need root: run as root, or install sudo." >&2; return 1; }
        sudo=(sudo)
    fi
    "${sudo[@]}" apt-get update -qq
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
