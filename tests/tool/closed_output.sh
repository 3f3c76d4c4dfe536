#!/bin/bash
# What is left when standard output takes nothing more: closed_output.sh TOOL SOURCE_FOLDER
set -u
tool=$1
cd "$2" || exit 1
failures=0

# WHAT STATUS EXPECTED COMPLAINTS EXPECTED
expect() {
    [ "$2" = "$3" ] && [ "$4" = "$5" ] && return
    echo "FAILED: $1: status $2, $4 complaints" >&2
    failures=$((failures + 1))
}

complaints=$(mktemp)
trap 'rm -f "$complaints"' EXIT
for form in 'check examples' 'check --format json tests/tool/mistakes.bsd' \
    'ebst examples/demo.bsd -o -' 'check --list-rules' \
    'diff examples/demo.bsd examples/isc_2002.bsd'; do
    # A reader that has gone is no fault of the tool's, and no reason to say anything.
    exec 3> >(true)
    wait $!
    # shellcheck disable=SC2086 # the words are separate arguments
    "$tool" $form >&3 2> "$complaints"
    case $? in 0 | 1 | 2) ;; *) failures=$((failures + 1)) ;; esac
    exec 3>&-
    expect "$form | true" 0 0 "$(grep -c 'cannot write' "$complaints")" 0
    # shellcheck disable=SC2086
    "$tool" $form > /dev/full 2> "$complaints"
    expect "$form > /dev/full" $? 2 "$(grep -c 'cannot write to standard output' "$complaints")" 1
    # shellcheck disable=SC2086
    "$tool" $form >&- 2> "$complaints"
    expect "$form >&-" $? 2 "$(grep -c 'cannot write to standard output' "$complaints")" 1
done
exit $((failures > 0))
