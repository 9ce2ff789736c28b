# shellcheck shell=bash
# The second host on the management LAN, for scripts that run in a box.

boardLog=$NETWORKBLE_STATE/board.log

onLan() { ip netns exec lan "$@"; }

# within SECONDS COMMAND...: the command succeeds at last.
within() {
    local deadline=$((SECONDS + $1))
    shift
    until "$@" >/dev/null 2>&1; do
        if ((SECONDS >= deadline)); then return 1; fi
        sleep 0.05
    done
}

# reaches ADDRESS: the LAN's host has an answer from it.
reaches() { onLan ping -q -n -c 1 -W 2 "$1"; }

# connects ADDRESS PORT: the LAN's host opens a connection and gets an answer over it; 124 if there is
# none in time.
connects() {
    # shellcheck disable=SC2016  # expanded by the inner shell
    onLan timeout 2 bash -c 'exec 3<>"/dev/tcp/$0/$1" && echo ping >&3 && read -r line <&3 &&
        [ "$line" = ping ]' "$1" "$2"
}

# A line of the board's log contains the text.
isLogged() { grep -qF -- "$1" "$boardLog"; }

defaultRoute() { ip -4 route show default; }
addresses() { ip -4 -o address show dev mng0; }

# leasedAddress: the interface's address, if it is of the range that the scripts' DHCP servers grant.
leasedAddress() { addresses | grep -oE 'inet 192\.0\.2\.1([01][0-9]|20)/24' | grep -oE '192[0-9.]+'; }

# replaced PATTERN: a process whose command line matches is killed, and another takes its place.
replaced() {
    local pid
    pid=$(pgrep -o -f "$1") && kill -KILL "$pid" && within 60 runsAfter "$pid" "$1"
}
runsAfter() {
    local now
    now=$(pgrep -o -f "$2") && [[ $now != "$1" ]]
}

# startEcho PORT: a TCP service of the board that returns what it gets. Sets echoPid.
startEcho() {
    python3 "$(dirname "${BASH_SOURCE[0]}")/echoServer.py" "$1" &
    echoPid=$!
    within 60 connectsHere "$1"
}

connectsHere() { (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null; }
