// A library of two entities, for bllhost to load. "quick" does as it is told; "stuck" depends on it
// and never returns from its stop.
//
// Remote-access rules are added to a list of the bridge, on the management port; those for the
// address 0.0.0.1 are refused.
//
// External messages: "echo" replies the value; "run" runs the value as a command; "thread" replies
// the id of the thread that serves it.
// With QUICK_FAILS in the environment "quick" does not start.

#include "framework/BLEntity.h"
#include "framework/BLLManager.h"
#include "framework/Log.h"
#include "framework/sysInfo.h"
#include "platform/interfaces.h"
#include "platform/zubridge.h"

#include <unistd.h>

#include <cstdlib>

namespace {

void say(const std::string& text) {
    singleton<Log>::instance().setMsgLevel(LogImpl::levelInfo) << text << "\n";
}

class TestEntity : public BLEntity {
public:
    TestEntity(const std::string& name, std::list<std::string> dependencies)
        : BLEntity(name), needs(std::move(dependencies)) {
        singleton<BLLManager>::instance().registerEntity(*this);
    }

    void applyConfiguration(boost::shared_ptr<Storage::Setting>) override {}
    void saveConfiguration(boost::shared_ptr<Storage::Setting>) const override {}
    int start() override {
        say(getName() + " starts");
        return 1;
    }
    int applyDefaultSettings() override {
        say(getName() + " returns to factory settings on thread " + std::to_string(gettid()));
        return 1;
    }
    int stop() override {
        say(getName() + " stops");
        return 1;
    }
    void getDependencies(std::list<std::string>& names) override { names = needs; }

private:
    const std::list<std::string> needs;
};

class QuickEntity : public TestEntity {
public:
    using TestEntity::TestEntity;
    int start() override { return std::getenv("QUICK_FAILS") != nullptr ? 0 : TestEntity::start(); }
};

class StuckEntity : public TestEntity {
public:
    using TestEntity::TestEntity;
    int applyDefaultSettings() override { return 0; }
    int stop() override {
        TestEntity::stop();
        for (;;) {
            pause();
        }
    }
};

void onMessage(const std::string& name, const std::string& value, std::ostringstream* reply,
               const std::string& sender) {
    if (name == "echo") {
        *reply << value << " from " << sender;
    } else if (name == "thread") {
        *reply << gettid();
    } else if (name == "run") {
        *reply << "status " << std::system(value.c_str());
    }
}

void onShelfId(const std::string& id) { say("shelf is now " + id); }

struct Loader {
    Loader() {
        static StuckEntity stuck("stuck", {"quick", "bridge"});
        static QuickEntity quick("quick", {"interfaces"});
        singleton<BLLManager>::instance().externalMessage().subscribePost(onMessage);
        singleton<sysInfo>::instance().shelfIdChanged().subscribePost(onShelfId);
    }
} const loader;

}  // namespace

extern "C" __attribute__((visibility("default"))) int networkAddRARule(unsigned int address,
                                                                       unsigned int netmask,
                                                                       int permit,
                                                                       unsigned int place) {
    static const std::string list = "RA_test";
    ACLContainer_t& acls = singleton<zubridge>::instance().aclContainer();
    unsigned int rule = 0;
    int port = 0;
    static const bool isMade = acls.createACL(list, ACLContainer_t::aclRemoteAccess) == 0 &&
                               acls.createRule(list, false, rule, 0) == 0 &&
                               interfaceMngGet(&port) == 0 &&
                               acls.assignACL(list, port, false, 0) == 0;
    return isMade && address != 1 && acls.createRule(list, permit != 0, rule, place) == 0
               ? acls.addCondition(list, rule, {1, 20, 0, address, ~netmask})
               : -1;
}
