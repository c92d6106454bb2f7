// What elements cost, beside the floor. A second figure, where there is one, is with a history of 100.
#include <ModelRefInfoRepo/ModelRefInfoRepo.h>

#include <benchmark/benchmark.h>

#include <memory>

#include "floor.h"

namespace {

using namespace ModelRefInfoRepo;
namespace qz = quay::zero;

qz::Model makeModel(benchmark::State const& state) {
    qz::Model model = qz::Model::create();
    model->enableHistory(static_cast<std::size_t>(state.range(0)));
    return model;
}

// --- Reads and single writes ----------------------------------------------------------------------------------------

void typedRead(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    RateSpec const e = RateSpec::create(model, {});
    for (auto _ : state) {
        benchmark::DoNotOptimize(e.impl());
        benchmark::DoNotOptimize(e->getPeriod());
    }
}
BENCHMARK(typedRead);

void equalWrite(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    RateSpec const e = RateSpec::create(model, {});
    for (auto _ : state) e->setPeriod(0.0);
}
BENCHMARK(equalWrite);

void floorWriteAgain(benchmark::State& state) {
    hand::Store store;
    hand::Small e(store, store.drawId());
    store.begin();
    double value = 0;
    std::size_t n = 0;
    for (auto _ : state) {
        e.setFirst(value += 1);
        if (++n == 1024) {  // a log without end would measure the memory
            store.rollback();
            store.begin();
            n = 0;
        }
    }
}
BENCHMARK(floorWriteAgain);

template <class X, void (*Write)(X const&, double)>
void writeAgain(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    X const e = X::create(model, {});
    qz::Transaction transaction = model->beginTransaction(false);
    double value = 0;
    Write(e, value += 1);
    for (auto _ : state) Write(e, value += 1);
}

template <class X, void (*Write)(X const&, double)>
void ownTransaction(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    X const e = X::create(model, {});
    double value = 0;
    for (auto _ : state) Write(e, value += 1);
}

void writeSmall(RateSpec const& e, double v) { e->setPeriod(v); }
void writeRoot(ModelRefInfoRoot const& e, double v) { e->setFundamentalSampleTimePeriod(v); }

BENCHMARK(writeAgain<RateSpec, writeSmall>)->Arg(0)->Arg(100);
BENCHMARK(writeAgain<ModelRefInfoRoot, writeRoot>)->Arg(0)->Arg(100);

void floorOwnTransaction(benchmark::State& state) {
    hand::Store store;
    store.keepHistory(static_cast<std::size_t>(state.range(0)));
    hand::Small e(store, store.drawId());
    double value = 0;
    for (auto _ : state) {
        store.begin();
        e.setFirst(value += 1);
        store.commit();
    }
}
BENCHMARK(floorOwnTransaction)->Arg(0)->Arg(100);
BENCHMARK(ownTransaction<RateSpec, writeSmall>)->Arg(0)->Arg(100);
BENCHMARK(ownTransaction<ModelRefInfoRoot, writeRoot>)->Arg(0)->Arg(100);

void floorFirstTouch(benchmark::State& state) {
    hand::Store store;
    store.keepHistory(static_cast<std::size_t>(state.range(0)));
    std::vector<hand::Small> all(1000, hand::Small(store, store.drawId()));
    double value = 0;
    for (auto _ : state) {
        value += 1;
        store.begin();
        for (auto& e : all) e.setFirst(value);
        store.commit();
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(floorFirstTouch)->Arg(0)->Arg(100);

void firstTouch(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    std::vector<RateSpec> all;
    for (int i = 0; i < 1000; ++i) all.push_back(RateSpec::create(model, {}));
    double value = 0;
    for (auto _ : state) {
        value += 1;
        qz::Transaction transaction = model->beginTransaction(false);
        for (auto const& e : all) e->setPeriod(value);
        transaction.commit(boost::none);
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(firstTouch)->Arg(0)->Arg(100);

void textWrite(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    VarTsUIDEntry const e = VarTsUIDEntry::create(model, {});
    std::u16string const texts[] = {u"twenty units of text", u"20 units of writing."};
    std::size_t n = 0;
    qz::Transaction transaction = model->beginTransaction(false);
    for (auto _ : state) e->setVarTsUID(texts[++n & 1]);
}
BENCHMARK(textWrite)->Arg(0)->Arg(100);

// --- Reflection -----------------------------------------------------------------------------------------------------

void reflectiveRead(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    auto const root = ModelRefInfoRoot::create(model, {});
    auto const property = ModelRefInfoRoot::metaClass()->findProperty(u"triggerType");
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            root->getPropertyValue(property, qz::ReflectionPrivateTag::PUBLIC_ACCESS).getValue<int>());
    }
}
BENCHMARK(reflectiveRead);

void reflectiveReadOfPort(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    auto const port = InportInformation::create(model, {});
    auto const properties = InportInformation::metaClass()->getProperties();
    for (auto _ : state) {
        for (auto const& p : properties) {
            benchmark::DoNotOptimize(port->getPropertyValue(p, qz::ReflectionPrivateTag::PUBLIC_ACCESS));
        }
    }
}
BENCHMARK(reflectiveReadOfPort);

void reflectiveWrite(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    auto const root = ModelRefInfoRoot::create(model, {});
    auto const property = ModelRefInfoRoot::metaClass()->findProperty(u"triggerType");
    int n = 0;
    for (auto _ : state) {
        root->setPropertyValue(property, qz::Value::createPrimitiveValue(property, ++n),
                               qz::ReflectionPrivateTag::PUBLIC_ACCESS);
    }
}
BENCHMARK(reflectiveWrite);

// --- Creation -------------------------------------------------------------------------------------------------------

void createInto(benchmark::State& state) {
    auto const count = state.range(1);
    for (auto _ : state) {
        state.PauseTiming();
        qz::Model model = makeModel(state);
        auto const root = ModelRefInfoRoot::create(model, {});
        state.ResumeTiming();
        for (std::int64_t i = 0; i < count; ++i) root->createIntoAllEdges();
        state.PauseTiming();
        model = qz::Model();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(createInto)->ArgsProduct({{0, 100}, {1000, 100000, 1000000}})->Unit(benchmark::kMillisecond);

void createIntoInOneTransaction(benchmark::State& state) {
    auto const count = state.range(1);
    for (auto _ : state) {
        state.PauseTiming();
        qz::Model model = makeModel(state);
        auto const root = ModelRefInfoRoot::create(model, {});
        state.ResumeTiming();
        qz::Transaction transaction = model->beginTransaction(false);
        for (std::int64_t i = 0; i < count; ++i) root->createIntoAllEdges();
        transaction.commit(boost::none);
        state.PauseTiming();
        { auto const ended = std::move(transaction); }
        model = qz::Model();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(createIntoInOneTransaction)->ArgsProduct({{0, 100}, {1000, 1000000}})->Unit(benchmark::kMillisecond);

void createAndDestroy(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    auto const root = ModelRefInfoRoot::create(model, {});
    for (auto _ : state) root->createIntoAllEdges()->destroy();
}
BENCHMARK(createAndDestroy)->Arg(0)->Arg(100);

void defaultRoot(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    for (auto _ : state) ModelRefInfoRoot::create(model, {})->destroy();
}
BENCHMARK(defaultRoot)->Arg(0)->Arg(100);

// --- Taking back ----------------------------------------------------------------------------------------------------

void writeAndRollBack(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    RateSpec const e = RateSpec::create(model, {});
    for (auto _ : state) {
        qz::Transaction const transaction = model->beginTransaction(false);
        e->setPeriod(1.0);
    }
}
BENCHMARK(writeAndRollBack)->Arg(0);

void commitAndUndo(benchmark::State& state) {
    qz::Model const model = makeModel(state);
    RateSpec const e = RateSpec::create(model, {});
    for (auto _ : state) {
        e->setPeriod(1.0);
        model->undo();
    }
}
BENCHMARK(commitAndUndo)->Arg(100);

}  // namespace
