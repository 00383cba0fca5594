#!/bin/sh
# Runs json_format as a user does: checks its output, exit status and error messages.
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

for option in --help -h; do
    run "$option" missing.json
    grep -q '^Usage: json_format \[OPTION\]\.\.\. \[FILE\]$' out && cp /dev/null out
    expect "HelpIsShown $option" 0 '' ''
done

run --version missing.json
grep -Eqx 'json_format [0-9]+\.[0-9]+\.[0-9]+' out && cp /dev/null out
expect TheVersionIsShown 0 '' ''

# ---- Forms of the text ----

printf '{"b": [1000000, 2.5, {}], "a": "caf\303\251/", "n": 9007199254740993}' >forms.json
run --indent=0 forms.json
expect IndentZeroIsOneLine 0 \
    '{"a":"caf\0303\0251/","b":[1000000,2.5,{}],"n":9007199254740993}\n' ''

run --indent=2 forms.json
expect IndentPutsEachMemberOnALine 0 '{\n  "a": "caf\0303\0251/",\n  "b": [\n    1000000,\n    2.5,
    {}\n  ],\n  "n": 9007199254740993\n}\n' ''

run --indent=10 --ascii --escape-slash --big-integers-as-strings forms.json
expect AllFormsGoTogether 0 '{\n          "a": "caf\\u00e9\\/",
          "b": [\n                    1000000,\n                    2.5,\n                    {}
          ],\n          "n": "9007199254740993"\n}\n' ''

run --ascii forms.json
expect AsciiEscapesCharacters 0 '{"a":"caf\\u00e9/","b":[1000000,2.5,{}],"n":9007199254740993}\n' ''

run --canonical forms.json
expect WhatHasNoCanonicalFormIsAnError 1 '' "forms.json: at /n: no double equals 9007199254740993: \
the option big_integers allows it\n"

printf '{"\357\274\241": 1.0e0, "\360\237\231\202": 1E30, "a": -0}' | "$program" --canonical >out 2>err
status=$?
expect CanonicalSortsMembers 0 '{"a":0,"\0360\0237\0231\0202":1e+30,"\0357\0274\0241":1}\n' ''

printf '1000000\n9007199254740993\n[2000000]\n' | "$program" --lines --canonical >out 2>err
status=$?
expect WithLinesTheNextLineIsWritten 1 '1000000\n[2000000]\n' "<stdin>: at the root: no double equals \
9007199254740993: the option big_integers allows it\n"

for indent in 11 -1 x '' 1x 100; do
    run "--indent=$indent" forms.json
    expect "AnIndentationIsANumberUpToTen $indent" 2 '' \
        "json_format: --indent takes a number from 0 to 10, not '$indent'\n"
done

run --pretty --indent=2 forms.json
expect ThereIsOneForm 2 '' 'json_format: --pretty and --canonical go with no other form; try --help\n'
run --canonical --ascii forms.json
expect CanonicalIsOneForm 2 '' \
    'json_format: --pretty and --canonical go with no other form; try --help\n'

# ---- Options for the input ----

printf '[1, // one\n 2 /* two */]' >in
run --comments in
expect CommentsAreAccepted 0 '[1,2]\n' ''

run in
expect CommentsAreAnErrorOtherwise 1 '' "in:1:5: found a comment: the option comments allows it\n\
[1, // one\n    ^\n"

printf '{"a": [1,],}' >in
run --trailing-commas in
expect TrailingCommasAreAccepted 0 '{"a":[1]}\n' ''

run in
expect TrailingCommasAreAnErrorOtherwise 1 '' "in:1:10: found ']' after a comma: the option \
trailing_commas allows it\n{\"a\": [1,],}\n         ^\n"

# ---- Several values ----

printf '{"b": 1, "a": 2}\n\n[1, 2]\r\n3 "x"[]\n' >lines
run --lines lines
expect EveryValueIsWrittenOnALine 0 '{"a":2,"b":1}\n[1,2]\n3\n"x"\n[]\n' ''

run --lines --pretty - <lines
expect SeveralValuesMayBePretty 0 \
    '{\n    "a":2,\n    "b":1\n}\n[\n    1,\n    2\n]\n3\n"x"\n[]\n' ''

run --lines /dev/null
expect OfNoValuesNothingIsWritten 0 '' ''

printf '[1,]\n/* 2 */ 2' | "$program" --lines --comments --trailing-commas >out 2>err
status=$?
expect TheOptionsHoldForEveryValue 0 '[1]\n2\n' ''

printf '1\n{"a" 2} 3\n4\n[5' >in
run --lines in
expect AfterAnErrorTheNextLineIsRead 1 '1\n4\n' "in:2:6: found '2' where ':' is expected after a \
name\n{\"a\" 2} 3\n     ^\nin:4:3: the text ends within the array that begins at \
line 4, column 1\n[5\n  ^\n"

run lines
expect OneValueIsReadWithoutTheOption 1 '' "lines:3:1: found '[' after the '}' that ends the value\n\
[1, 2]\n^\n"

# The first value is written while the second is still to come.
mkfifo pipe
"$program" --lines pipe >out 2>err &
reader=$!
exec 3>pipe
printf '[1]\n' >&3
tries=0
while [ ! -s out ] && [ "$tries" -lt 100 ]; do
    tries=$((tries + 1))
    sleep 0.1
done
cp out first
printf '[2]\n' >&3
exec 3>&-
wait "$reader"
status=$?
expect BothValuesOfAPipeAreWritten 0 '[1]\n[2]\n' ''
mv first out
expect AValueIsWrittenBeforeTheNextComes 0 '[1]\n' ''

# ---- A value of any size ----

printf '{"b": [1, 2.50, "x\\u00e9", null, true, {}], "a": 12345678901234567890, "b": false}' >in
run --stream in
expect AStreamKeepsTheOrderOfMembers 0 \
    '{"b":[1,2.5,"xé",null,true,{}],"a":12345678901234567890,"b":false}\n' ''

run --stream --indent=1 --ascii --big-integers-as-strings - <in
expect AStreamTakesTheOptionsOfTheText 0 '{\n "b": [\n  1,\n  2.5,\n  "x\\u00e9",\n  null,\n  true,\n'\
'  {}\n ],\n "a": "12345678901234567890",\n "b": false\n}\n' ''

printf '[1, /* 2 */ 3,]' >in
run --stream --comments --trailing-commas in
expect AStreamTakesTheOptionsOfTheParser 0 '[1,3]\n' ''

printf '[1,\n2' >in
"$program" --stream in >/dev/null 2>err
status=$?
cp /dev/null out
expect AnErrorOfAStreamIsReported 1 '' "in:2:2: the text ends within the array that begins at line 1, \
column 1\n2\n ^\n"

for option in --pretty --canonical --lines; do
    run --stream $option in
    expect "AStreamHasNoOtherForm $option" 2 '' \
        'json_format: --stream goes with no fixed format, canonical form or lines; try --help\n'
done

# Where standard error is a terminal, it shows how long work goes on, and nothing in the end.
if script -qec true /dev/null </dev/null >/dev/null 2>&1; then
    cat >slow <<'END'
{ printf '['; sleep 1.3; printf '1'; sleep 0.3; printf ',2]'; } | "$program" --stream >text
END
    program="$program" script -qec 'sh slow' /dev/null </dev/null >out 2>err
    status=$?
    expect ATerminalShowsTheProgress 0 \
        '\r2 bytes read\033[K\r5 bytes read\033[K\r\033[K' ''
    cp text out
    cp /dev/null err
    expect TheTextIsThatOfAnyOtherRun 0 '[1,2]\n' ''
else
    echo "skipped ATerminalShowsTheProgress"
fi

# ---- Input that is not JSON ----

printf '{\n    "a" 1\n}\n' >bad.json
run bad.json
expect BadInputIsReportedWithItsPlace 1 '' "bad.json:2:9: found '1' where ':' is expected after a \
name\n    \"a\" 1\n        ^\n"

printf '[1;]' >in
run <in
expect StandardInputHasAName 1 '' "<stdin>:1:3: found ';' where ',' or ']' is expected\n[1;]\n  ^\n"

run --pretty /dev/null
expect EmptyInputIsAnError 1 '' '/dev/null:1:1: the document is empty\n\n^\n'

printf '\000\001' >in
run <in
expect BinaryInputIsAnError 1 '' '<stdin>:1:1: found byte 0x00 where a value should begin\n..\n^\n'

{ printf '[' && yes '1,' | head -n 100000 && printf '?]'; } >in
run <in
expect NothingIsWrittenBeforeTheEndIsRead 1 '' "<stdin>:100001:1: found '?' where a value should \
begin\n?]\n^\n"

yes '[' | tr -d '\n' | head -c 250000 >in
run <in
expect DeepNestingIsAnError 1 '' '<stdin>:1:1001: nested deeper than 1000 levels: the option '\
'max_depth is the limit\n'\
'...[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[...\n'\
'                                        ^\n'

# ---- Other trouble ----

run missing.json
expect AMissingFileIsTrouble 2 '' \
    'json_format: cannot read missing.json: No such file or directory\n'

run ''
expect AnEmptyFileNameIsTrouble 2 '' 'json_format: cannot read : No such file or directory\n'

run .
expect AFolderIsTrouble 2 '' 'json_format: cannot read .: Is a directory\n'

run <&-
expect AClosedStandardInputIsTrouble 2 '' 'json_format: cannot read <stdin>: Bad file descriptor\n'

run --prety good.json
expect AnUnknownOptionIsTrouble 2 '' \
    'json_format: unknown option '"'--prety'"'; try --help\n'

run good.json good.json
expect TwoFilesAreTrouble 2 '' 'json_format: more than one FILE; try --help\n'

cp /dev/null out
for option in '' --pretty --lines --help --version; do
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
    (ulimit -v 150000 && "$program" --stream in 2>err | tail -c 10 >out)
    status=$?
    expect AStreamTakesLittleMemory 0 '[],[],[]]\n' ''
else
    echo "skipped RunningOutOfMemoryIsTrouble"
fi

echo "$failures failed"
[ "$failures" -eq 0 ]
