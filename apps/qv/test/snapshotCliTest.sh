#!/usr/bin/env bash
# qv snapshot as a user runs it: a Color Source rendered to a real EXR file,
# read back by OpenImageIO's own tool, and one error line for what cannot be
# rendered.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

c="$dir/c.qvc"

"$qv" new "$c" && "$qv" add "$c" "Color Source" C >/dev/null
for setting in "Width=640" "Height=360" "Color=0.25 0.5 1.5" "Alpha=2.0"; do
    "$qv" set "$c" "C.${setting%%=*}" "${setting#*=}" || echo "could not set $setting"
done
"$qv" snapshot "$c" C.Output --time 0 -o "$dir/s.exr"
check "snapshot exits 0" "[[ $? -eq 0 ]]"
info=$("$qv" imageinfo "$dir/s.exr")
check "the file is an EXR of the format's size" \
    "grep -qx 'format: EXR' <<<\"\$info\" && grep -qx 'size: 640x360' <<<\"\$info\""
check "with four float channels" "grep -qx 'channels: 4' <<<\"\$info\" && grep -qx 'depth: HDR' <<<\"\$info\""
stats=$(oiiotool --stats "$dir/s.exr")
check "every pixel is the colour and the alpha, beyond 1 included" \
    "grep -q 'Stats Min: 0.250000 0.500000 1.500000 2.000000' <<<\"\$stats\" && grep -q 'Stats Max: 0.250000 0.500000 1.500000 2.000000' <<<\"\$stats\""

check "qv info shows the colour as its three channels" "grep -qx '  C.Color = 0.25 0.5 1.5' <<<\"\$(\"\$qv\" info \"\$c\")\""

"$qv" set "$c" C.Color.Green 0 --time 0 && "$qv" set "$c" C.Color.Green 1 --time 10
"$qv" snapshot "$c" C.Output --time 5 -o "$dir/green.exr"
check "one channel animated on its own" \
    "grep -q 'Stats Min: 0.250000 0.500000 1.500000 2.000000' <<<\"\$(oiiotool --stats \"\$dir/green.exr\")\""
check "qv info shows each channel of an animated colour" \
    "grep -qx '  C.Color.Green = keyframes 0: 0, 10: 1' <<<\"\$(\"\$qv\" info \"\$c\")\""
refuse "a channel a colour does not have" "input C.Color has no channel 'Alpha'" "$qv" set "$c" C.Color.Alpha 1
refuse "a colour of two numbers" "it takes three numbers" "$qv" set "$c" C.Color "1 2"
"$qv" set "$c" C.Color "0.25 0.5 1.5"

"$qv" snapshot "$c" C.Output --time 2.5 --proxy 2 -o "$dir/small.tif"
check "a proxy scale and another format" "grep -qx 'size: 160x90' <<<\"\$(\"\$qv\" imageinfo \"\$dir/small.tif\")\""

"$qv" set "$c" C.Width 1 --time 0 && "$qv" set "$c" C.Width 101 --time 10
"$qv" snapshot "$c" C.Output --time 5 -o "$dir/animated.exr"
check "an animated size is read at the time asked" \
    "grep -qx 'size: 51x360' <<<\"\$(\"\$qv\" imageinfo \"\$dir/animated.exr\")\""

"$qv" add "$c" "Value Source" V >/dev/null
refuse "a value output" "output V.Output gives values, not images" "$qv" snapshot "$c" V.Output -o "$dir/v.exr"
refuse "an unknown output" "node C has no output named 'Out'" "$qv" snapshot "$c" C.Out -o "$dir/x.exr"
refuse "an unknown format" "x.xyz" "$qv" snapshot "$c" C.Output -o "$dir/x.xyz"
refuse "a negative proxy scale" "proxy scale -1" "$qv" snapshot "$c" C.Output --proxy -1 -o "$dir/x.exr"
refuse "a folder that does not exist" "nowhere" "$qv" snapshot "$c" C.Output -o "$dir/nowhere/x.exr"
check "nothing is left of the refused files" "[[ ! -e \"\$dir/x.exr\" && ! -e \"\$dir/x.xyz\" && ! -e \"\$dir/v.exr\" ]]"

finishChecks
