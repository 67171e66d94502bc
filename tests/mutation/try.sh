# shellcheck shell=bash
# Part of scripts/mutate: runs the test programs on the mutants. Needs what compile.sh needs.
# shellcheck disable=SC2154

# A mutant that does not end by then hangs: the tests take less than a second.
readonly kPatience=10

# All tests by name: program and test, a line each.
listTests() {
    local program
    for program in "${kPrograms[@]}"; do
        "$home/wovenRun/$program" --gtest_list_tests | awk -v program="$program" '
            /^[^ ]/ { suite = $1 } /^  / { print program, suite $1 }'
    done
}

# Runs every test by itself, none of the mutants chosen, and writes which mutants it comes by: id, program and
# test, a line each, in the file `reached`. What a test does not come by it cannot notice.
knowReached() {
    local program test seen=$home/seen
    echo 'mutate: looking which test comes by which mutant.'
    listTests | while read -r program test; do
        rm -f "$seen" && truncate -s 65536 "$seen"
        VX_MUTANTS_SEEN=$seen "$home/wovenRun/$program" --gtest_filter="$test" >"$home/test.log" 2>&1 </dev/null ||
            { cat "$home/test.log" >&2 && echo "mutate: $test fails without any mutant." >&2 && exit 1; }
        { grep -obUaP '\x01' "$seen" || true; } | sed "s|:.*| $program $test|"
    done >"$home/reached.lines"
    awk '{ key = $1 " " $2; tests[key] = tests[key] (tests[key] == "" ? "" : ":") $3 }
        END { for (key in tests) print key, tests[key] }' "$home/reached.lines" >"$home/reached"
}

# Sets `outcome`: survived, killed or hung. The tests are those of the filter, of one program.
runTests() { # the folder of the programs, the program, the filter
    local status=0
    # The braces keep the shell's own words about a crash from the screen.
    {
        (cd "$home" && ulimit -c 0 && timeout -k 1 "$kPatience" \
            "$1/$2" --gtest_filter="$3" --gtest_fail_fast --gtest_brief=1) || status=$?
    } >"$home/test.log" 2>&1 </dev/null
    case $status in
        0) outcome=survived ;;
        124 | 137) outcome=hung ;;
        *) outcome=killed ;;
    esac
}

tryWoven() { # the id
    local program tests
    outcome=survived
    while read -r program tests && [[ $outcome == survived ]]; do
        VX_MUTANT=$1 runTests wovenRun "$program" "$tests"
    done < <(awk -v id="$1" '$1 == id { print $2, $3 }' "$home/reached")
}

tryAlone() { # the id
    local program
    compileAlone "$1" || { outcome=broken && return; }
    for program in "${kPrograms[@]}"; do
        runTests run "$program" '*'
        [[ $outcome == survived ]] || return 0
    done
}

# The outcome of each mutant: id and outcome, a line each, in the file `outcomes`.
tryAll() { # the ids
    local id count=0 survived=0
    : >"$home/outcomes"
    for id in "$@"; do
        if grep -qx "$id" "$home/alone"; then tryAlone "$id"; else tryWoven "$id"; fi
        printf '%s\t%s\n' "$id" "$outcome" >>"$home/outcomes"
        count=$((count + 1))
        [[ $outcome != survived ]] || survived=$((survived + 1))
        [[ $((count % 50)) -ne 0 ]] || echo "mutate: $count of $# tried, $survived survived."
    done
}
