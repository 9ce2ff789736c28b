# How the launcher comes by the rights that namespaces need. Sourced, never run.
# shellcheck shell=bash
# shellcheck disable=SC2034  # privilege and keeper are for the launcher

# A user namespace serves when newuidmap may map a whole range of ids: the port mapper changes to
# a user of its own, which a namespace that maps root alone does not have.
userNamespaceWorks() {
    unshare --user --map-root-user --map-auto true 2>/dev/null
}

# Sets privilege to root, sudo or user. sudo without a password comes first: before Linux 6.9 a
# user namespace cannot raise the message queues' size.
choosePrivilege() {
    if ((EUID == 0)); then
        privilege=root
    elif command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
        privilege=sudo
    elif userNamespaceWorks; then
        privilege=user
    elif command -v sudo >/dev/null && [[ -t 0 || -t 2 ]] && sudo -v; then
        privilege=sudo
    else
        die "needs root: run it as root, or as a user who may use sudo," \
            "or install uidmap and give $(id -un) ranges in /etc/subuid and /etc/subgid"
    fi
    readonly privilege
}

# Sets keeper to the command line that keeps the new namespaces, for the given privilege.
obtainKeeper() {
    local namespaces=(unshare --net --mount --ipc --uts --pid --fork --kill-child)
    local deathSignal=(setpriv --pdeathsig KILL)
    case $1 in
        root) keeper=("${deathSignal[@]}" "${namespaces[@]}") ;;
        sudo) keeper=(sudo -- env "PATH=$PATH" "${deathSignal[@]}" "${namespaces[@]}") ;;
        user)
            keeper=("${deathSignal[@]}" "${namespaces[@]}" --user --map-root-user --map-auto)
            ;;
    esac
}
