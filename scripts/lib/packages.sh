# shellcheck shell=bash
# Debian packages that a script needs. To be sourced.

# What the plugin, the tool and the simulator are built with, and what the tests need besides.
# shellcheck disable=SC2034  # for those who source it
readonly build_packages=(cmake g++ ninja-build libcli11-dev libcpp-httplib-dev libedit-dev libfmt-dev
    libjs-dygraphs libtomlplusplus-dev nlohmann-json3-dev)
# shellcheck disable=SC2034
readonly test_packages=("${build_packages[@]}" libbenchmark-dev libgmock-dev libgtest-dev libpcap-dev)

# require_packages PACKAGE...
#
# Installs those that are missing, as root or with a sudo that asks for no password. Otherwise says
# which command to type and ends the script. Silent when nothing is missing.
require_packages() {
    if ! command -v dpkg-query >/dev/null; then
        echo "This is not Debian; continuing as if these were installed: $*" >&2
        return 0
    fi

    local package missing=()
    for package in "$@"; do
        # shellcheck disable=SC2016  # a format of dpkg-query's, not of the shell
        if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            missing+=("$package")
        fi
    done
    if [ ${#missing[@]} -eq 0 ]; then
        return 0
    fi

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! sudo -n true 2>/dev/null; then
            echo "Some Debian packages are missing. To install them, type:" >&2
            echo "    sudo sh -c 'apt-get update && apt-get install -y --no-install-recommends" \
                "${missing[*]}'" >&2
            exit 1
        fi
        as_root=(sudo -n)
    fi
    echo "Installing ${missing[*]}"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q update
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q install -y --no-install-recommends "${missing[@]}"
}
