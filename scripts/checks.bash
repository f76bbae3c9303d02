# Sourced by the scripts that run checks: counts them, and shows the output of those that fail.
# Each test function and each other check is one.

logs=build-ci/logs
mkdir -p "$logs"
passed=0
failed=0

# check NAME COMMAND...: one check, shown by name; its output only when it fails.
check() {
    local name=$1
    shift
    echo "test: $name"
    if "$@" >"$logs/$name.log" 2>&1; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "test: $name FAILED; from $logs/$name.log:"
        # What failed, wherever it stands, then how it ended.
        grep -a -A 6 -E 'FAIL!|error:|ERROR:|runtime error' "$logs/$name.log" | head -n 60 || true
        tail -n 30 "$logs/$name.log"
    fi
}

# tests NAME COMMAND...: a check that runs QtTest programs verbosely; counts their test functions.
tests() {
    check "$@"
    local counts
    counts=$(awk '{ for (i = 2; i < NF; ++i) if ($i == "passed," && $(i + 2) ~ /^failed/) { p += $(i - 1); f += $(i + 1) } }
                  END { print p + 0, f + 0 }' "$logs/$1.log")
    passed=$((passed + ${counts% *}))
    failed=$((failed + ${counts#* }))
}

# counts: the one line that a script ends with; fails when a check did.
counts() {
    echo "$passed passed, $failed failed"
    [ "$failed" -eq 0 ]
}
