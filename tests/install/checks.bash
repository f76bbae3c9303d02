# Sourced by the checks of installations.
# shellcheck shell=bash disable=SC2034 # variables for the scripts that source this

failed=0
name=${0##*/}
# A folder for temporary files, removed at the end.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 143' TERM
trap 'exit 130' INT

# expect WHAT COMMAND...: one check. Prints the output of a command that fails.
expect() {
    local what=$1
    shift
    if "$@" >"$work/log" 2>&1; then
        echo "$name: $what"
    else
        echo "$name: FAIL! $what"
        tail -n 60 "$work/log"
        failed=1
    fi
}

# same ACTUAL EXPECTED
same() {
    [ "$1" = "$2" ] || {
        echo "actual:   $1"
        echo "expected: $2"
        return 1
    }
}
