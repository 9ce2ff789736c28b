#pragma once

#include "rte/required/include/hasses/HassesComm.h"

#include <string>

/// Texts fixed for the library's lifetime, built when it is loaded.

extern const std::string defaultConfigFile;
extern const std::string savedConfigFile;

/// Command lines and paths of the web server set.
extern const std::string apacheStart;
extern const std::string apacheStop;
extern const std::string apacheDirectory;
extern const std::string httpdKill;
extern const std::string eventServerStart;
extern const std::string eventServerStop;
extern const std::string eventServerDirectory;

/// Sender on the queue of the network's events.
extern __attribute__((visibility("default"))) HassesComm_Msgq_cl HassesComm_Msgq_network;
