#!/usr/bin/env bash
# Compositions naming tools this installation lacks, as a user meets them:
# one warning on standard error per such node, neutral results, edits of its
# inputs refused, and the file saved back as it was.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

c="$dir/c.qvc"

value_source='  <node name="V" tool="Ostrand/Value Source" schema="1">
    <input name="Value" type="double">
      <constant value="0.25" />
    </input>
    <output name="Output" type="double" />
  </node>'
declare -A nodes words
nodes[missing]='  <node name="M" tool="Ostrand/Nowhere" schema="3">
    <input name="Gain" type="double">
      <constant value="2.5" />
    </input>
    <output name="Value" type="double" />
    <output name="Image" type="image" />
  </node>'
words[missing]='Node M (Ostrand/Nowhere) needs a tool that is not installed (schema 3)'
nodes[broken]='  <node name="M" tool="Ostrand/Value Source" schema="9">
    <input name="Gain" type="double">
      <constant value="2.5" />
    </input>
    <output name="Value" type="double" />
    <output name="Image" type="image" />
  </node>'
words[broken]='Node M (Ostrand/Value Source) was saved in a form its tool cannot read (schema 9)'
nodes[group]='  <node name="M" tool="Ostrand/Far Away" schema="2">
    <input name="Gain" type="double">
      <constant value="2.5" />
    </input>
    <output name="Value" type="double" />
    <output name="Image" type="image" />
    <graph>
      <connection from="Gain.Output" to="Value.Input" />
    </graph>
  </node>'
words[group]='Node M (Ostrand/Far Away) needs a tool that is not installed (schema 2)'

for kind in missing broken group; do
    printf '%s\n%s\n%s\n%s\n%s\n' '<?xml version="1.0" encoding="UTF-8"?>' '<composition version="1">' \
        "${nodes[$kind]}" "$value_source" '</composition>' >"$c"
    original=$(cat "$c")

    out=$("$qv" eval "$c" M.Value 2>"$dir/errors")
    status=$?
    errors=$(cat "$dir/errors")
    check "$kind: the composition loads and the output is evaluated" "[[ $status -eq 0 ]]"
    check "$kind: it gives a neutral value" "[[ \$(head -n 1 <<<\"\$out\") == 0 ]]"
    check "$kind: one warning on standard error" \
        "[[ \$(wc -l <<<\"\$errors\") -eq 1 && \"\$errors\" == 'qv: warning: '*\"${words[$kind]}\"* ]]"

    errors=$("$qv" set "$c" M.Gain 1 2>&1 >/dev/null)
    check "$kind: an edit of its input is refused" "[[ $? -eq 1 && \"\$errors\" == *'input M.Gain refuses the value 1'* ]]"
    check "$kind: the file is as it was" "[[ \"\$(cat \"\$c\")\" == \"\$original\" ]]"

    "$qv" set "$c" V.Value 0.25 2>/dev/null
    check "$kind: saved again through an edit elsewhere, the file is byte for byte the same" \
        "[[ $? -eq 0 && \"\$(cat \"\$c\")\" == \"\$original\" ]]"

    errors=$("$qv" snapshot "$c" M.Image -o "$dir/m.exr" 2>&1 >/dev/null)
    check "$kind: its image output has no pixel to write" \
        "[[ $? -eq 1 && \"\$errors\" == *'output M.Image gives an empty image at time 0'* && ! -e \"\$dir/m.exr\" ]]"
done

finishChecks
