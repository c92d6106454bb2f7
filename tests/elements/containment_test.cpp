// Owners and children: keys, single children, moving, destroying.
#include "../common/expect.h"
#include "support/dump.h"
#include "support/listener.h"

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <quay0/messages.h>

namespace {

using namespace ModelRefInfoRepo;
using namespace quay::zero;
using namespace quay0::messages;
using namespace records;

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
    // The argument may be a reference to the key that is removed from the map.
    second->setVarTsIdx(map->getEntries()->begin().key() + 7);
    EXPECT_EQ(map->getEntries()->find(7), second);
    // An insert that replaces an entry releases the former one.
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

TEST(SingleChildren, CanBeWrittenWithoutARecord) {
    Model const model = Model::create();
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    VarTsUIDMap const map = root->createIntoVarTsUIDMap();
    Hearer hearer(model);
    root->setVarTsUIDMap({});
    // The unrecorded write changes only the pointer.
    hearer.take();
    root->basicSetVarTsUIDMap(map);
    EXPECT_EQ(root->getVarTsUIDMap(), map);
    EXPECT_EQ(map->basicContainer().impl(), nullptr);
    EXPECT_EQ(hearer.take(), "");
    // The present child is removed, even if the call names another element.
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
    // A dead element of another model is forgotten.
    {
        VarTsUIDMap const foreign = VarTsUIDMap::create(Model::create(), {});
        root->basicSetVarTsUIDMap(foreign);
    }
    EXPECT_EQ(root->getVarTsUIDMap().impl(), nullptr);
}

}  // namespace
