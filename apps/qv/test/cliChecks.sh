# Sourced by the qv command-line tests: check counts what holds, and
# finishCheck reports the counts and fails when anything did not hold.
failures=0
passes=0
check() { # description, condition
    if eval "$2"; then echo "ok: $1"; passes=$((passes + 1)); else echo "FAILED: $1"; failures=$((failures + 1)); fi
}
finishChecks() {
    echo "$passes passed, $failures failed"
    [[ $failures -eq 0 ]]
}
