# shellcheck shell=bash
# Tries the packages as their user would. Sourced by scripts/package.sh.
: "${root:?}" "${build:?}" "${child_pid?}" "${lock_fd?}"

tries_passed=0
tries_failed=0

# try_to WORDS COMMAND...: runs a test of the packages, and counts it.
try_to() {
    local what=$1 log=$build/results/package-$((tries_passed + tries_failed + 1)).log status=0
    shift
    # A subshell, because errexit must hold in the test and not here.
    ( set -e; "$@" ) </dev/null >"$log" 2>&1 {lock_fd}>&- &
    child_pid=$!
    wait "$child_pid" || status=$?
    child_pid=
    if [[ $status -eq 0 ]]; then
        printf 'passed  %s\n' "$what"
        tries_passed=$((tries_passed + 1))
    else
        printf 'FAILED  %s\n' "$what"
        sed 's/^/    /' "$log"
        tries_failed=$((tries_failed + 1))
    fi
}

# Tries the packages as their user would, in a Wine prefix of its own that is
# made for it each time.
try_packages() {
    mkdir -p "$build/results"
    wine_environment
    start_display
    package_folder=$build/package
    rm -rf "$package_folder" "$(prefix_folder package)"
    mkdir -p "$package_folder"
    start_wine package
    WINEPREFIX=$(prefix_folder package)
    export WINEPREFIX
    # Every user of Windows has this key; in Wine the first class makes it.
    wine reg add 'HKCU\Software\Classes' /f
    version=$(sed -n 's/^project(O_Tam_id VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")

    try_to "SHA256SUMS names every package and its sum" try_sums
    try_to "packing again gives the same bytes" try_again
    try_to "the zip works where it is unpacked, unregistered" try_zip
    try_to "installed for everybody and removed, nothing is left" try_installer AllUsers
    try_to "installed for one user and removed, nothing is left" try_installer CurrentUser
    try_to "a smaller choice takes away the rest; a bad choice is refused" try_choice
    try_to "an older version goes, with what only it had; the user's files stay" try_upgrade
    try_to "elsewhere or for others, it takes the place of what was there; what is damaged is repaired" try_moved
    try_to "a component in use is left alone, and its user named" try_in_use
    try_to "the SDK's example is built from the SDK alone, and runs" try_sdk
    try_to "the test programs run by run-tests.cmd" try_kit
    try_to "the bill of materials names every file with its sums" try_bill
    try_to "with a certificate everything is signed" try_signed
    printf '%s passed, %s failed\n' "$tries_passed" "$tries_failed"
    [[ $tries_failed -eq 0 ]]
}

try_sums() {
    cd "$root/dist"
    sha256sum --check SHA256SUMS
    # Each file but the sums has a line.
    diff <(cut -d ' ' -f 3 SHA256SUMS) <(find . -type f -not -name SHA256SUMS -printf '%P\n' | LC_ALL=C sort)
}

# The folder, the clock and the order of files have no part in a package.
try_again() {
    cp -r "$root/dist" "$package_folder/first"
    pack "$package_folder/second"
    diff -r "$package_folder/first" "$package_folder/second"
}

# unpack PACKAGE FOLDER
unpack() { python3 -m zipfile -e "$root/dist/$1" "$2"; }

# Both kinds tell the same of the same stream, and nothing is registered.
try_zip() {
    local folder="$package_folder/un packed" kind
    unpack "O_Tam_id-$version-windows.zip" "$folder"
    if wine reg query 'HKCR\O_Tam_id.CDBAppObject'; then
        echo "The prefix has the component registered already."
        return 1
    fi
    for kind in win32 win64; do
        (cd "$folder/O_Tam_id-$version/$kind" &&
            wine ./tambench.exe --version &&
            wine ./tambench.exe inspect full --json >"$package_folder/$kind.json" &&
            wine ./tambench.exe export full >"$package_folder/$kind.txt")
        [[ -s $package_folder/$kind.json ]]
    done
    # But for the folder of the stream.
    diff <(sed 's/win64/win32/' "$package_folder/win64.json") "$package_folder/win32.json"
    diff "$package_folder/win32.txt" "$package_folder/win64.txt"
}

# What a host's programmer does: the example in a folder of its own, then beside the DLLs.
try_sdk() {
    local folder=$package_folder/sdk kind
    unpack "O_Tam_id-$version-sdk.zip" "$folder"
    unpack "O_Tam_id-$version-windows.zip" "$folder"
    folder="$folder/O_Tam_id-$version"
    # The commands of its README, for 32 bits as they stand.
    # shellcheck disable=SC2016 # the marks of Markdown
    sed -n '/^```sh$/,/^```$/{/^```/!p}' "$folder-sdk/README.md" >"$package_folder/win32.sh"
    [[ $(grep -c mingw-w32 "$package_folder/win32.sh") -eq 1 ]]
    sed 's/mingw-w32/mingw-w64/' "$package_folder/win32.sh" >"$package_folder/win64.sh"
    for kind in win32 win64; do
        rm -rf "$folder-sdk/build"
        (cd "$folder-sdk" && bash -eu "$package_folder/$kind.sh")
        cp "$folder-sdk/build/host.exe" "$folder/$kind"
        cmp "$folder-sdk/manifests/$kind/O_Tam_id.Classes.manifest" "$folder/$kind/O_Tam_id.Classes.manifest"
        (cd "$folder/$kind" && wine ./host.exe 'samples\catalogue.xml' 'samples\streams\channels.xml' project.xml |
            tr -d '\r' >"$package_folder/host-$kind.txt")
        cat "$package_folder/host-$kind.txt"
        grep -q '^  AI1_Offset = ' "$package_folder/host-$kind.txt"
        grep -q '^Image: [1-9]' "$package_folder/host-$kind.txt"
        grep -q '<DevKey>K7</DevKey>' "$folder/$kind/project.xml"
    done
    python3 -m py_compile "$folder-sdk/samples/clients/client.py"
    # The interfaces can be compiled again from their sources.
    mkdir "$folder-sdk/own"
    (cd "$folder-sdk/idl" && i686-w64-mingw32-widl -m32 -I . -I members -I /usr/include/wine/wine/windows \
        -h -o ../own/OrvDBFaces.h OrvDBFaces.idl)
    # But for the first line, which names the source.
    diff <(tail -n +2 "$folder-sdk/own/OrvDBFaces.h") <(tail -n +2 "$folder-sdk/include/OrvDBFaces.h")
}

# The kit by Wine's own cmd, in the prefix where nothing is registered.
try_kit() {
    local folder="$package_folder/test kit" small="$package_folder/R&D" status=0 last
    unpack "O_Tam_id-$version-windows-tests.zip" "$folder"
    folder="$folder/O_Tam_id-$version-windows-tests"
    (cd "$folder" && wine cmd /c run-tests.cmd) | tr -d '\r' >"$package_folder/kit.txt" || status=$?
    cat "$package_folder/kit.txt"
    grep -h -A 8 ' Failure$' "$folder"/results/*.log || true
    last=$(tail -n 1 "$package_folder/kit.txt")
    [[ $status -eq 0 && $last =~ ^[1-9][0-9]*\ passed,\ 0\ failed$ ]]
    # One program in a folder whose name means something to cmd.
    mkdir -p "$small/win32/tests/core"
    cp "$folder/win32/tests/core/core_tests.exe" "$small/win32/tests/core"
    sed '/^call :run/{/^call :run win32 core core_tests/!d}' "$folder/run-tests.cmd" >"$small/run-tests.cmd"
    (cd "$small" && wine cmd /c run-tests.cmd) | tr -d '\r' >"$package_folder/small.txt" || true
    cat "$package_folder/small.txt"
    grep -Eq '^core_tests win32: [1-9][0-9]* passed' "$package_folder/small.txt"
    [[ -s $small/results/win32-core_tests.log ]]
}

# Without the times of keys and of Wine's display driver. A program that removes itself goes on from a copy in the
# folder for temporary files, which Windows deletes at its next start: that note goes with it.
plain_registry() {
    sed -E '/^#(time|link)=/d; /^"DriverDateData"=/d; s/^(\[.*\]) [0-9]+$/\1/
        /^"PendingFileRenameOperations"=/{s/\\\\\?\?\\\\C:[^"]*\\\\Temp\\\\~nsu[0-9A-Z]*\.tmp(\\\\Un\.exe)?\\0\\0//g; /str\(7\):""$/d}' "$1"
}

# What an installation must leave as it was: the registry, and the names of all files.
take_state() {
    # The server writes the registry out when it ends: all of it, of both kinds.
    stop_server package
    plain_registry "$WINEPREFIX/system.reg" >"$1.machine"
    plain_registry "$WINEPREFIX/user.reg" >"$1.user"
    start_server package
    # Temporary files are Windows' own to clear.
    find "$WINEPREFIX/drive_c" -not -path '*/Temp/*' | LC_ALL=C sort >"$1.files"
}

same_state() {
    local part
    for part in machine user files; do
        diff --text "$1.$part" "$2.$part"
    done
}

# run_setup PROGRAM ARGUMENTS: an installer in silence. The arguments are one text, as a user types them: /D= takes
# blanks without quotes, which only a command line of Windows can hand over.
run_setup() {
    printf '"%s" /S %s\r\nexit %%errorlevel%%\r\n' "$(windows_path "$1")" "$2" >"$package_folder/setup.cmd"
    wine cmd /c "$(windows_path "$package_folder/setup.cmd")"
}

set_up() { run_setup "$root/dist/O_Tam_id-$version-setup.exe" "$*"; }

# uninstall FOLDER SCOPE [OPTION]: the program goes on from a copy of itself, so its end is that of its file. It is told
# the scope by an option, unless that is given and empty.
uninstall() {
    local tries=0 option=${3-/$2}
    wine "$1/uninstall.exe" /S ${option:+"$option"}
    while [[ -e $1/uninstall.exe && $tries -lt 60 ]]; do
        sleep 0.5
        tries=$((tries + 1))
    done
    # The registry's key goes after the file.
    while apps_entry "$2" >/dev/null && [[ $tries -lt 90 ]]; do
        sleep 0.5
        tries=$((tries + 1))
    done
}

apps_entry() {
    local hive=HKLM
    [[ $1 == AllUsers ]] || hive=HKCU
    wine reg query "$hive\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\O_Tam_id" /reg:64
}

# run_client LOADER SYSTEM_FOLDER: a script client with the classes that are registered, in 32 or 64 bits.
run_client() {
    local samples=$installed/samples result=$package_folder/client.txt
    rm -f "$result"
    "$1" "C:\\windows\\$2\\cscript.exe" //nologo "$(windows_path "$samples/clients/client.vbs")" \
        "$(windows_path "$samples/catalogue.xml")" "$(windows_path "$samples/streams/channels.xml")" \
        "$(windows_path "$package_folder/project.xml")" "$(windows_path "$result")"
    iconv -f UTF-16 -t UTF-8 "$result"
    iconv -f UTF-16 -t UTF-8 "$result" | tail -n 1 | grep -q 'All right'
}

try_installer() {
    local scope=$1 folder
    installed="$WINEPREFIX/drive_c/tools/O Tam"
    take_state "$package_folder/before"
    set_up "/$scope" '/D=C:\tools\O Tam'
    for folder in win32 win64; do
        [[ -f $installed/$folder/O_Tam_id.dll && -f $installed/$folder/tambench.exe && -f $installed/$folder/tamview.exe ]]
    done
    [[ -n $(find "$WINEPREFIX/drive_c" -path '*Start Menu*' -name O_Tam_id.lnk) ]]
    [[ -f $installed/README.html && -f $installed/samples/clients/client.vbs ]]
    apps_entry "$scope" | tr -d '\r' >"$package_folder/apps.txt"
    cat "$package_folder/apps.txt"
    grep -Eq "DisplayVersion +REG_SZ +$version$" "$package_folder/apps.txt"
    grep -Eq 'Publisher +REG_SZ +O_Tam_id project$' "$package_folder/apps.txt"
    grep -Eq 'EstimatedSize +REG_DWORD +0x[1-9a-f][0-9a-f]{3}' "$package_folder/apps.txt"
    # Classes of one user are not found by Wine 8.
    if [[ $scope == AllUsers ]]; then
        run_client wine syswow64
        run_client "$(wine64_loader)" system32
    fi
    # Over itself: a repair.
    rm "$installed/win32/O_Tam_id.xml"
    set_up "/$scope"
    [[ -f $installed/win32/O_Tam_id.xml ]]
    uninstall "$installed" "$scope"
    take_state "$package_folder/after"
    same_state "$package_folder/before" "$package_folder/after"
}

# An older version, which had a document more.
older_installer() {
    python3 - "$root/scripts" "$root/dist/O_Tam_id-$version-windows.zip" "$1" <<'END'
import sys, zipfile
sys.path.insert(0, sys.argv[1])
from package_installer import installer_bytes
with zipfile.ZipFile(sys.argv[2]) as archive:
    files = {name.split("/", 1)[1]: archive.read(name) for name in archive.namelist()}
files["docs/old/gone.md"] = b"gone"
open(sys.argv[3], "wb").write(installer_bytes(files, "0.9.1", 1_600_000_000))
END
}

try_upgrade() {
    installed=$WINEPREFIX/drive_c/O_Tam_id
    take_state "$package_folder/before"
    older_installer "$package_folder/older.exe"
    run_setup "$package_folder/older.exe" '/AllUsers /Components=win32,bench /D=C:\O_Tam_id'
    [[ -f $installed/docs/old/gone.md && -f $installed/win32/tambench.exe && ! -e $installed/win64 ]]
    apps_entry AllUsers | grep -Eq 'DisplayVersion +REG_SZ +0\.9\.1'
    echo "the user's own" >"$installed/docs/mine.txt"
    # Neither folder nor components are named: those of before.
    set_up /AllUsers
    [[ ! -e $installed/docs/old && -f $installed/docs/mine.txt ]]
    [[ -f $installed/win32/tambench.exe && ! -e $installed/win64 && ! -e $installed/samples ]]
    apps_entry AllUsers | grep -Eq "DisplayVersion +REG_SZ +$version"
    # What the user put there stays, and nothing else.
    uninstall "$installed" AllUsers
    diff <(find "$installed" | LC_ALL=C sort) <(printf '%s\n' "$installed" "$installed/docs" "$installed/docs/mine.txt")
    rm -r "$installed"
    take_state "$package_folder/after"
    same_state "$package_folder/before" "$package_folder/after"
}

try_choice() {
    local status=0 choice window='HKLM\Software\Classes\Applications\tamview.exe'
    installed=$WINEPREFIX/drive_c/O_Tam_id
    take_state "$package_folder/before"
    for choice in '' win33 win32,,win64 win32,Bench,x services,bench win64,openwith; do
        status=0
        set_up "/Components=$choice" '/D=C:\O_Tam_id' || status=$?
        [[ $status -eq 3 && ! -e $installed ]]
    done
    set_up /AllUsers '/D=C:\O_Tam_id'
    if wine reg query "$window" /reg:64; then
        echo "A file was given to the window that nobody asked for."
        return 1
    fi
    set_up /AllUsers /Components=win32,services
    [[ -f $installed/win32/O_Tam_id.dll && ! -e $installed/win64 && ! -e $installed/win32/tambench.exe ]]
    wine reg query 'HKCR\O_Tam_id.CDBAppObject'
    # The next version asks for nothing and keeps the choice.
    set_up /AllUsers
    [[ -f $installed/win32/O_Tam_id.dll && ! -e $installed/win64 && ! -e $installed/samples ]]
    set_up /AllUsers /Components=win64,bench,openwith
    [[ -f $installed/win64/O_Tam_id.dll && ! -e $installed/win32 ]]
    wine reg query "$window\\shell\\open\\command" /ve /reg:64 | grep -F '"C:\O_Tam_id\win64\tamview.exe" "%1"'
    wine reg query "$window\\SupportedTypes" /v .xml /reg:64
    uninstall "$installed" AllUsers
    take_state "$package_folder/after"
    same_state "$package_folder/before" "$package_folder/after"
}

# remove_in_place FOLDER SCOPE: the uninstaller itself and not a copy of it, for its status; so its file stays. The
# folder is named as Windows names it.
remove_in_place() { run_setup "$WINEPREFIX/drive_c/${1#C:\\}/uninstall.exe" "/$2 _?=$1"; }

try_moved() {
    local first=$WINEPREFIX/drive_c/O_Tam_id stray=$WINEPREFIX/drive_c/stray status=0
    installed="$WINEPREFIX/drive_c/tools/deep/O Tam"
    take_state "$package_folder/before"
    set_up /AllUsers /Components=win64 '/D=C:\O_Tam_id'
    set_up /AllUsers '/D=C:\tools\deep\O Tam'
    [[ -f $installed/win64/O_Tam_id.dll && ! -e $installed/win32 && ! -e $first ]]
    # An uninstaller in a folder that Apps does not name takes nothing away from the one that it names.
    mkdir "$stray"
    cp "$installed/uninstall.exe" "$stray"
    remove_in_place 'C:\stray' AllUsers
    rm -r "$stray"
    apps_entry AllUsers | grep -F 'C:\tools\deep\O Tam'
    wine reg query 'HKCR\O_Tam_id.CDBAppObject'
    set_up /CurrentUser /Components=win64 '/D=C:\tools\deep\O Tam'
    [[ -f $installed/win64/O_Tam_id.dll ]]
    if apps_entry AllUsers; then
        echo "The installation for everybody still has its entry."
        return 1
    fi
    # A DLL that cannot be loaded cannot be unregistered: everything stays, for a repair.
    : >"$installed/win64/O_Tam_id.dll"
    remove_in_place 'C:\tools\deep\O Tam' CurrentUser || status=$?
    [[ $status -eq 2 && -f $installed/win64/O_Tam_id.xml ]]
    set_up /CurrentUser
    [[ -s $installed/win64/O_Tam_id.dll && ! -e $installed/win32 ]]
    # A folder that cannot be used, or cannot be: what is installed stays as it is.
    find "$installed" -printf '%p %T@\n' | LC_ALL=C sort >"$package_folder/kept.before"
    status=0
    set_up /CurrentUser '/D=Z:\proc\deep\O Tam' || status=$?
    [[ $status -eq 2 ]]
    status=0
    set_up /CurrentUser '/D=C:\tools\deep\O Tam\README.md\x' || status=$?
    [[ $status -eq 3 ]]
    find "$installed" -printf '%p %T@\n' | LC_ALL=C sort | diff "$package_folder/kept.before" -
    apps_entry CurrentUser | grep -F 'C:\tools\deep\O Tam'
    # Everybody and one user have one each. An uninstaller that is told nothing takes away what is in its folder, for
    # those who have it; it refuses to do so for others.
    set_up /AllUsers /Components=win64 '/D=C:\O_Tam_id'
    status=0
    remove_in_place 'C:\O_Tam_id' CurrentUser || status=$?
    [[ $status -eq 3 && -f $first/win64/O_Tam_id.dll ]]
    uninstall "$first" AllUsers ''
    [[ ! -e $first && -f $installed/win64/O_Tam_id.dll ]]
    if apps_entry AllUsers || wine reg query 'HKLM\Software\Classes\O_Tam_id.CDBAppObject' /reg:64; then
        echo "The installation for everybody has left something in the registry."
        return 1
    fi
    apps_entry CurrentUser
    uninstall "$installed" CurrentUser
    take_state "$package_folder/after"
    same_state "$package_folder/before" "$package_folder/after"
}

try_in_use() {
    local script=$package_folder/holder.vbs log=$package_folder/setup.txt status=0 removal=0 holder tries=0
    installed=$WINEPREFIX/drive_c/O_Tam_id
    set_up /AllUsers '/D=C:\O_Tam_id'
    rm -f "$script".{held,end}
    cat >"$script" <<'END'
Set module = CreateObject("O_Tam_id.TamObjectManager")
Set files = CreateObject("Scripting.FileSystemObject")
files.CreateTextFile(WScript.ScriptFullName & ".held").Close
started = Timer
Do While Not files.FileExists(WScript.ScriptFullName & ".end") And Abs(Timer - started) < 120
Loop
END
    wine 'C:\windows\syswow64\cscript.exe' //nologo "$(windows_path "$script")" &
    holder=$!
    while [[ ! -e $script.held && $tries -lt 40 ]]; do
        sleep 0.5
        tries=$((tries + 1))
    done
    set_up /AllUsers /Components=win64 "/Log=\"$(windows_path "$log")\"" || status=$?
    remove_in_place 'C:\O_Tam_id' AllUsers || removal=$?
    touch "$script.end"
    wait "$holder"
    [[ $removal -eq 4 ]]
    iconv -f UTF-16 -t UTF-8 "$log"
    [[ $status -eq 4 && -f $installed/win32/O_Tam_id.dll && -f $installed/win64/tambench.exe ]]
    iconv -f UTF-16 -t UTF-8 "$log" | grep -q 'cscript.exe (process [0-9]'
    uninstall "$installed" AllUsers
    [[ ! -e $installed ]]
}

try_bill() {
    python3 -W ignore::DeprecationWarning - "$root/dist/O_Tam_id-$version.spdx.json" \
        "$root/dist/O_Tam_id-$version-windows.zip" "$root/packaging/bill.schema.json" <<'END'
import hashlib, json, jsonschema, sys, zipfile
bill = json.load(open(sys.argv[1], encoding="utf-8"))
jsonschema.Draft7Validator(json.load(open(sys.argv[3], encoding="utf-8"))).validate(bill)
said = {file["fileName"]: {sum["algorithm"]: sum["checksumValue"] for sum in file["checksums"]} for file in bill["files"]}
with zipfile.ZipFile(sys.argv[2]) as archive:
    there = {"./" + name.split("/", 1)[1]: archive.read(name) for name in archive.namelist()}
assert said == {name: {"SHA1": hashlib.sha1(content).hexdigest(), "SHA256": hashlib.sha256(content).hexdigest()}
                for name, content in there.items()}
known = {entry["SPDXID"] for entry in bill["packages"] + bill["files"]} | {"SPDXRef-DOCUMENT"}
assert len(known) == len(bill["packages"]) + len(bill["files"]) + 1
for relation in bill["relationships"]:
    assert {relation["spdxElementId"], relation["relatedSpdxElement"]} <= known, relation
END
}

# Packs once more with a certificate that is thrown away, and lets the signatures be verified.
try_signed() {
    local folder=$package_folder/signed file binaries
    mkdir -p "$folder"
    openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "/CN=O_Tam_id test" -addext extendedKeyUsage=codeSigning \
        -keyout "$folder/key.pem" -out "$folder/certificate.pem"
    openssl pkcs12 -export -inkey "$folder/key.pem" -in "$folder/certificate.pem" -passout pass:once \
        -out "$folder/test.pfx"
    TAM_SIGN_PFX=$folder/test.pfx TAM_SIGN_PASSWORD=once pack "$folder/dist"
    for file in windows sdk windows-tests; do
        python3 -m zipfile -e "$folder/dist/O_Tam_id-$version-$file.zip" "$folder/unpacked"
    done
    run_setup "$folder/dist/O_Tam_id-$version-setup.exe" '/AllUsers /D=C:\signed'
    cp "$WINEPREFIX/drive_c/signed/uninstall.exe" "$folder"
    uninstall "$WINEPREFIX/drive_c/signed" AllUsers
    # Those of users, of the tests, the installer and the uninstaller.
    mapfile -t binaries < <(find "$folder" -name '*.dll' -o -name '*.exe')
    for file in "${binaries[@]}"; do
        osslsigncode verify -CAfile "$folder/certificate.pem" -in "$file"
    done
    [[ ${#binaries[@]} -gt 50 && -f $folder/dist/O_Tam_id-$version-setup.exe && -f $folder/uninstall.exe ]]
}
