# What the launcher's own test checks with, and how it starts boxes and compares the world outside.
# Sourced by selftest.
# shellcheck shell=bash
# shellcheck disable=SC2154,SC2034  # box and what was there at the start are the sourcing script's

failures=0

check() {
    local name=$1
    shift
    if "$@"; then
        echo "ok      $name"
    else
        echo "FAILED  $name"
        failures=$((failures + 1))
    fi
}

# NAME EXPECTED ACTUAL; shows what differs as a diff.
same() {
    check "$1" test "$2" = "$3"
    if [[ $2 != "$3" ]]; then diff <(echo "$2") <(echo "$3") || true; fi
}

# Runs the arguments and prints the status they end with.
statusOf() {
    local status=0
    "$@" >/dev/null 2>&1 || status=$?
    echo "$status"
}

within() {
    local deadline=$((SECONDS + $1))
    shift
    until "$@"; do
        if ((SECONDS >= deadline)); then return 1; fi
        sleep 0.02
    done
}

# What a box said, but for a remark on the machine.
messages() {
    grep -v "without an overlay" "$1"
}

contains() {
    grep -qF -- "$1" "$2"
}

processes() {
    ps -e --no-headers -o pid | wc -l
}

alone() {
    (($(processes) <= processesAtStart))
}

# All that a box could leave outside.
world() {
    ip -o link
    ip netns list
    ip -o route show table all
    sort /proc/self/mountinfo
    ipcs -q -m -s
    find /run /dev/shm | sort
    cat /proc/sys/kernel/hostname /etc/hostname /etc/hosts
}

checkNothingLeft() {
    check "$1: no process is left" within 10 alone
    same "$1: the world outside is as before" "$worldAtStart" "$(world)"
}

# Starts a box in the background and waits until it says that it is ready. Sets launcher.
startBox() {
    local log=$1
    shift
    : >"$log" # before the wait below can read what an earlier box said
    env --default-signal=INT "$box" "$@" 2>>"$log" &
    launcher=$!
    if ! within 30 grep -qsE 'ready|answers' "$log"; then
        check "a box starts (box $*)" false
        cat "$log"
        exit 1
    fi
}

endLauncher() {
    local signal=$1
    kill -s "$signal" "$launcher"
    launcherStatus=0
    wait "$launcher" 2>/dev/null || launcherStatus=$?
}
