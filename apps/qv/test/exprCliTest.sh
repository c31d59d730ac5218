#!/usr/bin/env bash
# qv expr as a user runs it: values with their validity at a time, named
# constants for references, refusals with their columns; and --trace, the
# listener's calls in order.
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

out=$("$qv" expr '1/0')
check "a division by zero is a huge finite number, valid at all times" \
    "[[ \"\$out\" == '4.4942328371557898e+307'$'\n''validity -31536000 31536000' ]]"

out=$("$qv" expr --time 1.5 't*2')
check "time makes the value hold for a tick around it" \
    "[[ \"\$out\" == '3'$'\n''validity 1.4999999947916667 1.5000000052083333' ]]"

out=$("$qv" expr --time -2 -- '-t')
check "a negative time and a text starting with a minus" "[[ \$(head -n 1 <<<\"\$out\") == 2 ]]"

out=$("$qv" expr --attr 'Blur.Radius=4' --attr 'a=-0.5' 'if(a<0, Blur.Radius*2, 0)')
check "references named by --attr are their constants" "[[ \$(head -n 1 <<<\"\$out\") == 8 ]]"

out=$("$qv" expr '2 + 1.5')
check "a blank before a number leaves it a number" "[[ \$(head -n 1 <<<\"\$out\") == 3.5 ]]"

out=$("$qv" expr 'turbulence(1.3, 0.4)')
check "and so after a comma" "[[ $? -eq 0 && \$(head -n 1 <<<\"\$out\") =~ ^-?[0-9] ]]"

out=$("$qv" expr --trace '1.5 + 2')
check "a blank after a number still makes it a reference" "[[ \$(head -n 1 <<<\"\$out\") == 'onAttribute \"1.5 \" 1 5' ]]"

out=$("$qv" expr --time 3 '0^t')
check "a power of zero holds at all times, its exponent unasked" \
    "[[ \"\$out\" == '0'$'\n''validity -31536000 31536000' ]]"

out=$("$qv" expr '(1,2,3)+(1,1,1)')
check "a vector prints its components" "[[ \$(head -n 1 <<<\"\$out\") == '(2, 3, 4)' ]]"

out=$("$qv" expr '1<2 && 2<1')
check "a condition prints true or false" "[[ \$(head -n 1 <<<\"\$out\") == false ]]"

out=$("$qv" expr 'rand(5)'); later=$("$qv" expr --time 100 'rand(5)')
check "rand of a seed is the same at every time" "[[ \"\$out\" == \"\$later\" ]]"

out=$("$qv" expr '2*Width')
status=$?
check "any other reference is an unknown attribute, with its columns" \
    "[[ $status -eq 1 && \"\$out\" == 'error 3 8: Unknown attribute: Width' ]]"

out=$("$qv" expr 'SIN((1,2,3))')
check "function names are read in lower case; a vector does not fit sin" \
    "[[ \"\$out\" == 'error 1 13: Unknown function \"sin\" with 1 argument(s)' ]]"

out=$("$qv" expr '(1,2,3)*2')
check "no promotion of a number to a vector" \
    "[[ \"\$out\" == 'error 8 9: Syntax error: the binary operator \"*\" does not accept operands of these types' ]]"

"$qv" expr --attr 'a=x' 'a' >/dev/null 2>&1
check "an --attr value that is not a number is refused" "[[ $? -eq 1 ]]"

finishChecks
