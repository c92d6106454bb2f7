// Containers: who owns a child, what moves it, and what is destroyed with what.
#include "../common/expect.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay0/messages.h>

#include <gtest/gtest.h>

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
    f.a->basicSetContainer(f.b.impl(), children, ModelElement::Impl::NO_INDEX);
    EXPECT_EQ(f.a->containmentFeature(), children);
    f.a->basicSetContainer(nullptr, meta::Property(), ModelElement::Impl::NO_INDEX);
    EXPECT_FALSE(f.a->container());

    f.a->_inverseAddThis(f.root.impl(), children, true);
    EXPECT_TRUE(f.root->children().contains(f.a));
    f.a->_inverseRemoveThis(f.root.impl(), children);
    EXPECT_TRUE(f.root->children().empty());

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
