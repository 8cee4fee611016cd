#!/usr/bin/env bash
# Tries the two commands of the README where a newcomer stands: in a bare system
# of a Debian release, from a clean clone of what is committed here.
#
#   scripts/try-release.sh trixie                 "./tam run", then "./tam test"
#   scripts/try-release.sh bookworm run           only these commands of ./tam
#   scripts/try-release.sh --keep trixie …        use the system of an earlier try, with what it has installed
#
# Takes root, debootstrap, some 8 GB and half an hour. The system lies in
# build/releases (TAM_BUILD_DIR moves it); what each command said, beside it.
# Ends with a line for each command, and with 0 only when all of them did.
#
# Not part of "./tam test": it is for a person before a release.
set -euo pipefail
unset CDPATH

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
releases=$(realpath -m "${TAM_BUILD_DIR:-$root/build}")/releases

die() {
    printf 'try-release: %s\n' "$*" >&2
    exit 1
}

# The archive that this machine's apt uses has other releases beside its own.
archive() {
    local site
    # shellcheck disable=SC2016  # apt replaces $(SITE), not this shell
    site=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' 2>/dev/null |
        grep -m 1 '/debian$' || true)
    printf '%s' "${TAM_DEBIAN_ARCHIVE:-${site:-http://deb.debian.org/debian}}"
}

# inside SYSTEM COMMAND: runs ./tam COMMAND in the bare system, in namespaces of its
# own. Mounts and processes that are left over end with the namespaces.
inside() {
    # shellcheck disable=SC2016  # the inner shell expands its own arguments
    unshare --mount --pid --fork --kill-child --propagation private \
        bash -euc '
            mount -t proc proc "$1/proc"
            mount -t sysfs -o ro sysfs "$1/sys"
            mount --rbind /dev "$1/dev"
            exec chroot "$1" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 \
                bash -c "cd /root/clone && exec ./tam \"\$1\"" try "$2"
        ' inside "$1" "$2"
}

keep=false
if [[ ${1:-} == --keep ]]; then
    keep=true
    shift
fi
[[ ${1:-} =~ ^[a-z]+$ ]] || die "which release? For example: scripts/try-release.sh trixie"
release=$1
shift
commands=("$@")
[[ ${#commands[@]} -gt 0 ]] || commands=(run test)
[[ $(id -u) -eq 0 ]] || die "a system can be made and entered by root only."
command -v debootstrap >/dev/null || die "debootstrap is missing: apt-get install debootstrap"

system=$releases/$release
if ! $keep || [[ ! -d $system/etc ]]; then
    rm -rf "$system"
    mkdir -p "$system"
    printf 'Making a bare %s from %s\n' "$release" "$(archive)" >&2
    # Beside its place until it is whole: --keep takes no half system.
    rm -rf "$system.part"
    if ! debootstrap --variant=minbase "$release" "$system.part" "$(archive)" >"$system.log" 2>&1; then
        tail -n 20 "$system.log" >&2
        die "debootstrap could not make $release; all it said: $system.log"
    fi
    rmdir "$system"
    mv "$system.part" "$system"
fi
cp -L /etc/resolv.conf "$system/etc/resolv.conf"
rm -rf "$system/root/clone"
git clone --quiet --no-hardlinks "$root" "$system/root/clone"
commit=$(git -C "$system/root/clone" log -1 --format='%h %s')
[[ -z $(git -C "$root" status --porcelain) ]] || printf 'What is not committed is not tried.\n' >&2

results=()
failed=false
for command in "${commands[@]}"; do
    printf '%s: ./tam %s (%s)\n' "$release" "$command" "$commit" >&2
    log=$releases/$release-$command.log
    start=$SECONDS
    status=0
    inside "$system" "$command" >"$log" 2>&1 || status=$?
    [[ $status -eq 0 ]] || failed=true
    results+=("$release  ./tam $command  status $status  $((SECONDS - start)) s  $(tail -n 1 "$log")")
    printf '%s\n' "${results[-1]}"
    if [[ $status -ne 0 ]]; then
        grep -A 40 '^Failures:' "$log" >&2 || tail -n 30 "$log" >&2
        printf 'All of it: %s\n' "$log" >&2
    fi
done

printf '\n%s, in a bare system:\n' "$commit"
printf '%s\n' "${results[@]}"
! $failed
