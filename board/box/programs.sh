# The programs outside the board that the library runs by absolute path, as the box supplies them.
# Sourced by the box's first process.
# shellcheck shell=bash
# shellcheck disable=SC2154  # build is the sourcing script's

readonly webPrograms=/opt/kalvor/neroot/active/web_em/bin
readonly apacheDirectory=/etc/apache2

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

supplyPrograms() {
    useControllersShell
    linkWebPrograms
    prepareApache
}
