// The cost of queries in a model of 1 000 000 elements of mixed classes, compared with a plain loop over a list of the
// elements of the class asked for, which a program would have to maintain itself.
#include <ModelRefInfoRepo/ModelRefInfoRepo.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using namespace ModelRefInfoRepo;
namespace qz = quay::zero;
using qz::query::find;
using Mode = qz::query::SearchClassMatchMode;

constexpr std::int64_t kElements = 1'000'000;

/// Elements of eight classes in turn. Queries ask for one class of the eight, or for two with a common superclass;
/// conditions on a value hold for one element in eight. 2 000 ports have children.
struct Mixed {
    qz::Model model = qz::Model::create();
    std::vector<RateSpec> rates;
    std::vector<AUTOSARPortInfo> infos;
    std::vector<InportInformation> ports;

    Mixed() {
        qz::Transaction transaction = model->beginTransaction(false);
        for (int i = 0; i < kElements; ++i) {
            switch (i % 8) {
                case 0:
                    rates.push_back(RateSpec::create(model, {}));
                    rates.back()->setPeriod(i / 8 % 8);
                    break;
                case 1:
                    makeInfo(AUTOSARInportInfo::create(model, {}), i);
                    break;
                case 2:
                    makeInfo(AUTOSAROutportInfo::create(model, {}), i);
                    break;
                case 3:
                    SampleTimeGraphEdge::create(model, {});
                    break;
                case 4:
                    VarTsUIDEntry::create(model, {});
                    break;
                case 5:
                    CompDataType::create(model, {});
                    break;
                case 6:
                    InOutArg::create(model, {});
                    break;
                default:
                    HierCondInfo::create(model, {});
                    break;
            }
        }
        for (unsigned i = 0; i < 2000; ++i) {
            ports.push_back(InportInformation::create(model, {}));
            for (unsigned n = 0; n < 4; ++n) ports.back()->createIntoHierCondInfos()->setHierIdx(i % 8 + n);
        }
        transaction.commit(boost::none);
    }
    void makeInfo(AUTOSARPortInfo const& info, int i) {
        infos.push_back(info);
        info->setElementName(i / 8 % 8 == 3 ? u"searched" : u"other");
    }

    static Mixed const& get() {
        static Mixed const* const made = new Mixed;
        return *made;
    }
};

/// The floor: a loop over a stored list of handles, by inlined getters.
template <class X, class F>
void loop(benchmark::State& state, std::vector<X> const& all, F const& f) {
    for (auto _ : state) {
        std::vector<X> hits;
        for (X const& x : all) {
            if (f(x)) hits.push_back(x);
        }
        benchmark::DoNotOptimize(hits.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(all.size()));
}

template <class X>
void ask(benchmark::State& state, std::size_t searched, qz::query::Constraint<X> const& constraint, Mode mode) {
    auto const& model = Mixed::get().model;
    find<X>(model, constraint, mode);
    for (auto _ : state) {
        auto hits = find<X>(model, constraint, mode);
        benchmark::DoNotOptimize(hits.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(searched));
}

void loopOverNumbers(benchmark::State& state) {
    loop(state, Mixed::get().rates, [](RateSpec const& r) { return r->getPeriod() == 3; });
}
void queryNumbers(benchmark::State& state) {
    ask(state, Mixed::get().rates.size(), RateSpec::period() == 3, Mode::Exact);
}
void loopOverTexts(benchmark::State& state) {
    loop(state, Mixed::get().infos, [](AUTOSARPortInfo const& i) { return i->getElementName() == u"searched"; });
}
void queryTextsOfSubclasses(benchmark::State& state) {
    ask(state, Mixed::get().infos.size(), AUTOSARPortInfo::elementName() == u"searched", Mode::WithSubclasses);
}
void loopOverChildren(benchmark::State& state) {
    loop(state, Mixed::get().ports, [](InportInformation const& p) {
        auto const& children = *p->getHierCondInfos();
        return !p->getIsNotDerivPort() &&
               std::any_of(children.begin(), children.end(), [](HierCondInfo const& h) { return h->getHierIdx() > 9; });
    });
}
void queryChildren(benchmark::State& state) {
    ask(state, Mixed::get().ports.size(),
        InportInformation::isNotDerivPort() == false &&
            InportInformation::hierCondInfos().any(HierCondInfo::hierIdx() > 9U),
        Mode::WithSubclasses);
}
BENCHMARK(loopOverNumbers)->Unit(benchmark::kMicrosecond);
BENCHMARK(queryNumbers)->Unit(benchmark::kMicrosecond);
BENCHMARK(loopOverTexts)->Unit(benchmark::kMicrosecond);
BENCHMARK(queryTextsOfSubclasses)->Unit(benchmark::kMicrosecond);
BENCHMARK(loopOverChildren)->Unit(benchmark::kMicrosecond);
BENCHMARK(queryChildren)->Unit(benchmark::kMicrosecond);

/// The cost of each query without the index, and of the first query, which builds the index.
void loopOverModel(benchmark::State& state) {
    auto const& model = Mixed::get().model;
    for (auto _ : state) {
        std::vector<RateSpec> hits;
        model->forEachElement([&](qz::ModelElement::Impl& e) {
            RateSpec const r = RateSpec::cast(qz::ModelElement(&e));
            if (r && r->getPeriod() == 3) hits.push_back(r);
        });
        benchmark::DoNotOptimize(hits.data());
    }
}
void firstQuery(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto mixed = std::make_unique<Mixed>();
        state.ResumeTiming();
        benchmark::DoNotOptimize(find<RateSpec>(mixed->model, RateSpec::period() == 3).data());
        state.PauseTiming();
        mixed.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(loopOverModel)->Unit(benchmark::kMillisecond);
BENCHMARK(firstQuery)->Unit(benchmark::kMillisecond)->Iterations(5);

/// A query after each change, in a model of that many elements: the index is updated, not built anew.
void changeAndQuery(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    std::vector<VarTsUIDEntry> all;
    all.reserve(static_cast<std::size_t>(state.range(0)));
    for (int i = 0; i < state.range(0); ++i) all.push_back(VarTsUIDEntry::create(model, {}));
    auto const constraint = RateSpec::period() == 3;
    for (auto _ : state) {
        RateSpec const r = RateSpec::create(model, {});
        benchmark::DoNotOptimize(find<RateSpec>(model, constraint).data());
        r->destroy();
    }
}
BENCHMARK(changeAndQuery)->Arg(1000)->Arg(100000);

}  // namespace
