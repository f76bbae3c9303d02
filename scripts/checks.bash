# Sourced by scripts/test and scripts/test-at-length: runs checks, counts them and prints how long each took.
# shellcheck shell=bash

logs=build-ci/logs
mkdir -p "$logs"
passed=0
failed=0

# check NAME COMMAND...: counts one check. Prints the command's output only when it fails.
check() {
    local name=$1 log=$logs/$1.log start=$SECONDS result=passed seconds
    shift
    if "$@" >"$log" 2>&1; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        result=FAILED
    fi
    seconds=$((SECONDS - start))
    printf '%s: %s after %d:%02d\n' "$name" "$result" $((seconds / 60)) $((seconds % 60))
    if [ $result = FAILED ]; then
        echo "$name: from $log:"
        grep -a -A 6 -E 'FAIL!|: (fatal |runtime )?error:|ERROR: ' "$log" | head -n 60 || true
        tail -n 30 "$log"
    fi
}

# tests NAME COMMAND...: a check that runs QtTest programs. Counts their test functions as well, and prints how many
# were skipped for each reason.
tests() {
    check "$@"
    local log=$logs/$1.log counts
    # ctest --verbose prints each line after the test's number, and repeats failed tests without it.
    counts=$({ grep -aE '^[0-9]+: Totals: ' "$log" || grep -a '^Totals: ' "$log" || true; } |
        sed 's/.*Totals: //' | awk '{ passed += $1; failed += $3 } END { print passed + 0, failed + 0 }')
    passed=$((passed + ${counts% *}))
    failed=$((failed + ${counts#* }))
    sed -nE 's/.*SKIP *: [^(]*\([^)]*\) //p' "$log" | sort | uniq -c | sed "s/^ */$1: skipped /"
}

# build PRESET [OPTION...]: configures and builds.
build() {
    cmake --preset "$@" && cmake --build --preset "$1"
}

# counts: prints the last line of a script. Fails when a check failed.
counts() {
    echo "$passed passed, $failed failed"
    [ "$failed" -eq 0 ]
}
