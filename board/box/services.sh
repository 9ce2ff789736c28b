# The port mapper and the board inside the box. Sourced by the box's first process.
# shellcheck shell=bash
# shellcheck disable=SC2154,SC2034  # state, build, lock and the like are shared with inside

# Services run in sessions of their own, so that Ctrl-C at the terminal reaches the command alone.
# Background jobs ignore SIGINT; a service starts with the default. Sets servicePid.
startService() {
    local log=$1
    shift
    env --default-signal=INT,QUIT setsid "$@" </dev/null >>"$log" 2>&1 {lock}<&- &
    servicePid=$!
}

isRunning() {
    [[ $1 ]] && kill -0 "$1" 2>/dev/null
}

showEnd() {
    local log=$1
    if [[ -s $log ]]; then
        say "the end of $log:"
        tail -n 40 -- "$log" >&2
    fi
}

# Waits until the check (the remaining arguments) succeeds. Ends with 1 when process PID is gone or
# SECONDS have passed, and at once when the box is asked to stop.
awaitService() {
    local pid=$1 limit=$2
    shift 2
    local deadline=$((SECONDS + limit))
    until "$@"; do
        if [[ $stopping ]]; then return 1; fi
        isRunning "$pid" || return 1
        ((SECONDS < deadline)) || return 1
        sleep 0.02
    done
}

portMapperAnswers() {
    timeout 2 rpcinfo -p 127.0.0.1 &>/dev/null
}

boardAnswers() {
    timeout 2 rpcinfo -T udp 127.0.0.1 "$rpcProgram" "$rpcVersion" &>/dev/null &&
        timeout 2 rpcinfo -T tcp 127.0.0.1 "$rpcProgram" "$rpcVersion" &>/dev/null
}

# No -h: rpcbind aborts on it. The network namespace keeps it private instead, and the private /run
# keeps its local socket so.
startPortMapper() {
    local log=/var/log/rpcbind.log
    mkdir -p /run/rpcbind
    chown _rpc /run/rpcbind
    startService "$log" rpcbind -f -w
    if ! awaitService "$servicePid" "$portMapperStartLimit" portMapperAnswers; then
        leaveIfStopping
        showEnd "$log"
        die "the port mapper does not answer"
    fi
}

startBoard() {
    boardLog=$state/board.log
    # The log of the run before stays for a look after a crash.
    if [[ -e $boardLog ]]; then mv -f -- "$boardLog" "$boardLog.1"; fi
    startService "$boardLog" bllhost --library "$build/lib/libnetworkble.so" --state "$state" \
        --resolv-conf /etc/resolv.conf \
        --telnet-server /etc/networkble/telnet-session \
        --ssh-server "/usr/sbin/sshd -i -e -f /etc/networkble/sshd_config" \
        --ftp-server "/usr/sbin/vsftpd /etc/networkble/vsftpd.conf" \
        --localtime-file /etc/networkble/localtime --tz-file /etc/TZ \
        --snmp-agent "$snmpAgent" --ntp-client "$ntpClient"
    boardPid=$servicePid
    echo "$boardPid" >/run/bllhost.pid
    if ! awaitService "$boardPid" "$boardStartLimit" boardAnswers; then
        explainBoardFailure
    fi
}

explainBoardFailure() {
    local status
    leaveIfStopping
    if isRunning "$boardPid"; then
        say "the board does not answer within $boardStartLimit s"
        endBoard
    else
        awaitProcess "$boardPid"
        say "the board ended with status $status before it answered"
    fi
    showEnd "$boardLog"
    exit "$boxFailure"
}

# Once: a second signal makes the board leave everything as it is.
askBoardToEnd() {
    if [[ $boardAsked ]]; then return 0; fi
    boardAsked=yes
    kill -TERM "$boardPid" 2>/dev/null || true
}

# Sets boardStatus to what the board ended with, after asking it to end where it has not.
endBoard() {
    local deadline=$((SECONDS + boardEndLimit)) status
    askBoardToEnd
    while isRunning "$boardPid"; do
        if ((SECONDS >= deadline)); then
            say "the board does not end within $boardEndLimit s of SIGTERM; killed"
            kill -KILL "$boardPid"
            break
        fi
        sleep 0.02
    done
    awaitProcess "$boardPid"
    boardStatus=$status
}
