# shellcheck shell=bash
# Checks of a script: each prints one line; endChecks ends the script with the verdict.

failures=0

report() {
    if [ "$2" -eq 0 ]; then
        printf 'ok      %s\n' "$1"
    else
        printf 'FAILED  %s\n' "$1"
        failures=$((failures + 1))
    fi
}

# holds TEXT PART: the part stands in the text, and no word, number or address goes on where it begins
# or ends: neither "VLAN: 1" nor "LAN: 10" is in "VLAN: 100".
holds() {
    local text=$1 part=$2 before='' after=''
    if [[ $part == [[:alnum:]]* ]]; then before='(^|[^[:alnum:]_])'; fi
    if [[ $part == *[[:alnum:]] ]]; then after='([.:]*([^[:alnum:]_.:]|$))'; fi
    [[ $part && $text =~ $before"$part"$after ]]
}
# hasLine TEXT LINE: one of the text's lines is exactly this.
hasLine() { [[ $'\n'$1$'\n' == *$'\n'"$2"$'\n'* ]]; }

# contains PART COMMAND..., lacks PART COMMAND...: the command succeeds, and its output holds the part
# or does not.
contains() {
    local output
    output=$("${@:2}") && holds "$output" "$1"
}
lacks() {
    local output
    output=$("${@:2}") && ! holds "$output" "$1"
}
# printsNothing COMMAND...: the command succeeds without a word.
printsNothing() {
    local output
    output=$("$@") && [[ ! $output ]]
}
# lines COMMAND...: how many lines the command prints.
lines() { "$@" | wc -l; }

# checkThat MATCH STATUS TEXT PART COMMAND...: the command ends with the status, and MATCH finds the part
# in its output.
checkThat() {
    local match=$1 expected=$2 text=$3 part=$4 output status=0
    shift 4
    output=$("$@" 2>&1 </dev/null) || status=$?
    if [ "$status" -eq "$expected" ] && "$match" "$output" "$part"; then
        report "$text" 0
    else
        report "$text" 1
        printf '        %s: status %s for %s, "%s" expected in\n%s\n' \
            "$*" "$status" "$expected" "$part" "$output"
    fi
}
anything() { true; }

# check TEXT STATUS COMMAND...: the command ends with the status.
check() { checkThat anything "$2" "$1" '' "${@:3}"; }
# checkOutput TEXT PART COMMAND...: the command succeeds, and its output holds the part.
checkOutput() { checkThat holds 0 "$@"; }
# checkLine TEXT LINE COMMAND...: the command succeeds, and prints the line.
checkLine() { checkThat hasLine 0 "$@"; }
# checkRefusal TEXT PART COMMAND...: the command ends with 1, and says the part.
checkRefusal() { checkThat holds 1 "$@"; }

endChecks() {
    if [ "$failures" -ne 0 ]; then
        printf '%s checks failed\n' "$failures"
        exit 1
    fi
    exit 0
}
