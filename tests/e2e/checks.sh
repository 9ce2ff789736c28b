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

# check TEXT STATUS COMMAND...: the command ends with the status.
check() {
    local text=$1 expected=$2 output status=0
    shift 2
    output=$("$@" 2>&1 </dev/null) || status=$?
    report "$text" $((status == expected ? 0 : 1))
    if [ "$status" -ne "$expected" ]; then
        printf '        %s: status %s instead of %s\n%s\n' "$*" "$status" "$expected" "$output"
    fi
}

# checkOutput TEXT PART COMMAND...: the command succeeds and its output contains the part.
checkOutput() {
    local text=$1 part=$2 output status=0
    shift 2
    output=$("$@" 2>&1 </dev/null) || status=$?
    if [ "$status" -eq 0 ] && [[ $output == *"$part"* ]]; then
        report "$text" 0
    else
        report "$text" 1
        printf '        %s: status %s, no "%s" in\n%s\n' "$*" "$status" "$part" "$output"
    fi
}

endChecks() {
    if [ "$failures" -ne 0 ]; then
        printf '%s checks failed\n' "$failures"
        exit 1
    fi
    exit 0
}
