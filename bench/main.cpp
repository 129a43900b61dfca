// cxc_bench SHAPE [--only=REGEX] [--repetitions=N] [--benchmark_...]: operations of the library and
// the limits of the machine, "ours/..." and "limit/...", on one shape such as 64x64x100 (dataset)
// or 10x64x64x100 (group).
#include "bench/limits.h"
#include "bench/memory.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <exception>
#include <regex>

namespace bench {
namespace {

struct Options {
    std::string shape;
    std::regex only{""};
    int repetitions = 3;
};

Options optionsOf(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word.rfind("--only=", 0) == 0)
            options.only = word.substr(7);
        else if (word.rfind("--repetitions=", 0) == 0)
            options.repetitions = std::stoi(word.substr(14));
        else
            options.shape = word;
    }
    return options;
}

double seconds(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// What an operation has made and released goes back to the system, or the next one would find its
// pages there or not as it happens to lie in the heap.
void putBack(const Operation& operation) {
    if (!operation.after) return;
    operation.after();
    ::malloc_trim(0);
}

void measure(const std::string& name, const Operation& operation, const Options& options) {
    if (!std::regex_search(name, options.only)) return;
    Memory memory;
    const double first = seconds([&] { memory = memoryOf(operation.run); });
    putBack(operation);
    // What takes long is not done again: its first time is its figure.
    const bool slow = first > 1.0;
    benchmark::internal::Benchmark* const made =
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
            for (auto _ : state) {
                state.SetIterationTime(slow ? first : seconds(operation.run));
                if (!slow) putBack(operation);
            }
            state.counters["peak"] = memory.peak;
            state.counters["allocated"] = memory.allocated;
        });
    made->UseManualTime()->Unit(benchmark::kMillisecond);
    if (slow)
        made->Iterations(1);
    else
        made->MinTime(0.01)->Repetitions(options.repetitions);
}

void run(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const Options options = optionsOf(argc, argv);
    const Shape shape = shapeOf(options.shape);
    benchmark::AddCustomContext("dataset_bytes", std::to_string(datasetBytes(shape)));
    const std::vector<Operation> ours = operations(shape);
    for (const Operation& operation : ours)
        measure("ours/" + operation.name, operation, options);
    for (const Operation& limit : limits(shape))
        measure("limit/" + limit.name, limit, options);
    benchmark::RunSpecifiedBenchmarks();
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
    try {
        bench::run(argc, argv);
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "cxc_bench: %s\n", e.what());
        return 2;
    }
}
