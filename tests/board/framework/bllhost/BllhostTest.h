#pragma once

#include "mappers.h"
#include "support/Process.h"
#include "support/files.h"
#include "support/matchers.h"

#include <optional>
#include <string>
#include <vector>

class BllhostTest : public testing::Test {
protected:
    std::vector<std::string> commandLine(const std::string& library,
                                         std::vector<std::string> options = {}) const {
        std::vector<std::string> result{BLLHOST, "--library", library, "--state",
                                        state.path().string()};
        result.insert(result.end(), options.begin(), options.end());
        return result;
    }

    /// Starts the process with the library of test entities, and waits until it is ready.
    void startHost(const Process::Environment& variables = {},
                   const std::string& stopTimeout = "3") {
        portMapper.emplace();
        restartHost(variables, stopTimeout);
    }
    void restartHost(const Process::Environment& variables = {},
                     const std::string& stopTimeout = "3") {
        host.reset();
        host.emplace(commandLine(ENTITIES, {"--stop-timeout", stopTimeout}), variables);
        ASSERT_TRUE(host->awaitOutput("bllhost: ready\n")) << host->output();
    }

    /// Runs a process that cannot start; returns what it printed.
    std::string failedStart(const std::vector<std::string>& command) {
        Process process(command);
        EXPECT_EQ(process.awaitEnd(), 1) << process.output();
        EXPECT_THAT(process.output(), Not(HasSubstr("bllhost: ready")));
        return process.output();
    }

    /// The hexadecimal set of signals of a line of a status file, see proc(5).
    static unsigned long signalSet(const std::string& status, const std::string& line) {
        const auto start = status.find(line + ":");
        if (start == status.npos) {
            ADD_FAILURE() << line << " is missing in: " << status;
            return ~0UL;
        }
        return std::stoul(status.substr(start + line.size() + 1), nullptr, 16);
    }
    static bool contains(unsigned long set, int signal) { return (set >> (signal - 1) & 1) != 0; }

    TemporaryDirectory state;
    std::optional<test::RealMapper> portMapper;
    std::optional<Process> host;
};
