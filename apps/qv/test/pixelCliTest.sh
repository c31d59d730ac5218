#!/usr/bin/env bash
# qv pixel as a user runs it, and each motion kernel looked at through it on
# flat inputs whose results are known by hand: the tools are added, set and
# connected like any other.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

c="$dir/c.qvc"

# near: the pixel printed is within 1e-5 of the four numbers expected.
near() { # composition, output, x, y, expected "r g b a", options...
    local comp="$1" output="$2" x="$3" y="$4" expected="$5"
    shift 5
    local got
    got=$("$qv" pixel "$comp" "$output" "$x" "$y" "$@") || return 1
    awk -v got="$got" -v want="$expected" 'BEGIN {
        n = split(got, g, " "); m = split(want, w, " ")
        if (n != 4 || m != 4) exit 1
        for (i = 1; i <= 4; ++i) { d = g[i] - w[i]; if (d > 1e-5 || d < -1e-5) exit 1 }
    }'
}

source_node() { # name, width, height, "r g b", alpha
    "$qv" add "$c" "Color Source" "$1" >/dev/null
    "$qv" set "$c" "$1.Width" "$2" && "$qv" set "$c" "$1.Height" "$3" && "$qv" set "$c" "$1.Color" "$4" &&
        "$qv" set "$c" "$1.Alpha" "$5"
}

"$qv" new "$c"
source_node C 8 6 "0.25 0.5 1.5" 1
check "a pixel is printed as four numbers" "[[ \$(\"\$qv\" pixel \"\$c\" C.Output 0 0) == '0.25 0.5 1.5 1' ]]"
check "the last pixel of the region" "near \"\$c\" C.Output 7 5 '0.25 0.5 1.5 1'"
check "at a proxy scale, counted in its pixels" "near \"\$c\" C.Output 3 2 '0.25 0.5 1.5 1' --proxy 1"
refuse "a column past the region" "pixel 8 0 is outside C.Output (8x6)" "$qv" pixel "$c" C.Output 8 0
refuse "a negative row" "pixel 0 -1 is outside C.Output (8x6)" "$qv" pixel "$c" C.Output 0 -1
# Six rows centred on the origin cover four at half size: rows are rounded outwards.
refuse "a pixel outside the proxy's region" "pixel 4 0 is outside C.Output (4x4)" \
    "$qv" pixel "$c" C.Output 4 0 --proxy 1
refuse "a negative proxy scale" "proxy scale -1" "$qv" pixel "$c" C.Output 0 0 --proxy -1
refuse "an unknown output" "node C has no output named 'Out'" "$qv" pixel "$c" C.Out 0 0

tools=$("$qv" tools)
for tool in "Time Derivative" "Lucas-Kanade Flow" "Forward Warp" "Backward Warp" \
    "Perona-Malik Diffusion Coefficients" "Perona-Malik Diffusion Filtering" "Upscale Proxy" "Vector Increment"; do
    check "qv tools lists $tool in Test" "grep -q \"$tool	Test\" <<<\"\$tools\""
done

# Flat inputs: an image, vectors (0.5, 0.25) and a time derivative of 0.1.
c="$dir/m.qvc"
"$qv" new "$c"
source_node I 40 40 "0.2 0.4 0.6" 1
source_node V 40 40 "0.5 0.25 0" 1
source_node D 40 40 "0.1 0.1 0.1" 1
kernel() { # name, tool, "input=node" ...
    local name="$1" tool="$2"
    shift 2
    "$qv" add "$c" "$tool" "$name" >/dev/null
    for link in "$@"; do "$qv" connect "$c" "${link#*=}.Output" "$name.${link%%=*}"; done
}
kernel W "Forward Warp" Input=I Vectors=V
kernel B "Backward Warp" Input=I Vectors=V
kernel L "Lucas-Kanade Flow" "Image Gradient=V" "Image Time Derivative=D"
kernel P "Perona-Malik Diffusion Coefficients" "Image Gradient=V" "Image Time Derivative=D"
kernel F "Perona-Malik Diffusion Filtering" Vectors=V Coefficients=P
kernel U "Upscale Proxy" Input=V
"$qv" set "$c" U.Scale 2
kernel N "Vector Increment" Vectors=V "Vector Increments=V"
kernel T "Time Derivative" Input=I
kernel X "Forward Warp" Input=I

# Each row: what, output, x y, expected. Interior pixels of flat fields keep
# the flat value; a flat gradient has no solvable 2x2 system and takes the
# normal flow -t (gx, gy) / (gx² + gy²) = (-0.16, -0.08). The flow's image has
# three components, so its alpha reads as 1 inside and on the band alike.
while IFS='|' read -r what output x y expected; do
    for size in 16 256; do
        check "$what (tiles of $size)" "QV_TILE_SIZE=$size near \"\$c\" $output $x $y '$expected'"
    done
done <<'ROWS'
forward warp of a flat image by a flat field keeps it|W.Output|20|20|0.2 0.4 0.6 1
backward warp of a flat image|B.Output|20|20|0.2 0.4 0.6 1
Lucas-Kanade inside: the normal flow|L.Output|20|20|-0.16 -0.08 0 1
Lucas-Kanade on the two-pixel band|L.Output|1|20|0 0 0 1
diffusion coefficients exp(-s), 1/(1+s)|P.Output|5|5|0.260856 0.426667 0 1
diffusion keeps flat vectors|F.Output|20|20|0.5 0.25 0 1
upscale at scale 2 doubles the vectors|U.Output|20|20|1 0.5 0 2
vector increment composes V with itself|N.Output|20|20|1 0.5 0 1
the time derivative of a still image is 0|T.Output|20|20|0 0 0 0
an unconnected vector input hands the image on|X.Output|20|20|0.2 0.4 0.6 1
ROWS

finishChecks
