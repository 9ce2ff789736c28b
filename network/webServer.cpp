// The web server set: apache2, the event server and the event server's message feeder are switched
// together. Programs are run through the shell, under the exclusive lock.

#include "framework/Log.h"
#include "network/Network.h"
#include "network/library.h"
#include "network/webEvents.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace {

// The feeder is started anew on every switch, and paused rather than ended while the set is off.
constexpr const char* feederStart = "/opt/kalvor/neroot/active/web_em/bin/hassesMsg &";
constexpr const char* feederResume =
    "killall  -s CONT /opt/kalvor/neroot/active/web_em/bin/hassesMsg";
constexpr const char* feederPause =
    "killall  -s STOP /opt/kalvor/neroot/active/web_em/bin/hassesMsg";

constexpr const char* quietly = " &>/dev/null";

/// Seconds that the feeder is given to come up.
constexpr unsigned int feederPatience = 1;

// Labels of the two commands in the framework log.
constexpr int eventServerLabel = 4053;
constexpr int apacheLabel = 4084;

int run(const std::string& command) { return std::system(command.c_str()); }

bool hasFailed(int status) {
    return status == -1 || !WIFEXITED(status) || WEXITSTATUS(status) != 0;
}

void reportFailedCommand(const std::string& entity, int label, const std::string& command) {
    Log& log = singleton<Log>::instance().setMsgLevel(LogImpl::levelError);
    log.write<std::string>(entity).write<const char*>(": ");
    log.write<const char*>("network").write<const char*>(": ");
    log.write<const char*>("networkHttpServerSet").write<const char*>(": ");
    log.write<int>(label).write<const char*>(": ");
    log.write<const char*>("Error executing system command: ").write<std::string>(command);
    log.write<const char*>("\n");
}

}  // namespace

int Network::networkHttpServerSet(bool on) {
    return withExclusiveLock([&] {
        if (on == webServerOn) {
            return 0;
        }
        if (on) {
            createHassesServerDir();
        }
        const std::string& eventServer = on ? eventServerStart : eventServerStop;
        if (hasFailed(run(eventServer))) {
            reportFailedCommand(getName(), eventServerLabel, eventServer);
            return -1;
        }
        if (!on) {
            drainEventServerSemaphores();
        }
        const std::string& apache = on ? apacheStart : apacheStop;
        if (hasFailed(run(apache))) {
            reportFailedCommand(getName(), apacheLabel, apache);
            return -1;
        }
        webServerOn = on;
        if (!on) {
            run(httpdKill);
        }
        run(feederStart);
        sleep(feederPatience);
        if (on) {
            run(feederResume);
            hassComm_init();
        } else {
            run(feederPause);
            hassComm_stop();
        }
        return 0;
    });
}

int Network::networkHttpGet(bool& on) const {
    return withSharedLock([&] {
        on = webServerOn;
        return 0;
    });
}

bool Network::isHttpServerInstalled() const {
    return run("ls -l " + apacheDirectory + quietly) == 0;
}

/// The negation of the shell's status: 1 when the directory is there.
int Network::createHassesServerDir() const {
    return run("mkdir -p " + eventServerDirectory + quietly) == 0 ? 1 : 0;
}

// The settings of the web server one by one are not supported. Their exported functions and remote
// procedures are there, so that callers get a defined "failed".

int Network::setHttpSPort(unsigned int) { return -1; }
int Network::setHttpSProto(SProtocol) { return -1; }
int Network::enableHttpSServer(bool) { return -1; }
int Network::enableHttpServer(bool) { return -1; }
int Network::getHttpInfo(HttpInfo*) { return -1; }
