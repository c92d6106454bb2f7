// Random sequences of typed and generic operations on records of every shape, compared with the reference model.
#include "support/dump.h"
#include "support/samples.h"
#include "support/world.h"

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <keel/text.h>

#include <algorithm>
#include <functional>
#include <memory>

namespace {

using namespace records;
using namespace ModelRefInfoRepo;
using namespace quay::zero;

ModelElement makeRecord(meta::Type const& type, Model const& model, boost::uuids::uuid const& id) {
    return make(type, model, id);
}

/// Classes and properties that cover every shape.
Plan const& plan() {
    // Indices above 63 are beyond the first word of a mask, so the test uses several of them in the root.
    static std::vector<std::pair<meta::Class, std::vector<char16_t const*>>> const chosen = {
        {ModelRefInfoRoot::metaClass(),
         {u"origInportBusType", u"runtimeNonFcnCallRateInfos", u"disableableTaskNums", u"solverStatusFlags",
          u"dataTransferInfos", u"isRefModelConstant", u"userSpecifiedFixedStepSize", u"hasHardwareSemantics",
          u"triggerType", u"numTs", u"numRuntimeExportedRates", u"resetEvents", u"inports", u"varTsUIDMap",
          u"controllableInputRatesMap", u"unionTsContainedTs", u"argumentParameters"}},
        {InportInformation::metaClass(),
         {u"isNotDerivPort", u"rateInfos", u"resolvedSignalObject", u"designMin", u"trueHiers", u"hierCondInfos"}},
        {VarTsUIDMap::metaClass(), {u"entries"}},
        {VarTsUIDEntry::metaClass(), {u"varTsIdx", u"varTsUID"}},
        {UnionTsContainedTsElem::metaClass(), {u"unionTs", u"containedTs"}},
        {CompFunction::metaClass(),
         {u"functionName", u"irtCallerType", u"resetEventsContainingCallers", u"variantFunctionNetEMVCE",
          u"variantCallerNetEMVCEMap"}},
        {IRTCallerType::metaClass(), {u"blockHandle"}},
        {VariantFunctionNetEMVCE::metaClass(), {u"signalName"}},
        {VariantCallerNetEMVCE::metaClass(), {u"refBlockPath", u"variantFunctionNetEMVCE"}},
        {ResetEventInfo::metaClass(), {u"resetEvent", u"netHierCondInfo"}},
        {HierCondInfo::metaClass(), {u"hierIdx"}},
        {ArgumentValueMap::metaClass(), {u"entries"}},
        {ArgumentValue::metaClass(), {u"name", u"value"}},
        {CompServicePort::metaClass(), {u"servicePortKey", u"externalPortIdx"}},
    };
    static Plan const made = [] {
        Plan::Chosen all;
        for (auto const& [type, names] : chosen) {
            all.emplace_back(type, std::vector<meta::Property>());
            for (char16_t const* name : names) all.back().second.push_back(type->findProperty(name));
        }
        return Plan(all, &makeRecord);
    }();
    return made;
}

// --- Typed operations ------------------------------------------------------------------------------------------------

/// A typed setter, which unpacks the value and writes it without reflection.
struct TypedWrite {
    int slot;
    std::function<void(ModelElement const&, Value const&)> write;
};

template <class Impl, class T>
TypedWrite typed(char const* slot, void (Impl::*setter)(T)) {
    return {plan().slot(slot), [setter](ModelElement const& e, Value const& v) {
                (dynamic_cast<Impl&>(*e.impl()).*setter)(v.getValue<std::decay_t<T>>());
            }};
}

std::vector<TypedWrite> const& typedWrites() {
    using Root = ModelRefInfoRoot::Impl;
    static std::vector<TypedWrite> const all = {
        typed("ModelRefInfoRoot.triggerType", &Root::setTriggerType),
        typed("ModelRefInfoRoot.hasHardwareSemantics", &Root::setHasHardwareSemantics),
        typed("ModelRefInfoRoot.numTs", &Root::setNumTs),
        typed("ModelRefInfoRoot.solverStatusFlags", &Root::setAutoSolverStatusFlags),
        typed("VarTsUIDEntry.varTsIdx", &VarTsUIDEntry::Impl::setVarTsIdx),
        typed("UnionTsContainedTsElem.unionTs", &UnionTsContainedTsElem::Impl::setUnionTs),
        typed("IRTCallerType.blockHandle", &IRTCallerType::Impl::setBlockHandle),
        typed("ArgumentValue.name", &ArgumentValue::Impl::setName),
        typed("VariantFunctionNetEMVCE.signalName", &VariantFunctionNetEMVCE::Impl::setSignalName),
        typed("CompServicePort.servicePortKey", &CompServicePort::Impl::setServicePortKey),
    };
    return all;
}

/// createIntoP, with or without a given builder.
struct TypedCreation {
    int slot;
    std::function<void(ModelElement const&, ModelElement::Builder*)> create;
};

template <class Owner, class Child, class F>
TypedCreation creation(char const* slot, F create) {
    return {plan().slot(slot), [create](ModelElement const& e, ModelElement::Builder* b) {
                auto& owner = *Owner::cast(e).impl();
                b == nullptr ? create(owner) : create(owner, typename Child::BuilderWrapper(*b));
            }};
}

std::vector<TypedCreation> const& typedCreations() {
    using Root = ModelRefInfoRoot;
    static std::vector<TypedCreation> const all = {
        creation<Root, InportInformation>("ModelRefInfoRoot.inports",
                                          [](auto& r, auto... b) { r.createIntoInports(b...); }),
        creation<Root, ResetEventInfo>("ModelRefInfoRoot.resetEvents",
                                       [](auto& r, auto... b) { r.createIntoResetEvents(b...); }),
        creation<Root, VarTsUIDMap>("ModelRefInfoRoot.varTsUIDMap",
                                    [](auto& r, auto... b) { r.createIntoVarTsUIDMap(b...); }),
        creation<Root, UnionTsContainedTsElem>("ModelRefInfoRoot.unionTsContainedTs",
                                               [](auto& r, auto... b) { r.createIntoUnionTsContainedTs(b...); }),
        creation<InportInformation, HierCondInfo>("InportInformation.hierCondInfos",
                                                  [](auto& p, auto... b) { p.createIntoHierCondInfos(b...); }),
        creation<VarTsUIDMap, VarTsUIDEntry>("VarTsUIDMap.entries",
                                             [](auto& m, auto... b) { m.createIntoEntries(b...); }),
        creation<ArgumentValueMap, ArgumentValue>("ArgumentValueMap.entries",
                                                  [](auto& m, auto... b) { m.createIntoEntries(b...); }),
        creation<CompFunction, IRTCallerType>("CompFunction.irtCallerType",
                                              [](auto& f, auto... b) { f.createIntoIrtCallerType(b...); }),
    };
    return all;
}

class Records final : public World {
public:
    Records(std::size_t limit, bool listening) : World(plan(), limit, listening) {}

private:
    void actParticularly(Operation const& o) override {
        if (o.c % 8 == 0) return build(o);
        if (o.c % 2 == 0) return createInto(o);
        if (any()) writeTyped(o, pick(o.a));
    }
    bool has(int n, int s) const { return std::count(slotsOf(n).begin(), slotsOf(n).end(), s) > 0; }

    void writeTyped(Operation const& o, int n) {
        if (auto const port = InportInformation::cast(element(n)); port.impl() != nullptr) return writeRate(o, n);
        std::vector<TypedWrite const*> fitting;
        for (auto const& w : typedWrites()) {
            if (has(n, w.slot)) fitting.push_back(&w);
        }
        if (fitting.empty()) return;
        auto const& w = *fitting[o.b % fitting.size()];
        bool const unset = slotAt(w.slot).shape == Slot::Shape::Optional && o.d % 4 == 0;
        Value const value =
            unset ? Value(slotAt(w.slot).property->getType(), ValueFlags::Optional) : valueOf(slotAt(w.slot), o.d);
        both([&] { w.write(element(n), value); },
             [&] { return reference_.write(n, w.slot, unset ? std::nullopt : std::optional(itemOf(value))); });
    }
    /// Reads the rate from the first of the rates, and writes it to all.
    void writeRate(Operation const& o, int n) {
        RateInfo rate;
        rate.setPeriod(o.d % 3);
        int const s = plan_.slot("InportInformation.rateInfos");
        // A transaction around the two changes, so that a listener is told of one commit.
        auto transaction = model_->beginTransaction(false);
        InportInformation::cast(element(n))->setRateInfo(rate);
        transaction.commit(boost::none);
        reference_.together([&] {
            reference_.clear(n, s);
            reference_.insert(n, s, 0, itemOf(Value(TypeOf<RateInfo>::type(), rate, ValueFlags::One)));
        });
        RC_ASSERT(InportInformation::cast(element(n))->getRateInfo() == rate);
    }

    /// Creates a child in an owned property; creates nothing if the key is in use or there is none.
    void createInto(Operation const& o) {
        auto const& typed = typedCreations()[o.b % typedCreations().size()];
        Slot const& slot = slotAt(typed.slot);
        int const n = pickIf(o.a, [&](int i) { return has(i, typed.slot); });
        if (n < 0 || full()) return;
        int const kind = plan_.kind(keel::toUtf8(slot.property->getType()->getName()));
        auto const builder = plan_.kindAt(kind).type->instantiateBuilder(model_);
        bool const built = o.c % 4 == 0;
        std::optional<Item> key;
        if (slot.keyed()) key = slotAt(slot.keySlot).initial;
        if (built && slot.keyed()) {
            Value const value = valueOf(slotAt(slot.keySlot), o.d);
            builder->setOrAdd(slotAt(slot.keySlot).property, value);
            key = itemOf(value);
        }
        reference_.begin();
        std::string const failure = failureOf([&] { typed.create(element(n), built ? builder.get() : nullptr); });
        if (!failure.empty()) {
            reference_.rollback();
            RC_ASSERT(key.has_value());
            RC_ASSERT(failure == (key->shown == "nan" ? "InvalidValue" : "UniquenessConstraint"));
            auto const& all = reference_.items(n, typed.slot);
            RC_ASSERT(key->shown == "nan" ||
                      std::any_of(all.begin(), all.end(), [&](Item const& i) { return i.shown == key->shown; }));
            return compare();
        }
        int const child = enter(kind);
        if (key) reference_.write(child, slot.keySlot, *key);
        bool const single = slot.shape == Slot::Shape::Child;
        RC_ASSERT((single ? reference_.writeChild(n, typed.slot, child) : reference_.add(n, typed.slot, child)) == "");
        reference_.commit();
    }

    /// Builds a map with two entries as an element of its own; equal keys fail and create nothing.
    void build(Operation const& o) {
        if (full()) return;
        VarTsUIDMap::Builder builder(model_);
        for (int index : {o.a % 4, o.b % 4}) {
            auto child = std::make_unique<VarTsUIDEntry::Builder>();
            child->setVarTsIdx(index).setVarTsUID(u"built");
            builder.addEntries(std::move(child));
        }
        both([&] { builder.create(); },
             [&]() -> std::string {
                 if (o.a % 4 == o.b % 4) return "UniquenessConstraint";
                 reference_.together([&] {
                     int const map = enter(plan_.kind("VarTsUIDMap"));
                     for (int index : {o.a % 4, o.b % 4}) {
                         int const entry = enter(plan_.kind("VarTsUIDEntry"));
                         using T = meta::StandardTypes;
                         Value const key(T::integerMeta, index, ValueFlags::One);
                         Value const text(T::stringMeta, std::u16string(u"built"), ValueFlags::One);
                         reference_.write(entry, plan_.slot("VarTsUIDEntry.varTsIdx"), itemOf(key));
                         reference_.write(entry, plan_.slot("VarTsUIDEntry.varTsUID"), itemOf(text));
                         reference_.add(map, plan_.slot("VarTsUIDMap.entries"), entry);
                     }
                 });
                 return {};
             });
    }
};

TEST(RandomRecords, DoAsTheReferenceDoes) {
    randomly::check(500 * randomly::kEffort,
                    [](std::vector<Operation> const& operations, std::uint8_t limit, bool listening) {
                        Records world(limit % 5, listening);
                        for (char const* kind : {"ModelRefInfoRoot", "VarTsUIDMap", "VarTsUIDEntry", "CompFunction",
                                                 "VariantFunctionNetEMVCE", "InportInformation"}) {
                            world.run({Kind::Create, static_cast<std::uint8_t>(plan().kind(kind)), 0, 0, 0});
                        }
                        world.run(operations);
                    });
}

/// For each property: random operations on it in two elements, and on its children.
TEST(RandomRecords, DoAsTheReferenceDoesInEveryProperty) {
    for (meta::Class const& c : schemaClasses()) {
        if (c->isAbstract()) continue;
        for (meta::Property const& p : c->getProperties()) {
            if (p->isDerived()) continue;
            SCOPED_TRACE(keel::toUtf8(c->getName() + u"." + p->getName()));
            Plan::Chosen chosen{{c, {p}}};
            if (p->isComposite()) {
                meta::Class const child = make(p->getType(), Model::create())->getMetaClass();
                auto const key = p->getQualifiedBy();
                chosen.emplace_back(child, key ? std::vector{key} : std::vector<meta::Property>());
            }
            Plan const one(chosen, &makeRecord);
            randomly::check(randomly::kEffort / 4 + 1,
                            [&](std::vector<Operation> const& operations, std::uint8_t limit, bool listening) {
                                World world(one, limit % 5, listening);
                                for (int i = 0; i < 4; ++i) {
                                    world.run({Kind::Create, static_cast<std::uint8_t>(i), 0, 0, 0});
                                }
                                world.run(operations);
                            });
            if (HasFailure()) return;
        }
    }
}

}  // namespace
