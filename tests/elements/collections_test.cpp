// The typed faces of collections: positions, iterators, look-up.
#include "../common/expect.h"
#include "support/dump.h"
#include "support/listener.h"

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <quay0/messages.h>

#include <algorithm>

namespace {

using namespace ModelRefInfoRepo;
using namespace quay::zero;
using namespace quay0::messages;
using namespace records;

TEST(Sequences, AreReadAndChangedByPosition) {
    Model const model = Model::create();
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    std::vector<InportInformation> ports;
    for (int i = 0; i < 4; ++i) {
        ports.push_back(root->createIntoInports());
        ports.back()->setDesignMin(3 - i);
    }
    auto& all = *root->getInportsMutable();
    EXPECT_EQ(all[2], ports[2]);
    EXPECT_EQ(all.end() - all.begin(), 4);
    EXPECT_EQ(all.begin()[3]->getDesignMin(), 0);
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end(),
                               [](auto const& a, auto const& b) { return a->getDesignMin() > b->getDesignMin(); }));
    all.erase(all.begin() + 1);
    all.insert(all.begin(), ports[1]);
    all.erase(3);
    all.set(1, ports[3]);
    EXPECT_EQ(all.getAllValues(), (std::vector<ModelElement>{ports[1], ports[3], ports[2]}));
    // What is changed while it is walked is walked by position, never out of bounds.
    for (auto i = all.begin(); i < all.end(); ++i) all.remove(*i);
    EXPECT_EQ(all.getAllValues(), std::vector<ModelElement>{ports[3]});
    all.add(all[0]);
    EXPECT_EQ(all.size(), 2U) << "its own member, by reference";
    EXPECT_TRUE(throws<std::out_of_range>([&] { all.erase(2); }));
    EXPECT_TRUE(throws<std::out_of_range>([&] { all.insert(3, ports[0]); }));
}

TEST(Sets, HoldEachElementOnce) {
    Model const model = Model::create();
    ResetEventInfo const event = ResetEventInfo::create(model, {});
    auto& set = *event->getNetHierCondInfoMutable();
    std::set<ModelElement> expected;
    for (int i = 0; i < 100; ++i) expected.insert(event->createIntoNetHierCondInfo());
    Hearer hearer(model);
    for (ModelElement const& e : expected) set.add(HierCondInfo::cast(e));
    EXPECT_EQ(hearer.take(), "");
    EXPECT_EQ(std::set<ModelElement>(set.begin(), set.end()), expected);
    HierCondInfo const first = *set.begin();
    set.remove(first);
    EXPECT_FALSE(set.contains(first));
    EXPECT_EQ(set.size(), 99U);
}

TEST(Multimaps, KeepEqualsInOrderOfEntry) {
    Model const model = Model::create();
    model->enableHistory(10);
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    auto const make = [&](int key) {
        UnionTsContainedTsElem::Builder b;
        b.setUnionTs(key);
        return root->createIntoUnionTsContainedTs(b);
    };
    auto const a = make(2);
    auto const b = make(1);
    auto const c = make(2);
    auto const& all = *root->getUnionTsContainedTs();
    using Elements = std::vector<UnionTsContainedTsElem>;
    EXPECT_EQ(Elements(all.begin(), all.end()), (Elements{b, a, c}));
    EXPECT_EQ(all.find(2), (Elements{a, c}));
    EXPECT_TRUE(all.find(7).empty());
    a->setUnionTs(1);
    EXPECT_EQ(all.find(1), (Elements{b, a}));
    a->setUnionTs(2);
    EXPECT_EQ(all.find(2), (Elements{c, a})) << "a re-keyed element goes last";
    model->undo();
    model->undo();
    EXPECT_EQ(all.find(2), (Elements{a, c})) << "undone, it is where it was";
    model->redo();
    root->getUnionTsContainedTsMutable()->erase(all.begin());
    EXPECT_EQ(Elements(all.begin(), all.end()), (Elements{a, c}));
}

/// What a model tells of collections: those with two or more members are never compared.
TEST(Changes, OfOneMemberOrNoneAreComparedOthersAreNot) {
    Model const model = Model::create();
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    Hearer hearer(model);
    auto const backAndForth = [&](auto&& there, auto&& back) {
        hearer.take();
        auto transaction = model->beginTransaction(false);
        there();
        back();
        transaction.commit(boost::none);
        return !hearer.take().empty();
    };
    auto& names = *root->getOrigInportBusTypeMutable();
    auto& tasks = *root->getDisableableTaskNumsMutable();
    auto& ports = *root->getInportsMutable();
    InportInformation const extra = InportInformation::create(model, {});
    for (int size = 0; size <= 2; ++size) {
        bool const told = size > 1;
        EXPECT_EQ(backAndForth([&] { names.push_back(u"x"); }, [&] { names.eraseAt(names.size() - 1); }), told) << size;
        EXPECT_EQ(backAndForth([&] { tasks.insert(9); }, [&] { tasks.erase(9); }), told) << size;
        EXPECT_EQ(backAndForth([&] { ports.add(extra); }, [&] { ports.remove(extra); }), told) << size;
        EXPECT_EQ(backAndForth([&] { tasks.erase(77); }, [] {}), told) << size;
        names.push_back(u"n");
        tasks.insert(static_cast<unsigned long>(size));
        root->createIntoInports();
    }
    VarTsUIDMap const map = root->createIntoVarTsUIDMap();
    VarTsUIDEntry const entry = map->createIntoEntries();
    EXPECT_FALSE(
        backAndForth([&] { map->getEntriesMutable()->remove(entry); }, [&] { map->getEntriesMutable()->add(entry); }));
    EXPECT_TRUE(backAndForth([&] { entry->setVarTsIdx(5); }, [] {}));
}

}  // namespace
