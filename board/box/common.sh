# Words and limits that the launcher and the box's first process share. Sourced, never run.
# shellcheck shell=bash
# shellcheck disable=SC2034  # the sourcing scripts use these

# What the launcher ends with when the box itself failed, as opposed to the command in it.
readonly boxFailure=125

# The library's RPC program and its version.
readonly rpcProgram=536870921
readonly rpcVersion=1

# Seconds granted before a wait becomes a failure.
readonly portMapperStartLimit=30
readonly boardStartLimit=60
readonly boardEndLimit=30
readonly commandEndLimit=5

# All messages go to standard error: standard output belongs to the command. Nobody has to read
# them.
say() {
    printf 'box: %s\n' "$*" >&2 2>/dev/null || true
}

die() {
    say "$*"
    exit "$boxFailure"
}

inUserNamespace() {
    local inside outside count
    read -r inside outside count </proc/self/uid_map
    [[ "$inside $outside $count" != "0 0 4294967295" ]]
}
