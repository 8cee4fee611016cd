# shellcheck shell=bash
# Runs the test programs and counts their results. Sourced by tam, which sets
# root, build and wine's environment.
: "${root:?}" "${build:?}" "${child_pid?}" "${lock_fd?}"

# shellcheck source=scripts/whole_file.sh
. "$root/scripts/whole_file.sh"

# True when every program that runs in Wine runs there in 64 bits too.
in_both_kinds=false
test_timeout=${TAM_TEST_TIMEOUT:-900}

total_passed=0
total_failed=0
failures=()

# Lanes of tests run at the same time, beside the rest of the build. A test mostly waits
# for a window or another program. Each lane has its own display; a Wine prefix belongs
# to one lane only. Those in Wine take about as long.
test_lanes=("point point64" "comma comma64" "screen screen64" "native")
lane_pids=()

# runs_in: program name -> the places where it runs ("native", "point", "comma", "screen",
# "point64" and so on), joined by commas. time_limit: program name -> its own limit in seconds.
declare -A runs_in
declare -A time_limit
# programs: "native/NAME", "win32/NAME" or "win64/NAME" -> the path that the program has
# when it is built.
declare -A programs
# first_programs: the names of those programs of win32 that are built first.
declare -A first_programs

read_test_list() {
    local list=$1 name places limit rest place
    while read -r name places limit rest || [[ -n $name ]]; do
        [[ -z $name || $name == \#* ]] && continue
        [[ -n $places && -z $rest && ${limit:-1} =~ ^[0-9]+$ ]] || die "$list: a bad line for $name"
        for place in ${places//,/ }; do
            [[ $place =~ ^(native|(point|comma|screen)(64)?)$ ]] || die "$list: $name runs in $place, which is no place"
        done
        [[ -z ${runs_in[$name]:-} ]] || die "$list: $name stands there twice"
        runs_in[$name]=$places
        time_limit[$name]=${limit:-$test_timeout}
    done <"$list"
}

# With "./tam test --all", what runs in Wine runs there in 64 bits too.
add_64_bit_places() {
    local name place
    for name in "${!runs_in[@]}"; do
        for place in point comma screen; do
            if [[ ,${runs_in[$name]}, == *,$place,* && ,${runs_in[$name]}, != *,${place}64,* ]]; then
                runs_in[$name]+=,${place}64
            fi
        done
    done
}

# kind_of PLACE: the build whose programs run there.
kind_of() {
    case $1 in
    native) printf native ;;
    *64) printf win64 ;;
    *) printf win32 ;;
    esac
}

# find_programs KIND SUFFIX PLACES: records every test program that a configured build
# makes. The test list can only add places to a program: each one runs at least once in
# one of PLACES.
find_programs() {
    local kind=$1 suffix=$2 own_places=$3 path name
    while IFS= read -r path; do
        name=$(basename "$path" "$suffix")
        [[ -z ${programs[$kind/$name]:-} ]] || die "Two test programs are called $name: ${programs[$kind/$name]} and $path"
        programs[$kind/$name]=$build/$kind/$path
        time_limit[$name]=${time_limit[$name]:-$test_timeout}
        if [[ ! ,${runs_in[$name]:-}, =~ ,($own_places), ]]; then
            runs_in[$name]=${own_places%%|*},${runs_in[$name]:-}
        fi
    done < <(ninja -C "$build/$kind" -t targets all |
        sed -n "s/^\(tests\/.*_tests${suffix/./\\.}\): CXX_EXECUTABLE_LINKER.*/\1/p" | sort)
}

# Records the test programs of all builds. Those of win32 that need neither the bench nor
# the window, which are half of what there is to compile, are built first.
find_all_programs() {
    local wine_places="point|comma|screen|point64|comma64|screen64" key path
    find_programs native "" native
    find_programs win32 .exe "$wine_places"
    ! $in_both_kinds || add_64_bit_places
    find_programs win64 .exe "$wine_places"
    for key in "${!programs[@]}"; do
        [[ $key == win32/* ]] || continue
        path=${programs[$key]#"$build/win32/"}
        ninja -C "$build/win32" -t inputs "$path" | grep -qE '^bin/tam(bench|view)\.exe$' ||
            first_programs[${key#*/}]=yes
    done
}

# The parts of the build that are done: a file for each.
built_marks=$build/results/built

# build_part NAME KIND [TARGET...]: builds and says that it is done.
build_part() {
    local part=$1 kind=$2
    shift 2
    ninja -C "$build/$kind" "${ninja_options[@]}" "$@" </dev/null {lock_fd}>&- &
    child_pid=$!
    wait "$child_pid" || die "The $kind build failed; the reason stands above."
    child_pid=
    : >"$built_marks/$part"
    # What follows is built beside the tests, whose results are the output.
    ninja_options=(--quiet)
}

# Builds everything, or what the named programs need, in the order in which the lanes ask for it.
build_parts() {
    local name programs_of_32=() programs_of_64=() native_programs=()
    trap 'if [[ -n $child_pid ]]; then kill "$child_pid" 2>/dev/null; fi; exit 143' TERM
    mapfile -t programs_of_64 < <(list_64_bit_programs "$@")
    if [[ $# -gt 0 ]]; then
        for name in "$@"; do
            [[ -z ${programs[win32/$name]:-} ]] || programs_of_32+=("$name")
            [[ -z ${programs[native/$name]:-} ]] || native_programs+=("$name")
        done
        # Some tests of one kind ask for the DLLs of the other.
        build_part win32 win32 O_Tam_id OrvHost "${programs_of_32[@]}"
        [[ ${#native_programs[@]} -eq 0 ]] || build_part native native "${native_programs[@]}"
    else
        build_part first win32 O_Tam_id OrvHost "${!first_programs[@]}"
        build_part win32 win32
        build_part native native
    fi
    if $in_both_kinds && [[ $# -eq 0 ]]; then
        build_part win64 win64
    elif [[ ${#programs_of_64[@]} -gt 0 ]]; then
        # None of them runs the bench.
        build_part win64 win64 O_Tam_id OrvHost "${programs_of_64[@]}"
    fi
}

# is_built KIND NAME: true when this test program is there.
is_built() {
    [[ -e $built_marks/$1 ]] || { [[ $1 == win32 && -e $built_marks/first && -n ${first_programs[$2]:-} ]]; }
}

seconds_since() {
    local now=${EPOCHREALTIME/./} start=${1/./}
    printf '%d.%d' $(((now - start) / 1000000)) $(((now - start) / 100000 % 10))
}

fail() {
    total_failed=$((total_failed + 1))
    failures+=("$1")
}

# Runs one program in one place and prints a line. If the program failed, its
# output follows.
run_program() {
    local name=$1 place=$2 path kind prefix=${2%64} loader=wine
    kind=$(kind_of "$place")
    [[ $kind != win64 ]] || loader=$(wine64_loader)
    path=${programs[$kind/$name]:-}
    if [[ -z $path ]]; then
        printf '%-28s %-7s not built\n' "$name" "$place"
        fail "$name ($place): listed in scripts/test-list but not built"
        return
    fi

    local results=$build/results/$place limit=${time_limit[$name]}
    local report=$results/$name.xml log=$results/$name.log
    local start=$EPOCHREALTIME status=0 reason
    mkdir -p "$results"
    rm -f "$report" "$report.part" "$log"
    if [[ $kind == native ]]; then
        run_child "$(dirname "$path")" env TAM_ROOT="$root" \
            UBSAN_OPTIONS=print_stacktrace=1 \
            timeout -k 10 "$limit" "$path" "--gtest_output=xml:$report.part" >"$log" 2>&1 || status=$?
    else
        run_child "$(dirname "$path")" env TAM_ROOT="$(windows_path "$root")" \
            WINEPREFIX="$(prefix_folder "$prefix")" \
            timeout -k 10 "$limit" "$loader" "$path" "--gtest_output=xml:$(windows_path "$report.part")" \
            >"$log" 2>&1 || status=$?
    fi
    # A report that the program did not finish does not count.
    if [[ $(tail -c 20 "$report.part" 2>/dev/null) == *'</testsuites>'* ]]; then
        mv -f "$report.part" "$report"
    fi
    reason="ended with status $status"
    # 124 from timeout itself, 137 when the program had to be killed.
    if [[ $status -eq 124 || $status -eq 137 ]] && ((${EPOCHREALTIME/./} - ${start/./} >= limit * 1000000)); then
        reason="stopped after $limit s"
        # Processes that the program started may still hang in the prefix.
        if [[ $kind != native ]]; then
            start_server "$prefix"
        fi
    fi

    local lines=() passed failed line
    mapfile -t lines < <(python3 "$root/scripts/count_results.py" "$report" "$log" "$status" "$reason")
    read -r passed failed <<<"${lines[0]:-}"
    [[ $passed =~ ^[0-9]+$ && $failed =~ ^[0-9]+$ ]] || die "The results of $name could not be counted."
    printf '%-28s %-7s %5d passed %5d failed %7s s\n' "$name" "$place" "$passed" "$failed" "$(seconds_since "$start")"
    total_passed=$((total_passed + passed))
    for line in "${lines[@]:1}"; do
        fail "$name ($place): $line"
    done
    if [[ $failed -gt 0 ]]; then
        grep -vE '^\[ +(RUN|OK) +\]' "$log" | sed 's/^/    /' || true
        note "    All of it: $log"
    fi
}

# True when the page of ./tam run is tried after the programs: with the whole list.
tries_page=false

# The page that a newcomer reads. It fails where one of its parts is not there, and past 60 lines.
try_page() {
    local log=$build/results/page.log start=$EPOCHREALTIME status=0
    run_tour win32 >"$log" 2>&1 || status=$?
    printf '%-28s %-7s %5d passed %5d failed %7s s\n' "the page of ./tam run" point $((status == 0)) $((status != 0)) \
        "$(seconds_since "$start")"
    if [[ $status -eq 0 ]]; then
        total_passed=$((total_passed + 1))
    else
        fail "the page of ./tam run: ended with status $status"
        sed 's/^/    /' "$log"
    fi
}

# run_lane NUMBER NAME...
# Runs the programs that belong to a lane's places, in a process of its own, and
# writes the lane's counts to a file. A program that is not built yet waits; those behind
# it do not.
run_lane() {
    local lane=$1 name place served='' index pending=()
    shift
    trap 'if [[ -n $child_pid ]]; then kill "$child_pid" 2>/dev/null; fi; exit 143' TERM
    use_lane "$lane"
    for place in ${test_lanes[lane]}; do
        for name in "$@"; do
            [[ ,${runs_in[$name]}, != *,$place,* ]] || pending+=("$place/$name")
        done
    done
    while [[ ${#pending[@]} -gt 0 ]]; do
        for index in "${!pending[@]}"; do
            place=${pending[index]%%/*} name=${pending[index]#*/}
            is_built "$(kind_of "$place")" "$name" || continue
            unset "pending[index]"
            # The server stays on this core and display from its first program on.
            [[ $place == native || ${place%64} == "$served" ]] || start_server "${place%64}"
            served=${place%64}
            run_program "$name" "$place"
            continue 2
        done
        sleep 1
    done
    if $tries_page && [[ " ${test_lanes[lane]} " == *" point "* ]]; then
        try_page
    fi
    write_whole "$build/results/lane-$lane" write_lane
}

# write_lane FILE: writes this lane's counts, and its failures below them.
write_lane() { printf '%s\n' "$total_passed $total_failed" "${failures[@]}" >"$1"; }

# Adds the counts of a lane to the total.
add_lane() {
    local lane=$1 lines=() passed failed
    mapfile -t lines <"$build/results/lane-$lane" || true
    read -r passed failed <<<"${lines[0]:-}"
    if [[ ! $passed =~ ^[0-9]+$ || ! $failed =~ ^[0-9]+$ ]]; then
        fail "lane $lane (${test_lanes[lane]}) ended early"
        return
    fi
    total_passed=$((total_passed + passed))
    total_failed=$((total_failed + failed))
    failures+=("${lines[@]:1}")
}

# list_64_bit_programs NAME...: those of these programs that run in 64 bits, or of
# all of them.
list_64_bit_programs() {
    local name wanted=("$@")
    [[ $# -gt 0 ]] || wanted=("${!runs_in[@]}")
    for name in "${wanted[@]}"; do
        [[ ${runs_in[$name]:-} != *64* ]] || printf '%s\n' "$name"
    done
}

# Builds and runs the named programs, or all of them. The builds are configured and the
# test list has been read.
run_test_programs() {
    local wanted=("$@") names=() name builder lane
    # GoogleTest's variables that filter, shard or repeat would change the counts.
    for name in "${!GTEST_@}"; do
        unset "$name"
    done
    find_all_programs

    if [[ ${#wanted[@]} -gt 0 ]]; then
        for name in "${wanted[@]}"; do
            [[ -n ${runs_in[$name]:-} ]] || die "There is no test program $name."
        done
        names=("${wanted[@]}")
    else
        rm -rf "$build/results"
        tries_page=true
        mapfile -t names < <(printf '%s\n' "${!runs_in[@]}" | sort)
    fi
    rm -rf "$built_marks" "$build/results"/lane-*
    mkdir -p "$built_marks"

    # On all cores: what follows binds this process to one.
    build_parts "${wanted[@]}" &
    builder=$!
    lane_pids=("$builder")
    wine_environment
    for lane in "${test_lanes[@]}"; do
        [[ $lane == native ]] || start_display
    done
    start_wine point comma screen

    for lane in "${!test_lanes[@]}"; do
        run_lane "$lane" "${names[@]}" &
        lane_pids+=($!)
        # On one core, lanes gain nothing.
        has_two_cores || wait $! || true
    done
    wait "$builder" || exit 1
    for lane in "${!test_lanes[@]}"; do
        wait "${lane_pids[lane + 1]}" || true
        add_lane "$lane"
    done
    lane_pids=()

    if [[ ${#failures[@]} -gt 0 ]]; then
        printf '\nFailures:\n'
        printf '  %s\n' "${failures[@]}"
    fi
    printf '\n%d passed, %d failed\n' "$total_passed" "$total_failed"
    [[ $total_failed -eq 0 && $total_passed -gt 0 ]]
}
