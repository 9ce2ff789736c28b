// Web operations of an older interface. They keep their exported functions and remote procedures,
// so that callers get a defined "failed".

#include "network/Network.h"

int Network::setHttpSPort(unsigned int) { return -1; }
int Network::setHttpSProto(SProtocol) { return -1; }
int Network::enableHttpSServer(bool) { return -1; }
int Network::enableHttpServer(bool) { return -1; }
int Network::getHttpInfo(HttpInfo*) { return -1; }
