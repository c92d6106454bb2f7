// Every constraint compared with a plain loop that makes the same test by getters.
#include "support/record.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace {

using namespace queries;
using qz::query::Constraint;
using qz::query::find;

/// A constraint on X, and a function that tests the same.
template <class X>
struct Case {
    char const* name;
    Constraint<X> constraint;
    std::function<bool(X const&)> plain;
};

/// Runs each query in both modes. A case that finds nothing, or everything, fails unless its name starts with "!".
template <class X>
void expectSame(qz::Model const& model, std::vector<Case<X>> const& cases) {
    for (auto const& [name, constraint, plain] : cases) {
        SCOPED_TRACE(name);
        for (Mode const mode : {Mode::Exact, Mode::WithSubclasses}) {
            EXPECT_EQ(find<X>(model, constraint, mode), (filter<X>(model, mode, plain)));
        }
        if (name[0] == '!') continue;
        std::size_t const found = find<X>(model, constraint).size();
        EXPECT_GT(found, 0U);
        EXPECT_LT(found, find<X>(model).size());
    }
}

/// Compares the property with each value, by all operators.
template <class X, class Word, class Get, class... V>
void expectSameComparisons(qz::Model const& model, Word const& word, Get get, V const&... values) {
    auto const ask = [&](auto const& value) {
        for (int way = 0; way < 6; ++way) {
            auto const [constraint, plain] = compared<X>(way, word, get, value);
            EXPECT_EQ(find<X>(model, constraint), filter<X>(model, plain)) << testing::PrintToString(value) << way;
        }
    };
    (ask(values), ...);
}

class Constraints : public testing::Test {
protected:
    qz::Model model = qz::Model::create();
    ModelRefInfoRoot root = build(model);
};

TEST_F(Constraints, OnValuesOfEachType) {
    using P = RootIOPortInformation;
    double const nan = std::numeric_limits<double>::quiet_NaN();
    find<P>(model)[2]->setDesignMin(nan);
    expectSameComparisons<P>(
        model, P::designMin(), [](P const& p) { return p->getDesignMin(); }, 0.5, 0, 0.5F, nan);
    expectSameComparisons<P>(
        model, P::trueHiers(), [](P const& p) { return p->getTrueHiers(); }, std::string("top.even"), "top.odd.3");
    using E = VarTsUIDEntry;
    expectSameComparisons<E>(
        model, E::varTsIdx(), [](E const& e) { return e->getVarTsIdx(); }, -1, 0, 1L);
    expectSameComparisons<E>(
        model, E::varTsUID(), [](E const& e) { return e->getVarTsUID(); }, u"a\u00e9");
    using G = SampleTimeGraphEdge;
    expectSameComparisons<G>(
        model, G::srcNodeIdx(), [](G const& e) { return e->getSrcNodeIdx(); }, 8UL, ~0UL);
    using Q = InputQueue;
    for (QueueType const type : {QueueType::Q_TYPE_FIFO, QueueType::Q_TYPE_LIFO, QueueType::Q_TYPE_FIFO}) {
        Q::create(model, {})->setQueueType(type);
    }
    expectSameComparisons<Q>(
        model, Q::queueType(), [](Q const& q) { return q->getQueueType(); }, QueueType::Q_TYPE_LIFO);
    expectSame<P>(model, {
                             {"not <", !(P::designMin() < 0.5), [](P const& p) { return !(p->getDesignMin() < 0.5); }},
                             {"contains", P::trueHiers().contains("odd"),
                              [](P const& p) { return p->getTrueHiers().find("odd") != std::string::npos; }},
                             {"!contains nothing", P::trueHiers().contains(""), [](P const&) { return true; }},
                             {"startsWith", P::trueHiers().startsWith(std::string_view("top.o")),
                              [](P const& p) { return p->getTrueHiers().starts_with("top.o"); }},
                             {"!startsWith more than all", P::trueHiers().startsWith("top.even and more"),
                              [](P const&) { return false; }},
                         });
    using I = InportInformation;
    expectSame<I>(model,
                  {
                      {"bool", I::isNotDerivPort() == true, [](I const& p) { return p->getIsNotDerivPort(); }},
                      {"bool !=", I::isNotDerivPort() != true, [](I const& p) { return !p->getIsNotDerivPort(); }},
                      {"of the superclass", I::designMin() > 0, [](I const& p) { return p->getDesignMin() > 0; }},
                  });
    expectSame<E>(model,
                  {
                      {"int < unsigned", E::varTsIdx() < 0U, [](E const& e) { return e->getVarTsIdx() < 0; }},
                      {"!int == what it wraps to", E::varTsIdx() == 0xffff'ffffU, [](E const&) { return false; }},
                      {"wide text contains", E::varTsUID().contains(u"\u00e9"),
                       [](E const& e) { return e->getVarTsUID().size() == 2; }},
                  });
    expectSame<G>(model, {
                             {"long > int", G::srcNodeIdx() > 8, [](G const& e) { return e->getSrcNodeIdx() > 8; }},
                             {"!long == -1", G::srcNodeIdx() == -1, [](G const&) { return false; }},
                         });
}

TEST_F(Constraints, OnOptionalValues) {
    using R = ModelRefInfoRoot;
    expectSame<R>(
        model,
        {
            {"has bool", R::isRefModelConstant().has(), [](R const& r) { return r->hasIsRefModelConstant(); }},
            {"has int", R::numTs().has(), [](R const& r) { return r->hasNumTs(); }},
            {"== false", R::isRefModelConstant() == false,
             [](R const& r) { return r->getIsRefModelConstant() == boost::optional<bool>(false); }},
            {"absent != false", R::isRefModelConstant() != false,
             [](R const& r) { return r->getIsRefModelConstant() != boost::optional<bool>(false); }},
            {"absent is not below", R::numTs() < 8, [](R const& r) { return r->hasNumTs() && *r->getNumTs() < 8; }},
            {"absent is not above", R::numTs() > -1, [](R const& r) { return r->hasNumTs() && *r->getNumTs() > -1; }},
            {"!long", R::numPortlessVarlowFunctionPortGroups() >= 0, [](R const&) { return false; }},
        });
}

TEST_F(Constraints, OnWhatIsOwned) {
    using P = RootIOPortInformation;
    expectSame<P>(model,
                  {
                      {"set has one", P::hierCondInfos().any(), [&](P const& p) { return p->hasHierCondInfos(); }},
                      {"set is empty", P::hierCondInfos().none(), [&](P const& p) { return !p->hasHierCondInfos(); }},
                  });
    using I = InportInformation;
    auto const anyEvent = InputDataEventsInfo::deadlineTime() == u"";
    expectSame<I>(
        model,
        {
            {"child", I::dataEventsInfo().any(), [](I const& p) { return p->hasDataEventsInfo(); }},
            {"no child", I::dataEventsInfo().none(), [](I const& p) { return !p->hasDataEventsInfo(); }},
            {"child any", I::dataEventsInfo().any(anyEvent), [](I const& p) { return p->hasDataEventsInfo(); }},
            {"child all", I::dataEventsInfo().all(!anyEvent), [](I const& p) { return !p->hasDataEventsInfo(); }},
        });
    using R = ModelRefInfoRoot;
    auto const negative = VarTsUIDEntry::varTsIdx() < 0;
    expectSame<R>(model, {
                             {"sequence, then up to the superclass",
                              R::inports().any(P::designMin() > 1 && InportInformation::isNotDerivPort() == false),
                              [](R const& r) { return r->hasInports(); }},
                             {"map of a child", R::varTsUIDMap().any(VarTsUIDMap::entries().any(negative)),
                              [](R const& r) { return r->hasVarTsUIDMap(); }},
                             {"!empty map", R::controllableInputRatesMap().any(VarTsUIDMap::entries().any(negative)),
                              [](R const&) { return false; }},
                             {"map not all", R::varTsUIDMap().any(!VarTsUIDMap::entries().all(negative)),
                              [](R const& r) { return r->hasVarTsUIDMap(); }},
                             {"multimap",
                              R::unionTsContainedTs().any(UnionTsContainedTsElem::unionTs() == 0 &&
                                                          UnionTsContainedTsElem::containedTs() == 1),
                              [](R const& r) { return r->hasUnionTsContainedTs(); }},
                             {"multimap all", R::unionTsContainedTs().all(UnionTsContainedTsElem::unionTs() > 0),
                              [](R const& r) { return !r->hasUnionTsContainedTs(); }},
                         });
}

/// More children than are tested in one batch, of which one differs.
TEST_F(Constraints, LookAtEveryChildOfMany) {
    using R = ModelRefInfoRoot;
    for (int i = 0; i < 300; ++i) root->createIntoInports()->setOriginalPortNumber(i == 150 ? 7 : 1000);
    auto const seventh = InportInformation::originalPortNumber() == 7U;
    EXPECT_EQ(find<R>(model, R::inports().any(seventh)), std::vector{root});
    EXPECT_EQ(find<R>(model, R::inports().any() && R::inports().none(seventh)), std::vector<R>{});
    InportInformation const port = find<InportInformation>(model, seventh).front();
    for (unsigned i = 0; i < 300; ++i) port->createIntoHierCondInfos()->setHierIdx(i);
    EXPECT_EQ(find<InportInformation>(model, InportInformation::hierCondInfos().any(HierCondInfo::hierIdx() == 250U)),
              std::vector{port});
    EXPECT_FALSE(find<InportInformation>(model, InportInformation::hierCondInfos().all(
                                                    HierCondInfo::hierIdx() < 299U)) == find<InportInformation>(model));
    EXPECT_EQ(find<InportInformation>(
                  model, seventh && InportInformation::hierCondInfos().all(HierCondInfo::hierIdx() < 300U)),
              std::vector{port});
}

TEST_F(Constraints, OnAnElementOfAForeignClass) {
    using R = ModelRefInfoRoot;
    auto const interface = vw::ci::Model::create(model, {});
    root->setRootBlockDiagramInterface(interface);
    expectSame<R>(
        model, {
                   {"it", R::rootBlockDiagramInterface() == interface,
                    [&](R const& r) { return r->getRootBlockDiagramInterface() == interface; }},
                   {"another", R::rootBlockDiagramInterface() != interface, [&](R const& r) { return r != root; }},
                   {"none", R::rootBlockDiagramInterface() == vw::ci::Model(), [&](R const& r) { return r != root; }},
               });
}

TEST_F(Constraints, MayBeOfTheSuperclass) {
    using P = RootIOPortInformation;
    auto const inports = find<InportInformation>(model, P::designMin() > 0);
    static_assert(std::is_same_v<decltype(inports), std::vector<InportInformation> const>);
    EXPECT_GT(inports.size(), 0U);
    EXPECT_TRUE(find<P>(qz::Model()).empty());
    EXPECT_TRUE(find<P>(qz::Model::create()).empty());
}

/// Queries resolve proxies as getters do; proxies that can't be resolved are skipped, below an owner and in the model.
TEST_F(Constraints, ResolveProxiesUnlessThatIsHeldOff) {
    using R = ModelRefInfoRoot;
    ModelRefInfoRoot const owner = R::create(model, {});
    CodeGenInformation const target = CodeGenInformation::create(model, {});
    CodeGenInformation const proxy = owner->createIntoCodeGenInfo();
    model->proxies().setId(*proxy.impl(), qz::ProxyId(u"there", target->uuid()));
    int asked = 0;
    ModelRefInfoRoot madeMeanwhile;
    auto const hasInfo = R::codeGenInfo().any();
    {
        qz::Model::ResolutionHold const hold(model);
        EXPECT_TRUE(find<R>(model, hasInfo).empty());
    }
    model->setProxyResolver([&](qz::ProxyId const&) -> qz::ModelElement {
        ++asked;
        if (asked == 1) return {};
        for (int i = 0; i < 100; ++i) madeMeanwhile = R::create(model, {});
        EXPECT_EQ(find<R>(model, R::numTs().has()), std::vector{root});
        return target;
    });
    EXPECT_TRUE(find<R>(model, R::numTs().has() && hasInfo).empty());
    EXPECT_EQ(asked, 0);  // the second part wasn't evaluated for the root that has a proxy there
    EXPECT_TRUE(find<R>(model, hasInfo).empty());
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(find<R>(model, hasInfo), std::vector{owner});
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(madeMeanwhile);
    EXPECT_EQ(owner->getCodeGenInfo(), target);
    EXPECT_EQ(find<CodeGenInformation>(model), std::vector{target});
}

}  // namespace
