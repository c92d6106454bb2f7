// The query functions of properties: which exist, their types, and which expressions don't compile.
#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

#include "support/record.h"

namespace {

using namespace queries;
namespace query = quay::zero::query;
using query::Constraint;
using query::find;

template <class X>
using OfClass = query::MetaclassAttachment<X>;
using OfQuery = query::InstanceAttachment;

using InQuery = InportInformation::Constrainables;
static_assert(std::is_base_of_v<RootIOPortInformation::Constrainables, InQuery>);
static_assert(std::is_base_of_v<qz::ModelElement::Constrainables, RootIOPortInformation::Constrainables>);
static_assert(std::is_base_of_v<vwexec::mm::sto::ClientClockNamedData::Constrainables, VwtpClockData::Constrainables>);
static_assert(
    std::is_same_v<decltype(InQuery::isNotDerivPort), query::ConstrainableWithAttachment<bool, OfQuery, false, void>>);
static_assert(std::is_same_v<decltype(InQuery::hierCondInfos),
                             query::ConstrainableRelationWithAttachment<HierCondInfo, OfQuery>>);
static_assert(std::is_base_of_v<query::AbstractConstrainable<bool, OfQuery, false>, decltype(InQuery::isNotDerivPort)>);
static_assert(std::has_virtual_destructor_v<query::AbstractConstrainable<int, OfClass<VarTsUIDEntry>, false>>);
static_assert(sizeof(InQuery::isNotDerivPort) == 3 * sizeof(void*) &&
              sizeof(VarTsUIDEntry::varTsIdx()) == 3 * sizeof(void*));

// --- What doesn't compile -------------------------------------------------------------------------------------------

// Whether the expression compiles for a property P and an operand V.
template <class P, class V>
constexpr bool kCompares = requires(P const& p, V v) {
    p == v;
    p != v;
};
template <class P, class V>
constexpr bool kOrders = requires(P const& p, V v) {
    p < v;
    p <= v;
    p > v;
    p >= v;
};
template <class P, class V>
constexpr bool kSearches = requires(P const& p, V v) {
    p.contains(v);
    p.startsWith(v);
};
template <class P>
constexpr bool kHas = requires(P const& p) {
    p.has();
};
template <class P, class C>
constexpr bool kSteps = requires(P const& p, C c) {
    p.any(c);
    p.all(c);
    p.none(c);
};
template <class X, class C>
constexpr bool kFinds = requires(qz::Model const& model, C c) {
    find<X>(model, c, Mode::Exact);
};
template <class A, class B>
constexpr bool kCombines = requires(A a, B b) {
    a&& b;
    a || b;
};

using Bool = decltype(InportInformation::isNotDerivPort());
using Int = decltype(VarTsUIDEntry::varTsIdx());
using Unsigned = decltype(InportInformation::originalPortNumber());
using Real = decltype(RateSpec::period());
using Wide = decltype(VarTsUIDEntry::varTsUID());
using Narrow = decltype(CompDataType::dataTypeName());
using Enum = decltype(CompDataType::dataClass());
using Optional = decltype(ModelRefInfoRoot::numTs());
using Foreign = decltype(ModelRefInfoRoot::rootBlockDiagramInterface());
using Relation = decltype(InportInformation::hierCondInfos());
using OnPort = Constraint<RootIOPortInformation>;
using OnInport = Constraint<InportInformation>;
using OnOutport = Constraint<OutportInformation>;
using OnInfo = Constraint<HierCondInfo>;

static_assert(kCompares<Bool, bool> && !kCompares<Bool, int> && !kCompares<Bool, void*> && !kOrders<Bool, bool>);
static_assert(kCompares<Int, int> && kOrders<Int, unsigned long> && !kCompares<Int, bool> && !kCompares<Int, double>);
static_assert(!kCompares<Int, char> && !kCompares<Int, char const*> && !kCompares<Int, DataClass>);
static_assert(kOrders<Unsigned, unsigned> && kOrders<Real, int> && kOrders<Real, double> && !kCompares<Real, bool>);
static_assert(kOrders<Wide, char16_t const*> && kSearches<Wide, std::u16string_view> && !kCompares<Wide, char const*>);
static_assert(kOrders<Narrow, char const*> && kSearches<Narrow, std::string> && !kCompares<Narrow, std::u16string>);
static_assert(!kCompares<Narrow, std::nullptr_t> && !kCompares<Narrow, int> && !kSearches<Int, int>);
static_assert(kCompares<Enum, DataClass> && kOrders<Enum, DataClass> && !kCompares<Enum, QueueType> &&
              !kCompares<Enum, int>);
static_assert(kCompares<Optional, int> && kHas<Optional> && !kHas<Int> && !kCompares<Optional, boost::optional<int>>);
static_assert(!kCompares<Int, Int> && !kCompares<Int, Unsigned> && !kHas<Foreign> && !kHas<Relation>);
static_assert(kCompares<Foreign, vw::ci::Model> && !kCompares<Foreign, RateSpec> && !kSteps<Foreign, OnInfo>);
static_assert(kSteps<Relation, OnInfo> && !kSteps<Relation, OnPort> && !kSteps<Relation, bool> && !kSteps<Int, OnInfo>);
static_assert(!kCompares<Relation, HierCondInfo> && !kOrders<Foreign, vw::ci::Model>);
static_assert(kFinds<InportInformation, OnInport> && kFinds<InportInformation, OnPort>);
static_assert(!kFinds<RootIOPortInformation, OnInport> && !kFinds<OutportInformation, OnInport> &&
              !kFinds<RateSpec, bool>);
static_assert(kCombines<OnPort, OnInport> && kCombines<OnInport, OnPort> && !kCombines<OnInport, OnOutport>);
static_assert(!kCombines<OnInport, bool> && !kCombines<OnInport, OnInfo>);
static_assert(std::is_same_v<decltype(std::declval<OnPort>() && std::declval<OnInport>()), OnInport>);

// --- Objects --------------------------------------------------------------------------------------------------------

TEST(Vocabulary, HasOneWordAClassAndProperty) {
    auto const* const package = MetaPackageVw_modelref_info::getInstance();
    EXPECT_EQ(&AUTOSAROutportInfo::portName(), &AUTOSAROutportInfo::portName());
    EXPECT_NE(static_cast<void const*>(&AUTOSAROutportInfo::portName()),
              static_cast<void const*>(&AUTOSARPortInfo::portName()));
    EXPECT_EQ(AUTOSAROutportInfo::portName().getProperty(), package->AUTOSARPortInfo_PortName);
    EXPECT_EQ(AUTOSARPortInfo::portName().getProperty(), package->AUTOSARPortInfo_PortName);
    EXPECT_EQ(VwtpEventData::scope().getProperty(), package->VwtpEventData_scope);
    EXPECT_EQ(VwtpEventData::linkedSet().getProperty(), VwtpClockData::linkedSet().getProperty());
    EXPECT_NE(VwtpTaskData::linkedSet().getProperty(), VwtpClockData::linkedSet().getProperty());
    EXPECT_EQ(VwtpTaskData::linkedSet().getProperty()->getName(), u"linkedSet");
}

class Bare final : public query::AbstractQuery {
public:
    explicit Bare(qz::Model const& model) : AbstractQuery(model) {}
};

TEST(Vocabulary, IsTiedToItsQuery) {
    auto const* const package = MetaPackageVw_modelref_info::getInstance();
    Bare asked{qz::Model::create()};
    InQuery const byPair(std::pair<query::AbstractQuery&, Mode const>(asked, Mode::WithSubclasses));
    EXPECT_EQ(byPair.getMetaClass(), InportInformation::metaClass());
    EXPECT_EQ(byPair.getMatchMode(), Mode::WithSubclasses);
    EXPECT_EQ(&byPair.getQuery(), &asked);
    EXPECT_EQ(byPair.isNotDerivPort.getProperty(), package->InportInformation_isNotDerivPort);
    EXPECT_EQ(byPair.hierCondInfos.getProperty(), package->RootIOPortInformation_hierCondInfos);
    EXPECT_EQ(&byPair.hierCondInfos.getAttachment().getConstrainables(), &byPair);
    // The class isn't compared.
    for (auto const& cls : {InportInformation::metaClass(), RateSpec::metaClass()}) {
        RootIOPortInformation::Constrainables const words(asked, cls, Mode::Exact);
        EXPECT_EQ(words.getMetaClass(), cls);
        EXPECT_EQ(words.getMatchMode(), Mode::Exact);
    }
}

TEST(Vocabulary, OfAQueryAsksAsTheClassDoes) {
    auto const model = qz::Model::create();
    build(model);
    using I = InportInformation;
    query::Query<I> asked(model);
    auto const& port = asked.constrainables();
    asked.where(port.designMin > 0).where(port.isNotDerivPort == true || I::hierCondInfos().any());
    auto const expected =
        find<I>(model, I::designMin() > 0 && (I::isNotDerivPort() == true || I::hierCondInfos().any()));
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(asked.find(), expected);

    // A query on X that searches a subclass; a query that searches an unrelated class finds its elements that are also
    // of X.
    using P = RootIOPortInformation;
    query::Query<P> below(model, I::metaClass(), Mode::Exact);
    EXPECT_EQ(below.where(below.constrainables().designMin > 0).find().size(),
              find<I>(model, I::designMin() > 0).size());
    EXPECT_TRUE(query::Query<P>(model, RateSpec::metaClass(), Mode::WithSubclasses).find().empty());
    EXPECT_EQ(query::Query<I>(model, P::metaClass(), Mode::WithSubclasses).find(), find<I>(model));
}

/// Run-time checks: a constrainable whose package isn't declared has no property, and one query refuses those of
/// another.
TEST(Vocabulary, RefusesWhatTheCompilerCantSee) {
    auto const model = qz::Model::create();
    auto const* const package = MetaPackageVw_modelref_info::getInstance();
    using I = InportInformation;
    auto const errorOf = [&](auto const& ask) -> std::string {
        try {
            ask();
        } catch (std::exception const& e) {
            std::string const text = e.what();
            return text.substr(0, text.find(": "));
        }
        return "";
    };
    using Words = query::ConstrainableWithAttachment<bool, OfClass<I>, false, void>;
    auto const askWith = [&](qz::meta::Property const& property) {
        Words const word(property);
        return errorOf([&] { find<I>(model, !(word == true)); });
    };
    EXPECT_EQ(askWith(package->InportInformation_isNotDerivPort), "");
    EXPECT_EQ(askWith(package->RootIOPortInformation_KGNTestpoint), "");
    EXPECT_EQ(askWith({}), "quay0:messages:NoSuchProperty");
    EXPECT_EQ(askWith(package->OutportInformation_constantOutputValue), "quay0:messages:NoSuchProperty");
    EXPECT_EQ(askWith(package->RootIOPortInformation_designMin), "quay0:messages:CannotCastIncompatibleTypes");
    EXPECT_EQ(askWith(package->RootIOPortInformation_hierCondInfos), "quay0:messages:CannotCastIncompatibleTypes");

    EXPECT_EQ(errorOf([&] { query::Query<I>(model, qz::meta::Class(), query::SearchClassMatchMode::Exact).find(); }),
              "quay0:messages:InvalidValue");
    query::Query<I> mine(model);
    query::Query<I> other(model);
    auto const constraint = other.constrainables().isNotDerivPort == true;
    EXPECT_EQ(errorOf([&] { find<I>(model, constraint); }), "quay0:messages:InvalidValue");
    EXPECT_EQ(errorOf([&] { mine.where(I::designMin() > 0 && constraint).find(); }), "quay0:messages:InvalidValue");
    EXPECT_EQ(errorOf([&] { other.where(constraint).find(); }), "");
    EXPECT_EQ(errorOf([&] { other.where(I::hierCondInfos().any(constraint)).find(); }),
              "quay0:messages:NoSuchProperty");
}

}  // namespace
