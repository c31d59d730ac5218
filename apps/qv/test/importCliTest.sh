#!/usr/bin/env bash
# qv footage and qv import as a user runs them: sequences made by
# OpenImageIO's own tool imported into a project and into a composition, the
# entry's working version rendered frame by frame and compared with idiff,
# the guesses by size shown by qv reader, and refusals that leave the first
# entry as it was.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

cd "$dir"

for f in 1 2 3; do
    oiiotool --pattern noise:type=uniform:seed=$f 720x486 3 -d half -o "plate.000$f.exr"
done
oiiotool --pattern constant:color=0.5,0.25,0.125 100x50 3 -d uint8 -o "odd.0007.png"

out=$("$qv" footage project 'plate.[#].exr' odd.0007.png 2>err.txt)
check "footage exits 0" "[[ $? -eq 0 ]]"
check "one line per entry, its path and description" \
    "[[ \$(head -1 <<<\"\$out\") == 'Footage/plate: EXR, 720 x 486, 3 channels (R G B), ECR, compression zip' ]]"
check "a file stands for its whole sequence" "grep -q '^Footage/odd: PNG, 100 x 50' <<<\"\$out\""
check "each import is told" "grep -qx 'qv: information: Imported \"Footage/plate\".' err.txt"
version="project/Footage/plate/Original Footage.qvc"
check "the working version is a file of the entry" "[[ -f \"\$version\" ]]"
for f in 1 2 3; do
    "$qv" snapshot "$version" "plate.Output Image" --frame $f -o "frame$f.exr"
    check "frame $f of the entry is its file" "idiff -q plate.000$f.exr frame$f.exr >/dev/null"
done
reader=$("$qv" reader "$version" plate)
attribute() { grep -x "$1: $2" <<<"$reader" >/dev/null; }
check "NTSC's size gives its pixel ratio and rate" "attribute pixelRatio 9/10 && attribute rate 30000/1001"
check "the marks are the files'" "attribute markIn 1 && attribute markOut 4"
reader=$("$qv" reader "project/Footage/odd/Original Footage.qvc" odd)
check "a size no format has: square pixels, 24 a second" "attribute pixelRatio 1/1 && attribute rate 24/1"
check "integer files import as half floats" "attribute depth FLOAT16 && attribute markIn 7"

cp "$version" before.qvc
errors=$("$qv" footage project plate.0002.exr 2>&1 >/dev/null)
check "a second import of a name: status 1" "[[ $? -eq 1 ]]"
check "and a warning naming it" "[[ \"\$errors\" == *'A composition named \"plate\" already exists'* ]]"
check "the first entry is unchanged" "cmp -s \"\$version\" before.qvc"
errors=$("$qv" footage project missing.exr 2>&1 >/dev/null)
check "a missing file: status 1 and a warning" "[[ $? -eq 1 && \"\$errors\" == *'missing.exr\" does not exist.'* ]]"
check "and no entry" "[[ ! -e project/Footage/missing ]]"

"$qv" new c.qvc
name=$("$qv" import c.qvc plate.0001.exr --rate 25/1 --depth HDR)
check "import names the node by the sequence" "[[ '$name' == plate ]]"
reader=$("$qv" reader c.qvc plate)
check "what it was told wins over the guesses" "attribute rate 25/1 && attribute depth FLOAT32 && attribute pixelRatio 9/10"
"$qv" snapshot c.qvc "plate.Output Image" --frame 2 -o imported2.exr
check "the imported node gives the frames" "idiff -q plate.0002.exr imported2.exr >/dev/null"
cp c.qvc before.qvc
alsoRefused() { check "$1: the file is unchanged" "cmp -s c.qvc before.qvc"; }
refuse "a missing file" "none.exr" "$qv" import c.qvc none.exr
refuse "a bad depth" "is not ECR or HDR" "$qv" import c.qvc plate.0001.exr --depth UINT8
finishChecks
