#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

/// Collects the medians of the benchmarks' repetitions, and prints them in pairs with their ratio.
/// Benchmarks are named `<case>/ours` and `<case>/reference`.
class RatioReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& report) override;
    void Finalize() override;

    /// Some benchmark failed, or a pair is not complete.
    bool hasFailed() const { return failed; }

private:
    /// Nanoseconds of CPU time a call; 0 when not measured.
    struct Medians {
        double ours = 0;
        double reference = 0;
    };

    std::map<std::string, Medians> medians;
    bool failed = false;
};
