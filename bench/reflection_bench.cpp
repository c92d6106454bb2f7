// Reflective reads and writes, compared with direct getters and setters that are reached through a table.
#include <algorithm>
#include <string>

#include "floor_record.h"
#include "support.h"

namespace bench {
namespace {

constexpr auto& kPublic = qz::ReflectionPrivateTag::PUBLIC_ACCESS;

/// The entry of the floor's table, found in a way that the compiler can't optimise away.
hand::Access const* accessOf(std::u16string_view name) {
    auto const found = std::find_if(hand::portTable.begin(), hand::portTable.end(),
                                    [&](hand::Access const& a) { return a.name == name; });
    hand::Access const* access = &*found;
    benchmark::DoNotOptimize(access);
    return access;
}

void floorReflectiveRead(benchmark::State& state) {
    hand::Store store;
    hand::Port const port(store);
    auto const* const access = accessOf(u"number");
    for (auto _ : state) benchmark::DoNotOptimize(std::get<int>(access->get(&port)));
}
BENCHMARK(floorReflectiveRead);

void reflectiveRead(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    auto const root = ModelRefInfoRoot::create(model, {});
    auto const property = ModelRefInfoRoot::metaClass()->findProperty(u"triggerType");
    for (auto _ : state) benchmark::DoNotOptimize(root->getPropertyValue(property, kPublic).getValue<int>());
}
BENCHMARK(reflectiveRead);

void floorReflectiveReadOfText(benchmark::State& state) {
    hand::Store store;
    hand::Port port(store);
    port.setLabel(u"twenty units of text");
    auto const* const access = accessOf(u"label");
    for (auto _ : state) benchmark::DoNotOptimize(access->get(&port));
}
BENCHMARK(floorReflectiveReadOfText);

void reflectiveReadOfText(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    auto const entry = VarTsUIDEntry::create(model, {});
    entry->setVarTsUID(u"twenty units of text");
    auto const property = VarTsUIDEntry::metaClass()->findProperty(u"varTsUID");
    for (auto _ : state) benchmark::DoNotOptimize(entry->getPropertyValue(property, kPublic));
}
BENCHMARK(reflectiveReadOfText);

void floorReflectiveReadOfPort(benchmark::State& state) {
    hand::Store store;
    hand::Port const port(store);
    for (auto _ : state) {
        for (auto const& access : hand::portTable) benchmark::DoNotOptimize(access.get(&port));
    }
}
BENCHMARK(floorReflectiveReadOfPort);

void reflectiveReadOfPort(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    auto const port = InportInformation::create(model, {});
    auto const properties = InportInformation::metaClass()->getProperties();
    for (auto _ : state) {
        for (auto const& p : properties) benchmark::DoNotOptimize(port->getPropertyValue(p, kPublic));
    }
}
BENCHMARK(reflectiveReadOfPort);

void floorReflectiveWrite(benchmark::State& state) {
    hand::Store store;
    hand::Port port(store);
    auto const* const access = accessOf(u"number");
    int n = 0;
    for (auto _ : state) access->set(&port, ++n);
}
BENCHMARK(floorReflectiveWrite);

void reflectiveWrite(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    auto const root = ModelRefInfoRoot::create(model, {});
    auto const property = ModelRefInfoRoot::metaClass()->findProperty(u"triggerType");
    int n = 0;
    for (auto _ : state) {
        root->setPropertyValue(property, qz::Value::createPrimitiveValue(property, ++n), kPublic);
    }
}
BENCHMARK(reflectiveWrite);

}  // namespace
}  // namespace bench
