#!/usr/bin/env bash
# qv reader as a user runs it: footage made by OpenImageIO's own tool, set on
# an "Image Reader" node by path, its attributes shown and edited, its frames
# rendered and compared with idiff, moved footage followed, and every refused
# path named with the file left as it was.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

cd "$dir"

mkdir shots
for f in 1 2 3; do
    oiiotool --pattern noise:type=uniform:seed=$f 64x48 4 -d half -o "shots/plate.000$f.exr"
done
"$qv" new c.qvc && "$qv" add c.qvc "Image Reader" >/dev/null
name=$("$qv" reader c.qvc ImageReader1 --path 'shots/plate.[#].exr')
check "a default name becomes the sequence's" "[[ '$name' == plate ]]"
out=$("$qv" reader c.qvc plate)
attribute() { grep -x "$1: $2" <<<"$out" >/dev/null; }
check "the path is made absolute" "attribute path '$dir/shots/plate.\[0001:0003\].exr'"
check "the footage gives images, size, depth" "attribute images 3 && attribute size 64x48 && attribute depth FLOAT16"
check "the marks are the file numbers, the out one past the last" "attribute markIn 1 && attribute markOut 4"
check "a fresh reader repeats nothing" "attribute repeatMode None && attribute offset 0"
check "the cache is named by path and date" "grep -q '^cache: ImageReaderCache:$dir/shots/plate' <<<\"\$out\""

for f in 1 2 3; do
    "$qv" snapshot c.qvc "plate.Output Image" -o "frame$f.exr" --time "$(bc -l <<<"$f/24")"
    check "frame $f is its file" "idiff -q shots/plate.000$f.exr frame$f.exr >/dev/null"
done

"$qv" reader c.qvc plate --rate 25/1 --pixel-ratio 2:1 --depth FLOAT32 --unpremultiply on --bg 0.5,0.25,1 \
    --vectors normalized:8
out=$("$qv" reader c.qvc plate)
check "settings are kept" "attribute rate 25/1 && attribute pixelRatio 2/1 && attribute depth FLOAT32"
check "unpremultiply and its colour" "attribute unpremultiply on && attribute bgColor '0.5 0.25 1'"
check "vectors" "attribute vectors 'HAS_VECTORS NORMALIZED 8'"

deps=$("$qv" reader c.qvc plate --deps)
check "the files it reads, one a line" "[[ \$(wc -l <<<\"\$deps\") -eq 3 && \$(head -1 <<<\"\$deps\") == '$dir/shots/plate.0001.exr' ]]"
mv shots moved
"$qv" reader c.qvc plate --relocate "$dir/shots" "$dir/moved"
out=$("$qv" reader c.qvc plate)
check "moved footage is followed, its settings kept" "attribute path '$dir/moved/plate.\[0001:0003\].exr' && attribute rate 25/1"

mkdir -p home/shots && cp moved/plate.000*.exr home/shots/
export QV_PROJECT_HOME="$dir/home"
"$qv" new h.qvc && "$qv" add h.qvc "Image Reader" >/dev/null
"$qv" reader h.qvc ImageReader1 --path 'home/shots/plate.[#].exr' >/dev/null
check "footage under the project home is stored by its alias" "grep -q '\\\$(PROJECT_HOME)/shots/plate' h.qvc"
mv home home2
export QV_PROJECT_HOME="$dir/home2"
out=$("$qv" reader h.qvc plate)
check "and read back against the home of the moment" "attribute path '$dir/home2/shots/plate.\[0001:0003\].exr'"
unset QV_PROJECT_HOME

oiiotool --create 40x20 4 --fill:color=0.25,0.5,0.75,0 0,0,40,20 -d float -o clear.0001.exr
"$qv" add c.qvc "Image Reader" >/dev/null && "$qv" reader c.qvc ImageReader1 --path 'clear.[#].exr' >/dev/null
"$qv" reader c.qvc clear --unpremultiply on
out=$("$qv" reader c.qvc clear --guess-bg)
check "the guess of a transparent frame is its colour" "grep -qx 'guessedColor: 0.25 0.5 0.75' <<<\"\$out\""
out=$("$qv" reader c.qvc clear)
check "and the node keeps it" "attribute bgColor '0.25 0.5 0.75'"

"$qv" add c.qvc "Color Source" C >/dev/null
cp c.qvc before.qvc
alsoRefused() { check "$1: the file is unchanged" "cmp -s c.qvc before.qvc"; }
touch other.0001.xyz
refuse "an empty path" "plate: No path was specified" "$qv" reader c.qvc plate --path ''
refuse "an open bracket" "plate: Error parsing the path: " "$qv" reader c.qvc plate --path 'p.[1:3.exr'
refuse "a query of nothing" "plate: No files match the query: $dir/none.[#].exr" \
    "$qv" reader c.qvc plate --path 'none.[#].exr'
refuse "an unknown format" "plate: Format of specified files is not supported" \
    "$qv" reader c.qvc plate --path 'other.[1:1].xyz'
refuse "another tool's node" "C: a node of Ostrand/Color Source, not an image reader" "$qv" reader c.qvc C
refuse "no such node" "Nope: no such node" "$qv" reader c.qvc Nope
refuse "a bad rate" "plate: " "$qv" reader c.qvc plate --rate x/y
finishChecks
