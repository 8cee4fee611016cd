#!/usr/bin/env bash
# What the component does, shown through the bench: on a page of at most 60 lines, or
# with --all as a tour of every step. "./tam run" builds what it needs, sets
# WINEPREFIX, TAM_BENCH (the bench) and TAM_TOUR_DIR (a folder for what the steps
# write), and calls it from the top of the clone.
set -euo pipefail

: "${TAM_BENCH:?use ./tam run}" "${TAM_TOUR_DIR:?use ./tam run}"
rm -rf "$TAM_TOUR_DIR"
mkdir -p "$TAM_TOUR_DIR"
steps=0

say() { printf '%s\n' "$@" | fold -s -w 100 | sed 's/ *$//'; }

# An argument as one would type it.
typed() {
    if [[ $1 =~ ^[A-Za-z0-9_./=:-]+$ ]]; then
        printf ' %s' "$1"
    else
        printf " '%s'" "$1"
    fi
}

bench_path=$(realpath --relative-to=. "$TAM_BENCH" 2>/dev/null || printf '%s' "$TAM_BENCH")

# --- the page -----------------------------------------------------------------

# show STATUS ARGUMENT...: shows a command line of the bench and runs it; what it prints is
# in $said. The page stops where the exit status is another one.
said=
show() {
    local expected=$1 status=0 argument
    shift
    printf '$ tambench'
    for argument in "$@"; do
        typed "$argument"
    done
    printf '\n'
    wine "$TAM_BENCH" "$@" </dev/null >"$TAM_TOUR_DIR/said.txt" 2>&1 || status=$?
    said=$(cat "$TAM_TOUR_DIR/said.txt")
    if [[ $status -ne $expected ]]; then
        printf '%s\nThe page stopped: status %d instead of %d.\n' "$said" "$status" "$expected" >&2
        exit 1
    fi
}

# part START ROWS [SKIPPED]: of what was said, the line that begins with START and ROWS more,
# up to the next empty line; lines that match SKIPPED are left out. The page stops where there
# is no such line.
part() {
    local found
    found=$(awk -v start="$1" -v rows="$2" -v skipped="${3:-^$}" '
        index($0, start) == 1 && !on { on = 1; left = rows + 1 }
        on && $0 == "" { exit }
        on && $0 !~ skipped { if (left-- == 0) exit; print substr($0, 1, 100) }' <<<"$said")
    if [[ -z $found ]]; then
        printf '%s\nThe page stopped: no line begins with "%s".\n' "$said" "$1" >&2
        exit 1
    fi
    printf '%s\n' "$found"
}

kilobytes() { printf '%d KB' $(($(stat -c %s "$1") / 1024)); }

page() {
    local folder project=$TAM_TOUR_DIR/project.xml
    folder=$(dirname "$TAM_BENCH")
    say "O_Tam_id.dll ($(kilobytes "$folder/O_Tam_id.dll")) is a COM component; a host loads it for each remote I/O \
module. Here the host is tambench, beside it in $(dirname "$bench_path"); OrvHost.dll is the host's side." ""
    echo "A module, built from a device stream:"
    show 0 inspect channels
    part "Inputs" 3 "----"
    part "Outputs" 3 "----"
    part "Attributes" 4 "----"
    printf '\nA value as it is stored, and as users see it:\n'
    show 0 set channels AI1_Offset=1.5
    part "  AI1_Offset" 1
    show 0 set channels AI1_Offset=1.5 --us
    part "  AI1_Offset" 1
    printf '\nSaved in a project, and restored by a new object:\n'
    show 0 save channels --name "Reading room 2" --at 12.5 4 -o "$project"
    show 0 load channels "$project"
    part "  Saved with" 3 "----"
    printf '\nCompiled for the controller:\n'
    show 0 export channels -o "$TAM_TOUR_DIR/channels.image"
    part "The database image" 2
    printf '\nA stream with faults loads, and tells each one in a box; check says where it is:\n'
    show 1 inspect oddities
    part "The component showed" 8
    printf '\nTry next:\n'
    printf '  %s\n' "./tam run --all            the whole tour, step by step" \
        "./tam wine $bench_path --help" \
        "./tam test                 every test"
}

if [[ ${1:-} != --all ]]; then
    page >"$TAM_TOUR_DIR/page.txt" || {
        cat "$TAM_TOUR_DIR/page.txt"
        exit 1
    }
    cat "$TAM_TOUR_DIR/page.txt"
    # A newcomer reads a page; the commands of tam say two lines before it.
    [[ $(wc -l <"$TAM_TOUR_DIR/page.txt") -le 58 ]] || {
        echo "The page is longer than a page." >&2
        exit 1
    }
    exit 0
fi

# --- the whole tour -----------------------------------------------------------

# step HEADING EXPLANATION ARGUMENT...: says what comes, shows the bench's
# command line and runs it. The tour stops where the bench's exit status is not
# the one in expected_status.
expected_status=0
step() {
    local heading=$1 explanation=$2 status=0 argument
    shift 2
    steps=$((steps + 1))
    printf '\n\n=== %d. %s\n\n' "$steps" "$heading"
    say "$explanation"
    printf '\n$ tambench'
    for argument in "$@"; do
        typed "$argument"
    done
    printf '\n\n'
    wine "$TAM_BENCH" "$@" </dev/null 2>&1 || status=$?
    if [[ $status -ne $expected_status ]]; then
        printf '\nThe tour stopped: step %d ended with status %d instead of %d.\n' \
            "$steps" "$status" "$expected_status" >&2
        exit 1
    fi
    if [[ $expected_status -ne 0 ]]; then
        printf '\n(exit status %d, as it should be)\n' "$status"
    fi
}

say "O_Tam_id.dll is a COM component. Its host is a programming tool for building-automation controllers, and \
its objects stand for remote input/output modules. In this tour the host is tambench. It loads the component from \
the DLL beside it, so nothing is registered, and takes the host services from OrvHost.dll. samples/README.md explains \
the samples."

step "What a module is" \
    "A device stream (XML) describes one module. The component builds the module's points from it: inputs, \
which are wired to values of other objects; outputs, which publish values; and attributes, which configure the \
module. Each point has a network variable type from the catalogue that the host hands over." \
    inspect channels --wire

step "Setting values" \
    "Values are stored as numbers with a decimal point. A user sees them with their unit, converted by the host \
(here into US units), or as the label of an enumeration." \
    set channels AI1_Offset=1.5 AO1_Setup=2 --us

step "Saving into a project" \
    "The user calls the module \"Reading room 2\", places it at 12.5, 4 and shows its temperature in a display. \
The component writes its element into the host's project document." \
    save channels --name "Reading room 2" --at 12.5 4 --display AI1_Out -o "$TAM_TOUR_DIR/project.xml"

step "Loading the project again" \
    "A new object takes its points from the stream and the rest from the project. The flags of displayed \
outputs are written but not read back: hosts set these flags themselves." \
    load channels "$TAM_TOUR_DIR/project.xml"

step "The database image" \
    "For the controller, the object describes itself in an export document. The host's compiler turns it into a \
database image and two sizes. This is a full module with 103 points." \
    export full --wire -o "$TAM_TOUR_DIR/full.image"

step "Without the compiler" \
    "On a machine without the compiler the user sees a message box. Both sizes are 0, and the export document \
itself is the answer." \
    export channels --wire --no-compiler

step "A stream with faults" \
    "Faults in a stream are shown to the user in message boxes, and loading goes on. The bench reads the boxes \
and answers them. Its exit status would be 1, but here it is told to tolerate boxes. (Contains tells whether the \
module has the points of a channel.)" \
    contains oddities K8 AI6 --tolerate-boxes

expected_status=1
step "A stream that is no XML" \
    "A stream that cannot be loaded at all is a failed COM call, with a number and a description." \
    inspect damaged
expected_status=0

step "A device with the objects of its channels" \
    "So far the module was alone. In a device each channel (AI1 is the first analogue input) has a channel \
object, if the firmware of the device has such objects. The component's object manager creates it. It wraps a \
generic object of the host, which takes its points from a definition. The section TAMConfig of the definition \
decides which of them are visible. A point of a channel object may have a counterpart on the module, which is named \
after both: Offset of AI1 and AI1_Offset." \
    device tree

step "Placing another channel" \
    "The user places a second analogue input. The object manager creates its channel object by the identifier of \
its kind. The stream of this module describes no second input, so the module has no counterparts for its points." \
    device place ai AI2

step "Getting a channel's data from the device" \
    "The device knows which terminal a channel uses and what can be connected there. The attribute Channel takes \
the terminal. The attribute Setup takes the first possible setup as its value and all of them as its enumeration. \
The module's attributes get the same values." \
    device fetch AI1

step "Setting a channel's values" \
    "A value that is set at the channel object is passed on to the module's point, if there is one." \
    device set AI1 Offset=1.5 Filter=4

step "Saving the whole device" \
    "The device becomes one project document. It has an element for the module and one for each channel object, \
which begins with the keys of the device (DevKey) and of the channel (TamObjectKey). Before that, the channel \
objects get their data from the device, AI1 gets two values, and its output is displayed." \
    device save --fetch --display AI1.Out AI1.Offset=1.5 AI1.Filter=4 --name "Reading room 2" --at 12.5 4 \
    -o "$TAM_TOUR_DIR/device.xml"

step "Loading the whole device" \
    "All objects are created again: the module from its stream, the channel objects from the definitions and keys \
that the project names. Each loads its element of the project. Then the host writes the values of the channel \
objects once more where the module's points differ, so that these follow." \
    device load "$TAM_TOUR_DIR/device.xml"

step "Exporting the device's module" \
    "Channel objects have no database of their own. Their values are in the image of the module. This is the \
device that was just saved." \
    device export --project "$TAM_TOUR_DIR/device.xml"

expected_status=1
step "A project without the module" \
    "A project is loaded completely or not at all. This document is the catalogue, which is no project." \
    device load samples/catalogue.xml

step "What other programs find" \
    "The bench takes the DLLs beside it, other programs take what is registered. Nothing is registered here. The \
doctor tells so for 32-bit and for 64-bit programs, and what to run." \
    doctor
expected_status=0

printf '\n\n'
say "That was the tour of $steps steps. Their files are in $TAM_TOUR_DIR. Go on with" \
    "" \
    "  ./tam wine $bench_path --help" \
    "" \
    "for all commands of the bench, and with ./tam test for the tests."
