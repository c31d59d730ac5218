#!/usr/bin/env bash
# qv motio as a user runs it: a smooth texture moved by a known whole number
# of pixels must be found moved by that much, files appear only under the
# names asked for, and every bad request is refused before any analysis.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

cd "$dir" || exit 1

# A grey texture of three slow sinusoids (periods of 30 to 90 pixels), as
# 16-bit plain PPM, moved by (dx, dy): frame 1 at (x, y) shows what frame 0
# shows at (x - dx, y - dy).
texture() { # width, height, dx, dy
    awk -v w="$1" -v h="$2" -v dx="$3" -v dy="$4" 'BEGIN {
        pi = 3.14159265358979
        printf "P3\n%d %d\n65535\n", w, h
        for (y = 0; y < h; ++y) {
            for (x = 0; x < w; ++x) {
                u = x - dx; v = y - dy
                t = 0.5 + 0.15 * sin(2 * pi * (0.021 * u + 0.013 * v) + 0.3) \
                        + 0.12 * sin(2 * pi * (-0.011 * u + 0.027 * v) + 1.1) \
                        + 0.08 * sin(2 * pi * (0.033 * u + 0.032 * v) + 2.0)
                q = int(t * 65535 + 0.5)
                printf "%d %d %d ", q, q, q
            }
            printf "\n"
        }
    }'
}
texture 160 120 0 0 >a0.ppm
texture 160 120 3 -2 >a1.ppm
for i in 1 2 3; do texture 160 120 $((3 * (i - 1))) $((-2 * (i - 1))) >"s.000$i.ppm"; done
texture 64 48 0 0 >small.ppm
# One channel: the first of each pixel's three.
awk 'NR == 1 { print "P2"; next } NR <= 3 { print; next } {
    n = split($0, a, " "); line = ""; for (i = 1; i <= n; i += 3) line = line a[i] " "; print line }' a1.ppm >a1.pgm
echo "not an image" >junk.ppm
mkdir gap && cp s.0001.ppm gap/g.0001.ppm && cp s.0003.ppm gap/g.0003.ppm

# meanNear: the stats line of that kind and frame has means within 0.1 of x y.
meanNear() { # stats text, "forward 0", x, y
    awk -v want="$2:" -v x="$3" -v y="$4" '
        $1 " " $2 == want && $3 == "mean" { found = 1; dx = $4 - x; dy = $5 - y
            if (dx < -0.1 || dx > 0.1 || dy < -0.1 || dy > 0.1) exit 1 }
        END { if (!found) exit 1 }' <<<"$1"
}

stats=$("$qv" motio a0.ppm a1.ppm --stats 2>progress.txt)
check "a pair: two stats lines and nothing else on stdout" "[[ \$(wc -l <<<\"\$stats\") -eq 2 ]]"
check "a pair: frame 0 found moved by (3, -2)" "meanNear \"\$stats\" 'forward 0' 3 -2"
check "a pair: frame 1 found moved back by (-3, 2)" "meanNear \"\$stats\" 'backward 1' -3 2"
check "the stats line reads mean X Y max M" \
    "grep -Eq '^forward 0: mean -?[0-9.e+-]+ -?[0-9.e+-]+ max [0-9.e+-]+\$' <<<\"\$stats\""
check "progress goes to standard error" "grep -q 'motio: backward 1 (2/2)' progress.txt"

identical=$("$qv" motio a0.ppm a0.ppm --stats 2>/dev/null)
check "identical frames: no motion at all, no negative zero" \
    "[[ \"\$identical\" == \$'forward 0: mean 0 0 max 0\nbackward 1: mean 0 0 max 0' ]]"

mkdir out
"$qv" motio 's.[0001:0003].ppm' --forward 'out/f.<FrameNo>.exr' --backward 'out/b.<FrameNo>.exr' \
    --forward-wheel 'out/f.<FrameNo>.png' 2>/dev/null
check "a sequence: forward vectors of all but the last, backward of all but the first, padded as the input" \
    "[[ \"\$(ls out | tr '\n' ' ')\" == 'b.0002.exr b.0003.exr f.0001.exr f.0001.png f.0002.exr f.0002.png ' ]]"
info=$("$qv" imageinfo out/f.0001.exr)
check "the vectors are an EXR of two float channels" \
    "grep -q 'format: EXR' <<<\"\$info\" && grep -q 'channels: 2' <<<\"\$info\" && grep -q 'depth: HDR' <<<\"\$info\""
info=$("$qv" imageinfo out/f.0001.png)
check "the wheel is an 8-bit RGB PNG of the frame's size" \
    "grep -q 'format: PNG' <<<\"\$info\" && grep -q 'channels: 3' <<<\"\$info\" &&
     grep -q 'depth: UINT8' <<<\"\$info\" && grep -q 'size: 160x120' <<<\"\$info\""

stats=$("$qv" motio 's.[0001:0003].ppm' --frames 2-3 --quality Half --stats 2>/dev/null)
check "--frames 2-3: forward of 2, backward of 3" \
    "[[ \"\$(cut -d: -f1 <<<\"\$stats\" | tr '\n' ' ')\" == 'forward 2 backward 3 ' ]]"
check "frames 2 to 3 of the sequence moved by (3, -2) too" "meanNear \"\$stats\" 'forward 2' 3 -2"
stats=$("$qv" motio a0.ppm a1.ppm --stats --quality 1 2>/dev/null)
check "a quality by number is the same as by label" \
    "[[ \"\$stats\" == \"\$(\"\$qv\" motio a0.ppm a1.ppm --stats --quality Half 2>/dev/null)\" ]]"

check "a coarser quality analyses less: other vectors" \
    "[[ \"\$stats\" != \"\$(\"\$qv\" motio a0.ppm a1.ppm --stats 2>/dev/null)\" ]]"

mkdir pair
"$qv" motio a0.ppm a1.ppm --forward 'pair/v.<FrameNo>.exr' --backward 'pair/v.<FrameNo>.exr' 2>/dev/null
check "a pair: <FrameNo> is 0 for the forward vectors, 1 for the backward" \
    "[[ \"\$(ls pair | tr '\n' ' ')\" == 'v.0.exr v.1.exr ' ]]"

texture 4 3 0 0 >tiny0.ppm
texture 4 3 1 0 >tiny1.ppm
stats=$("$qv" motio tiny0.ppm tiny1.ppm --stats 2>/dev/null)
check "frames under 5 pixels high: no analysis, no motion" \
    "[[ \"\$stats\" == \$'forward 0: mean 0 0 max 0\nbackward 1: mean 0 0 max 0' ]]"

# Refused before any analysis, with status 1 and one line naming the problem;
# nothing is written.
alsoRefused() { check "$1: nothing written" "[[ ! -e x.exr && ! -e x.0001.exr ]]"; }
while IFS='|' read -r what text args; do
    eval "set -- $args"
    refuse "$what" "$text" "$qv" motio "$@"
done <<'EOF'
a missing file|motio: missing.ppm: no such file|a0.ppm missing.ppm --stats --forward x.exr
a file missing inside a sequence|motio: gap/g.0002.ppm: no such file|'gap/g.[0001:0003].ppm' --stats
a file that is no image|motio: junk.ppm: |junk.ppm a1.ppm --forward x.exr
an image of one channel|motio: a1.pgm: one channel, which images read as an alpha|a0.ppm a1.pgm --stats
frames of different sizes|motio: small.ppm is 64x48, a0.ppm is 160x120|a0.ppm small.ppm --forward x.exr
a sequence of one frame|motio: s.[0001:0001].ppm: 1 frame in play, motion needs 2 or more|'s.[0001:0001].ppm' --stats
one frame of a sequence|motio: s.[0001:0003].ppm: 1 frame in play|'s.[0001:0003].ppm' --frames 2 --stats
frames out of the sequence|motio: s.[0001:0003].ppm: no image at frame 4|'s.[0001:0003].ppm' --frames 2-4 --stats
a sequence without <FrameNo> in its output|motio: x.exr: no <FrameNo>|'s.[0001:0003].ppm' --forward x.exr
a path that matches no file|motio: t.1.ppm: no such file|'t.[1:3].ppm' --stats
EOF

# Usage errors: status 2, and the message says what was wrong.
while IFS='|' read -r what text args; do
    eval "set -- $args"
    errors=$("$qv" motio "$@" 2>&1 >/dev/null)
    status=$?
    check "$what: status 2" "[[ $status -eq 2 ]]"
    check "$what: the message says so" "grep -qF -- \"\$text\" <<<\"\$errors\""
done <<'EOF'
no output asked for|nothing to do|a0.ppm a1.ppm
an unknown quality|"Double" is not 0 to 6|a0.ppm a1.ppm --stats --quality Double
a quality beyond 6|"7" is not 0 to 6|a0.ppm a1.ppm --stats --quality 7
three inputs|At Most 2|a0.ppm a1.ppm a1.ppm --stats
vectors to a file that is not EXR|x.png is not an .exr file|a0.ppm a1.ppm --forward x.png
a wheel maximum of 0|--wheel-max|a0.ppm a1.ppm --forward-wheel x.png --wheel-max 0
a range from high to low|runs from high to low|'s.[0001:0003].ppm' --frames 3-1 --stats
EOF
check "no temporary file is left anywhere" "[[ -z \$(find . -name '*.qvtmp*') ]]"

finishChecks
