#pragma once

#include "framework/BLEntity.h"
#include "framework/Log.h"

#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace test {

/// What happened, in order; written from any thread.
class Journal {
public:
    void add(const std::string& line);
    std::vector<std::string> lines() const;
    void clear();

private:
    mutable std::mutex mutex;
    std::vector<std::string> entries;
};

/// An entity whose operations are written to a journal and do what the test says.
class ScriptedEntity : public BLEntity {
public:
    ScriptedEntity(const std::string& name, std::list<std::string> dependencies, Journal& journal);

    void applyConfiguration(boost::shared_ptr<Storage::Setting>) override {}
    void saveConfiguration(boost::shared_ptr<Storage::Setting>) const override {}
    int start() override;
    int applyDefaultSettings() override;
    int stop() override;
    void getDependencies(std::list<std::string>& names) override;

    std::function<int()> onStart = [] { return 1; };
    std::function<int()> onDefaults = [] { return 1; };
    std::function<int()> onStop = [] { return 1; };
    std::function<void()> onDependencies = [] {};

private:
    const std::list<std::string> needs;
    Journal& log;
};

/// Takes what is written to the framework log while it exists.
class CapturedLog {
public:
    explicit CapturedLog(LogImpl::logLevel_t leastSevere = LogImpl::levelDebug);
    ~CapturedLog();
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    using Entry = std::pair<LogImpl::logLevel_t, std::string>;
    std::vector<Entry> entries() const;

private:
    mutable std::mutex mutex;
    std::vector<Entry> received;
};

}  // namespace test
