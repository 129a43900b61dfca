// cxc_bench [--benchmark_filter=REGEX]: runs every comparison and prints a Markdown table.
#include "bench/compare.h"

#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <vector>

namespace bench {
namespace {

struct Row {
    std::string name;
    std::string limitName;
    double target;
};

struct Figure {
    std::string name;
    std::string unit;
    double target;
    std::function<double()> measure;
};

std::vector<Row>& rows() {
    static std::vector<Row> all;
    return all;
}

std::vector<Figure>& figures() {
    static std::vector<Figure> all;
    return all;
}

void registerOne(const std::string& name, Work work) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [work](benchmark::State& state) {
                                     for (auto _ : state)
                                         state.SetIterationTime(work());
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Repetitions(7)
        ->MinTime(0.01);
}

class Medians : public benchmark::ConsoleReporter {
public:
    std::map<std::string, double> milliseconds;

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.aggregate_name == "median")
                milliseconds[run.run_name.function_name] = run.GetAdjustedRealTime();
        }
    }
};

void printTable(const std::map<std::string, double>& medians) {
    std::printf("| operation | ms | limit, measured beside it | ms | ratio | target |\n");
    std::printf("|---|---|---|---|---|---|\n");
    for (const Row& row : rows()) {
        const auto ours = medians.find(row.name + " | ours");
        const auto limit = medians.find(row.name + " | limit");
        if (ours == medians.end() || limit == medians.end()) continue;
        std::printf("| %s | %.3f | %s | %.3f | %.2f | %.2f |\n", row.name.c_str(), ours->second,
                    row.limitName.c_str(), limit->second, ours->second / limit->second, row.target);
    }
    for (const Figure& figure : figures()) {
        std::printf("| %s | | | | %.0f %s | %.0f |\n", figure.name.c_str(), figure.measure(),
                    figure.unit.c_str(), figure.target);
    }
}

}  // namespace

void compare(const std::string& name, double target, Work ours, const std::string& limitName,
             Work limit) {
    rows().push_back({name, limitName, target});
    registerOne(name + " | ours", std::move(ours));
    registerOne(name + " | limit", std::move(limit));
}

void figure(const std::string& name, double target, const std::string& unit,
            std::function<double()> measure) {
    figures().push_back({name, unit, target, std::move(measure)});
}

double seconds(const std::function<void()>& f) {
    const auto begin = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void registerFile();
void registerProcessing();
void registerExport();
void registerGroup();

}  // namespace bench

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    bench::registerFile();
    bench::registerProcessing();
    bench::registerExport();
    bench::registerGroup();
    bench::Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    bench::printTable(medians.milliseconds);
    return 0;
}
