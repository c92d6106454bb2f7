// The cost of loading the library, which declares its schema while it is loaded, compared with loading an empty
// library. Each load is timed in a process of its own.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

namespace {

/// Seconds that the last of `times` loads took, or a negative number if loading failed.
double timeLoad(char const* library, int times) {
    std::string const command = std::string(LOAD_ONCE) + " '" + library + "' " + std::to_string(times);
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const output(popen(command.c_str(), "r"), pclose);
    long long nanoseconds = -1;
    if (output == nullptr || std::fscanf(output.get(), "%lld", &nanoseconds) != 1) return -1;
    return static_cast<double>(nanoseconds) * 1e-9;
}

void load(benchmark::State& state, char const* library, int times) {
    for (auto _ : state) {
        double const seconds = timeLoad(library, times);
        if (seconds < 0) {
            state.SkipWithError("the library can't be loaded");
            break;
        }
        state.SetIterationTime(seconds);
    }
}

/// `first` loads into a process that has none of the libraries. `again` loads after the same process closed the
/// library; the libraries that it depends on stay loaded.
void registerLoad(char const* name, char const* library, int times) {
    benchmark::RegisterBenchmark(name, load, library, times)
        ->UseManualTime()
        ->Iterations(100)
        ->Unit(benchmark::kMillisecond);
}

[[maybe_unused]] bool const registered = [] {
    registerLoad("floorLoad/first", EMPTY_LIBRARY, 1);
    registerLoad("load/first", PRODUCT, 1);
    registerLoad("floorLoad/again", EMPTY_LIBRARY, 2);
    registerLoad("load/again", PRODUCT, 2);
    return true;
}();

}  // namespace
