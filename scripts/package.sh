# shellcheck shell=bash
# Writes dist/, what a Windows user gets, and tries it. Sourced by tam, which sets
# root and build and wine's environment.
: "${root:?}" "${build:?}"

# shellcheck source=scripts/package_tries.sh
. "$root/scripts/package_tries.sh"

# pack FOLDER: packs what was built into a folder.
pack() { python3 "$root/scripts/package.py" "$build" "$1"; }

command_package() {
    local try=false twice=false
    while [[ $# -gt 0 ]]; do
        case $1 in
        --test) try=true ;;
        --twice) twice=true ;;
        *) die "package takes --test and --twice." ;;
        esac
        shift
    done
    $twice && refuse_changes
    prepare --package
    python3 "$root/scripts/check_version.py" >&2 || die "The versions differ; all follow project() in CMakeLists.txt."
    local programs_of_64=()
    read_test_list "$root/scripts/test-list"
    mapfile -t programs_of_64 < <(list_64_bit_programs)
    build_preset win32
    build_preset win64 O_Tam_id OrvHost tambench tamview "${programs_of_64[@]}"
    pack "$root/dist"
    if $twice; then
        pack_elsewhere
    fi
    if $try; then
        try_packages
    fi
}

refuse_changes() {
    [[ -z $(git -C "$root" status --porcelain) ]] || die "package --twice compares two clones of one commit; commit first."
}

# Packs the same commit from a clone in another folder, which it builds from nothing, and compares.
pack_elsewhere() {
    local folder status=0
    folder=$(mktemp -d "${TMPDIR:-/tmp}/tam-elsewhere-XXXXXX")
    note "Packing the same commit in $folder"
    git clone --quiet "$root" "$folder/another clone" && git -C "$folder/another clone" checkout --quiet --detach \
        "$(git -C "$root" rev-parse HEAD)"
    (cd "$folder/another clone" && env -u TAM_BUILD_DIR ./tam package) || die "The clone could not be packed: $folder"
    diff -r "$root/dist" "$folder/another clone/dist" >&2 || status=$?
    [[ $status -eq 0 ]] || die "The packages differ; the other clone is in $folder."
    rm -rf "$folder"
    note "The packages of two clones are the same, byte for byte."
}
