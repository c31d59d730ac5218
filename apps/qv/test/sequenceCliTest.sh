#!/usr/bin/env bash
# qv sequence as a user runs it: the sequence of a path over real image files,
# its fragment, the file of an index, sequences read back from fragments
# (older forms too), and one error line for what gives no sequence.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

# Binary PPM images written byte by byte; the width tells which file is which.
ppm() { # file, width
    { printf 'P6\n%d 2\n255\n' "$2"; for i in $(seq $(($2 * 2))); do printf '\x10\x80\xf0'; done; } >"$1"
}
ppm "$dir/p.5.ppm" 5
ppm "$dir/p.9.ppm" 9
ppm "$dir/p.100.ppm" 7

out=$("$qv" sequence "$dir/p.[#].ppm")
check "sequence exits 0" "[[ $? -eq 0 ]]"
check "it prints five lines" "[[ \$(wc -l <<<\"\$out\") -eq 5 ]]"
check "files make an image sequence" "grep -qx 'kind: ImageSequence' <<<\"\$out\""
check "the path is resolved" "grep -qxF 'path: $dir/p.[5,9,100].ppm' <<<\"\$out\""
check "it has a name and three images" "grep -qx 'name: p' <<<\"\$out\" && grep -qx 'images: 3' <<<\"\$out\""
check "the first image is described" "grep -qx 'first: PNM, 5 x 2, 3 channels (R G B), UINT8' <<<\"\$out\""

out=$("$qv" sequence "$dir/p.[#].ppm" --file-at 1)
check "an index is a position, not a frame number" "[[ \"\$out\" == \"$dir/p.9.ppm\" ]]"
out=$("$qv" sequence "$dir/p.[#].ppm" --file-at 3)
check "past the end the name has no number" "[[ \"\$out\" == \"$dir/p..ppm\" ]]"

"$qv" sequence "$dir/p.[#].ppm" --xml >"$dir/kept.xml"
check "--xml exits 0" "[[ $? -eq 0 ]]"
check "--xml gives the fragment with its path" \
    "grep -q '<ImageSequence>' '$dir/kept.xml' && grep -qF '<Path>$dir/p.[5,9,100].ppm</Path>' '$dir/kept.xml'"
loaded=$("$qv" sequence --load "$dir/kept.xml")
direct=$("$qv" sequence "$dir/p.[#].ppm")
check "a fragment gives back the same sequence" "[[ \"\$loaded\" == \"\$direct\" ]]"
again=$("$qv" sequence --load "$dir/kept.xml" --xml)
check "and the same fragment" "[[ \"\$again\" == \"\$(cat '$dir/kept.xml')\" ]]"

cat >"$dir/older.xml" <<XML
<ImageSequence>
  <Sequence>
    <Prefix>$dir/s.</Prefix>
    <Suffix>.exr</Suffix>
    <FrameSequence><Frames From="0098" To="0102"/><Frame>0120</Frame></FrameSequence>
  </Sequence>
</ImageSequence>
XML
out=$("$qv" sequence --load "$dir/older.xml" --xml)
check "an older fragment is saved in the current form" "grep -qF '<Path>$dir/s.[0098:0102,0120].exr</Path>' <<<\"\$out\""

echo '<ImageSequence><Sequence><Prefix>s.</Prefix><Suffix>.exr</Suffix></Sequence></ImageSequence>' >"$dir/empty.xml"
refuse "a fragment listing no frame" "$dir/empty.xml: no image sequence" "$qv" sequence --load "$dir/empty.xml"
echo '<Movie><Path>a.mov</Path></Movie>' >"$dir/other.xml"
refuse "a fragment of another root" "$dir/other.xml: no image sequence" "$qv" sequence --load "$dir/other.xml"
echo '<ImageSequence><Path>a' >"$dir/broken.xml"
refuse "malformed XML" "$dir/broken.xml: " "$qv" sequence --load "$dir/broken.xml"
refuse "a fragment file that is not there" "$dir/none.xml" "$qv" sequence --load "$dir/none.xml"
refuse "an extension no format has" "p.[1:3].xyz" "$qv" sequence "$dir/p.[1:3].xyz"
refuse "a malformed path" "no closing ]" "$qv" sequence "$dir/p.[1:3.ppm"
refuse "a wildcard selecting nothing" "no files match" "$qv" sequence "$dir/q.[#].ppm"
refuse "a missing first file" "m.1.ppm" "$qv" sequence "$dir/m.[1:3].ppm"
refuse "a missing movie" "gone.mov" "$qv" sequence "$dir/gone.mov"

"$qv" sequence >/dev/null 2>&1
check "a path or a fragment is required" "[[ $? -ne 0 ]]"
"$qv" sequence "$dir/p.[#].ppm" --load "$dir/kept.xml" >/dev/null 2>&1
check "not both" "[[ $? -ne 0 ]]"

finishChecks
