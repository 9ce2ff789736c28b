# The box's root directory: private copies of the machine's system directories, with the board's own
# files (tree/) laid over them. Sourced by the box's first process, in its own mount namespace.
# shellcheck shell=bash
# shellcheck disable=SC2154  # tree and overlay are the sourcing script's

# Directories under / that the box sees as they are on the machine but changes only for itself.
# Home directories, media and what else stands under / are the users' and stay shared.
readonly privateDirectories=(bin boot etc lib lib32 lib64 libx32 opt sbin srv usr var tmp)

# The new root is put together over /sys: there is one on every machine, and nothing that the caller
# could name (a state directory, a build) lies below it.
readonly newRoot=/sys
readonly layers=$newRoot/.layers

isOneOf() {
    local wanted=$1 each
    shift
    for each in "$@"; do
        if [[ $each == "$wanted" ]]; then return 0; fi
    done
    return 1
}

# True for /NAME and all below when the box has its own NAME.
isPrivate() {
    local name=${1#/}
    name=${name%%/*}
    isOneOf "$name" "${privateDirectories[@]}" || [[ -e $tree/$name ]]
}

# Sets laid to a copy of tree/ with the owners and modes that it is to have in the box. Git keeps no
# modes but the executable bit, and the checkout may be anybody's: all becomes root's, readable by
# all, and directories that the machine has keep the machine's owner and mode.
stageTree() {
    local directory
    laid=$layers/tree
    cp -R --no-dereference "$tree" "$laid"
    chmod -R u=rwX,go=rX "$laid"
    while IFS= read -r directory; do
        if [[ -d ${directory#"$laid"} ]]; then likeMachine "${directory#"$laid"}" "$directory"; fi
    done < <(find "$laid" -mindepth 1 -type d)
}

# Copies what belongs to directory PATH into DESTINATION.
copyTree() {
    local path=$1 destination=$2
    if [[ -d $laid$path ]]; then cp -a "$laid$path/." "$destination"; fi
}

likeMachine() {
    # In a user namespace the owner may be one that has no id there.
    chown --reference="$1" "$2" 2>/dev/null || true
    chmod --reference="$1" "$2"
}

# A directory of tree/ that is a symbolic link on the machine would hide what the link leads to
# (/var/run is /run, /bin is /usr/bin).
refuseHiddenLinks() {
    local directory
    while IFS= read -r directory; do
        if [[ -L ${directory#"$tree"} ]]; then
            die "$directory: ${directory#"$tree"} is a symbolic link here; put its files under" \
                "$(readlink -f -- "${directory#"$tree"}")"
        fi
    done < <(find "$tree" -mindepth 1 -type d)
}

# Makes $newRoot/PATH a private copy of the machine's directory PATH. The copy is an overlay: what
# is written goes to memory, and tree/ is there from the start.
layer() {
    local path=$1
    mkdir -p "$newRoot$path"
    if ! overlayOn "$path"; then
        bindBelow "$path"
        bound+=("$path")
    fi
}

overlayOn() {
    local path=$1 work="$layers/$((++layerCount))" options
    if [[ $overlay == no || $path == *[,:\\]* ]]; then return 1; fi
    mkdir -p "$work"/{upper,work}
    copyTree "$path" "$work/upper"
    likeMachine "$path" "$work/upper"
    options="lowerdir=$path,upperdir=$work/upper,workdir=$work/work"
    # A user namespace may not write the attributes that an overlay keeps its notes in by default.
    if inUserNamespace; then options+=,userxattr; fi
    mount -t overlay -o "$options" overlay "$newRoot$path" 2>/dev/null
}

# The same without an overlay: a directory in memory with copies of PATH's files, its directories
# bound read-only, and tree/ on top. Temporary directories begin empty.
bindBelow() {
    local path=$1
    mount -t tmpfs -o "mode=$(stat -c %a "$path")" box "$newRoot$path"
    if [[ $path != /tmp ]]; then mirror "$path"; fi
    if [[ $path == /var ]]; then
        mkdir -p "$newRoot/var/tmp"
        mount -t tmpfs -o mode=1777 box "$newRoot/var/tmp"
    fi
    copyTree "$path" "$newRoot$path"
}

mirror() {
    local path=$1 entry
    for entry in "$path"/* "$path"/.[!.]*; do
        if [[ -L $entry || (-f $entry && -r $entry) ]]; then
            cp --no-dereference --preserve=mode,timestamps,links "$entry" "$newRoot$entry"
        elif [[ -d $laid$entry ]]; then
            mkdir "$newRoot$entry"
            mirror "$entry"
        elif [[ -d $entry ]]; then
            mkdir "$newRoot$entry"
            mount --rbind "$entry" "$newRoot$entry"
            # Where the mount's flags are locked, its files are out of the user's reach anyway.
            mount -o remount,bind,ro "$newRoot$entry" 2>/dev/null || true
        fi
    done
}

share() {
    local path=$1
    if [[ -d $path ]]; then
        mkdir -p "$newRoot$path"
    else
        mkdir -p "$newRoot${path%/*}"
        : >>"$newRoot$path"
    fi
    mount --rbind "$path" "$newRoot$path"
}

topDirectories() {
    local entry name
    for entry in /* /.[!.]*; do
        name=${entry#/}
        if isOneOf "$name" dev proc sys run lost+found; then
            continue
        elif [[ -L $entry ]]; then
            cp --no-dereference "$entry" "$newRoot$entry"
        elif [[ -d $entry ]]; then
            if isPrivate "$entry"; then layer "$entry"; else share "$entry"; fi
        elif [[ -f $entry ]]; then
            share "$entry"
        fi
    done
    copyTopOfTree
}

# What tree/ has under / and the machine has not.
copyTopOfTree() {
    local entry name
    for entry in "$laid"/*; do
        name=${entry##*/}
        if [[ -e $newRoot/$name || -L $newRoot/$name || $name == run ]]; then continue; fi
        cp -a "$entry" "$newRoot/$name"
    done
}

# File systems mounted below a private directory (a /var/lib of its own, say) get layers of their
# own; an overlay sees only the directories that they are mounted on.
mountedBelow() {
    local point type
    while read -r point type; do
        printf -v point %b "$point"
        if ! isPrivate "$point" || [[ $point != /*/* || $point == /var/log* ]]; then continue; fi
        if isUnderBound "$point" || [[ ! -e $newRoot$point ]]; then continue; fi
        case $type in
            autofs | binfmt_misc | cgroup* | debugfs | devpts | fuse.* | mqueue | nsfs | overlay | \
                proc | rpc_pipefs | sysfs | tracefs) ;;
            *)
                if [[ -d $point ]]; then
                    layer "$point"
                elif [[ -f $point && ! -e $laid$point ]]; then
                    cp "$point" "$newRoot$point"
                fi
                ;;
        esac
    done <<<"$machineMounts"
}

isUnderBound() {
    local path=$1 each
    for each in "${bound[@]}"; do
        if [[ $path == "$each"/* ]]; then return 0; fi
    done
    return 1
}

# Empty on every start, like the board's own: run-time files and logs.
volatileDirectories() {
    mkdir -p "$newRoot/run" "$newRoot/var/log"
    mount -t tmpfs -o mode=755 box "$newRoot/run"
    mkdir -m 1777 "$newRoot/run/lock"
    copyTree /run "$newRoot/run"
    mount -t tmpfs -o mode=755 box "$newRoot/var/log"
    copyTree /var/log "$newRoot/var/log"
}

kernelDirectories() {
    local node
    mkdir -p "$newRoot"/{proc,sys,dev}
    mount -t proc -o nosuid,nodev,noexec proc "$newRoot/proc"
    mount -t sysfs -o nosuid,nodev,noexec sysfs "$newRoot/sys"
    # ip takes /sys away before it mounts that of another network namespace, which a user namespace
    # may only while it still sees one: the lower of two.
    if inUserNamespace; then mount --bind "$newRoot/sys" "$newRoot/sys"; fi
    mount -t tmpfs -o mode=755 box "$newRoot/dev"
    mkdir -p "$newRoot"/dev/{pts,shm,mqueue,net}
    for node in null zero full random urandom tty net/tun; do
        if [[ -c /dev/$node ]]; then share "/dev/$node"; fi
    done
    terminals
    mount -t tmpfs -o mode=1777 box "$newRoot/dev/shm"
    mount -t mqueue mqueue "$newRoot/dev/mqueue"
    ln -s /proc/self/fd "$newRoot/dev/fd"
    ln -s /proc/self/fd/0 "$newRoot/dev/stdin"
    ln -s /proc/self/fd/1 "$newRoot/dev/stdout"
    ln -s /proc/self/fd/2 "$newRoot/dev/stderr"
}

# The machine's terminals, the caller's among them. Their multiplexer looks for them beside itself,
# so it cannot be bound; a user namespace cannot make one and gets terminals of its own.
terminals() {
    if mknod -m 666 "$newRoot/dev/ptmx" c 5 2 2>/dev/null; then
        mount --rbind /dev/pts "$newRoot/dev/pts"
    else
        mount -t devpts -o newinstance,ptmxmode=0666,mode=0620 devpts "$newRoot/dev/pts"
        ln -s pts/ptmx "$newRoot/dev/ptmx"
    fi
}

# The caller's own directories stay the machine's, wherever they are: what is written there is to
# outlive the box.
callersDirectories() {
    local path
    for path in "$@"; do
        if [[ ! -e $path ]]; then continue; fi
        if isPrivate "$path" || [[ $path == /run/* || $path == /dev/shm/* ]]; then
            share "$path"
        fi
    done
}

# The working directory and the command's file, where they lie among temporary files.
temporaryPaths() {
    local path
    for path in "$@"; do
        case $path in
            /tmp/* | /var/tmp/* | /dev/shm/* | /run/user/*)
                if [[ -d $path || ! -e $newRoot$path ]]; then callersDirectories "$path"; fi
                ;;
        esac
    done
}

enterNewRoot() {
    umount -l "$layers"
    rmdir "$layers"
    cd "$newRoot" || die "cannot enter $newRoot"
    mkdir .machine
    pivot_root . .machine
    cd /
    umount -l /.machine
    rmdir /.machine
}

# Arguments: the directories of the caller to keep; then --, and paths to keep if temporary.
enterFileTree() {
    local kept=() layerCount=0 bound=() laid machineMounts
    while [[ $1 != -- ]]; do
        if [[ $1 ]]; then kept+=("$1"); fi
        shift
    done
    shift
    umask 022
    shopt -s nullglob
    refuseHiddenLinks
    machineMounts=$(awk '{ for (i = 7; $i != "-"; i++); print $5, $(i + 1) }' /proc/self/mountinfo |
        sort -u)
    mount -t tmpfs -o mode=755 box "$newRoot"
    mkdir "$layers"
    mount -t tmpfs -o mode=755 layers "$layers"
    stageTree
    topDirectories
    mountedBelow
    volatileDirectories
    kernelDirectories
    callersDirectories "${kept[@]}"
    temporaryPaths "$@"
    enterNewRoot
    shopt -u nullglob
    if ((${#bound[@]} > 0)); then
        say "without an overlay: directories below ${bound[*]} are read-only in the box"
    fi
}
