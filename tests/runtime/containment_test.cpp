// Containers: who owns a child, what moves it, and what goes down with what.
#include "../common/expect.h"
#include "support/dump.h"
#include "support/node.h"

#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace {

using namespace nodes;
using namespace quay::zero;
namespace msg = quay0::messages;

struct Family {
    Model model = Model::create();
    Special root = Special::create(model, idOf(1));
    Node a = Node::create(model, idOf(2));
    Node b = Node::create(model, idOf(3));
    std::string now() const { return dump(model, {.referenceCounts = true}); }
};

TEST(Containment, IsOneAtATime) {
    // In each property one after the other: the former one loses the child, wherever it was.
    Family f;
    struct Place {
        char const* name;
        Index index;
        std::function<ModelElement::Impl*()> enter;
        std::function<bool()> holds;
    };
    auto const& a = f.a;
    auto const place = [&](char const* name, Index index, Node const& owner, auto& collection) {
        return Place{name, index,
                     [&collection, owner, a] {
                         collection.getGenericInterface()->genericAdd(a);
                         return static_cast<ModelElement::Impl*>(owner.impl());
                     },
                     [&collection, a] { return collection.getGenericInterface()->genericContains(a); }};
    };
    Place const places[] = {
        place("children", kChildren, f.root, f.root->children()),
        place("parts", kParts, f.root, f.root->parts()),
        place("byName", kByName, f.root, f.root->byName()),
        place("byRank", kByRank, f.b, f.b->byRank()),
        place("byNumber", kByNumber, f.b, f.b->byNumber()),
        place("b's children", kChildren, f.b, f.b->children()),
    };
    for (Place const& from : places) {
        for (Place const& to : places) {
            SCOPED_TRACE(std::string(from.name) + " to " + to.name);
            from.enter();
            auto* const owner = to.enter();
            EXPECT_EQ(f.a->container().impl(), owner);
            EXPECT_EQ(f.a->containmentFeature(), nodeMeta().properties[to.index]);
            for (Place const& other : places) EXPECT_EQ(other.holds(), &other == &to) << other.name;
        }
    }
}

TEST(Containment, EndsWithTheOwnerHoweverTheChildCameIn) {
    for (Index const index : {kChildren, kByName, kByRank, kByNumber}) {
        using Enter = void (*)(Node const&, Node const&, meta::Property const&);
        for (Enter const enter :
             {Enter([](Node const&o, Node const&e, auto const&p) { o->inverseAdd(e, p); }),
              Enter([](Node const&o, Node const&e, auto const&p) {
                  Node const other = Node::create(o->getModel());
                  other->inverseAdd(e, p);
                  auto const descriptor = o->descriptorOf(p);
                  descriptor->collection(*o.impl())->copyContents(*descriptor->collection(*other.impl()));
              })}) {
            Family f;
            enter(f.b, f.a, nodeMeta().properties[index]);
            f.b->destroy();
            EXPECT_FALSE(f.a) << index;
        }
    }
}

TEST(Containment, RefusesWhatCannotEnter) {
    Family f;
    f.root->children().add(f.a);
    f.a->children().add(f.b);
    Model const other = Model::create();
    Node const foreign = Node::create(other);
    Node const dead = Node::create(f.model);
    dead->destroy();
    Node const sameName = Node::create(f.model);
    f.b->byName().insert(sameName);  // its key is ""
    Node const alsoEmpty = Node::create(f.model);
    f.root->byName().insert(alsoEmpty);
    Node const notANumber = Node::create(f.model);
    notANumber->setNumber(std::nan(""));

    using Try = std::function<void(Node const&)>;
    auto const intoAll = [](Node const& owner) {
        return std::vector<Try>{[owner](Node const& e) { owner->children().add(e); },
                                [owner](Node const& e) { owner->children().insert(0, e); },
                                [owner](Node const& e) { owner->byName().insert(e); },
                                [owner](Node const& e) { owner->byName().insert(e, InsertPolicy::Replace); },
                                [owner](Node const& e) { owner->byRank().insert(e); },
                                [owner](Node const& e) { owner->byNumber().insert(e); }};
    };
    std::string const before = f.now();
    for (Try const& enter : intoAll(f.b)) {
        EXPECT_TRUE(failsWith<msg::CannotCreateCrossModelAssociation>([&] { enter(foreign); }));
        EXPECT_TRUE(failsWith<msg::InvalidValue>([&] { enter(f.b); })) << "itself";
        EXPECT_TRUE(failsWith<msg::InvalidValue>([&] { enter(f.a); })) << "its container";
        EXPECT_TRUE(failsWith<msg::InvalidValue>([&] { enter(f.root); })) << "above its container";
        enter(Node());  // ignored
        enter(dead);
    }
    EXPECT_TRUE(failsWith<msg::UniquenessConstraint>([&] { f.root->byName().insert(sameName); }));
    EXPECT_TRUE(failsWith<msg::InvalidValue>([&] { f.root->byNumber().insert(notANumber); }));
    f.root->byName().insert(sameName, InsertPolicy::Keep);
    EXPECT_EQ(f.now(), before) << "and an element that is refused stays where it was";

    f.root->byName().insert(sameName, InsertPolicy::Replace);
    EXPECT_EQ(f.root->byName().find(u""), sameName);
    EXPECT_EQ(f.b->byName().size(), 0U);
    EXPECT_TRUE(alsoEmpty);
    EXPECT_FALSE(alsoEmpty->container());
}

std::vector<ModelElement::Impl*> announced;

TEST(Containment, TakesOwnedElementsDown) {
    Family f;
    Special const part = Special::create(f.model);
    std::vector<Node> nodes;
    for (int i = 0; i < 6; ++i) nodes.push_back(Node::create(f.model));
    f.root->parts().add(part);
    part->parts().add(nodes[0]);
    part->children().add(nodes[1]);
    part->children().add(nodes[1]);
    part->byName().insert(nodes[2]);
    part->byRank().insert(nodes[3]);
    part->byNumber().insert(nodes[4]);
    nodes[4]->children().add(nodes[5]);
    std::string const before = f.now();
    {
        Transaction transaction = f.model->beginTransaction(false);
        announced.clear();
        Hook const hook(Node::Impl::whenDestroying, [](Node::Impl& e) {
            EXPECT_TRUE(e.isAlive());
            announced.push_back(&e);
        });
        part->destroy();
        ModelElement::Impl* const expected[] = {part.impl(),     nodes[0].impl(), nodes[1].impl(), nodes[2].impl(),
                                                nodes[3].impl(), nodes[4].impl(), nodes[5].impl()};
        EXPECT_TRUE(std::equal(announced.begin(), announced.end(), std::begin(expected), std::end(expected)))
            << "a subclass's children before its base's, each once";
        EXPECT_FALSE(part);
        for (Node const& e : nodes) EXPECT_FALSE(e);
        EXPECT_EQ(f.model->elementCount(), 3U);
        EXPECT_TRUE(f.root->parts().empty());
        EXPECT_TRUE(part->children().empty());
    }
    EXPECT_EQ(f.now(), before) << "alive again, in their places";

    f.root->destroy();
    EXPECT_EQ(f.model->elementCount(), 2U);
    EXPECT_EQ(f.model->getRoots(), (std::vector<ModelElement>{f.a, f.b}));
}

TEST(Containment, ServesTheHelpersOfElementCode) {
    Family f;
    auto const& children = nodeMeta().properties[kChildren];
    f.root->inverseAdd(f.a, children);
    EXPECT_EQ(f.root->children().size(), 1U);
    EXPECT_FALSE(f.a->container()) << "the field alone changes";
    f.root->_setContainedByThis(f.a.impl(), children);
    EXPECT_EQ(f.a->container(), f.root);
    f.b->_setContainedByThis(f.a.impl(), children);
    EXPECT_EQ(f.a->container(), f.b);
    EXPECT_TRUE(f.root->children().empty()) << "it has left its former container";
    f.b->_basicSetUncontained(f.a.impl());
    EXPECT_FALSE(f.a->container());
    f.a->basicSetContainer(f.b.impl(), children, ModelElement::Impl::NO_INDEX);
    EXPECT_EQ(f.a->containmentFeature(), children);
    f.a->basicSetContainer(nullptr, meta::Property(), ModelElement::Impl::NO_INDEX);
    EXPECT_FALSE(f.a->container());

    f.a->_inverseAddThis(f.root.impl(), children, true);
    EXPECT_TRUE(f.root->children().contains(f.a));
    f.a->_inverseRemoveThis(f.root.impl(), children);
    EXPECT_TRUE(f.root->children().empty());

    for (Node const& e : {f.a, f.b}) f.root->children().add(e);
    f.root->byName().insert(Node::create(f.model));
    f.root->basicDisassociateAll();
    EXPECT_TRUE(f.root->children().empty() && f.root->byName().empty());

    static std::vector<AbstractOwnedCollection*> seen;
    seen.clear();
    f.root->invalidate();
    ElementImpl::m_callback = [](ElementImpl*, AbstractOwnedCollection* c) { seen.push_back(c); };
    f.root->invalidate();
    ElementImpl::m_callback = nullptr;
    ASSERT_EQ(seen.size(), 7U)
        << "every collection, the subclass's own first, those of values before those of children";
    EXPECT_EQ(seen[0], &f.root->parts());
    EXPECT_EQ(seen[1], &f.root->numbers());
    EXPECT_EQ(seen[3], &f.root->children());
}

}  // namespace
