#!/usr/bin/env bash
# A tour of what the component does, through the bench. "./tam run" builds what
# it needs, sets WINEPREFIX, TAM_BENCH (the bench) and TAM_TOUR_DIR (a folder
# for what the steps write), and calls it from the top of the clone.
set -euo pipefail

: "${TAM_BENCH:?use ./tam run}" "${TAM_TOUR_DIR:?use ./tam run}"
rm -rf "$TAM_TOUR_DIR"
mkdir -p "$TAM_TOUR_DIR"
out="Z:${TAM_TOUR_DIR//\//\\}"
steps=0

# step HEADING ARGUMENT...: shows the bench's command line and runs it.
step() {
    steps=$((steps + 1))
    printf '\n== %d. %s\n$ tambench' "$steps" "$1"
    shift
    printf ' %q' "$@"
    printf '\n\n'
    local status=0
    wine "$TAM_BENCH" "$@" </dev/null || status=$?
    if [[ $status -ne 0 ]]; then
        printf '\nThe tour stopped: step %d ended with status %d.\n' "$steps" "$status" >&2
        exit 1
    fi
}

step "A module object as the host sees it" inspect samples/streams/full.xml
step "The network variable types of the catalogue" types --filter temp
step "Set an attribute and read it back" set samples/streams/full.xml Gain 2.5
step "Save the object into a project" save samples/streams/full.xml --out "$out\\project.xml"
step "Load the project again" load "$out\\project.xml"
step "Points by other objects' keys" contains samples/streams/full.xml
step "Clear the references to other objects" clear-refs samples/streams/full.xml
step "Let the host's compiler make the database image" interop samples/streams/full.xml
step "Export for the device" export samples/streams/full.xml --out "$out\\export.xml"

printf '\nThe tour is over: %d steps. What they wrote lies in %s\n' "$steps" "$TAM_TOUR_DIR"
