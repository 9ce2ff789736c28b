#include "RatioReporter.h"

#include <fmt/core.h>

bool RatioReporter::ReportContext(const Context&) { return true; }

void RatioReporter::ReportRuns(const std::vector<Run>& report) {
    for (const Run& run : report) {
        if (run.error_occurred) {
            fmt::print(stderr, "{}: {}\n", run.benchmark_name(), run.error_message);
            failed = true;
        }
        if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median") {
            continue;
        }
        const std::string& name = run.run_name.function_name;
        const std::size_t slash = name.rfind('/');
        const std::string tested = name.substr(0, slash);
        double& median =
            name.substr(slash + 1) == "ours" ? medians[tested].ours : medians[tested].reference;
        median = run.GetAdjustedCPUTime();
    }
}

void RatioReporter::Finalize() {
    fmt::print("{:<34} {:>12} {:>12} {:>10}\n", "median CPU time of a call", "ours", "reference",
               "ratio");
    for (const auto& [tested, median] : medians) {
        const auto [ours, reference] = median;
        if (ours <= 0 || reference <= 0) {
            fmt::print(stderr, "{}: not measured on both sides\n", tested);
            failed = true;
            continue;
        }
        fmt::print("{:<34} {:>9.1f} ns {:>9.1f} ns {:>9.1f}x\n", tested, ours, reference,
                   reference / ours);
    }
    failed = failed || medians.empty();
}
