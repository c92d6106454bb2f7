// The parts of change tracking that code of elements can use directly: storages, changes and announcements.
#include "../common/expect.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay/zero/change_set.h>
#include <quay/zero/storage.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace {

using namespace nodes;
using namespace quay::zero;

constexpr auto& kTag = ReflectionPrivateTag::PUBLIC_ACCESS;

struct Sample {
    Model model = Model::create();
    Special e = Special::create(model, idOf(1));
    std::unique_ptr<Storage> storage{e->createStorage()};
    std::vector<meta::Property> const& properties = nodeMeta().properties;

    std::string old(Index index) { return show(storage->getOldValue(properties[index], kTag)); }
};

TEST(Storages, ForgetInAnyOrder) {
    // For every subset of properties that have their old values again: the storage still has the others' old values.
    Index const all[] = {kText, kNumber, kCount, kRank, kBox};
    for (unsigned back = 0; back < 32; ++back) {
        Sample s;
        for (Index i : all) s.e->copyValue(s.storage.get(), i);
        auto const differs = [&](int i) { return (back >> i & 1) == 0; };
        s.e->setText(differs(0) ? u"t" : u"");
        s.e->setNumber(differs(1) ? std::nan("") : 0);
        s.e->setCount(differs(2) ? boost::optional<int>(1) : boost::none);
        s.e->setRank(differs(3) ? 1 : 0);
        s.e->setBox({{differs(4) ? 1.0 : 0.0}});
        s.storage->revertUnchanged(s.e.impl());
        for (int i = 0; i < 5; ++i) {
            EXPECT_EQ(s.storage->has(all[i]), differs(i)) << back << " " << i;
            EXPECT_EQ(s.storage->find(all[i]) != nullptr, differs(i));
        }
        s.e->copyStateFromStorage(s.storage.get());
        EXPECT_EQ(s.e->text() + std::u16string(s.e->count() ? 1 : 0, u'?'), u"");
        EXPECT_EQ(s.e->rank() + s.e->box().sides[0] + s.e->number(), 0);
        s.e->setRank(1);
        s.e->copyValue(s.storage.get(), kNote);
        EXPECT_TRUE(s.storage->has(kNote));
    }
}

TEST(Storages, KeepAContainerForWhoeverWantsTo) {
    Sample s;
    EXPECT_FALSE(s.storage->oldContainer());
    s.storage->setOldContainer(s.e, s.properties[kChildren]);
    EXPECT_EQ(s.storage->oldContainer(), s.e);
    s.storage->clear();
    EXPECT_FALSE(s.storage->oldContainer());
}

TEST(Announcements, KeepTheValueOnce) {
    Sample s;
    int told = 0;
    std::string text;
    s.model->addListener([&](ChangeSet const& changes) {
        ++told;
        for (auto const& p : changes.changed()[0].properties()) {
            text += show(changes.changed()[0].oldValue(p)) + "->" + show(changes.changed()[0].newValue(p)) + " ";
        }
    });
    s.e->notifyModifying(kRank);  // no transaction is open
    EXPECT_EQ(told, 0);
    {
        Transaction transaction = s.model->beginTransaction(false);
        s.e->notifyModifying(kRank);
        s.e->notifyModifying(kBox);
        s.e->notifyModifying(kNumbers);
        s.e->notifyModifying(99);
        s.e->setRank(1);
        s.e->notifyModifying(kRank);
        s.e->setRank(2);
        transaction.commit(boost::none);
    }
    EXPECT_EQ(text, "0->2 ") << "what was announced and didn't change is no change";
    {
        Transaction const rolledBack = s.model->beginTransaction(false);
        s.e->notifyModifying(kText);
        s.e->setText(u"t");
    }
    EXPECT_EQ(s.e->text(), u"");
}

TEST(Properties, AreFoundAlongTheChain) {
    Sample s;
    auto const& meta = nodeMeta();
    for (unsigned long i = 1; i <= kParts; ++i) EXPECT_EQ(s.e->getPropertyByIndex(i), meta.properties[i]) << i;
    for (unsigned long i : {0UL, 14UL, 99UL}) EXPECT_FALSE(s.e->getPropertyByIndex(i)) << i;
    Node const plain = Node::create(s.model);
    EXPECT_FALSE(plain->getPropertyByIndex(kNote));
    EXPECT_EQ(plain->descriptorOf(meta.properties[kNote]), nullptr) << "a subclass's property";
    EXPECT_NE(plain->descriptorOf(meta.properties[kBox]), nullptr);
    using quay0::messages::NoSuchProperty;
    Value const value(meta::StandardTypes::stdstringMeta, std::string("n"), ValueFlags::One);
    for (auto const& absent : {meta.properties[kNote], meta::Property()}) {
        EXPECT_FALSE(plain->hasPropertyValue(absent, kTag));
        EXPECT_TRUE(failsWith<NoSuchProperty>([&] { (void)plain->getPropertyValue(absent, kTag); }));
        EXPECT_TRUE(failsWith<NoSuchProperty>([&] { plain->setPropertyValue(absent, value, kTag); }));
    }
}

TEST(Properties, AreFoundByIndexAroundDerivedOnes) {
    // Derived properties have no index and may be at any position of a class, also the first.
    Model const model = Model::create();
    auto const makeClass = [&](meta::Class const& base, std::vector<int> const& indices) {
        auto const made = meta::Class::create(model, {});
        if (base) made->setSuperclass(base);
        for (int index : indices) {
            auto const p = meta::Property::create(model, {});
            p->setIndex(index);
            p->setIsDerived(index == 0);
            p->setOwningType(made);
        }
        return made;
    };
    auto const base = makeClass(meta::Class(), {0, 1, 2, 0, 3});
    auto const middle = makeClass(base, {});
    auto const derivedOnly = makeClass(middle, {0});
    auto const last = makeClass(derivedOnly, {0, 0, 4, 0, 5, 0});
    for (unsigned long i = 1; i <= 5; ++i) {
        auto const found = last->getPropertyByIndex(i);
        ASSERT_TRUE(found) << i;
        EXPECT_EQ(found->getIndex(), i);
        EXPECT_EQ(found->getOwningType(), i <= 3 ? base : last);
        EXPECT_EQ(bool(derivedOnly->getPropertyByIndex(i)), i <= 3);
    }
    EXPECT_FALSE(last->getPropertyByIndex(0));
    EXPECT_FALSE(last->getPropertyByIndex(6));
    EXPECT_EQ(last->getHighestIndex(), 5U);
    EXPECT_EQ(derivedOnly->getHighestIndex(), 3U);
}

}  // namespace
