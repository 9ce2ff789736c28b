// What happens when the library is loaded: its fixed objects come into being in the order in which
// they stand here, and then the entity, which is handed to the framework.

#include "network/library.h"

#include "framework/BLLManager.h"
#include "network/Network.h"

#include <boost/shared_ptr.hpp>

namespace {

/// The framework's "no setting", kept for the library's lifetime.
const boost::shared_ptr<Storage::Setting> noSetting;

}  // namespace

const std::string defaultConfigFile = "default_config.xml";
const std::string savedConfigFile = "saved_config.xml";

const std::string apacheStart = "/etc/init.d/apache2 start";
const std::string apacheStop = "/etc/init.d/apache2 stop";
const std::string apacheDirectory = "/etc/apache2";
const std::string httpdKill = "killall httpd";
const std::string eventServerStart =
    "/opt/kalvor/neroot/active/web_em/bin/hasses -p=8080 -murl=/sse-event -ra "
    "-fifo=/var/run/hasses/SSE_EVENT -ssl -cert-file=/etc/apache2/server.crt "
    "-privatekey-file=/etc/apache2/server.key";
const std::string eventServerStop = "killall hasses";
const std::string eventServerDirectory = "/var/run/hasses";

HassesComm_Msgq_cl HassesComm_Msgq_network;

namespace {

struct Loader {
    Loader() {
        BLLManager& manager = singleton<BLLManager>::instance();
        manager.registerEntity(singleton<Network>::instance());
    }
} const loader;

}  // namespace
