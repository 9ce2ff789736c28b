# The programs outside the board that the library runs by absolute path, as the box supplies them.
# Sourced by the box's first process.
# shellcheck shell=bash
# shellcheck disable=SC2154  # build and state are the sourcing script's

readonly webPrograms=/opt/kalvor/neroot/active/web_em/bin
readonly apacheDirectory=/etc/apache2
readonly boardDirectory=/etc/networkble

# Who may log in. The box is a desk's: the account is no secret.
readonly accountName=admin accountPassword=admin accountId=29999
readonly accountHome=/run/home/admin

# The library's commands use "&>", which the shell of a controller understands and Debian's does not.
useControllersShell() {
    mount --bind "$(realpath /bin/bash)" "$(realpath /bin/sh)"
}

linkWebPrograms() {
    local program
    mkdir -p "$webPrograms"
    for program in hasses hassesMsg; do
        if [[ -x $build/bin/$program ]]; then ln -sf "$build/bin/$program" "$webPrograms/"; fi
    done
}

# apache2 finds its configuration and page in the file tree and on the machine; its certificate,
# which the event server uses too, is made for each box.
prepareApache() {
    mkdir -p /var/log/apache2
    if [[ ! -d $apacheDirectory || -e $apacheDirectory/server.key ]]; then return; fi
    openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 30 \
        -subj /CN=board -keyout "$apacheDirectory/server.key" -out "$apacheDirectory/server.crt" \
        2>/dev/null || say "no certificate for the web server: openssl failed"
    if [[ -e $apacheDirectory/server.key ]]; then chmod 600 "$apacheDirectory/server.key"; fi
}

# The terminal's command line is the front end's.
addAccount() {
    mkdir -p "$accountHome"
    echo "$accountName:x:$accountId:$accountId:board:$accountHome:/bin/bash" >>/etc/passwd
    echo "$accountName:x:$accountId:" >>/etc/group
    echo "$accountName:$(openssl passwd -6 "$accountPassword"):19000:0:99999:7:::" >>/etc/shadow
    chown "$accountId:$accountId" "$accountHome"
    # Who is logged in, and was.
    touch /run/utmp /var/log/wtmp /var/log/lastlog
    # Without an overlay, the directory is the machine's and read-only.
    if [[ -x $build/bin/mngctl && -w /usr/local/bin ]]; then
        ln -sf "$build/bin/mngctl" /usr/local/bin/mngctl 2>/dev/null || true
    fi
}

# The key is the board's, not the box's: clients know the board by it over restarts.
prepareSsh() {
    local key=$state/ssh_host_ed25519_key
    mkdir -p -m 755 /run/sshd /run/vsftpd/empty
    if [[ ! $state ]] || ! command -v ssh-keygen >/dev/null; then return; fi
    if [[ ! -s $key ]]; then
        rm -f -- "$key"
        ssh-keygen -q -t ed25519 -N '' -C board -f "$key" || say "no host key for SSH in $state"
    fi
    ln -sf "$key" "$boardDirectory/ssh_host_ed25519_key"
}

# The machine's own zone is not the board's. The board writes the file.
prepareTimeZone() {
    ln -sfn "$boardDirectory/localtime" /etc/localtime
}

supplyPrograms() {
    useControllersShell
    linkWebPrograms
    prepareApache
    addAccount
    prepareSsh
    prepareTimeZone
}
