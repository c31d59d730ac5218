#!/usr/bin/env bash
# qv imageinfo as a user runs it: what a real image file holds, and one error
# line for each file that cannot be read.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

# A 4 by 3 binary PPM, written byte by byte: a real file with no tool to make it.
{ printf 'P6\n4 3\n255\n'; for i in $(seq 12); do printf '\x10\x80\xf0'; done; } >"$dir/small.ppm"
echo "not an image" >"$dir/fake.png"
echo "notes" >"$dir/notes.xyz"

out=$("$qv" imageinfo "$dir/small.ppm")
check "imageinfo exits 0" "[[ $? -eq 0 ]]"
check "imageinfo prints six lines" "[[ \$(wc -l <<<\"\$out\") -eq 6 ]]"
check "it names the file" "grep -qx 'file: $dir/small.ppm' <<<\"\$out\""
check "it gives the format" "grep -qx 'format: PNM' <<<\"\$out\""
check "it gives the size" "grep -qx 'size: 4x3' <<<\"\$out\""
check "it gives the channels and depth" "grep -qx 'channels: 3' <<<\"\$out\" && grep -qx 'depth: UINT8' <<<\"\$out\""
check "it gives the block" "grep -qx 'block: 4x64' <<<\"\$out\""

out=$("$qv" imageinfo "$dir/fake.png" "$dir/small.ppm" "$dir/notes.xyz" "$dir/missing.exr" 2>"$dir/errors")
status=$?
errors=$(cat "$dir/errors")
check "an unreadable file makes the status 1" "[[ $status -eq 1 ]]"
check "the readable file is still described" "grep -qx 'size: 4x3' <<<\"\$out\""
check "one error line for each unreadable file" "[[ \$(wc -l <<<\"\$errors\") -eq 3 ]]"
check "each names its file" "grep -q 'fake.png' <<<\"\$errors\" && grep -q 'notes.xyz: not a file format' <<<\"\$errors\" && grep -q 'missing.exr: no such file' <<<\"\$errors\""

"$qv" imageinfo >/dev/null 2>&1
check "a file is required" "[[ $? -ne 0 ]]"

finishChecks
