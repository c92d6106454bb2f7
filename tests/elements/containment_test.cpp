// Owners and children: keys, slots, moving, destroying.
#include "../common/expect.h"
#include "support/dump.h"
#include "support/listener.h"

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <quay/zero/storage.h>
#include <quay0/messages.h>

namespace {

using namespace ModelRefInfoRepo;
using namespace quay::zero;
using namespace quay0::messages;
using namespace records;

TEST(Keys, HoldInWhicheverOfTwoMapsTheElementIs) {
    Model const model = Model::create();
    CompFunction const function = CompFunction::create(model, {});
    VariantCallerNetEMVCE const caller = function->createIntoVariantCallerNetEMVCEMap();
    VariantFunctionNetEMVCE const a = VariantFunctionNetEMVCE::create(model, {});
    VariantFunctionNetEMVCE const b = VariantFunctionNetEMVCE::create(model, {});
    a->setSignalName(u"a");
    b->setSignalName(u"b");
    auto const tryMap = [&](ElementMap<std::u16string, VariantFunctionNetEMVCE>& map) {
        map.add(a);
        map.add(b);
        std::string const before = dump(model);
        EXPECT_TRUE(failsWith<UniquenessConstraint>([&] { a->setSignalName(u"b"); }));
        EXPECT_TRUE(failsWith<UniquenessConstraint>([&] { a->setSignalName(b->getSignalName()); }));
        EXPECT_EQ(dump(model), before);
        a->setSignalName(u"c");
        EXPECT_EQ(map.find(u"c"), a);
        EXPECT_FALSE(map.containsKey(u"a"));
        EXPECT_EQ(*map.begin(), b);
        // The argument may be the very key that leaves the map.
        b->setSignalName(map.begin().key() + u"b");
        EXPECT_EQ(map.find(u"bb"), b);
        b->setSignalName(u"b");
        a->setSignalName(u"a");
        EXPECT_EQ(*map.begin(), a);
    };
    tryMap(*function->getVariantFunctionNetEMVCEMutable());
    tryMap(*caller->getVariantFunctionNetEMVCEMutable());
    EXPECT_FALSE(function->hasVariantFunctionNetEMVCE());
    // One in each map: the same key is no clash.
    function->getVariantFunctionNetEMVCEMutable()->add(a);
    a->setSignalName(u"b");
    EXPECT_EQ(function->getVariantFunctionNetEMVCE()->find(u"b"), a);
    EXPECT_EQ(caller->getVariantFunctionNetEMVCE()->find(u"b"), b);
}

TEST(Keys, SayWhichKeyIsInUse) {
    Model const model = Model::create();
    VarTsUIDMap const map = VarTsUIDMap::create(model, {});
    VarTsUIDEntry const first = map->createIntoEntries();
    first->setVarTsIdx(1);
    VarTsUIDEntry const second = map->createIntoEntries();
    try {
        second->setVarTsIdx(1);
        FAIL();
    } catch (std::exception const& e) {
        EXPECT_STREQ(e.what(), "quay0:messages:UniquenessConstraint: VarTsUIDEntry.varTsIdx: 1 is in use");
    }
    EXPECT_EQ(second->getVarTsIdx(), 0);
    EXPECT_EQ(map->getEntries()->find(0), second);
    // A replacing insert lets the former entry go.
    VarTsUIDEntry const third = VarTsUIDEntry::create(model, {});
    third->setVarTsIdx(1);
    map->getEntriesMutable()->insert(third, InsertPolicy::Keep);
    EXPECT_EQ(map->getEntries()->find(1), first);
    map->getEntriesMutable()->insert(third, InsertPolicy::Replace);
    EXPECT_EQ(map->getEntries()->find(1), third);
    EXPECT_EQ(first->basicContainer().impl(), nullptr);
    first->setVarTsIdx(0);
    EXPECT_EQ(first->getVarTsIdx(), 0) << "out of the map any key will do";
}

TEST(Keys, OrderMapsByUnitNeverBySignOrLocale) {
    Model const model = Model::create();
    ArgumentValueMap const bytes = ArgumentValueMap::create(model, {});
    std::vector<std::string> const names = {"", "A", "Z", "a", "a\x7f", "\xc3\xa9", "\xff"};
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        ArgumentValue::Builder value;
        value.setName(*name);
        bytes->createIntoEntries(value);
    }
    std::vector<std::string> order;
    for (ArgumentValue const& v : *bytes->getEntries()) order.push_back(v->getName());
    EXPECT_EQ(order, names);

    CompFunction const function = CompFunction::create(model, {});
    for (double handle : {2.5, -1.0, 0.0, 1e300}) {
        IRTCallerType::Builder type;
        type.setBlockHandle(handle);
        function->createIntoIrtCallerType(type);
    }
    std::vector<double> handles;
    for (IRTCallerType const& t : *function->getIrtCallerType()) handles.push_back(t->getBlockHandle());
    EXPECT_EQ(handles, (std::vector{-1.0, 0.0, 2.5, 1e300}));
    EXPECT_TRUE(function->getIrtCallerType()->containsKey(-0.0));
}

TEST(Slots, LetTheFormerChildLiveAndTakeTheNewOneFromWhereItWas) {
    Model const model = Model::create();
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    VarTsUIDMap const map = root->createIntoVarTsUIDMap();
    Hearer hearer(model);
    root->setVarTsUIDMap(map);
    EXPECT_EQ(hearer.take(), "");
    root->setControllableInputRatesMap(map);
    EXPECT_FALSE(root->hasVarTsUIDMap());
    EXPECT_EQ(map->containmentFeature(), ModelRefInfoRoot::metaClass()->findProperty(u"controllableInputRatesMap"));
    root->setControllableInputRatesMap({});
    EXPECT_TRUE(map);
    EXPECT_EQ(map->container().impl(), nullptr);
    EXPECT_FALSE(root->hasControllableInputRatesMap());

    // The unrecorded write changes the pointer and nothing else.
    hearer.take();
    root->basicSetVarTsUIDMap(map);
    EXPECT_EQ(root->getVarTsUIDMap(), map);
    EXPECT_EQ(map->basicContainer().impl(), nullptr);
    EXPECT_EQ(hearer.take(), "");
    // Whatever child there is goes when any is said to leave.
    auto const property = ModelRefInfoRoot::metaClass()->findProperty(u"varTsUIDMap");
    root->inverseRemove(VarTsUIDMap::create(model, {}), property);
    EXPECT_FALSE(root->hasVarTsUIDMap());
    root->inverseAdd(map, property);
    EXPECT_EQ(root->getVarTsUIDMap(), map);
    EXPECT_EQ(map->basicContainer().impl(), nullptr);
    EXPECT_FALSE(root->inverseContainsProxyTo(map, property));
    {
        auto transaction = model->beginTransaction(false);
        map->destroy();
        EXPECT_EQ(root->getVarTsUIDMap().impl(), map.impl())
            << "a child that died is seen until the transaction is over";
        transaction.commit(boost::none);
    }
    EXPECT_EQ(root->getVarTsUIDMap().impl(), nullptr);
    // One of another model that died is forgotten.
    {
        VarTsUIDMap const foreign = VarTsUIDMap::create(Model::create(), {});
        root->basicSetVarTsUIDMap(foreign);
    }
    EXPECT_EQ(root->getVarTsUIDMap().impl(), nullptr);
}

TEST(Destroying, TakesChildrenFirstAndOnceEach) {
    Model const model = Model::create();
    model->enableHistory(10);
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    VarTsUIDMap const map = root->createIntoVarTsUIDMap();
    VarTsUIDEntry const entry = map->createIntoEntries();
    InportInformation const port = root->createIntoInports();
    HierCondInfo const hier = port->createIntoHierCondInfos();
    root->getInportsMutable()->add(port);
    root->getInportsMutable()->add(port);
    std::vector<ModelElement> destroyed;
    auto const listener = model->addListener([&](ChangeSet const& c) { destroyed = c.destroyed(); });
    std::string const before = dumpElements(model);
    root->destroy();
    model->removeListener(listener);
    EXPECT_EQ(destroyed.size(), 5U);
    auto const rank = [&](ModelElement const& e) {
        return std::find(destroyed.begin(), destroyed.end(), e) - destroyed.begin();
    };
    EXPECT_LT(rank(entry), rank(map));
    EXPECT_LT(rank(map), rank(root));
    EXPECT_LT(rank(hier), rank(port));
    EXPECT_LT(rank(port), rank(root));
    EXPECT_EQ(model->elementCount(), 0U);
    EXPECT_FALSE(root->hasInports());
    EXPECT_FALSE(root->hasVarTsUIDMap());
    model->undo();
    EXPECT_EQ(dumpElements(model), before);
    EXPECT_EQ(root->getInports()->size(), 3U);

    // A child that is destroyed or moved away leaves every position.
    InportInformation const other = root->createIntoInports();
    root->getInportsMutable()->insert(0, other);
    port->destroy();
    EXPECT_EQ(root->getInports()->size(), 2U);
    model->undo();
    EXPECT_EQ(root->getInports()->size(), 5U);
    ModelRefInfoRoot const another = ModelRefInfoRoot::create(model, {});
    another->getInportsMutable()->add(port);
    EXPECT_EQ(root->getInports()->getAllValues(), (std::vector<ModelElement>{other, other}));
    model->undo();
    EXPECT_EQ(port->container(), root);
    EXPECT_EQ((*root->getInports())[1], port);
}

TEST(Elements, TellTheHostOfEachOfTheirCollections) {
    Model const model = Model::create();
    InportInformation const port = InportInformation::create(model, {});
    VarTsUIDEntry const entry = VarTsUIDEntry::create(model, {});
    static std::vector<AbstractOwnedCollection const*> told;
    told.clear();
    port->invalidate();
    ElementImpl::m_callback = [](ElementImpl*, AbstractOwnedCollection* c) { told.push_back(c); };
    entry->invalidate();
    EXPECT_TRUE(told.empty());
    port->invalidate();
    ElementImpl::m_callback = nullptr;
    EXPECT_EQ(told, (std::vector<AbstractOwnedCollection const*>{port->getRateInfos(), port->getHierCondInfos()}));
}

TEST(Elements, EmptyTheirChildrenWithoutARecord) {
    Model const model = Model::create();
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    InportInformation const port = root->createIntoInports();
    root->createIntoVarTsUIDMap();
    Hearer hearer(model);
    root->basicDisassociateAll();
    EXPECT_FALSE(root->hasInports());
    EXPECT_FALSE(root->hasVarTsUIDMap());
    EXPECT_TRUE(port);
    EXPECT_EQ(hearer.take(), "");
}

}  // namespace
