// A library of two entities, for bllhost to load. "quick" does as it is told; "stuck" depends on it
// and never returns from its stop.
//
// External messages: "echo" replies the value; "run" runs the value as a command.
// With QUICK_FAILS in the environment "quick" does not start.

#include "framework/BLEntity.h"
#include "framework/BLLManager.h"
#include "framework/Log.h"
#include "framework/sysInfo.h"

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
    int applyDefaultSettings() override { return 1; }
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
