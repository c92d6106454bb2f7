// Typed reads and writes. The argument, where there is one, is how many transactions the history keeps.
#include <vector>

#include "support.h"

namespace bench {
namespace {

constexpr int kMany = 1000;

void floorTypedRead(benchmark::State& state) {
    hand::Store store;
    hand::Small const e(store);
    hand::Small const* p = &e;
    for (auto _ : state) {
        benchmark::DoNotOptimize(p);
        benchmark::DoNotOptimize(p->first);
    }
}
BENCHMARK(floorTypedRead);

void typedRead(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    RateSpec const e = RateSpec::create(model, {});
    for (auto _ : state) {
        benchmark::DoNotOptimize(e.impl());
        benchmark::DoNotOptimize(e->getPeriod());
    }
}
BENCHMARK(typedRead);

void floorEqualWrite(benchmark::State& state) {
    hand::Store store;
    hand::Small e(store);
    for (auto _ : state) e.setFirst(0.0);
}
BENCHMARK(floorEqualWrite);

void equalWrite(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    RateSpec const e = RateSpec::create(model, {});
    for (auto _ : state) e->setPeriod(0.0);
}
BENCHMARK(equalWrite);

// --- A property that was written before in the open transaction -----------------------------------------------------

void floorWriteAgain(benchmark::State& state) {
    hand::Store store;
    hand::Small e(store);
    store.begin();
    double value = 0;
    int n = 0;
    for (auto _ : state) {
        e.setFirst(value += 1);
        if (++n == kMany) {  // limits the log, whose growth would be measured otherwise
            store.commit();
            store.begin();
            n = 0;
        }
    }
}
BENCHMARK(floorWriteAgain);

void writeSmall(RateSpec const& e, double v) { e->setPeriod(v); }
void writeRoot(ModelRefInfoRoot const& e, double v) { e->setFundamentalSampleTimePeriod(v); }

template <class X, void (*Write)(X const&, double)>
void writeAgain(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    X const e = X::create(model, {});
    qz::Transaction transaction = model->beginTransaction(false);
    double value = 0;
    for (auto _ : state) Write(e, value += 1);
}
BENCHMARK(writeAgain<RateSpec, writeSmall>)->Arg(0)->Arg(100);
BENCHMARK(writeAgain<ModelRefInfoRoot, writeRoot>)->Arg(0)->Arg(100);

// --- A transaction of its own ---------------------------------------------------------------------------------------

void floorOwnTransaction(benchmark::State& state) {
    hand::Store store;
    keepHistory(store, state);
    hand::Small e(store);
    double value = 0;
    for (auto _ : state) {
        store.begin();
        e.setFirst(value += 1);
        store.commit();
    }
}
BENCHMARK(floorOwnTransaction)->Arg(0)->Arg(100);

template <class X, void (*Write)(X const&, double)>
void ownTransaction(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    X const e = X::create(model, {});
    double value = 0;
    for (auto _ : state) Write(e, value += 1);
}
BENCHMARK(ownTransaction<RateSpec, writeSmall>)->Arg(0)->Arg(100);
BENCHMARK(ownTransaction<ModelRefInfoRoot, writeRoot>)->Arg(0)->Arg(100);

// --- A thousand elements, each written once in a transaction; per write ---------------------------------------------

/// How the transaction ends.
enum class End { Commit, RollBack, Undo };

template <class T, auto Write, End How>
void floorFirstTouch(benchmark::State& state) {
    hand::Store store;
    keepHistory(store, state);
    hand::List<T> all;
    for (int i = 0; i < kMany; ++i) hand::make(store, all);
    int value = 0;
    for (auto _ : state) {
        ++value;
        store.begin();
        for (auto const& e : all) Write(*e, value);
        How == End::RollBack ? store.rollback() : store.commit();
        if (How == End::Undo) store.undo();
    }
    state.SetItemsProcessed(state.iterations() * kMany);
}

template <class X, auto Write, End How>
void firstTouch(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    std::vector<X> all;
    all.reserve(kMany);
    for (int i = 0; i < kMany; ++i) all.push_back(X::create(model, {}));
    int value = 0;
    for (auto _ : state) {
        ++value;
        {
            qz::Transaction transaction = model->beginTransaction(false);
            for (auto const& e : all) Write(e, value);
            if (How != End::RollBack) transaction.commit(boost::none);
        }
        if (How == End::Undo) model->undo();
    }
    state.SetItemsProcessed(state.iterations() * kMany);
}

void floorReal(hand::Small& e, int value) { e.setFirst(value); }
void real(RateSpec const& e, int value) { e->setPeriod(value); }

BENCHMARK(floorFirstTouch<hand::Small, floorReal, End::Commit>)->Name("floorFirstTouch")->Arg(0)->Arg(100);
BENCHMARK(firstTouch<RateSpec, real, End::Commit>)->Name("firstTouch")->Arg(0)->Arg(100);

std::u16string const texts[] = {u"twenty units of text", u"20 units of writing."};
void floorText(hand::Note& e, int value) { e.setText(texts[value & 1]); }
void text(VarTsUIDEntry const& e, int value) { e->setVarTsUID(texts[value & 1]); }

BENCHMARK(floorFirstTouch<hand::Note, floorText, End::Commit>)->Name("floorTextWrite")->Arg(0)->Arg(100);
BENCHMARK(firstTouch<VarTsUIDEntry, text, End::Commit>)->Name("textWrite")->Arg(0)->Arg(100);

BENCHMARK(floorFirstTouch<hand::Small, floorReal, End::RollBack>)->Name("floorWriteManyAndRollBack")->Arg(0);
BENCHMARK(firstTouch<RateSpec, real, End::RollBack>)->Name("writeManyAndRollBack")->Arg(0);
BENCHMARK(floorFirstTouch<hand::Small, floorReal, End::Undo>)->Name("floorCommitManyAndUndo")->Arg(100);
BENCHMARK(firstTouch<RateSpec, real, End::Undo>)->Name("commitManyAndUndo")->Arg(100);

// --- One element, written so many times in a transaction, and all of it taken back ----------------------------------

void floorWriteAndRollBack(benchmark::State& state) {
    hand::Store store;
    hand::Small e(store);
    for (auto _ : state) {
        store.begin();
        for (int i = 1; i <= state.range(1); ++i) e.setFirst(i);
        store.rollback();
    }
    state.SetItemsProcessed(state.iterations() * state.range(1));
}
BENCHMARK(floorWriteAndRollBack)->Args({0, 1})->Args({0, 100});

void writeAndRollBack(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    RateSpec const e = RateSpec::create(model, {});
    for (auto _ : state) {
        qz::Transaction const transaction = model->beginTransaction(false);
        for (int i = 1; i <= state.range(1); ++i) e->setPeriod(i);
    }
    state.SetItemsProcessed(state.iterations() * state.range(1));
}
BENCHMARK(writeAndRollBack)->Args({0, 1})->Args({0, 100});

void floorCommitAndUndo(benchmark::State& state) {
    hand::Store store;
    keepHistory(store, state);
    hand::Small e(store);
    for (auto _ : state) {
        store.begin();
        for (int i = 1; i <= state.range(1); ++i) e.setFirst(i);
        store.commit();
        store.undo();
    }
    state.SetItemsProcessed(state.iterations() * state.range(1));
}
BENCHMARK(floorCommitAndUndo)->Args({100, 1})->Args({100, 100});

void commitAndUndo(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    RateSpec const e = RateSpec::create(model, {});
    for (auto _ : state) {
        {
            qz::Transaction transaction = model->beginTransaction(false);
            for (int i = 1; i <= state.range(1); ++i) e->setPeriod(i);
            transaction.commit(boost::none);
        }
        model->undo();
    }
    state.SetItemsProcessed(state.iterations() * state.range(1));
}
BENCHMARK(commitAndUndo)->Args({100, 1})->Args({100, 100});

}  // namespace
}  // namespace bench
