#!/bin/sh
# Runs json_format as a user does: output, exit status and what it says when things go wrong.
# Usage: json_format_program_test.sh PROGRAM SAMPLE
set -u

program=$1
sample=$2
folder=$(mktemp -d) || exit 99
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 99
LC_ALL=C
export LC_ALL
failures=0

# run ARGUMENT... keeps the outcome of the program; standard input is that of the call.
run() {
    "$program" "$@" >out 2>err
    status=$?
}

# expect NAME STATUS OUTPUT ERRORS compares all of the outcome; lines end in \n, written so.
expect() {
    printf '%b' "$3" >expected_out
    printf '%b' "$4" >expected_err
    if [ "$status" -eq "$2" ] && cmp -s out expected_out && cmp -s err expected_err; then
        echo "ok      $1"
    else
        failures=$((failures + 1))
        echo "FAILED  $1: exit status $status, expected $2"
        diff expected_out out
        diff expected_err err
    fi
}

# ---- Good input ----

printf '{"b": [1, true], "a": null}' >good.json
run good.json
expect AFileIsWrittenCompactly 0 '{"a":null,"b":[1,true]}\n' ''

run --pretty good.json
expect PrettyPutsEachMemberOnALine 0 \
    '{\n    "a":null,\n    "b":[\n        1,\n        true\n    ]\n}\n' ''

run good.json --pretty
expect OptionsMayFollowTheFile 0 \
    '{\n    "a":null,\n    "b":[\n        1,\n        true\n    ]\n}\n' ''

run <good.json
expect StandardInputIsReadWithoutAFile 0 '{"a":null,"b":[1,true]}\n' ''

run - <good.json
expect ADashIsStandardInput 0 '{"a":null,"b":[1,true]}\n' ''

cp good.json ./--pretty
run -- --pretty
expect ADoubleDashEndsTheOptions 0 '{"a":null,"b":[1,true]}\n' ''

run -- - <good.json
expect ADashIsStandardInputBehindADoubleDash 0 '{"a":null,"b":[1,true]}\n' ''

printf '["a\\u0000b\\/", 2000000]' >zero.json
run zero.json
expect ZeroBytesAreContent 0 '["a\\u0000b\\/",2.0E+6]\n' ''

run "$sample"
cat >sample.out <<'END'
{"":"a name may be empty","empty":["",[],{}],"escapes":"quote \" backslash \\ solidus \/ \b\f\n\r\t","flags":[true,false],"nothing":null,"numbers":[0,-0,7,-12.5,0.1,1E-7,6.02214076E+23,1.0E+6,1.7976931348623157E+308],"quote \" in a name":{"nested":{"deeper":[[1],[2,[3]]]}},"text":"plain, café, 日本語, 😀","twice":"the last stays","unicode escapes":"é 日 😀 \u0000"}
END
cmp -s out sample.out && cp /dev/null out
expect TheSampleIsWrittenCompactly 0 '' ''

run sample.out
cmp -s out sample.out && cp /dev/null out
expect WhatWasWrittenIsWrittenTheSame 0 '' ''

"$program" --pretty "$sample" >pretty.out
run pretty.out
cmp -s out sample.out && cp /dev/null out
expect PrettyTextIsReadAsCompactText 0 '' ''

run --help
grep -q '^Usage: json_format \[--pretty\] \[FILE\]$' out && cp /dev/null out
expect HelpIsShown 0 '' ''

# ---- Input that is not JSON ----

printf '{\n    "a" 1\n}\n' >bad.json
run bad.json
expect BadInputIsReportedWithItsPlace 1 '' "bad.json:2:9: No ':' after name while parsing value of \
type object: found '1'\n    \"a\" 1\n        ^\n"

printf '[1,]' >in
run <in
expect StandardInputHasAName 1 '' "<stdin>:1:4: Expected leading digit while parsing value of type \
number: expected a value, found ']'\n[1,]\n   ^\n"

run --pretty /dev/null
expect EmptyInputIsAnError 1 '' '/dev/null:1:1: The given input sequence is empty\n\n^\n'

printf '\000\001' >in
run <in
expect BinaryInputIsAnError 1 '' '<stdin>:1:1: Expected leading digit while parsing value of type '\
'number: expected a value, found byte 0x00\n..\n^\n'

{ printf '[' && yes '1,' | head -n 100000 && printf '?]'; } >in
run <in
expect NothingIsWrittenBeforeTheEndIsRead 1 '' '<stdin>:100001:1: Expected leading digit while '\
"parsing value of type number: expected a value, found '?'\n?]\n^\n"

yes '[' | tr -d '\n' | head -c 250000 >in
run <in
expect DeepNestingIsAnError 1 '' '<stdin>:1:1001: No trailing '"']'"' while parsing value of type '\
'array (possible missing comma?): nested deeper than 1000 levels\n'\
'[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[\n'\
'                                                  ^\n'

# ---- Other trouble ----

run missing.json
expect AMissingFileIsTrouble 2 '' \
    'json_format: cannot read missing.json: No such file or directory\n'

run ''
expect AnEmptyFileNameIsTrouble 2 '' 'json_format: cannot read : No such file or directory\n'

run .
expect AFolderIsTrouble 2 '' 'json_format: cannot read .: Is a directory\n'

run <.
expect AReadErrorIsTrouble 2 '' 'json_format: cannot read <stdin>: Is a directory\n'

run <&-
expect AClosedStandardInputIsTrouble 2 '' 'json_format: cannot read <stdin>: Bad file descriptor\n'

run --prety good.json
expect AnUnknownOptionIsTrouble 2 '' \
    'json_format: unknown option '"'--prety'"'; try --help\n'

run -p good.json
expect AnUnknownLetterIsTrouble 2 '' 'json_format: unknown option '"'-p'"'; try --help\n'

run good.json good.json
expect TwoFilesAreTrouble 2 '' 'json_format: more than one FILE; try --help\n'

run - - <good.json
expect StandardInputTwiceIsTrouble 2 '' 'json_format: more than one FILE; try --help\n'

cp /dev/null out
for option in '' --pretty --help; do
    "$program" $option good.json >/dev/full 2>err
    status=$?
    expect "AFullDeviceIsTrouble $option" 2 '' \
        'json_format: cannot write standard output: No space left on device\n'
done

"$program" good.json >&- 2>err
status=$?
expect AClosedStandardOutputIsTrouble 2 '' \
    'json_format: cannot write standard output: Bad file descriptor\n'

# A program built with a sanitizer cannot start in so little memory.
if (ulimit -v 150000 && "$program" --help >/dev/null 2>&1); then
    { printf '[' && yes '[],' | tr -d '\n' | head -c 30000000 && printf '[]]'; } >in
    (ulimit -v 150000 && "$program" in >out 2>err)
    status=$?
    expect RunningOutOfMemoryIsTrouble 2 '' 'json_format: out of memory\n'
else
    echo "skipped RunningOutOfMemoryIsTrouble"
fi

echo "$failures failed"
[ "$failures" -eq 0 ]
