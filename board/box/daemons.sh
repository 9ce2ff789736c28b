# The programs that the board runs on its management interface, with the rights that each needs.
# Sourced by the box's first process.
# shellcheck shell=bash
# shellcheck disable=SC2034  # the sourcing scripts use these

# The box's directories may lie below ones that only their owner may enter.
readonly reduced='setpriv --inh-caps=-all --bounding-set=-all,+dac_read_search'

# The agent binds itself to the management interface and to the SNMP port.
readonly snmpAgent="$reduced,+net_bind_service,+net_raw snmpd"

# The client leaves the clock alone (-x), and stays the user that it is.
readonly ntpClient="$reduced,+net_raw chronyd -x -u root"
