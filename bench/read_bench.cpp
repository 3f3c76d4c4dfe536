// Times reading, checking, EBST output and release over generated descriptions, and prints
// each beside the floor: a pass over the same text that only counts tokens. The floor is timed
// in turn with the work, so that both see the machine in the same state.

#include "floor_scanner.h"
#include "generate.h"
#include "memory.h"
#include "process.h"
#include "scan_alone.h"

#include "tarnlet/bsdl.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{

constexpr int REPETITIONS = 11;

/** The generated files of one benchmark; kept until another one is asked for. */
struct Source {
    std::string name;
    std::vector<std::string> paths;
    std::vector<std::string> texts; ///< each with two zero bytes behind it, for the floor
    uint64_t bytes = 0;
    uint64_t tokens = 0;
};

void add_file(Source &source, std::string text)
{
    source.paths.push_back(scratch_folder() + "/" + source.name + "_" +
                           std::to_string(source.paths.size()) + ".bsd");
    write_text(source.paths.back(), text);
    source.bytes += text.size();
    text.append(2, '\0');
    source.texts.push_back(std::move(text));
}

uint64_t run_floor(Source &source)
{
    uint64_t tokens = 0;
    for (std::string &text : source.texts)
        tokens += floor_count_tokens(text.data(), text.size() - 2);
    return tokens;
}

constexpr const char *SMALL_FILES = "files";

Source &source_for(const std::string &shape, uint32_t size)
{
    static Source source;
    const std::string name = shape + "_" + std::to_string(size);
    if (source.name == name)
        return source;
    for (const std::string &path : source.paths)
        remove(path.c_str());
    source = {};
    source.name = name;
    if (shape == SMALL_FILES) {
        for (uint32_t i = 0; i < size; i++)
            add_file(source, generate_small_description(i));
    }
    for (const ShapeName &row : shape_names) {
        if (shape == row.name)
            add_file(source, generate_description(row.shape, size, "generated"));
    }
    source.tokens = run_floor(source);
    return source;
}

/** The work on one set of files: what has to be there before, and the part that counts. */
struct Work {
    std::vector<std::string> paths;
    std::vector<Bsdl *> handles = {};
    bool failed = false;

    void read()
    {
        static BsdlContext context{
            .message_sink = [](void *, BsdlMessage *) {}, .sink_data = nullptr, .verbosity = 0};
        for (const std::string &path : paths) {
            Bsdl *h = readBsdl(path.c_str(), nullptr, nullptr, 0, &context);
            if (!h || bsdlGetNumErrors(h) != 0)
                failed = true;
            handles.push_back(h);
        }
    }

    void check()
    {
        for (Bsdl *h : handles)
            failed |= bsdl_check(h) != BSDL_RESULT_OK;
    }

    void create_ebst()
    {
        const std::string path = scratch_folder() + "/out.ebst";
        for (Bsdl *h : handles) {
            bsdlSetEbstFile(h, path.c_str());
            failed |= bsdlGenEbst(h) != 0 || bsdlCreateEbst(h) != 0;
        }
    }

    void release()
    {
        for (Bsdl *h : handles)
            bsdlRelease(h);
        handles.clear();
    }

    void scan()
    {
        for (const std::string &path : paths)
            failed |= scan_alone(path.c_str()) == 0;
    }
};

struct Step {
    const char *name;
    void (*prepare)(Work &work);
    void (*run)(Work &work);
    bool is_floor = false;
};

void nothing(Work &) {}

constexpr Step steps[] = {
    {.name = "floor", .prepare = nothing, .run = nothing, .is_floor = true},
    {.name = "scan", .prepare = nothing, .run = [](Work &w) { w.scan(); }},
    {.name = "read", .prepare = nothing, .run = [](Work &w) { w.read(); }},
    {.name = "check",
     .prepare = nothing,
     .run =
         [](Work &w) {
             w.read();
             w.check();
         }},
    {.name = "ebst",
     .prepare =
         [](Work &w) {
             w.read();
             w.check();
         },
     .run = [](Work &w) { w.create_ebst(); }},
    {.name = "release",
     .prepare =
         [](Work &w) {
             w.read();
             w.check();
         },
     .run = [](Work &w) { w.release(); }},
};

const Step *find_step(const char *name)
{
    for (const Step &step : steps) {
        if (strcmp(step.name, name) == 0)
            return &step;
    }
    return nullptr;
}

// Memory is measured in a process of its own: in one that has run the work before, freed
// pages that are still resident would hide what it needs.
int measure_memory(const char *step_name, char **paths, int count)
{
    const Step *step = find_step(step_name);
    if (!step)
        return 2;
    Work work{.paths = {paths, paths + count}};
    const uint64_t resident = peak_resident();
    if (resident == 0)
        return 2;
    allocations_start();
    step->prepare(work);
    const Allocations before = allocations_stop();
    allocations_start();
    step->run(work);
    const Allocations after = allocations_stop();
    const int64_t peak = std::max(before.peak, before.live + after.peak);
    printf("%" PRIu64 " %" PRId64 " %" PRIu64 "\n", after.count, peak, peak_resident() - resident);
    return work.failed ? 1 : 0;
}

constexpr const char *MEASURE = "--measure-memory";

bool add_memory_counters(benchmark::State &state, const Step &step, const Source &source)
{
    std::vector<std::string> arguments = {"/proc/self/exe", MEASURE, step.name};
    arguments.insert(arguments.end(), source.paths.begin(), source.paths.end());
    const ProcessResult result = run_process(arguments);
    uint64_t count = 0;
    int64_t heap = 0;
    uint64_t resident = 0;
    if (result.status != 0 || sscanf(result.output.c_str(), "%" SCNu64 " %" SCNd64 " %" SCNu64,
                                     &count, &heap, &resident) != 3)
        return false;
    const auto bytes = static_cast<double>(source.bytes);
    state.counters["allocs"] = static_cast<double>(count);
    state.counters["heap/B"] = static_cast<double>(heap) / bytes;
    state.counters["rss/B"] = static_cast<double>(resident) / bytes;
    return true;
}

void run_step(benchmark::State &state, const Step &step, const std::string &shape, uint32_t size)
{
    Source &source = source_for(shape, size);
    std::vector<double> floor_times;
    std::vector<double> times;
    for (auto _ : state) {
        const double floor_start = seconds_now();
        benchmark::DoNotOptimize(run_floor(source));
        floor_times.push_back(seconds_now() - floor_start);

        Work work{.paths = source.paths};
        step.prepare(work);
        const double start = seconds_now();
        step.run(work);
        times.push_back(step.is_floor ? floor_times.back() : seconds_now() - start);
        work.release();
        state.SetIterationTime(times.back());
        if (work.failed) {
            state.SkipWithError("a generated description was not read or did not pass");
            return;
        }
    }
    const double time = median(times);
    state.counters["ms"] = time * 1e3;
    state.counters["ratio"] = time / median(floor_times);
    state.counters["MB/s"] = static_cast<double>(source.bytes) / time / 1e6;
    state.counters["Mtok/s"] = static_cast<double>(source.tokens) / time / 1e6;
    if (!add_memory_counters(state, step, source))
        state.SkipWithError("the memory could not be measured");
}

void add_benchmarks(const std::string &shape, std::initializer_list<uint32_t> sizes)
{
    // Size by size, so that a source is generated once for all steps.
    for (const uint32_t size : sizes) {
        for (const Step &step : steps) {
            const std::string name = shape + "/" + std::to_string(size) + "/" + step.name;
            benchmark::RegisterBenchmark(name.c_str(),
                                         [&step, shape, size](benchmark::State &state) {
                                             run_step(state, step, shape, size);
                                         })
                ->UseManualTime()
                ->Iterations(REPETITIONS)
                ->Unit(benchmark::kMillisecond);
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc > 3 && strcmp(argv[1], MEASURE) == 0)
        return measure_memory(argv[2], argv + 3, argc - 3);

    for (const ShapeName &row : shape_names)
        add_benchmarks(row.name, {10'000, 100'000, 1'000'000});
    add_benchmarks(SMALL_FILES, {100, 1'000});
    if (!getenv("BENCH_WARM"))
        memory_always_fresh();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
