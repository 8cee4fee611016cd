#!/usr/bin/env bash
# Installs what building and testing need on Debian 12 and 13. Says nothing and
# touches nothing when everything is there.
#
#   scripts/install-toolchain.sh           what build, run and test need
#   scripts/install-toolchain.sh --check   and what "./tam check" and "./tam fuzz" need
#   scripts/install-toolchain.sh --package and what "./tam package" needs
#   scripts/install-toolchain.sh --list    print the packages, install nothing
set -euo pipefail

# The one list of packages. Anything a script here calls and a base system
# lacks belongs into it.
build_packages=(
    g++                        # native build of the pure code, with its sanitizers
    g++-mingw-w64-i686-posix   # cross compiler; std::mutex and friends need its posix variant
    g++-mingw-w64-x86-64-posix # the same for 64-bit Windows
    mingw-w64-tools            # widl, the IDL compiler
    libwine-dev                # the IDL files that widl imports
    wine
    wine32:i386                # runs the 32-bit programs; brings stdole2.tlb for widl
    wine64                     # runs the 64-bit programs
    fonts-wine                 # Wine's own fonts, among them the symbols of the frames' buttons
    xvfb                       # a display for the dialogs
    xauth                      # xvfb-run, for single programs by hand
    ninja-build
    cmake
    googletest
    libcli11-dev               # the bench's command line
    nlohmann-json3-dev         # the bench's machine-readable output
    imagemagick                # pictures of the dialogs, comparison of pictures
    libxml2-utils              # xmllint, which validates the samples against the schemas
    python3                    # counts test results, draws the benchmark
    chromium-headless-shell    # shows the device sheets of the tests
    python3-html5lib           # checks their HTML
    tidy                       # checks it too
    poppler-utils              # counts their pages on paper
)
check_packages=(
    clang                      # ./tam fuzz, and the second compiler
    libclang-rt-dev            # its sanitizers and libFuzzer, which clang alone only recommends
    clang-format
    clang-tidy
    cppcheck
    python3-jsonschema         # the bench's and the checks' JSON against docs/json
    shellcheck
)
package_packages=(
    cmark-gfm                  # documents as pages
    nsis                       # the installer
    openssl                    # a certificate to try signing with
    osslsigncode               # signs, when a certificate is named
    python3-jsonschema         # the bill of materials against its schema
)

say() { printf '%s\n' "$*" >&2; }

packages=("${build_packages[@]}")
case "${1:-}" in
"") ;;
--check) packages+=("${check_packages[@]}" "${package_packages[@]}") ;; # it runs the tests of ./tam package
--package) packages+=("${package_packages[@]}") ;;
--list)
    printf '%s\n' "${build_packages[@]}" "${check_packages[@]}" "${package_packages[@]}"
    exit 0
    ;;
*)
    say "usage: $0 [--check | --package | --list]"
    exit 2
    ;;
esac

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    say "This script knows Debian's package tools only. Install the counterparts of these by hand:"
    say "  ${packages[*]}"
    exit 1
fi

is_installed() {
    dpkg-query --show --showformat='${db:Status-Status}\n' "$1" 2>/dev/null | grep -qx installed
}

# Sets missing to the packages that are not there.
find_missing() {
    missing=()
    local package
    for package in "${packages[@]}"; do
        is_installed "$package" || missing+=("$package")
    done
}

find_missing
[[ ${#missing[@]} -gt 0 ]] || exit 0

needs_i386=false
if [[ $(dpkg --print-architecture) != i386 ]] && ! dpkg --print-foreign-architectures | grep -qx i386; then
    needs_i386=true
fi

as_root=()
if [[ $(id -u) -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
        say "Packages are missing, and installing them takes root or sudo. As root, run:"
        if $needs_i386; then
            say "  dpkg --add-architecture i386"
        fi
        say "  apt-get update"
        say "  apt-get install --no-install-recommends ${missing[*]}"
        exit 1
    fi
    as_root=(sudo)
fi

apt() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q -o DPkg::Lock::Timeout=600 -o Dpkg::Use-Pty=0 "$@"
}

install_missing() {
    apt install -y --no-install-recommends "$@" "${missing[@]}"
}

say "Installing: ${missing[*]}"
if $needs_i386; then
    "${as_root[@]}" dpkg --add-architecture i386
fi

# A mirror may lack one index (often the security archive's 32-bit one), which
# fails the update though every other list is there. Whether the lists are good
# enough, the installation shows.
apt update || say "Some package lists did not arrive; going on with those that did."

if ! install_missing; then
    # Without the 32-bit security list, 64-bit libraries come from the security
    # archive and their 32-bit twins cannot: "held broken packages". The
    # release's own archive has both in one version.
    release=$(. /etc/os-release && printf '%s' "${VERSION_CODENAME:-}")
    if [[ -z $release ]]; then
        say "The installation failed (see above), and /etc/os-release names no release to fall back on."
        exit 1
    fi
    say "Trying again with the versions of $release itself."
    if ! install_missing -t "$release"; then
        say "Could not install: ${missing[*]}"
        say "Neither the newest versions nor those of $release could be installed; the reason stands above."
        say "Look whether the package source in /etc/apt answers and carries amd64 and i386, then try again."
        exit 1
    fi
fi

find_missing
if [[ ${#missing[@]} -gt 0 ]]; then
    say "The package manager reported success, but these are still missing: ${missing[*]}"
    exit 1
fi
