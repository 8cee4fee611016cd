#!/usr/bin/env bash
# How fast tamcheck is beside a parser that only looks at the form of the XML.
#
#   scripts/check_speed.sh TAMCHECK [POINTS]
#
# Makes a device stream of so many points (100,000) and prints seconds of processor time,
# points a second and the most memory as a multiple of the file, of TAMCHECK and of xmllint.
set -euo pipefail

program=$1 points=${2:-100000}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

python3 - "$points" "$folder/stream.xml" <<'PYTHON'
import sys

points, path = int(sys.argv[1]), sys.argv[2]
with open(path, "w", encoding="utf-8") as file:
    file.write("<?xml version=\"1.0\"?>\n<Tam>\n  <Name>Speed</Name>\n  <DevKey>K7</DevKey>\n"
               "  <IsLastOnDev>0</IsLastOnDev>\n  <TamObjID>3</TamObjID>\n  <Attributes>\n")
    for i in range(points):
        file.write(f"    <AI{i // 4}_P{i % 4}>\n      <VISIBLE>1</VISIBLE>\n      <SNVTTYPE>105</SNVTTYPE>\n"
                   f"      <LOGICALADDRESS>{i % 65536}</LOGICALADDRESS>\n      <ISPERMANENT>1</ISPERMANENT>\n"
                   f"      <VALUE>{i % 300}.{i % 100:02}</VALUE>\n    </AI{i // 4}_P{i % 4}>\n")
    file.write("  </Attributes>\n</Tam>\n")
PYTHON
size=$(stat -c %s "$folder/stream.xml")

measure() {
    local name=$1
    shift
    # Status 1 is what findings make of it: addresses repeat past 65535 points.
    python3 - "$name" "$points" "$size" "$@" <<'PYTHON'
import resource
import subprocess
import sys

name, points, size, command = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), sys.argv[4:]
subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
used = resource.getrusage(resource.RUSAGE_CHILDREN)
seconds = used.ru_utime + used.ru_stime
memory = used.ru_maxrss * 1024 / size
print(f"{name:12} {seconds:7.2f} s {points / seconds:12,.0f} points/s   {memory:5.1f} times the file")
PYTHON
}

printf '%s points, %s bytes\n' "$points" "$size"
catalogue=$(dirname "$0")/../samples/catalogue.xml
measure tamcheck "$program" --catalogue "$catalogue" "$folder/stream.xml"
measure xmllint xmllint --noout "$folder/stream.xml"
