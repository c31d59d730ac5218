#!/usr/bin/env bash
# qv expr --trace as a user runs it: the listener's calls in order, the
# error line and status of a refused text.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

out=$("$qv" expr --trace '1+2')
check "an accepted text exits 0" "[[ $? -eq 0 ]]"
check "and prints each call in post-order" \
    "[[ \"\$out\" == 'onConstant \"1\" 1 2'$'\n''onConstant \"2\" 3 4'$'\n''onBinaryOperator \"+\" 2 3' ]]"

out=$("$qv" expr --trace '(1,2)')
check "a vector names its components and its columns" "[[ \"\$out\" == *'onVector2 \"1\" \"2\" 1 6' ]]"

out=$("$qv" expr --trace 'if(a<b, t, -2^2)')
check "a call comes after its arguments" "[[ \$(tail -n 1 <<<\"\$out\") == 'onFunction3 \"if\" 1 17' ]]"
check "time is a call without arguments" "grep -qx 'onFunction0 \"t\" 9 10' <<<\"\$out\""

out=$("$qv" expr --trace '2*$')
status=$?
check "a refused text exits 1" "[[ $status -eq 1 ]]"
check "and ends with the error line" \
    "[[ \"\$out\" == 'onConstant \"2\" 1 2'$'\n''error 3 4: Syntax error: the expression is incomplete or malformed' ]]"

out=$("$qv" expr --trace '1 $')
check "an unknown character is heard, then reported" \
    "[[ \"\$out\" == *'onUnknownToken \"\$\" 3 4'$'\n''error 3 4: Syntax error: unexpected character \"\$\"' ]]"

out=$("$qv" expr --trace '')
check "an empty text is refused at columns 1 and 1" "[[ $? -eq 1 && \"\$out\" == 'error 1 1: '* ]]"

"$qv" expr >/dev/null 2>&1
check "a missing text is refused" "[[ $? -ne 0 ]]"

finishChecks
