// Making and destroying elements. The first argument is how many transactions the history keeps.
#include <malloc.h>

#include <optional>

#include "floor_record.h"
#include "support.h"

namespace bench {
namespace {

constexpr std::int64_t kFew = 1000;

/// Creates this many small elements, one after the other, each in a transaction of its own or all in one. Models are
/// made and destroyed outside the measured time.
template <bool InOne>
void floorCreate(benchmark::State& state) {
    auto const count = state.range(1);
    for (auto _ : state) {
        state.PauseTiming();
        std::optional<hand::Store> store(std::in_place);
        keepHistory(*store, state);
        hand::Root root(*store);
        state.ResumeTiming();
        if (InOne) store->begin();
        for (std::int64_t i = 0; i < count; ++i) {
            if (!InOne) store->begin();
            hand::make(*store, root.edges);
            if (!InOne) store->commit();
        }
        if (InOne) store->commit();
        state.PauseTiming();
        root.edges.clear();
        store.reset();
        if (count > kFew) malloc_trim(0);  // so that a large model allocates its memory anew in every round
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

template <bool InOne>
void create(benchmark::State& state) {
    auto const count = state.range(1);
    for (auto _ : state) {
        state.PauseTiming();
        qz::Model model = makeModel(state);
        ModelRefInfoRoot root = ModelRefInfoRoot::create(model, {});
        std::optional<qz::Transaction> transaction;
        state.ResumeTiming();
        if (InOne) transaction.emplace(model->beginTransaction(false));
        for (std::int64_t i = 0; i < count; ++i) root->createIntoAllEdges();
        if (InOne) transaction->commit(boost::none);
        state.PauseTiming();
        transaction.reset();
        root = ModelRefInfoRoot();
        model = qz::Model();
        if (count > kFew) malloc_trim(0);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

constexpr auto kMillisecond = benchmark::kMillisecond;
BENCHMARK(floorCreate<false>)
    ->Name("floorCreateInto")
    ->ArgsProduct({{0, 100}, {1000, 100000, 1000000}})
    ->Unit(kMillisecond);
BENCHMARK(create<false>)->Name("createInto")->ArgsProduct({{0, 100}, {1000, 100000, 1000000}})->Unit(kMillisecond);
BENCHMARK(floorCreate<true>)
    ->Name("floorCreateIntoInOneTransaction")
    ->ArgsProduct({{0, 100}, {1000, 1000000}})
    ->Unit(kMillisecond);
BENCHMARK(create<true>)
    ->Name("createIntoInOneTransaction")
    ->ArgsProduct({{0, 100}, {1000, 1000000}})
    ->Unit(kMillisecond);

void floorCreateAndDestroy(benchmark::State& state) {
    hand::Store store;
    keepHistory(store, state);
    hand::Root root(store);
    for (auto _ : state) {
        store.begin();
        auto& made = hand::make(store, root.edges);
        store.commit();
        store.begin();
        hand::destroy(made);
        store.commit();
    }
}
BENCHMARK(floorCreateAndDestroy)->Arg(0)->Arg(100);

void createAndDestroy(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    auto const root = ModelRefInfoRoot::create(model, {});
    for (auto _ : state) root->createIntoAllEdges()->destroy();
}
BENCHMARK(createAndDestroy)->Arg(0)->Arg(100);

void floorDefaultRoot(benchmark::State& state) {
    hand::Store store;
    keepHistory(store, state);
    hand::List<hand::Root> roots;
    for (auto _ : state) {
        store.begin();
        auto& made = hand::make(store, roots);
        store.commit();
        store.begin();
        hand::destroy(made);
        store.commit();
    }
}
BENCHMARK(floorDefaultRoot)->Arg(0)->Arg(100);

void defaultRoot(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    for (auto _ : state) ModelRefInfoRoot::create(model, {})->destroy();
}
BENCHMARK(defaultRoot)->Arg(0)->Arg(100);

}  // namespace
}  // namespace bench
