# shellcheck shell=bash
# Writes dist/, what a Windows user gets. Sourced by tam, which sets root and build.
: "${root:?}" "${build:?}"

command_package() {
    [[ $# -eq 0 ]] || die "package takes no arguments."
    python3 "$root/scripts/check_version.py" >&2 || die "The versions differ; all follow project() in CMakeLists.txt."
    prepare --package
    build_preset win32 O_Tam_id OrvHost tambench
    build_preset win64 O_Tam_id OrvHost tambench
    python3 "$root/scripts/package.py" "$build" "$root/dist"
}
