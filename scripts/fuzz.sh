# shellcheck shell=bash
# Long runs with inputs that nobody wrote. Sourced by tam.
: "${root:?}" "${build:?}"

# Runs each libFuzzer program for so many seconds, from the kept corpus and what
# earlier runs found on. Fails when an input breaks one.
fuzz_pure_code() {
    local seconds=$1 path name folder log status broken=()
    for path in "$root"/tests/fuzz/corpus/*/; do
        name=$(basename "$path")
        [[ -x $build/fuzz/tests/fuzz/fuzz_$name ]] || continue
        folder=$build/results/fuzz/$name
        log=$folder.log
        mkdir -p "$folder"
        printf '%-28s ' "fuzz_$name"
        status=0
        run_child "$build/results/fuzz" "$build/fuzz/tests/fuzz/fuzz_$name" \
            "-max_total_time=$seconds" -max_len=1000 -timeout=20 "-artifact_prefix=$folder-" \
            "$folder" "$path" >"$log" 2>&1 || status=$?
        sed -n '$p' "$log"
        if [[ $status -ne 0 ]]; then
            broken+=("$name")
            tail -n 25 "$log" | sed 's/^/    /'
        fi
    done
    [[ ${#broken[@]} -eq 0 ]] || note "Broken: ${broken[*]}. The inputs are in $build/results/fuzz."
    [[ ${#broken[@]} -eq 0 ]]
}

command_fuzz() {
    local seconds=${1:-120} subjects
    [[ $# -le 1 && $seconds =~ ^[1-9][0-9]{0,6}$ ]] || die "fuzz takes the seconds that it may run."
    prepare --check
    build_preset fuzz fuzz
    subjects=$(find "$root/tests/fuzz/corpus" -mindepth 1 -maxdepth 1 -type d | wc -l)
    fuzz_pure_code $((seconds / subjects + 1))
}
