#pragma once

#include "mngctl/session.h"

#include <string>

namespace mngctl {

/// The VLAN of the management port and the default VLAN, as the network program tells them:
/// {"managementVlan": ID or null, "defaultVlan": {"id": ID or null, "mode": "tagged" or "native"}}.
Json readVlanSettings(Session& session);

/// The switch as the control program tells it: {"storedManagementVlan": ID or null, "database":
/// [{"id": ID, "ports": [...], "pvidPorts": [...]}]}. Throws Refused, with the board's reason, when
/// it cannot tell.
Json readVlanDatabase(Session& session);

std::string managementVlanLine(const Json& settings);
std::string defaultVlanLine(const Json& settings);
/// The stored management VLAN and a line for each VLAN.
std::string databaseLines(const Json& database);

/// Why the board may have refused to move the management port, and to make a VLAN the default one,
/// as far as its state tells, and what holds now. Empty when nothing can be read.
std::string explainRefusedMove(Session& session, unsigned vlan);
std::string explainRefusedDefault(Session& session, unsigned vlan);

}  // namespace mngctl
