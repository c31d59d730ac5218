#!/usr/bin/env bash
# qv read as a user runs it: an EXR sequence made by OpenImageIO's own tool,
# read through the image reader node and written again, compared with idiff;
# a missing frame marked, not fatal; bad paths and frames refused.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"


for f in 1 2 3; do
    oiiotool --pattern noise:type=uniform:seed=$f 300x200 4 -d half -o "$dir/in.000$f.exr"
done

out=$("$qv" read "$dir/in.[#].exr" --frames 1-3 -o "$dir/out.#.exr" --stats)
check "read exits 0" "[[ $? -eq 0 ]]"
for f in 1 2 3; do
    check "frame $f equals its file" "idiff -q \"\$dir/in.000$f.exr\" \"\$dir/out.000$f.exr\" >/dev/null"
done
check "each file read once" "grep -qx 'fileImports: 3' <<<\"\$out\""
check "no error tile" "grep -qx 'errorTiles: 0' <<<\"\$out\""

out=$("$qv" read "$dir/in.[#].exr" --frames 2 --stats)
check "another process finds the frame in the disk tier" "grep -qx 'fileImports: 0' <<<\"\$out\""
out=$(QV_DISK_CACHE=off "$qv" read "$dir/in.[#].exr" --frames 2,2,3 --stats)
check "without it, a frame asked twice is read once" "grep -qx 'fileImports: 2' <<<\"\$out\""

oiiotool --create 40x20 4 --fill:color=0.25,0.5,0.75,0 0,0,40,20 -d float -o "$dir/clear.0001.exr"
out=$("$qv" read "$dir/clear.[#].exr" --frames 1 --unpremultiply --guess-bg)
check "the guess of a transparent frame is its colour" "grep -qx 'guessedColor: 0.25 0.5 0.75' <<<\"\$out\""

QV_TILE_SIZE=16 "$qv" read "$dir/in.[#].exr" --frames 3 -o "$dir/small-tiles.exr" >/dev/null
check "tiles of 16 pixels give the same frame" "idiff -q \"\$dir/in.0003.exr\" \"\$dir/small-tiles.exr\" >/dev/null"

"$qv" read "$dir/in.[#].exr" --frames 1 --proxy 1 -o "$dir/half.exr" >/dev/null
check "a proxy level is half the size" "oiiotool --info \"\$dir/half.exr\" | grep -q '150 x  100'"

rm "$dir/in.0002.exr"
rm -rf "$dir/cache"
errors=$("$qv" read "$dir/in.[0001:0003].exr" --frames 1-3 -o "$dir/marked.#.exr" --stats 2>&1 >"$dir/stats")
check "a missing frame: status 0" "[[ $? -eq 0 ]]"
check "one log line naming the file" "[[ \$(grep -c 'in.0002.exr' <<<\"\$errors\") -ge 1 ]]"
check "the other frames are exact" "idiff -q \"\$dir/in.0003.exr\" \"\$dir/marked.0003.exr\" >/dev/null"
check "the missing one is marked with error tiles" "! grep -qx 'errorTiles: 0' \"\$dir/stats\""

refuse "an unknown extension" "in.[1:3].xyz" "$qv" read "$dir/in.[1:3].xyz" --frames 1
refuse "a frame outside the sequence" "has no image at frame 9" "$qv" read "$dir/in.[0001:0003].exr" --frames 9
refuse "a bad frame list" "is not a frame number" "$qv" read "$dir/in.[0001:0003].exr" --frames 1-x
refuse "many frames into one file" "has no #" "$qv" read "$dir/in.[0001:0003].exr" --frames 1-3 -o "$dir/one.exr"

finishChecks
