// Times the whole process of the command line tool: on one description of about 50 KB beside
// `cat` of that file and an empty program, and on a folder with one and with two processes.

#include "generate.h"
#include "process.h"

#include <benchmark/benchmark.h>

namespace
{

constexpr int REPETITIONS = 31;
constexpr uint32_t CELLS_OF_50_KB = 620;
constexpr uint32_t FILES = 1000;

// The generated files are valid, so any other status than 0 is a fault.
bool add_time(std::vector<double> &times, const std::vector<std::string> &arguments)
{
    const ProcessResult result = run_process(arguments);
    times.push_back(result.seconds);
    return result.status == 0;
}

void start_up(benchmark::State &state)
{
    const std::string path = scratch_folder() + "/small.bsd";
    write_text(path, generate_description(Shape::SCALAR_PORTS, CELLS_OF_50_KB, "small"));
    std::vector<double> tool;
    std::vector<double> cat;
    std::vector<double> empty;
    for (auto _ : state) {
        if (!add_time(empty, {BENCH_EMPTY_PROGRAM}) || !add_time(cat, {"cat", path}) ||
            !add_time(tool, {BENCH_TOOL, "check", path})) {
            state.SkipWithError("a process did not end with status 0");
            return;
        }
        state.SetIterationTime(tool.back());
    }
    state.counters["ms"] = median(tool) * 1e3;
    state.counters["cat ms"] = median(cat) * 1e3;
    state.counters["empty ms"] = median(empty) * 1e3;
    state.counters["ratio"] = median(tool) / (median(cat) + median(empty));
}

void folder(benchmark::State &state)
{
    const std::string path = scratch_folder() + "/folder";
    generate_folder(path, FILES);
    std::vector<double> one;
    std::vector<double> two;
    for (auto _ : state) {
        if (!add_time(one, {BENCH_TOOL, "check", "-j", "1", path}) ||
            !add_time(two, {BENCH_TOOL, "check", "-j", "2", path})) {
            state.SkipWithError("a process did not end with status 0");
            return;
        }
        state.SetIterationTime(two.back());
    }
    state.counters["j1 ms"] = median(one) * 1e3;
    state.counters["j2 ms"] = median(two) * 1e3;
    state.counters["speed-up"] = median(one) / median(two);
}

} // namespace

BENCHMARK(start_up)->UseManualTime()->Iterations(REPETITIONS)->Unit(benchmark::kMillisecond);
BENCHMARK(folder)->UseManualTime()->Iterations(REPETITIONS / 3)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
