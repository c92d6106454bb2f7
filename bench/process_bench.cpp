// The memory that a small element takes in all, and the throughput of two threads with a model each.
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include "floor_record.h"
#include "support.h"

namespace bench {
namespace {

constexpr int kElements = 100000;

/// Bytes that the process has taken from the allocator: arenas and mapped blocks.
double heapBytes() {
    struct mallinfo2 const info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

void floorBytes(benchmark::State& state) {
    for (auto _ : state) {
        hand::Store store;
        hand::Root root(store);
        double const before = heapBytes();
        for (int i = 0; i < kElements; ++i) hand::make(store, root.edges);
        state.counters["bytes"] = (heapBytes() - before) / kElements;
    }
}
BENCHMARK(floorBytes)->Iterations(1);

void bytes(benchmark::State& state) {
    for (auto _ : state) {
        qz::Model const model = qz::Model::create();
        auto const root = ModelRefInfoRoot::create(model, {});
        double const before = heapBytes();
        for (int i = 0; i < kElements; ++i) root->createIntoAllEdges();
        state.counters["bytes"] = (heapBytes() - before) / kElements;
        benchmark::DoNotOptimize(model->findElement(root->uuid(), qz::FindElementBehavior(1)));
        state.counters["indexed"] = (heapBytes() - before) / kElements;
    }
}
BENCHMARK(bytes)->Iterations(1);

// --- Threads: both are spawned, so that neither has the advantage of a process with one -----------------------------

void floorWork(int times) {
    hand::Store store;
    hand::Root root(store);
    for (int i = 0; i < times; ++i) {
        store.begin();
        hand::Edge& made = hand::make(store, root.edges);
        for (unsigned n = 1; n <= 10; ++n) made.setFirst(n);
        store.commit();
        hand::destroy(made);
    }
}

void work(int times) {
    qz::Model const model = qz::Model::create();
    auto const root = ModelRefInfoRoot::create(model, {});
    for (int i = 0; i < times; ++i) {
        auto const made = root->createIntoAllEdges();
        for (unsigned n = 1; n <= 10; ++n) made->setSrcNodeIdx(n);
        made->destroy();
    }
}

double secondsOf(void (*job)(int), int threads) {
    auto const start = std::chrono::steady_clock::now();
    std::vector<std::thread> running;
    running.reserve(static_cast<std::size_t>(threads));
    for (int i = 0; i < threads; ++i) running.emplace_back(job, 200000);
    for (std::thread& thread : running) thread.join();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// `speedup`: how much more work two threads do than one, each in the best of several rounds.
void twoThreads(benchmark::State& state, void (*job)(int)) {
    for (auto _ : state) {
        double one = 1e9;
        double two = 1e9;
        for (int round = 0; round < 7; ++round) {
            one = std::min(one, secondsOf(job, 1));
            two = std::min(two, secondsOf(job, 2));
        }
        state.counters["speedup"] = 2 * one / two;
    }
}
BENCHMARK_CAPTURE(twoThreads, floor, floorWork)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(twoThreads, ours, work)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
