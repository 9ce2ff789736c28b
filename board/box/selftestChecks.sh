# What the launcher's own test checks with, and how it starts boxes and compares the world outside.
# Sourced by selftest.
# shellcheck shell=bash
# shellcheck disable=SC2154,SC2034  # box and what was there at the start are the sourcing script's

# Seconds that what is bound to happen may take on a machine that is busy with other things.
readonly patience=60

failures=() # each with what there was to see of it

check() {
    local name=$1
    shift
    if "$@"; then
        echo "ok      $name"
    else
        fail "$name"
    fi
}

# NAME [WHAT-WAS-SEEN]
fail() {
    local told="FAILED  $1"
    if [[ ${2:-} ]]; then told+=$'\n'$2; fi
    failures+=("$told")
    echo "$told"
}

# NAME EXPECTED ACTUAL; shows what differs as a diff.
same() {
    if [[ $2 == "$3" ]]; then
        echo "ok      $1"
    else
        fail "$1" "$(diff <(echo "$2") <(echo "$3") || true)"
    fi
}

# Tells the failures again, where whoever looks at the end of a long log finds them.
verdict() {
    if ((${#failures[@]} == 0)); then
        echo "all checks passed"
        return 0
    fi
    echo "${#failures[@]} checks failed:"
    printf '%s\n' "${failures[@]}"
    return 1
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
    if within "$patience" alone; then
        echo "ok      $1: no process is left"
    else
        fail "$1: no process is left" "$(ps -e -o pid,ppid,stat,args)"
    fi
    same "$1: the world outside is as before" "$worldAtStart" "$(world)"
}

# Starts a box in the background and waits until it says that it is ready. Sets launcher.
startBox() {
    local log=$1
    shift
    : >"$log" # before the wait below can read what an earlier box said
    env --default-signal=INT "$box" "$@" 2>>"$log" &
    launcher=$!
    if ! within "$patience" grep -qsE 'ready|answers' "$log"; then
        fail "a box starts (box $*)" "$(<"$log")"
        exit 1
    fi
}

endLauncher() {
    local signal=$1
    kill -s "$signal" "$launcher"
    launcherStatus=0
    wait "$launcher" 2>/dev/null || launcherStatus=$?
}
