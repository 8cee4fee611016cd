# shellcheck shell=bash
# Wine prefixes, their servers and a display of our own. Sourced by tam, which
# sets build (the build folder) and lock_fd (the descriptor of its lock, which
# no server may inherit) and calls stop_wine when it ends.
: "${build:?}" "${lock_fd?}"

# There are three prefixes, all 64-bit Windows, which runs 32-bit programs too, under
# a US English user: "point"; "comma" with a user who writes 1.234,5; and "screen", a
# second "point" for the tests of the programs, which take longest.

xvfb_pids=()
displays=()
started_prefixes=()

# The cores that this command may use, as a list, before it binds itself to one.
cores=0

find_cores() {
    local list
    list=$(taskset -cp $$ 2>/dev/null) || return 0
    cores=${list##*: }
}

has_two_cores() { [[ $cores == *[-,]* ]]; }

# use_core 0|1: binds this process to the first or the last core. Called after
# everything is built. A Wine program and its server work in turn: on one core each
# turn is a task switch; on two cores each turn waits until an idle core wakes up,
# which takes several times as long on a virtual machine.
use_core() {
    local core=${cores%%[-,]*}
    [[ $1 == 0 ]] || core=${cores##*[-,]}
    taskset -cp "$core" "$BASHPID" >/dev/null 2>&1 || true
}

# use_lane NUMBER: binds this process to a core, and to the lane's display if it has one. Two
# lanes of tests on one display would take the focus from each other.
use_lane() {
    use_core $(($1 % 2))
    export DISPLAY=${displays[$1]:-$DISPLAY}
}

# The locale is fixed because Wine derives the Windows user's number format
# from it; winemenubuilder would write menus and file types into the home folder.
wine_environment() {
    find_cores
    use_core 0
    unset LANGUAGE
    export LC_ALL=C.UTF-8
    export WINEARCH=win64
    export WINEDEBUG="${WINEDEBUG:--all}"
    export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
}

# The loader of 64-bit programs. "wine" takes the 32-bit one of the system's own
# programs, such as regsvr32 and cscript, when both are there.
wine64_loader() {
    local loader=/usr/lib/wine/wine64
    [[ -x $loader ]] || loader=$(command -v wine64) || loader=wine
    printf '%s' "$loader"
}

prefix_folder() { printf '%s' "$build/wine/$1"; }

# The Windows form of a path of this machine.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# Starts an Xvfb on a free display number, which it picks itself, and exports
# DISPLAY. A second call starts a second one.
start_display() {
    local pipe number=
    exec {pipe}< <(exec Xvfb -displayfd 1 -screen 0 1280x1024x24 -nolisten tcp -noreset \
        2>"$build/logs/xvfb-${#displays[@]}.log" {lock_fd}>&-)
    xvfb_pids+=($!)
    read -r -t 120 number <&"$pipe" || true
    exec {pipe}<&-
    if [[ -z $number ]]; then
        cat "$build/logs/xvfb-${#displays[@]}.log" >&2
        die "Xvfb did not start."
    fi
    displays+=(":$number")
    export DISPLAY=":$number"
}

# Starts a server that outlives its programs, because the first program after a
# server's start takes some seconds.
start_server() {
    local folder
    folder=$(prefix_folder "$1")
    # A server that a killed command left behind would still have old settings.
    WINEPREFIX=$folder wineserver -k >/dev/null 2>&1 || true
    WINEPREFIX=$folder wineserver -p </dev/null >/dev/null 2>&1 {lock_fd}>&-
    started_prefixes+=("$1")
}

stop_server() {
    WINEPREFIX=$(prefix_folder "$1") wineserver -k >/dev/null 2>&1 || true
}

# What a prefix is made from; a prefix with another stamp is made again.
prefix_recipe() { printf '%s, %s, recipe 5\n' "$(wine --version)" "$1"; }

# The font of the symbols on the frames' buttons. Debian's Wine looks for its own
# fonts in another folder than Debian's package puts them into.
take_symbols() {
    local font=/usr/share/wine/fonts/marlett.ttf
    [[ ! -f $font ]] || cp "$font" "$1/drive_c/windows/Fonts/"
}

# True when a prefix is there as it is made now.
has_prefix() { [[ $(cat "$(prefix_folder "$1")/tam-stamp" 2>/dev/null) == "$(prefix_recipe "$1")" ]]; }

# A prefix with no crash dialog that waits for a click.
make_first_prefix() {
    wine wineboot -i &&
        take_symbols "$WINEPREFIX" &&
        wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f &&
        # Without a window manager Wine waits two seconds for one at each box.
        wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f &&
        run_first_scripts
}

# The first script of each kind makes Wine register what its script host needs, which tests that
# compare registries would take for theirs.
run_first_scripts() {
    local script=$WINEPREFIX/drive_c/first.vbs
    echo 'WScript.Quit 0' >"$script" &&
        wine 'C:\windows\syswow64\cscript.exe' //nologo 'C:\first.vbs' &&
        "$(wine64_loader)" 'C:\windows\system32\cscript.exe' //nologo 'C:\first.vbs' &&
        rm "$script"
}

# make_prefix NAME [FROM]
# Makes one prefix, with its number format. A copy of one that was made just now takes less.
# The server is ended last because that writes the registry out.
make_prefix() {
    local name=$1 from=${2:-} folder
    folder=$(prefix_folder "$name")
    rm -rf "$folder"
    mkdir -p "$folder"
    export WINEPREFIX=$folder
    local status=0
    {
        if [[ -n $from ]]; then
            cp -a "$(prefix_folder "$from")/." "$folder/"
        else
            make_first_prefix
        fi &&
            if [[ $name == comma ]]; then
                wine reg add 'HKCU\Control Panel\International' /v sDecimal /d , /f &&
                    wine reg add 'HKCU\Control Panel\International' /v sThousand /d . /f
            fi
    } </dev/null >"$build/logs/prefix-$name.log" 2>&1 {lock_fd}>&- || status=$?
    wineserver -k >/dev/null 2>&1 || true
    wineserver -w >/dev/null 2>&1 || true
    if [[ $status -ne 0 ]]; then
        cat "$build/logs/prefix-$name.log" >&2
        return 1
    fi
    prefix_recipe "$name" >"$folder/tam-stamp"
}

# Makes the prefixes that are missing, and starts a server in each. Behind "point", what is
# missing with it is made from it.
start_wine() {
    local name made=
    for name in "$@"; do
        has_prefix "$name" && continue
        note "Making the Wine prefix \"$name\""
        # Counted as started, so that an interrupted make leaves no server.
        started_prefixes+=("$name")
        make_prefix "$name" "$made" || die "Wine could not make its prefix."
        [[ $name != point ]] || made=point
    done
    for name in "$@"; do
        start_server "$name"
    done
}

stop_wine() {
    local name
    for name in "${started_prefixes[@]}"; do
        stop_server "$name"
    done
    local pid
    for pid in "${xvfb_pids[@]}"; do
        kill "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    xvfb_pids=()
}
