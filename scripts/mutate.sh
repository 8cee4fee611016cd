# shellcheck shell=bash
# Changes of the component that the tests should notice. Sourced by tam.
: "${root:?}" "${build:?}" "${cores?}"

# The work itself is scripts/mutate.py's. Each lane has a core, a display and,
# copied there from "point", a Wine prefix.
command_mutate() {
    local options=()
    if [[ ${1:-} == --quick ]]; then
        options+=(--quick)
        shift
    fi
    local count=${1:-40} seed=${2:-$(((RANDOM * 32768 + RANDOM) % 999999999 + 1))}
    if [[ $# -gt 2 ]] || ! is_number "$count" || ! is_number "$seed"; then
        die "mutate takes the number of changes, and a seed."
    fi
    prepare
    build_preset win32
    build_preset native
    wine_environment
    start_display
    local lane_cores=("${cores%%[-,]*}")
    if has_two_cores; then
        lane_cores+=("${cores##*[-,]}")
        start_display
    fi
    start_wine point
    # Nothing may run in a prefix that is copied.
    stop_server point
    # shellcheck disable=SC2154  # displays is filled by start_display
    run_child "$root" python3 "$root/scripts/mutate.py" --root "$root" --build "$build" \
        --prefix "$(prefix_folder point)" --cores "${lane_cores[@]}" --displays "${displays[@]}" \
        "${options[@]}" -- "$count" "$seed"
}
