// How long our XDR filters take, beside the RPC library's primitives for character arrays and the
// filters that rpcgen makes of network.x. Repetitions of both sides are interleaved at random and
// medians compared, so that a busy machine disturbs both alike; only the ratios say something.
//
// Flags of the benchmark library override the defaults, for example --benchmark_repetitions=51.

#include "RatioReporter.h"
#include "network/rpc/xdr.h"
#include "network/rpc/xdrFields.h"
#include "tests/rpc/xdr/referenceCharacters.h"
#include "tests/rpc/xdr/witness/witness.h"

#include <array>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

template <std::size_t count>
struct Characters {
    char text[count];
};

template <std::size_t count>
bool_t ours(XDR* xdrs, Characters<count>* characters) {
    return rpc::xdrCharacters(xdrs, characters->text, count);
}

template <std::size_t count>
bool_t reference(XDR* xdrs, Characters<count>* characters) {
    return referenceCharacters(xdrs, characters->text, count);
}

/// One conversion an iteration, over the same memory each time.
template <class Record>
void run(benchmark::State& state, bool_t (*filter)(XDR*, Record*), xdr_op direction) {
    Record record;
    std::memset(&record, 'x', sizeof record);
    std::vector<char> memory(sizeof record * BYTES_PER_XDR_UNIT);
    for (auto iteration : state) {
        XDR stream;
        xdrmem_create(&stream, memory.data(), static_cast<unsigned int>(memory.size()), direction);
        if (filter(&stream, &record) == FALSE) {
            state.SkipWithError("the filter failed");
            break;
        }
        benchmark::DoNotOptimize(record);
        benchmark::ClobberMemory();
    }
}

template <class Record>
void compare(const std::string& name, bool_t (*ours)(XDR*, Record*),
             bool_t (*reference)(XDR*, Record*)) {
    for (const auto& [verb, direction] :
         {std::pair("encode ", XDR_ENCODE), std::pair("decode ", XDR_DECODE)}) {
        const std::string tested = verb + name;
        benchmark::RegisterBenchmark((tested + "/ours").c_str(), run<Record>, ours, direction);
        benchmark::RegisterBenchmark((tested + "/reference").c_str(), run<Record>, reference,
                                     direction);
    }
}

}  // namespace

int main(int count, char** arguments) {
    std::array<std::string, 3> defaults = {"--benchmark_enable_random_interleaving=true",
                                           "--benchmark_repetitions=21",
                                           "--benchmark_min_time=0.02"};
    std::vector<char*> flags = {arguments[0]};
    for (std::string& flag : defaults) {
        flags.push_back(flag.data());
    }
    flags.insert(flags.end(), arguments + 1, arguments + count);
    int flagCount = static_cast<int>(flags.size());
    flags.push_back(nullptr);
    benchmark::Initialize(&flagCount, flags.data());
    if (benchmark::ReportUnrecognizedArguments(flagCount, flags.data())) {
        return 1;
    }

    compare<Characters<100>>("char[100]", ours<100>, reference<100>);
    compare<Characters<2000>>("char[2000]", ours<2000>, reference<2000>);
    compare("rpcNetworkSWVersion", xdr_rpcNetworkSWVersion, witness_xdr_rpcNetworkSWVersion);

    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.hasFailed() ? 1 : 0;
}
