# Sourced by the qv command-line tests: check counts what holds, and
# finishCheck reports the counts and fails when anything did not hold.
# Each test works in its own scratch folder, $dir, removed at exit, with its
# own disk cache so that no run finds the tiles of another.
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
export QV_DISK_CACHE="$dir/cache"
failures=0
passes=0
check() { # description, condition
    if eval "$2"; then echo "ok: $1"; passes=$((passes + 1)); else echo "FAILED: $1"; failures=$((failures + 1)); fi
}
# refuse: a command qv must refuse with status 1 and one line naming the
# problem. A test that defines alsoRefused gets it called with the description,
# for checks of its own (a file left as it was, say).
refuse() { # description, expected text in the error, command...
    local what="$1" text="$2"
    shift 2
    local errors status
    errors=$("$@" 2>&1 >/dev/null)
    status=$?
    check "$what: status 1" "[[ $status -eq 1 ]]"
    check "$what: one line naming it" "[[ \$(wc -l <<<\"\$errors\") -eq 1 && \"\$errors\" == 'qv: '*\"$text\"* ]]"
    if declare -F alsoRefused >/dev/null; then alsoRefused "$what"; fi
}
finishChecks() {
    echo "$passes passed, $failures failed"
    [[ $failures -eq 0 ]]
}
