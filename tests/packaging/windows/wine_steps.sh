# shellcheck shell=bash
# What the scripts that try the set-up under wine have in common; sourced by them, within tests/under_wine --display.

person=$HOME/.wine/drive_c/users/root
installed=$person/AppData/Local/Programs/Quillbox
drafts=$person/AppData/Local/Quillbox/drafts
key='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Quillbox'

step() { echo "== $*"; }

# expect WHAT COMMAND…
expect() {
    local what=$1
    shift
    "$@" || { echo "FAILED: $what" >&2; exit 1; }
}

# until_true SECONDS COMMAND…
until_true() {
    local tries=$(($1 * 10))
    shift
    for _ in $(seq $tries); do
        "$@" && return
        sleep 0.1
    done
    return 1
}

# set_up CODE FILE [SWITCH…]: runs it without a window, and looks at how it ends
set_up() {
    local code=0
    wine "$2" /S "${@:3}" >/dev/null 2>&1 || code=$?
    expect "$(basename "$2") ends with $1, not $code" [ "$code" -eq "$1" ]
}

# has_windows COUNT TITLE
has_windows() { [ "$(xdotool search --onlyvisible --name "^$2\$" 2>/dev/null | wc -l)" -eq "$1" ]; }

has_window() { xdotool search --onlyvisible --name "^$1\$" >/dev/null 2>&1; }

# The client's processes, as this system counts. wine gives them the names that Windows knows.
clients() { grep -lsz 'quillbox\.exe$' /proc/[0-9]*/cmdline | cut -d / -f 3; }
client_runs() { [ -n "$(clients)" ]; }
client_is_gone() { ! client_runs; }
signal_clients() { clients | while read -r pid; do kill "-$1" "$pid"; done; }

start_client() {
    WINEQT_FORCE_STDERR_LOGGING=1 wine "$installed/quillbox.exe" >"$HOME/client.log" 2>&1 &
    expect "the client shows its window" until_true 60 has_window 羽毛盒
}

has_keyboard() { [ "$(xdotool getwindowfocus getwindowname 2>/dev/null)" = "$1" ]; }

# write TEXT: types it into the page. The busy window, which takes no keyboard, has the client's title too.
write() {
    expect "the client is not busy" until_true 30 has_windows 1 羽毛盒
    xdotool search --onlyvisible --name '^羽毛盒$' windowactivate --sync
    expect "the page has the keyboard" until_true 10 has_keyboard 羽毛盒
    xdotool type --delay 40 "$1"
}

draft_says() { grep -qs "$1" "$drafts"/*; }

# is_open FILE: whether a Windows program has it open
is_open() { find /proc/[0-9]*/fd -lname "$1" 2>/dev/null | grep -q .; }

version_of() { basename "$1" .exe | sed 's/.*-//'; }

# registered NAME VALUE
registered() { wine reg query "$key" /v "$1" 2>/dev/null | grep -qF "$2"; }

is_forgotten() { ! wine reg query "$key" >/dev/null 2>&1; }

# All that is kept of a folder, for comparing.
content_of() { (cd "$1" && find . -type f -exec md5sum {} + | sort -k 2); }
