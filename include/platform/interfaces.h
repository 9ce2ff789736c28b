#pragma once

/// Registry of the board's interfaces. Calls return 0 on success.

extern "C" {

/// Stores the port id of the management port.
int interfaceMngGet(int* portId);

/// Stores the Linux name of a port, terminated. Fails, and stores nothing, when the port is unknown
/// or the name with its terminator does not fit into `size` bytes.
int interfaceLinuxnameGet(int portId, int size, char* name);
}
