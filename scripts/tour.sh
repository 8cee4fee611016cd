#!/usr/bin/env bash
# A tour of what the component does, through the bench. "./tam run" builds what
# it needs, sets WINEPREFIX, TAM_BENCH (the bench) and TAM_TOUR_DIR (a folder
# for what the steps write), and calls it from the top of the clone.
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

say "O_Tam_id.dll is a COM component for a programming tool of building-automation controllers. Its \
object stands for a remote input/output module. In this tour the tool is tambench: it activates the \
component from the DLL beside it, nothing being registered, and lends it the services of a tool from \
OrvHost.dll. The samples it reads are explained in samples/README.md."

step "What a module is" \
    "A device stream (XML) describes one module. The component builds from it inputs, which other \
objects' values are wired to, outputs, which publish values, and attributes, which configure it. Each \
has a network variable type, looked up in the catalogue that the tool hands over." \
    inspect channels --wire

step "Setting values" \
    "Values are stored as numbers with a point. The component turns them into what a user sees: with \
the unit, converted by the tool (here into US units), or with the label of an enumeration." \
    set channels AI1_Offset=1.5 AO1_Setup=2 --us

step "Saving into a project" \
    "The user calls the module \"Reading room 2\", places it at 12.5, 4 and has its temperature shown \
in a display. The component writes its element into the tool's project document." \
    save channels --name "Reading room 2" --at 12.5 4 --display AI1_Out -o "$TAM_TOUR_DIR/project.xml"

step "Loading the project again" \
    "A fresh object takes its points from the stream and the rest from the project. Which outputs are \
displayed is written but not read back: tools have always set that themselves." \
    load channels "$TAM_TOUR_DIR/project.xml"

step "The database image" \
    "For the controller the object describes itself in an export document, which the tool's compiler \
turns into a database image and two sizes. This is a full module of 103 points and attributes." \
    export full --wire -o "$TAM_TOUR_DIR/full.image"

step "Without the compiler" \
    "On a machine without the compiler the user gets a message box, both sizes are 0, and the export \
document itself is the answer." \
    export channels --wire --no-compiler

step "A stream with faults" \
    "Faults in a stream are shown to the user in boxes, and loading goes on. The bench reads the boxes, \
answers them, and ends with status 1 unless it is told to tolerate them, as here. (Contains tells whether the module holds the points of a channel object.)" \
    contains oddities K8 AI6 --tolerate-boxes

expected_status=1
step "A stream that is no XML" \
    "What cannot be loaded at all fails as a COM call does: with a number and a description." \
    inspect damaged
expected_status=0

step "A device with the objects of its channels" \
    "So far the module stood alone. In a device each of its channels (AI1 is its first analogue input) is \
an object of its own, made by the component's manager where the device's firmware has such objects. It \
wraps the tool's generic block, which takes its points from a definition. The definition's TAMConfig \
has the last word on which of them are visible. A point of a channel belongs to the module's item that is \
named after both: Offset of AI1 to AI1_Offset. Not every point has one." \
    device tree

step "Placing another channel" \
    "The user places a second analogue input. The manager makes its object by the identifier of its kind. \
This module was described without a second input, so it has no items for it." \
    device place ai AI2

step "Getting a channel's data from the device" \
    "The device knows which of its terminals a channel uses and what can be connected there. Channel \
takes the one, Setup the other: as its value the first setup, as its enumeration all of them. The module's \
items get the same values." \
    device fetch AI1

step "Setting a channel's values" \
    "What is set at the channel goes on to the module's item, where there is one." \
    device set AI1 Offset=1.5 Filter=4

step "Saving the whole device" \
    "The device becomes one project document: an element for the module and one for each channel, which \
begins with the keys of the device (DevKey) and of the channel (TamObjectKey). Before that the channels \
get their data from the device, AI1 gets two values, and its output is put into the displays." \
    device save --fetch --display AI1.Out AI1.Offset=1.5 AI1.Filter=4 --name "Reading room 2" --at 12.5 4 \
    -o "$TAM_TOUR_DIR/device.xml"

step "Loading the whole device" \
    "Everything is made anew: the module from its stream, the channels from the definitions and keys that \
the project names. Each takes back what the project says of it. Then the tool writes the channels' values \
once more where the module's items differ, so that these follow." \
    device load "$TAM_TOUR_DIR/device.xml"

step "Exporting the device's module" \
    "Channels have no database of their own. What was set at them is in the image of the module, here of \
the device that was just saved." \
    device export --project "$TAM_TOUR_DIR/device.xml"

expected_status=1
step "A project without the module" \
    "A project is loaded whole or not at all. This document is the catalogue, which is no project." \
    device load samples/catalogue.xml
expected_status=0

printf '\n\n'
say "That was the tour: $steps steps. What they wrote lies in $TAM_TOUR_DIR. Go on with" \
    "" \
    "  ./tam wine $(realpath --relative-to=. "$TAM_BENCH" 2>/dev/null || printf '%s' "$TAM_BENCH") --help" \
    "" \
    "for all that the bench can do, and with ./tam test for the tests."
