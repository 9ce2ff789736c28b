# The box's interfaces and its management LAN. Sourced by the box's first process.
# shellcheck shell=bash

# mng0 and ont0 are one end each of a cable; the other ends stand in a namespace of their own, where
# a host can be played: ip netns exec lan COMMAND.
layCables() {
    ip link set lo up
    ip netns add lan
    ip -n lan link set lo up
    ip link add mng0 type veth peer name lan0 netns lan
    ip link add ont0 type veth peer name lan1 netns lan
    ip -n lan address add 192.0.2.1/24 dev lan0
    # Usable at once: nobody else is on this LAN, so there is no duplicate to wait for.
    ip -n lan address add 2001:db8::1/64 dev lan0 nodad
    # The board's ends first: the kernel reports the carrier at once to the end that waited for it,
    # and within a second to the other.
    ip link set mng0 up
    ip link set ont0 up
    ip -n lan link set lan0 up
    ip -n lan link set lan1 up
}

# The library asks for message queues above the kernel's default size. Raising a queue's own limit
# takes a capability that containers lack; the namespace's default can be raised without.
raiseQueueLimit() {
    if ! echo 10000000 2>/dev/null >/proc/sys/kernel/msgmnb; then
        say "message queues stay at $(</proc/sys/kernel/msgmnb) bytes: this kernel lets no user" \
            "namespace raise them"
    fi
}

nameHost() {
    hostname board
}
