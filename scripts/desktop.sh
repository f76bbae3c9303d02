# What the scripts that take pictures of the real program share; sourced by them. Needs xdotool and ImageMagick,
# and a display with a window manager as scripts/with-display makes it.
# shellcheck shell=bash

patience=30 # seconds

# wait_until WHAT COMMAND...: waits until the command succeeds. Ends the script when it does not in time.
wait_until() {
    local what=$1 until=$((SECONDS + patience))
    shift
    until "$@" >/dev/null 2>&1; do
        if [ "$SECONDS" -ge "$until" ]; then
            echo "${0##*/}: no $what after $patience seconds" >&2
            exit 1
        fi
    done
}

# start_editor FOLDER: starts the editor that lies in FOLDER. Its window is then in $window, the process in $editor.
start_editor() {
    (cd "$1" && exec ./corvalence 2>/dev/null) &
    editor=$!
    wait_until 'window of the editor' is_editor_active
    wait_for_editor
    # shellcheck disable=SC2034 # for the script
    window=$(xdotool getactivewindow)
    xdotool mousemove 0 0 # where it hovers over nothing
}
is_editor_active() {
    [ "$(xdotool getactivewindow getwindowpid)" = "$editor" ]
}
stop_editor() {
    if kill "${editor-}" 2>/dev/null; then
        wait "$editor" || true
    fi
}

# is_active TITLE: whether the active window has that title, and the keys do go there.
is_active() {
    local active
    active=$(xdotool getactivewindow)
    [ "$(xdotool getwindowname "$active")" = "$1" ] && [ "$(xdotool getwindowfocus)" = "$active" ]
}

# wait_for_window TITLE, wait_for_editor: wait until a window, or the editor again, takes the keys. One that is not
# all painted yet loses some of them.
wait_for_window() {
    wait_until "window \"$1\"" is_active "$1"
    wait_until 'still window' is_still "$(xdotool getactivewindow)"
}
wait_for_editor() {
    wait_for_window 'Corvalence 2.2.0'
}

# is_still WINDOW: whether two pictures of a window are the same.
is_still() {
    [ "$(import -window "$1" rgba:- | cksum)" = "$(import -window "$1" rgba:- | cksum)" ]
}

press() {
    xdotool key --delay 4 "$@"
}

enter_text() {
    xdotool type --delay 4 -- "$1"
}

# answer_file_dialog TITLE PATH: gives a file dialog a path.
answer_file_dialog() {
    wait_for_window "$1"
    enter_text "$2"
    press Return
}

# photograph WINDOW FILE: a picture of a window once it has stopped changing. What blinks must not have the focus.
photograph() {
    wait_until 'still window' is_still "$1"
    import -window "$1" "$2"
}
