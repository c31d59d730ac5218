#!/usr/bin/env bash
# qv as a user runs it: the build record, the package order, and the one-line
# failure when the tool library cannot be loaded.
set -u
qv="$1"
source "$(dirname "$0")/cliChecks.sh"

version=$("$qv" version)
check "version exits 0" "[[ $? -eq 0 ]]"
check "version names the product" "grep -qx 'productName: Ostrand Brumo Library' <<<\"\$version\""
check "version has one line per field" "[[ \$(wc -l <<<\"\$version\") -eq 11 ]]"

packages=$("$qv" packages)
check "packages lists builtinTools last" "[[ \$(tail -n 1 <<<\"\$packages\") == builtinTools:* ]]"
check "packages lists base first with no dependency" "[[ \$(head -n 1 <<<\"\$packages\") == 'base:' ]]"
check "packages keeps declaration order" "grep -qx 'renderedResultTool: imageImportTool, datamgt, pluginAPI, internalAPI, media, resmgt, base' <<<\"\$packages\""

lonely=$(mktemp -d)
trap 'rm -rf "$lonely" "$dir"' EXIT
cp "$qv" "$lonely/qv"
: >"$lonely/libQVbuiltinTools.so" # not a library at all
errors=$(LD_LIBRARY_PATH="$(dirname "$qv")" QV_PLUGIN_PATH= "$lonely/qv" version 2>&1 >/dev/null)
status=$?
check "a library that cannot be loaded exits 1" "[[ $status -eq 1 ]]"
check "and says so in one line" "[[ \$(wc -l <<<\"\$errors\") -eq 1 && \"\$errors\" == 'qv: cannot load'* ]]"

help=$("$qv" --help)
check "help lists the subcommands" "grep -q 'packages' <<<\"\$help\" && grep -q 'version' <<<\"\$help\""
"$qv" nosuchcommand >/dev/null 2>&1
check "an unknown subcommand is a usage error" "[[ $? -eq 2 ]]"
"$qv" version --no-such-option >/dev/null 2>&1
check "so is an unknown option" "[[ $? -eq 2 ]]"

finishChecks
