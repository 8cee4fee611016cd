# shellcheck shell=bash
# Long runs with generated inputs. Sourced by tam.
: "${root:?}" "${build:?}"

# Findings are not kept in build/results, because a test run empties that folder.
findings=$build/findings

# longest_input SUBJECT: the longest input in bytes. Most subjects have a short one:
# the time of their models grows with the square of the length.
longest_input() {
    case $1 in
    export | fields | marks | names | values) printf 100000 ;;
    *) printf 1000 ;;
    esac
}

# fuzz_pure_code SECONDS: runs each libFuzzer program for so long. It starts from the
# kept corpus and the inputs that earlier runs found. Fails when an input breaks one.
fuzz_pure_code() {
    local seconds=$1 path name folder log status broken=()
    for path in "$root"/tests/fuzz/corpus/*/; do
        name=$(basename "$path")
        [[ -x $build/fuzz/tests/fuzz/fuzz_$name ]] || continue
        folder=$findings/$name
        log=$folder.log
        mkdir -p "$folder"
        printf '%-28s ' "fuzz_$name"
        status=0
        run_child "$findings" "$build/fuzz/tests/fuzz/fuzz_$name" \
            "-max_total_time=$seconds" "-max_len=$(longest_input "$name")" -timeout=20 "-artifact_prefix=$folder-" \
            "$folder" "$path" >"$log" 2>&1 || status=$?
        sed -n '$p' "$log"
        if [[ $status -ne 0 ]]; then
            broken+=("$name")
            tail -n 25 "$log" | sed 's/^/    /'
        fi
    done
    [[ ${#broken[@]} -eq 0 ]] || note "Broken: ${broken[*]}. The inputs are in $findings."
    [[ ${#broken[@]} -eq 0 ]]
}

# run_long PROGRAM VARIABLE=VALUE...: runs a Windows test program with settings for a
# long run, and shows its output at once.
run_long() {
    local program=$1
    shift
    mkdir -p "$findings"
    run_child "$build/win32/tests/fuzz" env WINEPREFIX="$(prefix_folder point)" \
        TAM_ROOT="$(windows_path "$root")" TAM_FUZZ_KEEP="$(windows_path "$findings")" "$@" wine "./$program.exe" --gtest_brief=1
}

# is_number TEXT: a whole number from 1 on, within reason.
is_number() { [[ $1 =~ ^[1-9][0-9]{0,8}$ ]]; }

# share_of SECONDS PARTS: one part of the seconds, but at least one second.
share_of() { printf '%d' $(($1 / $2 > 0 ? $1 / $2 : 1)); }

command_fuzz() {
    local seconds=${1:-120} seed=${2:-$(((RANDOM * 32768 + RANDOM) % 999999999 + 1))} subjects status=0
    if [[ $# -gt 2 ]] || ! is_number "$seconds" || ! is_number "$seed"; then
        die "fuzz takes the seconds that it may run, and a seed."
    fi
    prepare --check
    build_preset fuzz fuzz
    build_preset win32 fuzz_tests
    subjects=$(find "$build/fuzz/tests/fuzz" -maxdepth 1 -name 'fuzz_*' -type f -executable | wc -l)
    fuzz_pure_code "$(share_of "$seconds" $((2 * subjects)))" || status=$?
    wine_environment
    start_display
    start_wine point
    printf 'The component, seed %s\n' "$seed"
    # Nine tests share the other half: documents of a module, of a channel (two), calls of a
    # module, of a channel, documents before checks and component (four).
    run_long fuzz_tests TAM_FUZZ_SEED="$seed" TAM_FUZZ_SECONDS="$(share_of "$seconds" 18)" || status=$?
    return "$status"
}

command_soak() {
    local rounds=${1:-100000}
    if [[ $# -gt 1 ]] || ! is_number "$rounds"; then
        die "soak takes the number of rounds."
    fi
    prepare
    build_preset win32 soak_tests
    wine_environment
    start_display
    start_wine point
    run_long soak_tests TAM_SOAK_ROUNDS="$rounds"
}
