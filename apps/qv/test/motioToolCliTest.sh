#!/usr/bin/env bash
# The "Motio" tool in a composition as a user builds it: added like any tool,
# its image passed on, its vectors looked at with qv pixel and written with
# qv snapshot, its quality setting and colours kept with the composition.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

c="$dir/c.qvc"
frame1=0.041666666666666664 # frame 1 at 24 fps

# between: the first two numbers of the pixel lie within [lo, hi] each.
between() { # output, x, y, "xlo xhi", "ylo yhi", options...
    local output="$1" x="$2" y="$3" xr="$4" yr="$5"
    shift 5
    local got
    got=$("$qv" pixel "$c" "$output" "$x" "$y" "$@") || return 1
    awk -v got="$got" -v xr="$xr" -v yr="$yr" 'BEGIN {
        split(got, g, " "); split(xr, a, " "); split(yr, b, " ")
        exit !(g[1] >= a[1] && g[1] <= a[2] && g[2] >= b[1] && g[2] <= b[2])
    }'
}

check "qv tools lists Motio in Vectors" "grep -q \"Motio	Vectors	3	listed\" <<<\"\$(\"\$qv\" tools)\""

# A grey frame of 64 by 48 pushed right by 8 pixels at frame 0 and by 10 at
# frame 1: the hole it leaves on the left grows, its edge moves 2 pixels right.
"$qv" new "$c"
"$qv" add "$c" "Color Source" C >/dev/null && "$qv" add "$c" "Color Source" V >/dev/null
for setting in "C.Width=64" "C.Height=48" "C.Color=0.5 0.5 0.5" "V.Width=64" "V.Height=48"; do
    "$qv" set "$c" "${setting%%=*}" "${setting#*=}" || echo "could not set $setting"
done
"$qv" set "$c" V.Color "8 0 0" --time 0 && "$qv" set "$c" V.Color "10 0 0" --time $frame1
"$qv" add "$c" "Forward Warp" W >/dev/null
"$qv" connect "$c" C.Output W.Input && "$qv" connect "$c" V.Output W.Vectors
check "qv add names the node" "[[ \$(\"\$qv\" add \"\$c\" Motio M) == M ]]"
"$qv" connect "$c" W.Output M.Input

info=$("$qv" info "$c")
check "a new node analyses at full quality" "grep -qx '  M.Quality = 0' <<<\"\$info\""
check "and draws forward vectors green, backward red" \
    "grep -qx '  M.Forward Vectors Color = 0 1 0 (stored)' <<<\"\$info\" && grep -qx '  M.Backward Vectors Color = 1 0 0 (stored)' <<<\"\$info\""

check "its Output is its input" \
    "[[ \$(\"\$qv\" pixel \"\$c\" M.Output 9 24) == \$(\"\$qv\" pixel \"\$c\" W.Output 9 24) && \$(\"\$qv\" pixel \"\$c\" M.Output 7 24) == '0 0 0 0' ]]"
# On the edge: about two pixels right at frame 0, and back left at frame 1.
check "the edge moves right in the forward vectors" "between 'M.Forward Vectors' 10 24 '1.5 2.5' '-0.5 0.5'"
check "and left in the backward vectors of the next frame" \
    "between 'M.Backward Vectors' 10 24 '-2.5 -1.25' '-1 1' --time $frame1"
check "vectors have no third component and an alpha of 1" \
    "[[ \$(\"\$qv\" pixel \"\$c\" 'M.Forward Vectors' 10 24 | cut -d' ' -f3-) == '0 1' ]]"

"$qv" snapshot "$c" "M.Forward Vectors" --time 0 -o "$dir/f.exr"
check "snapshot writes the vectors" "[[ $? -eq 0 ]]"
fileinfo=$("$qv" imageinfo "$dir/f.exr")
check "over the frame, in three channels" \
    "grep -qx 'size: 64x48' <<<\"\$fileinfo\" && grep -qx 'channels: 3' <<<\"\$fileinfo\""

"$qv" set "$c" M.Quality 4
check "Sixteenth is coarser than the frame's pyramid: no motion found" \
    "[[ \$(\"\$qv\" pixel \"\$c\" 'M.Forward Vectors' 10 24) == '0 0 0 1' ]]"
"$qv" set "$c" M.Quality 0
check "back at Full the motion is found again" "between 'M.Forward Vectors' 10 24 '1.5 2.5' '-0.5 0.5'"
refuse "a quality past Sixty-fourth" "it takes one of 0 (Full)" "$qv" set "$c" M.Quality 7

# The same frame without motion.
"$qv" add "$c" Motio S >/dev/null && "$qv" connect "$c" C.Output S.Input
check "a still image has no motion" "[[ \$(\"\$qv\" pixel \"\$c\" 'S.Backward Vectors' 20 20) == '0 0 0 1' ]]"

"$qv" set "$c" "M.Forward Vectors Color" "1 1 0"
check "a colour set is kept" "grep -qx '  M.Forward Vectors Color = 1 1 0 (stored)' <<<\"\$(\"\$qv\" info \"\$c\")\""

finishChecks
