#include "network/Network.h"

// ARP listing is not offered; the operation keeps its place in the interface.
int Network::getNextArp(int, ArpInfo*) { return -1; }
