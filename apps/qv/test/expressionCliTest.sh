#!/usr/bin/env bash
# Expressions driving inputs, as a user works with them from the shell: a
# parameter driven by other nodes' outputs, evaluated over time; a rename the
# text follows; texts refused with the columns at fault and kept to be
# mended; expressions taken off; inputs no expression can drive.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

c="$dir/c.qvc"

value() { "$qv" eval "$c" "$1" --time "$2" | head -n 1; }
# The value of each output at each time: "OUTPUT TIME VALUE" a line.
checkValues() { # description, table
    local output time expected
    while read -r output time expected; do
        check "$1: $output at $time is $expected" "[[ \$(value $output $time) == '$expected' ]]"
    done <<<"$2"
}

"$qv" new "$c" && "$qv" add "$c" "Value Source" V >/dev/null && "$qv" add "$c" "Value Source" R >/dev/null &&
    "$qv" add "$c" "Color Source" C >/dev/null
check "a composition with two Value Sources and a Color Source" "[[ $? -eq 0 ]]"
for setting in "C.Width 4" "C.Height 2" "R.Value 0.75" "V.Value 0 --time 0" "V.Value 0.5 --time 2"; do
    # shellcheck disable=SC2086
    "$qv" set "$c" $setting
    check "set $setting" "[[ $? -eq 0 ]]"
done

# The alpha follows V, and R reads the alpha: an expression over an input
# that an expression drives.
"$qv" set "$c" C.Alpha --expr 'V.Output *2' && "$qv" set "$c" R.Value --expr 'C.Alpha'
check "--expr attaches expressions" "[[ $? -eq 0 ]]"
info=$("$qv" info "$c")
check "info shows the text as typed" "grep -qxF '  C.Alpha = expr \"V.Output *2\"' <<<\"\$info\""
check "and the one reading an input" "grep -qxF '  R.Value = expr \"C.Alpha\"' <<<\"\$info\""
check "the expressions' own nodes and connections are not listed" \
    "[[ \$(grep -c '^node ' <<<\"\$info\") -eq 3 && \$(grep -c '^connection ' <<<\"\$info\") -eq 0 ]]"
check "nor their inputs" "[[ \$(grep -c '^  ' <<<\"\$info\") -eq \$(grep -c '^  [VRC]\\.' <<<\"\$info\") ]]"
timeline='R.Output 0 0
R.Output 1 0.5
R.Output 2 1
R.Output 5 1
V.Output 1 0.25'
checkValues "through two expressions" "$timeline"
"$qv" snapshot "$c" C.Output --time 1 -o "$dir/half.exr"
check "the image's alpha is the expression's value" \
    "oiiotool --stats \"\$dir/half.exr\" | grep -q 'Stats Min: 0.000000 0.000000 0.000000 0.500000'"

"$qv" rename "$c" V W
check "rename succeeds" "[[ $? -eq 0 ]]"
info=$("$qv" info "$c")
check "the text follows the new name, spacing kept" "grep -qxF '  C.Alpha = expr \"W.Output *2\"' <<<\"\$info\""
check "the node is listed under its new name" "grep -qx 'node W: Ostrand/Value Source, schema 1' <<<\"\$info\""
checkValues "after the rename, read again" "${timeline//V.Output/W.Output}"

# Integer inputs take the largest integer not above the value.
"$qv" set "$c" R.Value --expr 'C.Width'
for case in "2.7 2" "-0.5 -1" "3 3"; do
    read -r text expected <<<"$case"
    "$qv" set "$c" C.Width "--expr=$text"
    check "an integer input driven by $text reads $expected" "[[ \$(value R.Output 0) == '$expected' ]]"
done
"$qv" set "$c" C.Width --no-expr

# Texts refused: kept and saved, with the columns at fault (from 1, the last
# just past it) and the reason.
while IFS='|' read -r text columns what; do
    errors=$("$qv" set "$c" R.Value --expr "$text" 2>&1 >/dev/null)
    status=$?
    check "$what: status 1" "[[ $status -eq 1 ]]"
    check "$what: one line with columns $columns" \
        "[[ \$(wc -l <<<\"\$errors\") -eq 1 && \"\$errors\" == 'qv: R.Value: expression refused at columns $columns: '?* ]]"
    # A reloaded text may have lost its reason: then it is just "invalid".
    reason=${errors#*"columns $columns: "}
    marked=$("$qv" info "$c" | grep '^  R.Value = ')
    check "$what: the text is saved, marked invalid" \
        "[[ \"\$marked\" == '  R.Value = expr \"$text\" (invalid: '@(\"\$reason\"|invalid)')' ]]"
done <<'CASES'
Nope.Output*2|1-12|an unknown node
2*Nope.Output|3-14|an unknown node after an operator
C.Color*2|1-8|a colour
W.Output+C.Color.Red|10-21|a colour's channel
CASES
"$qv" set "$c" R.Value --expr 'W.Output'
check "a mended text is valid again" \
    "\"\$qv\" info \"\$c\" | grep -qxF '  R.Value = expr \"W.Output\"' && [[ \$(value R.Output 2) == 0.5 ]]"

"$qv" set "$c" R.Value --no-expr
check "--no-expr takes the expression off" "[[ $? -eq 0 ]]"
info=$("$qv" info "$c")
check "the input is back at its own value" "grep -qx '  R.Value = 0.75' <<<\"\$info\" && [[ \$(value R.Output 2) == 0.75 ]]"
check "the alpha keeps its own" "grep -qxF '  C.Alpha = expr \"W.Output *2\"' <<<\"\$info\""

cp "$c" "$dir/before.qvc"
alsoRefused() { # a refused edit leaves the file as it was
    check "$1: the file is as it was" "cmp -s \"\$c\" \"\$dir/before.qvc\""
}
refuse "no expression to take off" "input R.Value has no expression to remove" "$qv" set "$c" R.Value --no-expr
refuse "a colour input" "input C.Color cannot take an expression: it is of type color" \
    "$qv" set "$c" C.Color --expr 0.5
refuse "a colour's channel" "input C.Color.Red cannot take an expression: it is a channel of C.Color" \
    "$qv" set "$c" C.Color.Red --expr 0.5
refuse "an unknown node" "no node named 'Nope'" "$qv" set "$c" Nope.Value --expr 0.5
refuse "an unknown input" "node C has no input named 'Gain'" "$qv" set "$c" C.Gain --expr 0.5
refuse "a rename to a taken name" "a node named 'C' already exists" "$qv" rename "$c" W C
refuse "a rename to an invalid name" "'W.2' is not a valid node name" "$qv" rename "$c" W W.2
refuse "a rename of an unknown node" "no node named 'V'" "$qv" rename "$c" V X
unset -f alsoRefused

for usage in "R.Value 0.5 --expr 1" "R.Value --expr 1 --time 1" "R.Value --no-expr 0.5" \
    "R.Value --no-expr --time 1" "R.Value --expr 1 --no-expr" "R.Value"; do
    # shellcheck disable=SC2086
    "$qv" set "$c" $usage >/dev/null 2>&1
    check "set $usage is a usage error" "[[ $? -eq 2 ]] && cmp -s \"\$c\" \"\$dir/before.qvc\""
done
check "rename --help describes it" "\"\$qv\" rename --help | grep -q rename"

finishChecks
