#!/usr/bin/env bash
# Editing and evaluating compositions from the shell: each command reads the
# file, changes it or reads a value, and writes it back only on success.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

c="$dir/c.qvc"

"$qv" new "$c" && "$qv" add "$c" "Value Source" V >/dev/null && "$qv" set "$c" V.Value 0.25
check "new, add and set succeed" "[[ $? -eq 0 ]]"
out=$("$qv" eval "$c" V.Output)
check "eval prints the value" "[[ \$(head -n 1 <<<\"\$out\") == 0.25 ]]"
check "then the interval it holds for" "[[ \$(tail -n 1 <<<\"\$out\") == 'validity -31536000 31536000' ]]"

name=$("$qv" add "$c" "Ostrand/Value Source")
check "add prints a name made from the tool's" "[[ \"\$name\" == ValueSource1 ]]"
"$qv" connect "$c" V.Output "$name.Value"
check "connect succeeds" "[[ $? -eq 0 ]]"
check "the driven node gives the driver's value" "[[ \$(\"\$qv\" eval \"\$c\" \$name.Output | head -n 1) == 0.25 ]]"

"$qv" set "$c" V.Value 0 --time 0 && "$qv" set "$c" V.Value 1 --time 2
out=$("$qv" eval "$c" V.Output --time 0.5)
check "keyframes interpolate" "[[ \"\$out\" == '0.25'$'\n''validity 0.5 0.5' ]]"
out=$("$qv" eval "$c" V.Output --time 5)
check "and hold after the last" "[[ \"\$out\" == '1'$'\n''validity 2 31536000' ]]"

info=$("$qv" info "$c")
check "info lists the nodes" "grep -qx 'node V: Ostrand/Value Source, schema 1' <<<\"\$info\""
check "info gives the keyframes" "grep -qx '  V.Value = keyframes 0: 0, 2: 1' <<<\"\$info\""
check "info lists the connections" "grep -qx \"connection V.Output -> \$name.Value\" <<<\"\$info\""

tools=$("$qv" tools)
check "tools lists Value Source as internal" \
    "grep -qxF \"Ostrand/Value Source\"$'\t'.$'\t'1$'\t'internal <<<\"\$tools\""

before=$(cat "$c")
alsoRefused() { # a refused edit leaves the file as it was
    check "$1: the file is as it was" "[[ \"\$(cat \"\$c\")\" == \"\$before\" ]]"
}
refuse "a value the policy refuses" "input V.Value refuses the value 7.5" "$qv" set "$c" V.Value 7.5
refuse "a value of another type" "'abc' is not a value of type double" "$qv" set "$c" V.Value abc
refuse "an unknown node" "no node named 'W'" "$qv" set "$c" W.Value 0.5
refuse "an unknown input" "node V has no input named 'Gain'" "$qv" set "$c" V.Gain 0.5
refuse "an unknown tool" "no tool named 'Nothing'" "$qv" add "$c" Nothing
refuse "a name in use" "a node named 'V' already exists" "$qv" add "$c" "Value Source" V
refuse "a loop" "loop" "$qv" connect "$c" "$name.Output" V.Value
refuse "an unknown output" "node V has no output named 'Out'" "$qv" eval "$c" V.Out
refuse "an existing file" "already exists" "$qv" new "$c"

# A value outside the policy, written by hand, is read and forwarded as it is.
cat >"$dir/hand.qvc" <<'XML'
<?xml version="1.0" encoding="UTF-8"?>
<composition version="1">
  <node name="H" tool="Ostrand/Value Source" schema="1">
    <input name="Value" type="double">
      <constant value="7.5" />
    </input>
    <output name="Output" type="double" />
  </node>
</composition>
XML
check "a hand-written 7.5 is forwarded unchanged" "[[ \$(\"\$qv\" eval \"\$dir/hand.qvc\" H.Output | head -n 1) == 7.5 ]]"
sed -i 's|schema="1">|schema="1">\n    <bogus/>|' "$dir/hand.qvc"
errors=$("$qv" info "$dir/hand.qvc" 2>&1 >/dev/null)
check "a malformed file is one error with the file and line" \
    "[[ $? -eq 1 && \$(wc -l <<<\"\$errors\") -eq 1 && \"\$errors\" == *\"\$dir/hand.qvc, line 4: unexpected <bogus>\"* ]]"

for command in new add set connect tools info eval; do
    check "$command --help describes it" "\"\$qv\" $command --help | grep -q '$command'"
done

finishChecks
