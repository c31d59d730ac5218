#!/usr/bin/env bash
# qv resolve as a user runs it: canonical paths, wildcards over a real folder,
# the file list, the parts of a path, and one-line errors.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

for n in 0001 0002 0003 0005; do : >"$dir/p.$n.exr"; done
: >"$dir/p.notes.exr"

out=$("$qv" resolve "$dir/p.[#].exr")
check "resolve exits 0" "[[ $? -eq 0 ]]"
check "resolve prints the canonical path" "[[ \"\$out\" == \"$dir/p.[0001:0003,0005].exr\" ]]"

out=$("$qv" resolve "$dir/p.[0001/3f|2].exr")
check "an explicit path needs no files" "[[ \"\$out\" == \"$dir/p.[0001:0005|2].exr\" ]]"

out=$("$qv" resolve "$dir/q.[#].exr")
status=$?
check "nothing matching is an empty line and status 0" "[[ $status -eq 0 && -z \"\$out\" ]]"

files=$("$qv" resolve --files "$dir/p.[#+1].exr")
check "--files lists every file in index order" \
    "[[ \"\$files\" == \"$dir/p.0002.exr\"$'\n'\"$dir/p.0003.exr\"$'\n'\"$dir/p.0005.exr\" ]]"

info=$("$qv" resolve --info "$dir/p.[#].exr")
check "--info has seven lines" "[[ \$(wc -l <<<\"\$info\") -eq 7 ]]"
check "--info names the directory" "grep -qx 'directory: $dir' <<<\"\$info\""
check "--info names the sequence" "grep -qx 'sequenceName: p' <<<\"\$info\""
check "--info gives the patterns" "grep -qx 'pattern: $dir/p.\[#\].exr' <<<\"\$info\" && grep -qx 'fileNamePattern: p.\[#\].exr' <<<\"\$info\""
check "--info counts the files" "grep -qx 'nbFiles: 4' <<<\"\$info\" && grep -qx 'startFileNo: 1' <<<\"\$info\""
check "--info has an empty scheme" "grep -qx 'scheme: ' <<<\"\$info\""

errors=$("$qv" resolve "$dir/p.[1:3.exr" 2>&1 >/dev/null)
status=$?
check "an unbalanced bracket exits 1" "[[ $status -eq 1 ]]"
check "and says why in one line" "[[ \$(wc -l <<<\"\$errors\") -eq 1 && \"\$errors\" == 'error: '*'no closing ]' ]]"

errors=$("$qv" resolve "$dir/p.[7/1f].exr" 2>&1 >/dev/null)
check "a refused bracket names its columns" "[[ $? -eq 1 && \"\$errors\" == 'error: Error in the sequence path at columns '* ]]"

errors=$("$qv" resolve "$dir/none/p.[#].exr" 2>&1 >/dev/null)
check "a missing folder under a wildcard exits 1" "[[ $? -eq 1 && \"\$errors\" == 'error: '*'none'* ]]"

"$qv" resolve >/dev/null 2>&1
check "a missing path is refused" "[[ $? -ne 0 ]]"

finishChecks
