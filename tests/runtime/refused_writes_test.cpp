// Every kind of write where it is refused: in a frozen model, by a listener, to dead elements and to proxies.
#include "../common/expect.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay/zero/change_set.h>
#include <quay/zero/model.h>
#include <quay/zero/transaction.h>
#include <quay0/messages.h>

#include <functional>

namespace {

using namespace nodes;
using namespace quay::zero;
namespace msg = quay0::messages;

/// A write to an element; the second element is an operand.
struct Write {
    char const* name;
    void (*run)(Special const& e, Node const& other);
};

Write const kWrites[] = {
    {"a number", [](Special const& e, Node const&) { e->setNumber(1); }},
    {"a text", [](Special const& e, Node const&) { e->setText(u"t"); }},
    {"an optional", [](Special const& e, Node const&) { e->setCount(1); }},
    {"a large value", [](Special const& e, Node const&) { e->setBox({{1}}); }},
    {"in a subclass", [](Special const& e, Node const&) { e->setNote("n"); }},
    {"push_back", [](Special const& e, Node const&) { e->numbers().push_back(1); }},
    {"assign",
     [](Special const& e, Node const&) {
         e->numbers().assign({1, 2});
     }},
    {"clear numbers", [](Special const& e, Node const&) { e->numbers().clear(); }},
    {"insert a tag", [](Special const& e, Node const&) { e->tags().insert(u"t"); }},
    {"erase a tag", [](Special const& e, Node const&) { e->tags().erase(u"t"); }},
    {"add", [](Special const& e, Node const& other) { e->children().add(other); }},
    {"clear children", [](Special const& e, Node const&) { e->children().clear(); }},
    {"add to a map", [](Special const& e, Node const& other) { e->byName().insert(other); }},
    {"clear a map", [](Special const& e, Node const&) { e->byRank().clear(); }},
    {"generic add", [](Special const& e, Node const& other) { e->parts().getGenericInterface()->genericAdd(other); }},
    {"copy contents", [](Special const& e, Node const& other) { e->children().copyContents(other->children()); }},
    {"reflection",
     [](Special const& e, Node const&) {
         e->setPropertyValue(nodeMeta().properties[kRank], Value(meta::StandardTypes::integerMeta, 9, ValueFlags::One),
                             ReflectionPrivateTag::PUBLIC_ACCESS);
     }},
    {"notifyModifying", [](Special const& e, Node const&) { e->notifyModifying(kRank); }},
};

/// Expects that every write to `e` throws M and changes nothing.
template <class M>
void refusesAll(char const* where, Model const& model, Special const& e, Node const& other) {
    for (Write const& write : kWrites) {
        SCOPED_TRACE(std::string(where) + ", " + write.name);
        std::string const before = dump(model, {.referenceCounts = true});
        EXPECT_TRUE(failsWith<M>([&] { write.run(e, other); }));
        EXPECT_EQ(dump(model, {.referenceCounts = true}), before);
    }
}

/// Expects that everything that changes a model as a whole throws M.
template <class M>
void refusesWork(Model const& model, Node const& e) {
    std::function<void()> const all[] = {
        [&] { (void)model->beginTransaction(false); },
        [&] { (void)model->beginTransaction(true); },
        [&] { e->destroy(); },
        [&] { Node::create(model); },
        [&] { model->undo(); },
        [&] { model->redo(); },
    };
    std::string const before = dump(model);
    for (auto const& work : all) {
        EXPECT_TRUE(failsWith<M>(work)) << &work - all;
        EXPECT_EQ(dump(model), before);
    }
}

struct Sample {
    Model model = Model::create();
    Special e = Special::create(model);
    Node other = Node::create(model);
    Sample() {
        model->enableHistory(5);
        e->setRank(1);
        e->setRank(2);
        model->undo();
    }
};

TEST(Writes, AreRefusedByAFrozenModel) {
    Sample s;
    {
        Model::Freezer freezer(s.model);
        refusesAll<msg::ModelIsFrozen>("frozen", s.model, s.e, s.other);
        refusesWork<msg::ModelIsFrozen>(s.model, s.other);
        s.e->setRank(s.e->rank());  // the present value: no event
        {
            Model::Thawer const first = freezer.thaw();
            Model::Thawer second = freezer.thaw();
            { Model::Thawer const third(std::move(second)); }
            s.e->setRank(3);
        }
        EXPECT_TRUE(failsWith<msg::ModelIsFrozen>([&] { s.e->setRank(4); }));
    }
    s.e->setRank(5);
    EXPECT_EQ(s.e->rank(), 5);
}

TEST(Writes, AreRefusedByAFrozenModelInATransaction) {
    Sample s;
    Transaction outer = s.model->beginTransaction(false);
    s.e->setRank(6);
    Node const born = Node::create(s.model);
    {
        Transaction inner = s.model->beginTransaction(false);
        s.e->setNumber(6);
        Model::Freezer freezer(s.model);
        refusesAll<msg::ModelIsFrozen>("frozen", s.model, s.e, s.other);
        EXPECT_TRUE(failsWith<msg::ModelIsFrozen>([&] { born->setRank(1); }));
        {
            Model::Thawer const thawer = freezer.thaw();
            s.e->setRank(7);
        }
        refusesAll<msg::ModelIsFrozen>("frozen again", s.model, s.e, s.other);
        inner.commit();
        EXPECT_TRUE(failsWith<msg::ModelIsFrozen>([&] { s.e->setRank(8); }));
    }
    born->setRank(9);
    EXPECT_EQ(s.e->rank(), 7);
    outer.commit();
    EXPECT_TRUE(s.model->undo());
    EXPECT_EQ(s.e->rank(), 1);
}

TEST(Writes, AreRefusedWhileAnyFreezerFreezes) {
    Sample s;
    auto const isFrozen = [&] { return failsWith<msg::ModelIsFrozen>([&] { s.e->setRank(s.e->rank() + 1); }); };
    Model::Freezer first(s.model);
    {
        Model::Freezer second(s.model);
        EXPECT_TRUE(isFrozen());
        {
            Model::Thawer const thawer = second.thaw();
            EXPECT_TRUE(isFrozen()) << "the first still freezes";
            Model::Thawer const other = first.thaw();
            EXPECT_FALSE(isFrozen());
        }
        EXPECT_TRUE(isFrozen());
    }
    EXPECT_TRUE(isFrozen()) << "the second has gone";
}

TEST(Writes, AreRefusedToListeners) {
    Sample s;
    s.e->parts().add(Node::create(s.model));
    int told = 0;
    s.model->addListener([&](ChangeSet const&) {
        refusesAll<msg::ListenerMayNotWrite>("listening", s.model, s.e, s.other);
        refusesWork<msg::ListenerMayNotWrite>(s.model, s.other);
        std::function<void()> const unchecked[] = {
            [&] { s.e->parts().basicClear(); },   [&] { s.e->children().basicAdd(s.other); },
            [&] { s.e->basicDisassociateAll(); }, [&] { s.e->parts()[0]->basicSetContainer(nullptr, 0); },
            [&] { s.model->enableHistory(0); },
        };
        std::string const before = dump(s.model);
        for (auto const& write : unchecked) {
            EXPECT_TRUE(failsWith<msg::ListenerMayNotWrite>(write)) << &write - unchecked;
            EXPECT_EQ(dump(s.model), before);
        }
        Node::create(Model::create())->setRank(1);  // other models can be changed
        ++told;
    });
    s.e->setRank(2);
    s.model->undo();
    s.model->redo();
    EXPECT_EQ(told, 3);
    EXPECT_EQ(s.e->rank(), 2);
}

TEST(Writes, AreRefusedByTheDead) {
    Sample s;
    Special const destroyed = Special::create(s.model);
    destroyed->destroy();
    Special undone;
    {
        Transaction transaction = s.model->beginTransaction(false);
        undone = Special::create(s.model);
    }
    Model ended = Model::create();
    Special const orphan = Special::create(ended);
    orphan->numbers().push_back(1);
    ended = Model();
    for (auto const& [how, e] : {std::pair{"destroyed", destroyed}, {"undone", undone}, {"its model ended", orphan}}) {
        refusesAll<msg::CannotAddNonExistentObject>(how, s.model, e, s.other);
        {
            Transaction transaction = s.model->beginTransaction(false);
            refusesAll<msg::CannotAddNonExistentObject>(how, s.model, e, s.other);
        }
        EXPECT_EQ(e->number(), 0);
        EXPECT_EQ(e->text(), u"");
        EXPECT_EQ(e->numbers().size(), e == orphan ? 1U : 0U);
        EXPECT_TRUE(e->tags().empty() && e->children().empty() && e->byName().empty() && e->parts().empty());
    }
}

TEST(Writes, AreRefusedByProxies) {
    Sample s;
    Special const proxy = Special::create(s.model);
    s.model->proxies().setId(*proxy.impl(), ProxyId(u"there", idOf(7)));
    refusesAll<msg::CannotModifyProxy>("a proxy", s.model, proxy, s.other);
    EXPECT_TRUE(failsWith<msg::CannotModifyProxy>([&] { proxy->setRank(proxy->rank()); })) << "its own value as well";
    EXPECT_TRUE(failsWith<msg::CannotModifyProxy>([&] { proxy->requireLoaded(); }));
    proxy->destroy();
    EXPECT_FALSE(proxy);
}

}  // namespace
